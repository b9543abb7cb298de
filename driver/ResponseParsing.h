#pragma once

#include <string>
#include <string_view>

namespace tarn4x {

/// The pieces of the last answer that was parsed.
struct ParsedAnswer {
    std::string Raw;
    std::string Prefix;   ///< "<", ">", "*", "---", "UNDER", "OVER", "NORF" or empty
    std::string Postfix;  ///< remark in parentheses, or empty
    double mdblPairFirst = 0.0;
    double mdblPairSecond = 0.0;

    /// Takes quotes, marker and remark off an answer and returns the bare value text. Never fails.
    std::string ParseResponse(std::string_view strAnswer);
    /// Reads two numbers separated by a comma. False when the second is missing; the first is then read all the same.
    bool ParseValuePair(std::string_view strAnswer);
};

}  // namespace tarn4x
