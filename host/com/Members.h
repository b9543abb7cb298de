#pragma once

#include <cstdint>
#include <string>
#include <type_traits>
#include <vector>

#include "platform/com/ComPtr.h"
#include "platform/com/Errors.h"
#include "platform/com/Text.h"
#include "platform/com/Variants.h"

// How a member of an automation interface answers. A call that fails leaves numbers and Booleans as they were; texts,
// Variants and objects, which a caller would free, are empty then.

namespace com {

inline VARIANT_BOOL Converted(bool value) { return value ? VARIANT_TRUE : VARIANT_FALSE; }
inline BSTR Converted(const std::string& text) { return ToBstr(text); }
inline long Converted(std::int32_t number) { return number; }
inline float Converted(float number) { return number; }
inline double Converted(double number) { return number; }
inline VARIANT Converted(const platform::Value& value) { return ToVariant(value); }
inline VARIANT Converted(const std::vector<std::uint8_t>& bytes) { return ToVariant(bytes); }
inline VARIANT Converted(Variant&& value) { return value.Detach(); }
template <class Interface>
Interface* Converted(ComPtr<Interface> object) {
    return object.detach();
}

/// Answers with what the body returns; E_POINTER without an output.
template <class Interface, class Out, class Body>
HRESULT Get(Out* output, Body&& body) noexcept {
    if (!output) return E_POINTER;
    if constexpr (std::is_pointer_v<Out> || std::is_same_v<Out, VARIANT>) *output = {};
    return Border(__uuidof(Interface), [&] { *output = Converted(body()); });
}

/// Runs a body without a result.
template <class Interface, class Body>
HRESULT Call(Body&& body) noexcept {
    return Border(__uuidof(Interface), body);
}

}  // namespace com
