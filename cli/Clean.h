#pragma once

#include <string>
#include <string_view>

namespace cli {

/// The text (UTF-8) with every control character, those of U+0080 to U+009F included, written as \xNN, so that nothing
/// an instrument sends can command a terminal.
inline std::string Clean(std::string_view text) {
    constexpr char digits[] = "0123456789ABCDEF";
    std::string clean;
    for (std::size_t i = 0; i < text.size(); ++i) {
        auto byte = static_cast<unsigned char>(text[i]);
        const auto next = i + 1 < text.size() ? static_cast<unsigned char>(text[i + 1]) : 0U;
        const bool upper = byte == 0xC2 && next >= 0x80 && next < 0xA0;
        if (byte < 0x20 || byte == 0x7F || upper) {
            if (upper) byte = static_cast<unsigned char>(text[++i]);
            clean += {'\\', 'x', digits[byte >> 4], digits[byte & 15]};
        } else {
            clean += text[i];
        }
    }
    return clean;
}

}  // namespace cli
