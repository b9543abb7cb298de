#pragma once

#include <charconv>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace sim {

/// printf into a string; the number format never follows the locale because this program never sets one.
[[gnu::format(printf, 1, 2)]] std::string Print(const char* format, ...);

std::string Upper(std::string_view text);
/// Removes control characters and blanks at both ends; in a message they all separate words.
std::string_view Trim(std::string_view text);
/// The form in which two lines are the same that differ in letter case and the number of blanks only.
std::string Normalise(std::string_view line);
/// Splits at every separator; an empty text gives one empty piece.
std::vector<std::string_view> Split(std::string_view text, char separator);
/// The shortest decimal text that reads back as the same number: 474000000, 134.5.
std::string Shortest(double value);
/// The number that the whole text is; none when it is something else or outside the range.
template <class Number>
std::optional<Number> ParseNumber(std::string_view text, Number lowest, Number highest) {
    Number value{};
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    if (error != std::errc{} || end != text.data() + text.size() || !(value >= lowest && value <= highest)) return {};
    return value;
}
/// Throws std::invalid_argument: what it is about, then the beginning of the text.
[[noreturn]] void Refuse(std::string_view what, std::string_view text);
/// Makes bytes readable for a log: \n, \r, \\ and \xNN for everything that is not printable ASCII.
std::string Escape(std::string_view bytes);
/// Reverses Escape and also knows \t, \0 and \". Throws std::invalid_argument on an unknown or cut sequence.
std::string Unescape(std::string_view text);

}  // namespace sim
