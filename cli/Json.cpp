#include "cli/Json.h"

#include <cmath>

#include "cli/Enumerations.h"

namespace cli {

namespace {

/// A number as its text has it, whole numbers without a fraction.
Json NumberToJson(double number) {
    constexpr double exact = 9007199254740992.0;  // 2^53
    if (number == std::trunc(number) && std::abs(number) < exact) return static_cast<std::int64_t>(number);
    return tarn4x::StrictNumber(platform::GeneralNumber(number)).value_or(number);
}

Json ValueToJson(const Reading& reading) {
    if (const auto* boolean = std::get_if<bool>(&reading.Result)) return *boolean;
    const auto* number = std::get_if<double>(&reading.Result);
    auto text = ShowValue(reading.Result, reading.Asked.Type());
    return number && text == platform::GeneralNumber(*number) ? NumberToJson(*number) : Json(std::move(text));
}

}  // namespace

Json ToJson(const Failure& failure) {
    Json json;
    if (failure.Number != 0) json = {{"number", failure.Number}, {"source", failure.Source}};
    json["description"] = failure.Description;
    if (!failure.Cause.empty()) json["cause"] = failure.Cause;
    if (!failure.Advice.empty()) json["advice"] = failure.Advice;
    json["exitCode"] = failure.Ends;
    return json;
}

Json ToJson(const Reading& reading) {
    Json json = {{"member", reading.Asked.Name}};
    if (reading.Error) {
        json["error"] = ToJson(*reading.Error);
        return json;
    }
    if (std::holds_alternative<std::monostate>(reading.Result)) return json;  // a method
    json["value"] = reading.HasValue() ? ValueToJson(reading) : Json();
    const auto* number = std::get_if<double>(&reading.Result);
    if (number && !ValuesOf(reading.Asked.Type()).empty()) json["number"] = static_cast<std::int32_t>(*number);
    for (const auto& [key, text] :
         {std::pair("unit", &reading.Unit), {"prefix", &reading.Prefix}, {"postfix", &reading.Postfix}}) {
        if (!text->empty()) json[key] = *text;
    }
    return json;
}

std::string Dump(const Json& json) { return json.dump(-1, ' ', true, Json::error_handler_t::replace); }

}  // namespace cli
