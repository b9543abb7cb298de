#pragma once

#include <string>
#include <utility>

#include "driver/Failure.h"

namespace tarn4x {

template <class Convert>
auto clsTarn4x::Asked(const Read& read, Convert&& convert) {
    using Result = decltype(convert(std::string()));
    Prepare(read);
    return Guarded(GetOf(read.Member, read.FailsAs), [&]() -> Result {
        ForgetPrefix();  // a precondition may have read an answer of its own
        const auto text = read.AsItCame ? AskRaw(read.Query, read.Expected, read.Delimiter)
                                        : Ask(read.Query, read.Expected, read.Delimiter);
        return text ? convert(*text) : Result();
    });
}

template <class Enumeration>
Enumeration clsTarn4x::ReadToken(const Read& read, std::span<const Token> tokens) {
    return static_cast<Enumeration>(AskToken(read, tokens).value_or(read.Otherwise));
}

/// The word for a value; empty when there is none.
std::string_view TokenOf(std::span<const Token> tokens, std::int32_t value);
/// The value of a word, which are compared whole and with their case, in their order.
std::optional<std::int32_t> ValueOf(std::span<const Token> tokens, std::string_view text);

}  // namespace tarn4x
