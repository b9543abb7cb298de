#pragma once

#include <Conduit_h.h>
#include <Seamcfg_h.h>
#include <Seamlib_h.h>
#include <XTarn4x_h.h>
#include <gmock/gmock.h>

#include <functional>
#include <string>
#include <vector>

#include "platform/com/Errors.h"
#include "platform/com/Proxies.h"
#include "platform/com/Text.h"
#include "platform/com/Variants.h"

// What clients do with the components. What a call comes to is a text: its result, or "number source: description",
// where "+" in front of the number stands for the offset of object errors, a source of the driver is without its
// "clsTarn4x", and result codes that are no error numbers have eight digits.

using com::Bstr;
using com::ComPtr;

/// A new object of a class.
template <class Interface>
ComPtr<Interface> Create(REFCLSID clsid = __uuidof(Interface)) {
    ComPtr<Interface> object;
    com::Check(CoCreateInstance(clsid, nullptr, CLSCTX_INPROC_SERVER, __uuidof(Interface), object.putVoid()));
    return object;
}

/// An argument of a call. References stay the caller's.
struct Arg : VARIANT {
    Arg(const VARIANT& value) : VARIANT{} { com::Check(VariantCopy(this, const_cast<VARIANT*>(&value))); }
    Arg(const Arg& other) : Arg(static_cast<const VARIANT&>(other)) {}
    Arg(const platform::Value& value) : VARIANT(com::ToVariant(value)) {}
    Arg(std::int16_t number) : Arg(platform::Value(number)) {}
    Arg(std::int32_t number) : Arg(platform::Value(number)) {}
    Arg(double number) : Arg(platform::Value(number)) {}
    Arg(bool truth) : Arg(platform::Value(truth)) {}
    Arg(const char* text) : Arg(platform::Value(std::string(text))) {}
    Arg(std::wstring_view text) : VARIANT(com::Variant()) {
        vt = VT_BSTR;
        bstrVal = com::ToBstr(text);
    }
    Arg& operator=(const Arg&) = delete;
    ~Arg() { VariantClear(this); }
    VARIANT* Get() { return this; }
};

/// A Variant of that type, whose contents may be a reference.
inline VARIANT Typed(VARTYPE type, void* contents) {
    VARIANT value{};
    value.vt = type;
    value.byref = contents;
    return value;
}
inline VARIANT Reference(VARIANT* variable) { return Typed(VT_BYREF | VT_VARIANT, variable); }

/// A result as text; arrays of bytes as they are.
inline std::string Text(const VARIANT& value) {
    switch (value.vt) {
        case VT_BOOL:
            return std::to_string(-value.boolVal);
        case VT_DATE:
            return platform::GeneralNumber(value.date);
        case VT_DISPATCH:
        case VT_UNKNOWN:
            return value.pdispVal ? "object" : "nothing";
        case VT_ARRAY | VT_VARIANT:
            return "array";
        case VT_ARRAY | VT_UI1: {
            const auto bytes = com::BytesOf(value);
            return {bytes.begin(), bytes.end()};
        }
        default:
            return com::TextOf(value);
    }
}

/// The text of an error; source and description are empty when there is none.
inline std::string Told(HRESULT result, std::string source, const std::string& description) {
    if (result == S_OK) return source + description;
    const auto code = static_cast<unsigned>(result);
    char number[16];
    const char* const formats[] = {"+%u", "%u", "%08X"};
    const int kind = code >> 16 == 0x8004 ? 0 : code >> 16 == 0x800A ? 1 : 2;
    std::snprintf(number, sizeof number, formats[kind], kind == 2 ? code : code & 0xFFFF);
    if (source.starts_with("clsTarn4x")) source.erase(0, 9);
    return number + (source.empty() ? "" : ' ' + source + ": " + description);
}

/// What a call through the function table comes to; takes the thread's error information, which that interface raised.
inline std::string Told(HRESULT result, const IID* raisedBy = nullptr) {
    ComPtr<IErrorInfo> information;
    Bstr source, description;
    IID iid{};
    if (GetErrorInfo(0, information.put()) == S_OK) {
        information->GetSource(source.put());
        information->GetDescription(description.put());
        information->GetGUID(&iid);
        EXPECT_TRUE(!raisedBy || iid == *raisedBy) << com::Utf8(com::ToText(iid));
    }
    return Told(result, source.Utf8(), description.Utf8());
}

