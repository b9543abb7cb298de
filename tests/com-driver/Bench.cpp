#include "tests/com-driver/Bench.h"

#include <ostream>

#include "platform/com/Server.h"

std::wstring ComponentFile(const wchar_t* name) {
    const std::wstring program = com::FileName(nullptr);
    return program.substr(0, program.rfind(L'\\') + 1) + name + L".dll";
}

namespace {

/// The thread's apartment, and the components beside this program in the registry.
class Surroundings : public testing::Environment {
  public:
    void SetUp() override {
        ASSERT_HRESULT_SUCCEEDED(CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED));
        for (const auto name : {L"Seamcfg", L"Seamlib", L"Conduit", L"XTarn4x"}) Register(name);
        // The instrument is a scripted one: nothing to wait for.
        application_ = Create<IApplication>(__uuidof(clsApplication));
        ASSERT_HRESULT_SUCCEEDED(application_->put_DelayScale(0.0));
    }

    void TearDown() override {
        application_ = {};
        CoUninitialize();
    }

  private:
    static void Register(const wchar_t* name) {
        const auto module = LoadLibraryW(ComponentFile(name).c_str());
        ASSERT_NE(module, nullptr) << com::Utf8(ComponentFile(name));
        const auto install = reinterpret_cast<HRESULT(STDAPICALLTYPE*)(BOOL, LPCWSTR)>(
            reinterpret_cast<void*>(GetProcAddress(module, "DllInstall")));
        // Those of another build folder may be registered.
        ASSERT_HRESULT_SUCCEEDED(install(TRUE, L"force"));
        FreeLibrary(module);
        ASSERT_EQ(GetModuleHandleW(name), nullptr) << "registering has created no object";
    }

    ComPtr<IApplication> application_;
};

const auto* const surroundings = testing::AddGlobalTestEnvironment(new Surroundings);

}  // namespace

std::ostream& operator<<(std::ostream& stream, const Failure& failure) {
    return stream << "0x" << std::hex << failure.result << std::dec << " from \"" << failure.source << "\": \""
                  << failure.description << '"';
}

Failure TakeFailure(HRESULT result) {
    ComPtr<IErrorInfo> information;
    if (GetErrorInfo(0, information.put()) != S_OK) return {static_cast<unsigned>(result), "", ""};
    com::Bstr source, description;
    GUID interfaceId{};
    EXPECT_HRESULT_SUCCEEDED(information->GetSource(source.put()));
    EXPECT_HRESULT_SUCCEEDED(information->GetDescription(description.put()));
    EXPECT_HRESULT_SUCCEEDED(information->GetGUID(&interfaceId));
    EXPECT_TRUE(interfaceId == __uuidof(_clsTarn4x));
    return {static_cast<unsigned>(result), source.Utf8(), description.Utf8()};
}

HRESULT Script::Get(const wchar_t* member, std::vector<VARIANT> arguments, std::vector<Named> named) {
    return Invoke(DISPATCH_METHOD | DISPATCH_PROPERTYGET, member, std::move(arguments), std::move(named));
}

HRESULT Script::Put(const wchar_t* member, VARIANT value, std::vector<VARIANT> arguments, std::vector<Named> named) {
    named.insert(named.begin(), {nullptr, value});
    return Invoke(DISPATCH_PROPERTYPUT, member, std::move(arguments), std::move(named));
}

HRESULT Script::Invoke(WORD flags, const wchar_t* member, std::vector<VARIANT> arguments, std::vector<Named> named) {
    // The names of the arguments are looked up together with the member's; the value that is written has none.
    std::vector<LPOLESTR> names = {const_cast<LPOLESTR>(member)};
    for (const auto& argument : named) {
        if (argument.name) names.push_back(const_cast<LPOLESTR>(argument.name));
    }
    std::vector<DISPID> identifiers(names.size());
    const HRESULT found = object_->GetIDsOfNames(IID_NULL, names.data(), static_cast<UINT>(names.size()),
                                                 LOCALE_USER_DEFAULT, identifiers.data());
    if (FAILED(found)) return found;
    const DISPID memberId = identifiers.front();
    identifiers.erase(identifiers.begin());
    if (flags == DISPATCH_PROPERTYPUT) identifiers.insert(identifiers.begin(), DISPID_PROPERTYPUT);

    std::vector<VARIANT> values;
    for (const auto& argument : named) values.push_back(argument.value);
    values.insert(values.end(), arguments.rbegin(), arguments.rend());
    DISPPARAMS parameters{values.data(), identifiers.data(), static_cast<UINT>(values.size()),
                          static_cast<UINT>(identifiers.size())};
    result = {};
    raised = {};
    EXCEPINFO exception{};
    UINT bad = 0;
    const HRESULT called = object_->Invoke(memberId, IID_NULL, LOCALE_USER_DEFAULT, flags, &parameters,
                                           flags == DISPATCH_PROPERTYPUT ? nullptr : &result, &exception, &bad);
    if (called == DISP_E_EXCEPTION) {
        com::Bstr source, description;
        *source.put() = exception.bstrSource;
        *description.put() = exception.bstrDescription;
        SysFreeString(exception.bstrHelpFile);
        raised = {static_cast<unsigned>(exception.scode), source.Utf8(), description.Utf8()};
    }
    return called;
}

VARIANT Number(LONG number) {
    VARIANT value{};
    value.vt = VT_I4;
    value.lVal = number;
    return value;
}

VARIANT Real(double number, VARTYPE type) {
    VARIANT value{};
    value.vt = type;
    value.dblVal = number;
    return value;
}

VARIANT Reference(VARIANT* variable) {
    VARIANT value{};
    value.vt = VT_BYREF | VT_VARIANT;
    value.pvarVal = variable;
    return value;
}

void Select(IDriverSetup* setup, const std::vector<std::pair<std::string, platform::Value>>& values) {
    ComPtr<INode> settings;
    com::Check(setup->get_Settings(settings.put()));
    for (const auto& [path, value] : values) {
        ComPtr<INode> setting;
        com::Check(settings->get_Item(com::Variant(com::ToVariant(path)), setting.put()));
        com::Check(setting->SetValue(VARIANT_TRUE, VARIANT_TRUE, com::Variant(com::ToVariant(value))));
    }
}

std::string Echoes() {
    std::string answer = "READ:DVBT:IRESPONSE:PEAK? = ";
    for (int echo = 1; echo <= 25; ++echo) answer += std::to_string(echo) + ".5," + std::to_string(100 + echo) + ",";
    return answer.substr(0, answer.size() - 1);
}

OnLine::OnLine() {
    Select(setup.get(), {{"Remote Control", std::string("TCP/IP")},
                         {"TCP/IP.Host", std::string("127.0.0.1")},
                         {"TCP/IP.Port", std::int32_t{peer.Port()}}});
    VARIANT_BOOL onLine = VARIANT_FALSE;
    EXPECT_HRESULT_SUCCEEDED(setup->put_OnLine(VARIANT_TRUE));
    EXPECT_HRESULT_SUCCEEDED(setup->get_OnLine(&onLine));
    EXPECT_EQ(onLine, VARIANT_TRUE);
}

OnLine::~OnLine() {
    VARIANT_BOOL onLine = VARIANT_FALSE;
    EXPECT_EQ(setup->get_OnLine(&onLine), S_OK);
    if (onLine) setup->put_OnLine(VARIANT_FALSE);
}
