#pragma once

#include <algorithm>

#include "driver/clsTarn4x.h"
#include "driver/members/clsStatistics.h"
#include "platform/Value.h"

namespace support {

/// A result as text.
template <class Result>
std::string Text(const Result& result) {
    if constexpr (std::is_convertible_v<Result, std::string_view>) {
        return std::string(std::string_view(result));
    } else {
        return platform::GeneralNumber(static_cast<double>(result));
    }
}
inline std::string Text(const std::shared_ptr<tarn4x::clsStatistics>& result) { return result->get_Statistics(); }

/// What calls a member of the driver. The argument counts for members that have one beside their value.
struct Call {
    using Driver = tarn4x::clsTarn4x;
    std::string_view Name;
    std::string (*Get)(Driver&, double argument);  ///< reads it, or calls a method or function
    void (*Put)(Driver&, double argument, double value) = nullptr;
};

// clang-format off
inline const Call Calls[] = {
#define READ(identifier, name, ...) {#name, [](Call::Driver& d, double) { return Text(d.get_##name()); }},
#define CONTROL(identifier, name, ...) {#name, [](Call::Driver& d, double) { return Text(d.get_##name()); }, \
    [](Call::Driver& d, double, double v) { d.put_##name(static_cast<decltype(d.get_##name())>(v)); }},
#define METHOD(identifier, name, ...) {#name, [](Call::Driver& d, double) { return d.name(), std::string(); }},
#define FUNCTION(identifier, name, type, ...) {#name, [](Call::Driver& d, double v) { return Text(d.name(static_cast<tarn4x::type>(v))); }},
#define CONTROL_WITH(arguments, identifier, name, ...) {#name, [](Call::Driver& d, double a) { return Text(d.get_##name(static_cast<tarn4x::TarnStatusHierarchicalModes>(a))); }, \
    [](Call::Driver& d, double a, double v) { d.put_##name(static_cast<tarn4x::TarnStatusHierarchicalModes>(a), static_cast<tarn4x::TarnStatusCodeRates>(v)); }},
#define METHOD_WITH(arguments, identifier, name, ...) {#name, [](Call::Driver& d, double) { return d.name(10, 1704), std::string(); }},
#define READ_WITH(...)
#include "driver/Members.def"
    {"ScreenShot", [](Call::Driver& d, double a) { std::vector<std::uint8_t> screen; return Text(d.get_ScreenShot(static_cast<tarn4x::TarnScreenShotModes>(a), screen)); }},
    {"ImpulseResponseAtten", [](Call::Driver& d, double a) { return Text(d.get_ImpulseResponseAtten(static_cast<std::int16_t>(a))); }},
    {"ImpulseResponseDelay", [](Call::Driver& d, double a) { return Text(d.get_ImpulseResponseDelay(static_cast<std::int16_t>(a))); }},
};
// clang-format on

/// The call of that member, which there is.
inline const Call& CallOf(std::string_view name) { return *std::ranges::find(Calls, name, &Call::Name); }

}  // namespace support