/// What a function comes to.
inline std::string Raised(const std::function<void()>& call) {
    try {
        call();
        return "";
    } catch (const platform::AutomationError& error) {
        const auto help = error.HelpFile + (error.HelpContext ? std::to_string(*error.HelpContext) : "");
        return Told(com::ResultOf(error.Number), error.Source, error.Description + help);
    }
}

/// A script's view of an object: members by name.
class Script {
  public:
    using Named = std::vector<std::pair<const wchar_t*, Arg>>;

    explicit Script(IDispatch* object) : object_(object) {}
    template <class Interface>
    explicit Script(const ComPtr<Interface>& object) : object_(object.get()) {}
    explicit Script(const VARIANT& object) : object_(V_DISPATCH(&object)) {}

    /// Arguments in the order of the declaration; `flags` as some libraries give only one of them.
    std::string Get(const wchar_t* member, std::vector<Arg> arguments = {}, const Named& named = {},
                    WORD flags = DISPATCH_METHOD | DISPATCH_PROPERTYGET) {
        return Invoke(flags, member, arguments, named);
    }
    /// The last argument is the value that is written.
    std::string Put(const wchar_t* member, std::vector<Arg> arguments, const Named& named = {}) {
        return Invoke(DISPATCH_PROPERTYPUT, member, arguments, named);
    }
    /// What reading several members comes to, one behind the other.
    std::string All(const std::vector<const wchar_t*>& members) {
        std::string texts;
        for (const auto* member : members) texts += (texts.empty() ? "" : "|") + Get(member);
        return texts;
    }
    /// The object that is a call's result.
    Script Object(const wchar_t* member, std::vector<Arg> arguments = {}) {
        EXPECT_EQ(Get(member, std::move(arguments)), "object");
        return Script(Result);
    }

    com::Variant Result;
    EXCEPINFO Exception{};
    UINT Bad = 99;

  private:
    std::string Invoke(WORD flags, const wchar_t* member, std::vector<Arg>& arguments, const Named& named) {
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

    ComPtr<IDispatch> object_;
};

/// The members that tell which instrument a driver talks to.
inline const std::vector<const wchar_t*> Identity = {L"Manufacturer", L"ModelNumber", L"SerialNumber",
                                                     L"FirmwareVersion", L"InstalledHardware"};

/// Handles this thread's messages until the condition holds.
inline void PumpUntil(const std::function<bool()>& condition) {
    while (!condition()) {
        MsgWaitForMultipleObjectsEx(0, nullptr, 10, QS_ALLINPUT, MWMO_INPUTAVAILABLE);
        for (MSG message; PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE);) DispatchMessageW(&message);
    }
}

/// A component beside this program.
class Component {
  public:
    explicit Component(const std::wstring& file) : module_(LoadLibraryW(file.c_str())) {}
    Component(const Component&) = delete;
    Component& operator=(const Component&) = delete;
    ~Component() { FreeLibrary(module_); }

    static std::wstring File(const std::wstring& name);
    HRESULT Register() const { return Call("DllRegisterServer"); }
    HRESULT Unregister() const { return Call("DllUnregisterServer"); }
    HRESULT Install(BOOL install, LPCWSTR words) const { return Call("DllInstall", install, words); }
    HRESULT CanUnload() const { return Call("DllCanUnloadNow"); }
    HRESULT GetClassObject(const CLSID& clsid, const IID& iid, void** object) const {
        return Call("DllGetClassObject", &clsid, &iid, object);
    }

  private:
    template <class... Arguments>
    HRESULT Call(const char* name, Arguments... arguments) const {
        const auto entry = reinterpret_cast<void*>(GetProcAddress(module_, name));
        return entry ? reinterpret_cast<HRESULT(STDAPICALLTYPE*)(Arguments...)>(entry)(arguments...) : E_NOINTERFACE;
    }

    HMODULE module_;
};
