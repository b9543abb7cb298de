#pragma once

#include <string>
#include <string_view>
#include <variant>

namespace cli {

/// What a member gives. Values of enumerations, dates and durations are numbers: the member's type tells them apart.
using Value = std::variant<std::monostate, bool, double, std::string>;

// Types are named as in driver/Members.def; a Duration is a Date that tells how long something took.

/// The value as users write it: "tarnPAR", "2025-01-31", "PT1H30M0S", "-45.3".
std::string ShowValue(const Value& value, std::string_view type);

/// The number that a user's text stands for: a number, the name of an enumeration value with or without "tarn" in any
/// letter case, or a date. Throws Failure when it is none; `name` tells there whose value it is.
double ParseNumber(std::string_view text, std::string_view type, std::string_view name);

}  // namespace cli
