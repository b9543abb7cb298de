#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace tarn4x {

/// An automation date: days since 30 December 1899, the fraction being the time of day.
using Date = double;

/// The pieces between delimiters; an empty text has none.
std::vector<std::string_view> Split(std::string_view text, std::string_view delimiter = ",");
/// Without the blanks (and only the blanks) around it.
std::string_view Trim(std::string_view text);
/// In lower case, ASCII letters only.
std::string LowerCase(std::string_view text);

/// The number in front of a text: blanks, tabs and line feeds do not count wherever they stand, "." separates, E or D
/// introduces an exponent, reading stops at the first other character. 0 without a number; never fails.
double LeadingNumber(std::string_view text);
/// The number that a whole text is, blanks around it apart; nothing when it is not one.
std::optional<double> StrictNumber(std::string_view text);

/// A numeric text is true unless zero; "True" and "False" in any case. Raises 13 for any other text.
bool ToBoolean(std::string_view text);

/// Rounded to the nearest integer, halves to even. Raises 6 outside of the type, and 13 for a text that is no number.
std::int16_t ToInteger(double number);
std::int16_t ToInteger(std::string_view text);
std::int32_t ToLong(double number);

/// In general number format behind one blank, or behind the sign of a negative number.
std::string SignedNumber(double number);
/// The decimal text of a number (15 significant digits) rounded to so many decimals, halves away from zero.
double RoundDecimals(double number, int decimals);

}  // namespace tarn4x
