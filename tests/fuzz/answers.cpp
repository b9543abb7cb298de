// Any answer is taken apart without loss, and every number in it is the one that the C library reads.
#include <algorithm>
#include <cfloat>
#include <cmath>
#include <cstring>

#include "driver/Conversions.h"
#include "driver/ResponseParsing.h"
#include "platform/Value.h"
#include "tests/fuzz/Fuzz.h"

namespace {

using namespace tarn4x;

double LibraryNumber(std::string_view text) {
    std::string plain;
    for (const char c : text) {
        if (c == ' ' || c == '\t' || c == '\n') continue;
        if (c == '\0' || std::strchr("0123456789+-.EeDd", c) == nullptr) break;
        plain += c == 'D' || c == 'd' ? 'e' : c;
    }
    return std::clamp(std::strtod(plain.c_str(), nullptr), -DBL_MAX, DBL_MAX);
}

void CheckAnswer(std::string_view text) {
    ParsedAnswer answer;
    const auto value = answer.ParseResponse(text);
    const std::string prefixes[] = {"", "<", ">", "*", "---", "UNDER", "OVER", "NORF"};
    assert(std::ranges::find(prefixes, answer.Prefix) != std::end(prefixes));
    assert(!answer.Prefix.empty() || !value.empty());
    assert(text.find(value) != text.npos && text.find(answer.Postfix) != text.npos);
    assert(value.find('(') == value.npos && Trim(value) == value && Trim(answer.Postfix) == answer.Postfix);
    assert(answer.Postfix.empty() || answer.Postfix[0] == '(');
    assert(value.size() + answer.Postfix.size() <= text.size());

    const auto comma = value.find(',');
    assert(answer.ParseValuePair(text) == (comma != value.npos));
    assert(answer.mdblPairFirst == LeadingNumber(value.substr(0, comma)));
    assert(std::isfinite(answer.mdblPairSecond));
}

void CheckNumber(double number) {
    const bool isLong = number >= -2147483648.5 && number < 2147483647.5;
    assert(fuzz::Raised([&] { assert(std::abs(ToLong(number) - number) <= 0.5); }) == (isLong ? 0 : 6));
    if (!std::isfinite(number) || std::abs(number) > 1.797693134862315e308) return;  // in 15 digits: beyond the range

    const auto general = platform::GeneralNumber(number);
    char library[32], again[32];
    std::snprintf(library, sizeof library, "%.14e", number);
    std::snprintf(again, sizeof again, "%.14e", std::strtod(general.c_str(), nullptr));
    assert(number == 0.0 || std::string_view(library) == again);

    for (int decimals = 0; decimals <= 6; ++decimals) {
        const double rounded = RoundDecimals(number, decimals);
        assert(std::abs(rounded - number) <= 0.5 * std::pow(10.0, -decimals) * (1 + 1e-9) + std::abs(number) * 1e-14);
        assert(RoundDecimals(rounded, decimals) == rounded);
        assert(RoundDecimals(-number, decimals) == -rounded);
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const auto text = fuzz::Input(data, size).rest;
    CheckAnswer(text);
    const double number = LeadingNumber(text), expected = LibraryNumber(text);
    assert(number == expected || (number == 0.0 && std::abs(expected) < DBL_MIN));
    assert(StrictNumber(text).value_or(number) == number);
    CheckNumber(number);
    double bits = 0.0;
    text.copy(reinterpret_cast<char*>(&bits), sizeof bits);
    CheckNumber(bits);
    return 0;
}
