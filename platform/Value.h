#pragma once

#include <charconv>
#include <cmath>
#include <cstdint>
#include <string>
#include <variant>

namespace platform {

/// Value of a setting. A setting that was never written holds std::monostate.
using Value = std::variant<std::monostate, bool, std::int16_t, std::int32_t, double, std::string>;

/// A number in general format: 15 significant digits without trailing zeros, "." as separator whatever the locale,
/// E form below 1E-4 and from 1E+15 up.
inline std::string GeneralNumber(double number) {
    if (number == 0.0) return "0";
    char buffer[32];
    const auto scientific = std::to_chars(buffer, std::end(buffer), number, std::chars_format::scientific, 14);
    std::string digits(buffer, scientific.ptr);  // d.dddddddddddddde+xx
    const auto e = digits.find('e');
    if (e == std::string::npos) return digits;  // not finite
    const int exponent = std::stoi(digits.substr(e + 1));
    std::string text;
    if (exponent < -4 || exponent >= 15) {
        text = digits.substr(0, e);
    } else {
        const auto fixed = std::to_chars(buffer, std::end(buffer), number, std::chars_format::fixed, 14 - exponent);
        text.assign(buffer, fixed.ptr);
    }
    if (text.find('.') != std::string::npos) {
        text.erase(text.find_last_not_of('0') + 1);
        if (text.back() == '.') text.pop_back();
    }
    if (exponent < -4 || exponent >= 15) text += 'E' + digits.substr(e + 1);
    return text;
}

/// Text of a value, as an automation host would convert it.
inline std::string ToText(const Value& value) {
    struct Converter {
        std::string operator()(std::monostate) const { return {}; }
        std::string operator()(bool boolean) const { return boolean ? "True" : "False"; }
        std::string operator()(std::int16_t number) const { return std::to_string(number); }
        std::string operator()(std::int32_t number) const { return std::to_string(number); }
        std::string operator()(double number) const { return GeneralNumber(number); }
        std::string operator()(const std::string& text) const { return text; }
    };
    return std::visit(Converter{}, value);
}

}  // namespace platform
