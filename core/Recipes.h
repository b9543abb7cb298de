#pragma once

#include <string>
#include <utility>

#include "core/Failure.h"

namespace tarn4x {

template <class Convert>
auto clsTarn4x::Asked(const Read& read, Convert&& convert) {
    using Result = decltype(convert(std::string()));
    Prepare(read);
    return Guarded(GetOf(read.FailsAs.empty() ? read.Member : read.FailsAs), [&]() -> Result {
        const auto text = Ask(read.Query, read.Expected, read.Delimiter);
        return text ? convert(*text) : Result();
    });
}

template <class Enumeration>
Enumeration clsTarn4x::ReadToken(const Read& read, std::span<const Token> tokens) {
    return static_cast<Enumeration>(AskToken(read, tokens).value_or(read.Otherwise));
}

/// The word for a value; empty when there is none.
std::string_view TokenOf(std::span<const Token> tokens, std::int32_t value);

}  // namespace tarn4x
