#include "tests/com/Client.h"

#include "platform/com/Server.h"

std::string Script::Invoke(WORD flags, const wchar_t* member, std::vector<Arg>& arguments, const Named& named) {
    // The names of the arguments are looked up together with the member's; the value that is written has none.
    std::vector<LPOLESTR> names = {const_cast<LPOLESTR>(member)};
    for (const auto& [name, value] : named) names.push_back(const_cast<LPOLESTR>(name));
    std::vector<DISPID> identifiers(names.size());
    const HRESULT found = object_->GetIDsOfNames(IID_NULL, names.data(), static_cast<UINT>(names.size()),
                                                 LOCALE_USER_DEFAULT, identifiers.data());
    if (FAILED(found)) return Told(found);
    const DISPID memberId = identifiers.front();
    identifiers.erase(identifiers.begin());
    std::vector<VARIANT> values(named.size());
    std::ranges::transform(named, values.begin(), [](const auto& argument) { return argument.second; });
    if (flags == DISPATCH_PROPERTYPUT) {
        identifiers.insert(identifiers.begin(), DISPID_PROPERTYPUT);
        values.insert(values.begin(), arguments.back());
    }
    const std::size_t ordered = arguments.size() - (flags == DISPATCH_PROPERTYPUT);
    for (std::size_t index = ordered; index-- > 0;) values.push_back(arguments[index]);
    DISPPARAMS parameters{values.data(), identifiers.data(), static_cast<UINT>(values.size()),
                          static_cast<UINT>(identifiers.size())};

    Result = {};
    const HRESULT called = object_->Invoke(memberId, IID_NULL, LOCALE_USER_DEFAULT, flags, &parameters,
                                           flags == DISPATCH_PROPERTYPUT ? nullptr : &Result, &Exception, &Bad);
    if (called == S_OK) return Text(Result);
    if (called != DISP_E_EXCEPTION) return Told(called, "", "");
    Bstr source, description, helpFile;
    *source.put() = Exception.bstrSource;
    *description.put() = Exception.bstrDescription;
    *helpFile.put() = Exception.bstrHelpFile;
    return Told(Exception.scode, source.Utf8(), description.Utf8() + helpFile.Utf8());
}

std::wstring Component::File(const std::wstring& name) {
    const std::wstring program = com::FileName(nullptr);
    return program.substr(0, program.rfind(L'\\') + 1) + name + L".dll";
}

namespace {

/// The thread's apartment, as hosts have it, and the components beside this program in the registry.
class Surroundings : public testing::Environment {
  public:
    void SetUp() override {
        ASSERT_HRESULT_SUCCEEDED(CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED));
        for (const auto name : {L"Seamcfg", L"Seamlib", L"Conduit", L"XTarn4x"}) {
            // Those of another build folder may be registered.
            ASSERT_HRESULT_SUCCEEDED(Component(Component::File(name)).Install(TRUE, L"force"));
            ASSERT_EQ(GetModuleHandleW(name), nullptr) << "registering has created no object";
        }
    }
    void TearDown() override { CoUninitialize(); }
};

}  // namespace

int main(int argc, char** argv) {
    testing::InitGoogleMock(&argc, argv);
    testing::AddGlobalTestEnvironment(new Surroundings);
    return RUN_ALL_TESTS();
}
