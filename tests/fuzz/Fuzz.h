#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "platform/AutomationError.h"

// A promise that does not hold ends the run, in optimised builds too.
#undef NDEBUG
#include <cassert>

namespace fuzz {

/// What is left of an input. Behind its end there are zeros and empty texts.
struct Input {
    Input(const std::uint8_t* data, std::size_t size) : rest(reinterpret_cast<const char*>(data), size) {}

    std::string Bytes(std::size_t count) {
        const std::string bytes{rest.substr(0, count)};
        rest.remove_prefix(bytes.size());
        return bytes;
    }
    std::uint8_t Byte() { return rest.empty() ? 0 : static_cast<std::uint8_t>(Bytes(1)[0]); }
    /// A byte with the length, then the text.
    std::string Text() { return Bytes(Byte()); }

    std::string_view rest;
};

/// Runs the statement; the number that it raised, 0 for none.
template <class Statement>
std::int32_t Raised(Statement&& statement) {
    try {
        statement();
    } catch (const platform::AutomationError& error) {
        return error.Number;
    }
    return 0;
}

inline std::string Utf8(std::string_view latin1) {
    std::string text;
    for (const char c : latin1) {
        const auto byte = static_cast<unsigned char>(c);
        if (byte >= 0x80) text += static_cast<char>(0xC0 | byte >> 6);
        text += static_cast<char>(byte < 0x80 ? byte : 0x80 | (byte & 0x3F));
    }
    return text;
}

}  // namespace fuzz
