#pragma once

#include <fuzzer/FuzzedDataProvider.h>

#include <cstdio>
#include <cstdlib>
#include <initializer_list>
#include <string>
#include <string_view>

#include "platform/AutomationError.h"

/// Ends the run with the input kept when a promise does not hold.
#define REQUIRE(condition)                                                               \
    do {                                                                                 \
        if (!(condition)) {                                                              \
            std::fprintf(stderr, "%s:%d: broken: %s\n", __FILE__, __LINE__, #condition); \
            std::abort();                                                                \
        }                                                                                \
    } while (false)

namespace fuzz {

inline std::string_view Text(const std::uint8_t* data, std::size_t size) {
    return {reinterpret_cast<const char*>(data), size};
}

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

inline bool IsOneOf(std::int32_t number, std::initializer_list<std::int32_t> numbers) {
    for (const auto one : numbers) {
        if (number == one) return true;
    }
    return false;
}

inline std::string Utf8(std::string_view latin1) {
    std::string text;
    for (const char c : latin1) {
        const auto byte = static_cast<unsigned char>(c);
        if (byte >= 0x80) text += static_cast<char>(0xC0U | (byte >> 6U));
        text += byte < 0x80 ? c : static_cast<char>(0x80U | (byte & 0x3FU));
    }
    return text;
}

}  // namespace fuzz
