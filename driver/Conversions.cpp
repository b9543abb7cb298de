#include "driver/Conversions.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstdlib>
#include <limits>
#include <system_error>

#include "driver/RuntimeErrors.h"
#include "platform/Value.h"

namespace tarn4x {

namespace {

bool IsDigit(char c) { return c >= '0' && c <= '9'; }

/// Power of ten of the first digit of a decimal text that is not zero: 2 for "123.4", -3 for "0.12e-2".
long PowerOfTen(std::string_view text) {
    const auto e = text.find('e');
    const auto mantissa = text.substr(0, e);
    const auto digit = mantissa.find_first_of("123456789");
    const auto point = std::min(mantissa.find('.'), mantissa.size());
    const long place = static_cast<long>(point) - static_cast<long>(digit) - (digit < point ? 1 : 0);
    if (e == std::string_view::npos) return place;
    const auto exponent = text.substr(e + 1);
    long power = 0;
    const auto read = std::from_chars(exponent.data(), exponent.data() + exponent.size(), power);
    constexpr long beyond = 1'000'000'000;
    if (read.ec == std::errc::result_out_of_range || std::abs(power) > beyond) {
        power = exponent.starts_with('-') ? -beyond : beyond;
    }
    return place + power;
}

/// A plain decimal text as a number; what is too large becomes the largest number, what is too small becomes zero.
double FromDecimal(std::string_view text) {
    double number = 0.0;
    const auto result = std::from_chars(text.data(), text.data() + text.size(), number);
    if (result.ec == std::errc::result_out_of_range) {
        const double limit = PowerOfTen(text) < 0 ? 0.0 : std::numeric_limits<double>::max();
        return text.starts_with('-') ? -limit : limit;
    }
    return number;
}

template <class Integer>
Integer Rounded(double number) {
    const double rounded = std::nearbyint(number);  // halves to even is the mode that programs start in
    if (!(rounded >= std::numeric_limits<Integer>::min() && rounded <= std::numeric_limits<Integer>::max())) {
        RaiseOverflow();
    }
    return static_cast<Integer>(rounded);
}

}  // namespace

std::vector<std::string_view> Split(std::string_view text, std::string_view delimiter) {
    std::vector<std::string_view> pieces;
    if (text.empty()) return pieces;
    for (;;) {
        const auto end = text.find(delimiter);
        pieces.push_back(text.substr(0, end));
        if (end == std::string_view::npos) return pieces;
        text.remove_prefix(end + delimiter.size());
    }
}

std::string_view Trim(std::string_view text) {
    const auto first = text.find_first_not_of(' ');
    if (first == std::string_view::npos) return {};
    return text.substr(first, text.find_last_not_of(' ') - first + 1);
}

std::string LowerCase(std::string_view text) {
    std::string lower(text);
    for (char& c : lower) {
        if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
    }
    return lower;
}

double LeadingNumber(std::string_view text) {
    std::string number;  // digits and exponent as std::from_chars reads them; answers fit without an allocation
    auto at = text.begin();
    const auto peek = [&] {
        while (at != text.end() && (*at == ' ' || *at == '\t' || *at == '\n')) ++at;
        return at == text.end() ? '\0' : *at;
    };
    const auto digits = [&] {
        bool any = false;
        for (; IsDigit(peek()); ++at, any = true) number += *at;
        return any;
    };
    if (peek() == '-') number += '-';
    if (peek() == '-' || peek() == '+') ++at;
    bool mantissa = digits();
    if (peek() == '.') {
        ++at;
        number += '.';
        mantissa |= digits();
    }
    if (!mantissa) return 0.0;
    const char letter = peek();
    if (letter == 'E' || letter == 'e' || letter == 'D' || letter == 'd') {
        ++at;
        const auto withoutExponent = number.size();
        number += 'e';
        if (peek() == '-') number += '-';
        if (peek() == '-' || peek() == '+') ++at;
        if (!digits()) number.resize(withoutExponent);
    }
    return FromDecimal(number);
}

std::optional<double> StrictNumber(std::string_view text) {
    text = Trim(text);
    if (text.starts_with('+')) {
        text.remove_prefix(1);
        if (text.starts_with('-')) return {};
    }
    double number = 0.0;
    const auto result = std::from_chars(text.data(), text.data() + text.size(), number);
    if (result.ec != std::errc() || result.ptr != text.data() + text.size() || !std::isfinite(number)) return {};
    return number;
}

bool ToBoolean(std::string_view text) {
    if (const auto number = StrictNumber(text)) return *number != 0.0;
    const auto word = LowerCase(Trim(text));
    if (word == "true") return true;
    if (word == "false") return false;
    RaiseTypeMismatch();
}

std::int16_t ToInteger(double number) { return Rounded<std::int16_t>(number); }

std::int16_t ToInteger(std::string_view text) {
    const auto number = StrictNumber(text);
    if (!number) RaiseTypeMismatch();
    return ToInteger(*number);
}

std::int32_t ToLong(double number) { return Rounded<std::int32_t>(number); }

std::string SignedNumber(double number) {
    const auto text = platform::GeneralNumber(number);
    return text.starts_with('-') ? text : ' ' + text;
}

double RoundDecimals(double number, int decimals) {
    char digits[32];
    const auto scientific =
        std::to_chars(digits, std::end(digits), std::abs(number), std::chars_format::scientific, 14);
    const std::string text(digits, scientific.ptr);  // d.dddddddddddddde+xx
    const auto e = text.find('e');
    if (e == std::string::npos) return number;  // not finite
    // The text as an integer of 15 digits, and how many of them stand behind the wanted decimals.
    std::string integer = text.substr(0, 1) + text.substr(2, e - 2);
    const int surplus = 14 - std::stoi(text.substr(e + 1)) - decimals;
    if (surplus <= 0) return FromDecimal(text) * (number < 0.0 ? -1.0 : 1.0);
    if (surplus > 15) return 0.0;
    const auto keep = static_cast<std::size_t>(15 - surplus);
    const bool up = integer[keep] >= '5';
    std::uint64_t kept = 0;
    std::from_chars(integer.data(), integer.data() + keep, kept);
    const auto rounded = std::to_string(kept + (up ? 1U : 0U)) + "e-" + std::to_string(decimals);
    return FromDecimal(rounded) * (number < 0.0 ? -1.0 : 1.0);
}

}  // namespace tarn4x
