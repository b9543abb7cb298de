// Any answer is taken apart without loss, and every number in it is the one that the C library reads.
#include <algorithm>
#include <cfloat>
#include <climits>
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
    REQUIRE(answer.Raw == text);
    REQUIRE(std::ranges::find(prefixes, answer.Prefix) != std::end(prefixes));
    REQUIRE(!answer.Prefix.empty() || !value.empty());
    REQUIRE(text.find(value) != text.npos && text.find(answer.Postfix) != text.npos);
    REQUIRE(value.find('(') == value.npos && Trim(value) == value);
    REQUIRE(answer.Postfix.empty() || (answer.Postfix[0] == '(' && Trim(answer.Postfix) == answer.Postfix));
    REQUIRE(value.size() + answer.Postfix.size() <= text.size());

    const auto comma = value.find(',');
    REQUIRE(answer.ParseValuePair(text) == (comma != value.npos));
    REQUIRE(answer.mdblPairFirst == LeadingNumber(value.substr(0, comma)));
    REQUIRE(std::isfinite(answer.mdblPairSecond));
}

void CheckNumber(double number) {
    const bool isShort = number >= -32768.5 && number < 32767.5,
               isLong = number >= -2147483648.5 && number < 2147483647.5;
    REQUIRE(fuzz::Raised([&] { REQUIRE(std::abs(ToInteger(number) - number) <= 0.5); }) == (isShort ? 0 : 6));
    REQUIRE(fuzz::Raised([&] { REQUIRE(std::abs(ToLong(number) - number) <= 0.5); }) == (isLong ? 0 : 6));
    if (!std::isfinite(number) || std::abs(number) > 1.797693134862315e308) return;  // in 15 digits: beyond the range

    const auto general = platform::GeneralNumber(number);
    char library[32], again[32];
    std::snprintf(library, sizeof library, "%.14e", number);
    std::snprintf(again, sizeof again, "%.14e", std::strtod(general.c_str(), nullptr));
    REQUIRE(number == 0.0 || std::string_view(library) == again);
    const double size = std::abs(std::strtod(library, nullptr));
    REQUIRE((general.find('E') != general.npos) == (size != 0.0 && (size < 1e-4 || size >= 1e15)));

    for (int decimals = 0; decimals <= 6; ++decimals) {
        const double rounded = RoundDecimals(number, decimals);
        REQUIRE(std::abs(rounded - number) <= 0.5 * std::pow(10.0, -decimals) * (1 + 1e-9) + std::abs(number) * 1e-14);
        REQUIRE(RoundDecimals(rounded, decimals) == rounded);
        REQUIRE(RoundDecimals(-number, decimals) == -rounded);
    }
}

void CheckText(std::string_view text) {
    const double number = LeadingNumber(text), expected = LibraryNumber(text);
    REQUIRE(number == expected || (number == 0.0 && std::abs(expected) < DBL_MIN));
    CheckNumber(number);

    const auto strict = StrictNumber(text);
    REQUIRE(!strict || *strict == number);
    const auto word = LowerCase(Trim(text));
    const bool isBoolean = strict || word == "true" || word == "false";
    REQUIRE(fuzz::Raised([&] { ToBoolean(text); }) == (isBoolean ? 0 : 13));
    REQUIRE(fuzz::Raised([&] { ToInteger(text); }) == (strict ? fuzz::Raised([&] { ToInteger(*strict); }) : 13));
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const auto text = fuzz::Text(data, size);
    CheckAnswer(text);
    CheckText(text);
    double bits = 0.0;
    std::memcpy(&bits, data, std::min(size, sizeof bits));
    CheckNumber(bits);
    return 0;
}
