#include "cli/Values.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <vector>

#include "cli/Enumerations.h"
#include "cli/Failure.h"
#include "cli/Iso8601.h"
#include "cli/Nearest.h"
#include "driver/Conversions.h"
#include "platform/Value.h"

namespace cli {

namespace {

std::string ShowNumber(double number, std::string_view type) {
    if (type == "Date") return IsoDate(number);
    if (type == "Duration") return IsoDuration(number);
    if (ValuesOf(type).empty()) return platform::GeneralNumber(number);
    const auto name = NameOf(type, static_cast<std::int32_t>(number));
    return name.empty() ? platform::GeneralNumber(number) : std::string(name);
}

double ParseNamedValue(std::string_view text, std::string_view type, const std::string& problem) {
    const auto values = ValuesOf(type);
    const auto sought = tarn4x::LowerCase(text);
    const auto number = tarn4x::StrictNumber(text);
    std::vector<std::string_view> names;
    for (const auto& value : values) {
        names.push_back(value.ShortName());
        if (sought == tarn4x::LowerCase(value.Name) || sought == tarn4x::LowerCase(value.ShortName()))
            return value.Value;
    }
    if (number && std::ranges::find(values, *number, &NamedValue::Value) != values.end()) return *number;
    const auto nearest = Nearest(sought.starts_with("tarn") ? text.substr(4) : text, names);
    if (!nearest.empty()) throw Misuse(problem, "Did you mean " + nearest + "?");
    std::string all;
    for (const auto& value : values) {
        all.append(all.empty() ? "" : ", ").append(value.ShortName());
        all.append(" (").append(std::to_string(value.Value)).append(")");
    }
    throw Misuse(problem, "It can be " + all + ".");
}

}  // namespace

std::string ShowValue(const Value& value, std::string_view type) {
    if (const auto* boolean = std::get_if<bool>(&value)) return *boolean ? "True" : "False";
    if (const auto* number = std::get_if<double>(&value)) return ShowNumber(*number, type);
    const auto* text = std::get_if<std::string>(&value);
    return text ? *text : std::string();
}

double ParseNumber(std::string_view text, std::string_view type, std::string_view name) {
    const auto problem = std::string(name) + " cannot be \"" + std::string(text) + '"';
    if (!ValuesOf(type).empty()) return ParseNamedValue(text, type, problem);
    if (type == "Date") {
        const auto date = DateFromIso(text);
        return date ? *date : throw Misuse(problem, "Write a time as 12:34:56 and a date as 2025-01-31 (ISO 8601).");
    }
    const auto number = tarn4x::StrictNumber(text);
    if (!number || !std::isfinite(*number)) throw Misuse(problem, "It is a number, written as -12.5 or 474e6.");
    const auto refuseOutside = [&](auto lowest, auto highest) {
        if (*number == std::trunc(*number) && *number >= lowest && *number <= highest) return;
        throw Misuse(problem,
                     "It is a whole number from " + std::to_string(lowest) + " to " + std::to_string(highest) + ".");
    };
    using Limits16 = std::numeric_limits<std::int16_t>;
    using Limits32 = std::numeric_limits<std::int32_t>;
    if (type == "Integer") refuseOutside(Limits16::min(), Limits16::max());
    if (type == "Long") refuseOutside(Limits32::min(), Limits32::max());
    return *number;
}

}  // namespace cli
