// A late-bound C++ host: everything goes through IDispatch, by name, without a header of the driver.
//
//   measure-late.exe [HOST [PORT]]
#include <windows.h>
// clang-format off
#include <oleauto.h>
// clang-format on

#include <cstdio>
#include <cstdlib>
#include <string>
#include <utility>
#include <vector>

namespace {

/// A Variant that owns what it holds. Arguments become one by themselves, as in a script.
class Value {
  public:
    Value() { VariantInit(&variant_); }
    Value(bool truth) : Value() {
        variant_.vt = VT_BOOL;
        variant_.boolVal = truth ? VARIANT_TRUE : VARIANT_FALSE;
    }
    Value(double number) : Value() {
        variant_.vt = VT_R8;
        variant_.dblVal = number;
    }
    Value(const wchar_t* text) : Value() {
        variant_.vt = VT_BSTR;
        variant_.bstrVal = SysAllocString(text);
    }
    /// Takes over the caller's reference.
    explicit Value(IDispatch* object) : Value() {
        variant_.vt = VT_DISPATCH;
        variant_.pdispVal = object;
    }
    Value(Value&& other) noexcept : variant_(std::exchange(other.variant_, VARIANT{})) {}
    Value& operator=(Value other) noexcept {
        std::swap(variant_, other.variant_);
        return *this;
    }
    ~Value() { VariantClear(&variant_); }

    Value Copy() const {
        Value copy;
        VariantCopy(&copy.variant_, const_cast<VARIANT*>(&variant_));
        return copy;
    }
    VARIANT* get() { return &variant_; }
    IDispatch* object() const { return variant_.vt == VT_DISPATCH ? variant_.pdispVal : nullptr; }
    /// As the type that is wanted.
    Value As(VARTYPE type) const {
        Value converted;
        VariantChangeType(&converted.variant_, const_cast<VARIANT*>(&variant_), 0, type);
        return converted;
    }
    double number() const { return As(VT_R8).variant_.dblVal; }
    bool truth() const { return As(VT_BOOL).variant_.boolVal != VARIANT_FALSE; }
    std::wstring text() const {
        const Value converted = As(VT_BSTR);
        return converted.variant_.bstrVal ? converted.variant_.bstrVal : L"";
    }

  private:
    VARIANT variant_;
};

/// Calls a member by name. A member that raises an error ends the program with number, source and description.
Value Call(IDispatch* object, const wchar_t* member, WORD kind, std::vector<Value> arguments = {}) {
    auto* name = const_cast<LPOLESTR>(member);
    DISPID identifier = 0;
    HRESULT result = object->GetIDsOfNames(IID_NULL, &name, 1, LOCALE_USER_DEFAULT, &identifier);
    std::vector<VARIANT> reversed;  // the last argument comes first
    for (auto argument = arguments.rbegin(); argument != arguments.rend(); ++argument) {
        reversed.push_back(*argument->get());
    }
    DISPID put = DISPID_PROPERTYPUT;
    DISPPARAMS passed{reversed.data(), nullptr, static_cast<UINT>(reversed.size()), 0};
    if (kind == DISPATCH_PROPERTYPUT) {
        passed.rgdispidNamedArgs = &put;
        passed.cNamedArgs = 1;
    }
    Value value;
    EXCEPINFO error{};
    if (SUCCEEDED(result)) {
        result = object->Invoke(identifier, IID_NULL, LOCALE_USER_DEFAULT, kind, &passed, value.get(), &error, nullptr);
    }
    if (result == DISP_E_EXCEPTION) result = error.scode;
    if (FAILED(result)) {
        std::printf("%ls failed with %08lX\n%ls: %ls\n", member, static_cast<unsigned long>(result),
                    error.bstrSource ? error.bstrSource : L"", error.bstrDescription ? error.bstrDescription : L"");
        std::exit(1);
    }
    return value;
}

Value Get(IDispatch* object, const wchar_t* member, std::vector<Value> arguments = {}) {
    return Call(object, member, DISPATCH_PROPERTYGET | DISPATCH_METHOD, std::move(arguments));
}

void Put(IDispatch* object, const wchar_t* member, Value value) {
    std::vector<Value> arguments;
    arguments.push_back(std::move(value));
    Call(object, member, DISPATCH_PROPERTYPUT, std::move(arguments));
}

template <class... Arguments>
std::vector<Value> List(Arguments&&... arguments) {
    std::vector<Value> list;
    (list.emplace_back(std::forward<Arguments>(arguments)), ...);
    return list;
}

Value Create(const wchar_t* progId) {
    CLSID clsid;
    void* object = nullptr;
    HRESULT result = CLSIDFromProgID(progId, &clsid);
    if (SUCCEEDED(result)) result = CoCreateInstance(clsid, nullptr, CLSCTX_INPROC_SERVER, IID_IDispatch, &object);
    if (FAILED(result)) {
        std::printf("%ls cannot be created: %08lX\n", progId, static_cast<unsigned long>(result));
        std::exit(1);
    }
    return Value(static_cast<IDispatch*>(object));
}

/// Writes a setting, for example "TCP/IP.Port".
void Set(IDispatch* settings, const wchar_t* path, const wchar_t* text) {
    const Value setting = Get(settings, L"Item", List(path));
    Put(setting.object(), L"Value", text);
}

void Measure(IDispatch* driver, const wchar_t* member, const wchar_t* unit) {
    const double value = Get(driver, member).number();
    const auto prefix = Get(driver, L"Prefix").text();  // "---": no value; "<", ">": the true one is beyond
    std::printf("%-24ls %ls %.6g %ls\n", member, prefix.c_str(), value, unit);
}

}  // namespace

int wmain(int count, wchar_t** arguments) {
    CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED);
    {
        const Value application = Create(L"Seamlib.clsApplication");
        Put(application.object(), L"DelayScale", 0.0);  // for the simulated receiver; a real instrument needs its waits
        const Value host = Create(L"Seamlib.clsHost");
        Value driver = Get(host.object(), L"CreateDriver", List(L"XTarn4x"));
        IDispatch* members = driver.object();
        const Value setup = Get(host.object(), L"Setup", List(driver.Copy()));
        const Value settings = Get(setup.object(), L"Settings");
        Set(settings.object(), L"Remote Control", L"TCP/IP");
        Set(settings.object(), L"TCP/IP.Host", count > 1 ? arguments[1] : L"127.0.0.1");
        Set(settings.object(), L"TCP/IP.Port", count > 2 ? arguments[2] : L"5025");
        Put(setup.object(), L"OnLine", true);
        if (!Get(setup.object(), L"OnLine").truth()) {
            std::printf("The receiver does not answer. %ls\n", Get(setup.object(), L"WhyOffLine").text().c_str());
            return 1;
        }
        Put(members, L"RF", 474e6);
        Put(members, L"MeasureMode", 18.0);  // tarnPAR
        Measure(members, L"MeasureRfLevel", L"dBm");
        Measure(members, L"MeasureOfdmMerRmsDb", L"dB");
        Measure(members, L"MeasureOfdmPhaseJitter", L"deg");
        Put(setup.object(), L"OnLine", false);
    }
    CoUninitialize();
    return 0;
}
