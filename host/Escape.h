#pragma once

#include <string>
#include <string_view>

namespace host {

enum class Escape {
    Controls,  ///< control characters and "\": one line of readable UTF-8
    Bytes,     ///< everything but printable ASCII
};

/// The text with what the mode names written as \n, \r, \t, \\ or \xNN.
inline std::string Escaped(std::string_view text, Escape mode) {
    constexpr char digits[] = "0123456789ABCDEF";
    std::string escaped;
    for (const char c : text) {
        const auto byte = static_cast<unsigned char>(c);
        if (c == '\n') {
            escaped += "\\n";
        } else if (c == '\r') {
            escaped += "\\r";
        } else if (c == '\t') {
            escaped += "\\t";
        } else if (c == '\\') {
            escaped += "\\\\";
        } else if (byte < 0x20 || byte == 0x7F || (byte > 0x7F && mode == Escape::Bytes)) {
            escaped += {'\\', 'x', digits[byte >> 4], digits[byte & 15]};
        } else {
            escaped += c;
        }
    }
    return escaped;
}

}  // namespace host
