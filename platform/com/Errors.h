#pragma once

#include <cstdint>
#include <string>
#include <type_traits>

#include "platform/AutomationError.h"
#include "platform/com/Windows.h"

namespace com {

/// Result code under which an error number travels: plain numbers (1 to 65535) as 0x800A0000 + n, numbers with the top
/// bit set as they are. Other numbers cannot travel and give E_FAIL.
HRESULT ResultOf(std::int32_t number);

/// The way back; the standard codes of type mismatch, overflow and bad index come back as 13, 6 and 9.
std::int32_t NumberOf(HRESULT result);

/// Raises an error of this component's own: its source is the component's name.
[[noreturn]] void Raise(std::int32_t number, std::string description);

/// Raises a failed result as AutomationError: with source, description and help of the object's own error information
/// when the object tells that the interface supports it, else with the system's text for the code and this component's
/// name.
void Check(HRESULT result, IUnknown* object = nullptr, REFIID iid = {});

template <class Interface>
void Check(HRESULT result, Interface* object) {
    Check(result, object, __uuidof(Interface));
}

/// Turns the exception that is being handled into a result code with error information for interface iid.
HRESULT ResultOfException(REFIID iid) noexcept;

/// Runs the body of an entry point of interface iid and turns whatever it raises into a result code with error
/// information. The body returns nothing (success) or a result code.
template <class Body>
HRESULT Border(REFIID iid, Body&& body) noexcept {
    SetErrorInfo(0, nullptr);
    try {
        if constexpr (std::is_void_v<decltype(body())>) {
            body();
            return S_OK;
        } else {
            return body();
        }
    } catch (...) {
        return ResultOfException(iid);
    }
}

}  // namespace com
