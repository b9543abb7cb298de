#pragma once

#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <vector>

#include "platform/com/Errors.h"
#include "platform/com/Proxies.h"
#include "platform/com/Text.h"
#include "platform/com/Variants.h"

// What a client does with COM objects, for the tests.

/// A value as it stands in an automation call.
inline com::Variant Arg(const platform::Value& value) { return com::Variant(com::ToVariant(value)); }
inline com::Variant Arg(const char* text) { return Arg(platform::Value(std::string(text))); }

/// Calls a member by name as a script engine does; raises what arrives in the exception structure.
inline com::Variant Invoke(IDispatch* object, const wchar_t* name, WORD flags, std::vector<platform::Value> arguments) {
    DISPID member = 0;
    auto* names = const_cast<LPOLESTR>(name);
    com::Check(object->GetIDsOfNames(IID_NULL, &names, 1, LOCALE_INVARIANT, &member));
    std::vector<com::Variant> reversed;
    for (auto argument = arguments.rbegin(); argument != arguments.rend(); ++argument) {
        reversed.push_back(Arg(*argument));
    }
    DISPID put = DISPID_PROPERTYPUT;
    const bool isPut = flags == DISPATCH_PROPERTYPUT;
    DISPPARAMS parameters{reversed.data(), isPut ? &put : nullptr, static_cast<UINT>(reversed.size()), isPut ? 1U : 0U};
    com::Variant result;
    EXCEPINFO exception{};
    const HRESULT done = object->Invoke(member, IID_NULL, LOCALE_INVARIANT, flags, &parameters,
                                        isPut ? nullptr : &result, &exception, nullptr);
    if (done == DISP_E_EXCEPTION) {
        platform::AutomationError error(com::NumberOf(exception.scode), com::Utf8(exception.bstrSource),
                                        com::Utf8(exception.bstrDescription));
        error.HelpFile = com::Utf8(exception.bstrHelpFile);
        if (exception.dwHelpContext != 0) error.HelpContext = static_cast<std::int32_t>(exception.dwHelpContext);
        for (const BSTR text : {exception.bstrSource, exception.bstrDescription, exception.bstrHelpFile}) {
            SysFreeString(text);
        }
        throw error;
    }
    com::Check(done);
    return result;
}

inline platform::Value Get(IDispatch* object, const wchar_t* name, std::vector<platform::Value> arguments = {}) {
    return com::FromVariant(Invoke(object, name, DISPATCH_PROPERTYGET, std::move(arguments)));
}
inline platform::Value Call(IDispatch* object, const wchar_t* name, std::vector<platform::Value> arguments) {
    const auto result = Invoke(object, name, DISPATCH_METHOD, std::move(arguments));
    return result.vt == VT_EMPTY ? platform::Value() : com::FromVariant(result);
}
inline void Put(IDispatch* object, const wchar_t* name, platform::Value value) {
    Invoke(object, name, DISPATCH_PROPERTYPUT, {std::move(value)});
}
inline platform::Value Text(const char* text) { return std::string(text); }

/// The error that a call raises, as "number|source|description".
inline std::string Raised(const std::function<void()>& call) {
    try {
        call();
    } catch (const platform::AutomationError& error) {
        return std::to_string(error.Number) + '|' + error.Source + '|' + error.Description;
    }
    return "nothing";
}

/// The error of a call through the function table.
template <class Interface>
std::string Raised(HRESULT result, Interface* object) {
    return Raised([&] { com::Check(result, object); });
}

/// Handles this thread's messages until the condition holds.
inline void PumpUntil(const std::function<bool()>& condition) {
    while (!condition()) {
        MsgWaitForMultipleObjectsEx(0, nullptr, 10, QS_ALLINPUT, MWMO_INPUTAVAILABLE);
        MSG message;
        while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE)) DispatchMessageW(&message);
    }
}
