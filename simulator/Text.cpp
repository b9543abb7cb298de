#include "simulator/Text.h"

#include <algorithm>
#include <charconv>
#include <cstdarg>
#include <cstdio>
#include <stdexcept>

namespace sim {

std::string Print(const char* format, ...) {
    char buffer[512];
    va_list arguments;
    va_start(arguments, format);
    const int length = std::vsnprintf(buffer, sizeof buffer, format, arguments);
    va_end(arguments);
    if (length < 0) return {};
    return {buffer, std::min(static_cast<size_t>(length), sizeof buffer - 1)};
}

std::string Upper(std::string_view text) {
    std::string upper{text};
    for (char& c : upper) {
        if (c >= 'a' && c <= 'z') c = static_cast<char>(c - 'a' + 'A');
    }
    return upper;
}

std::string_view Trim(std::string_view text) {
    const auto blank = [](char c) { return static_cast<unsigned char>(c) <= ' '; };
    while (!text.empty() && blank(text.front())) text.remove_prefix(1);
    while (!text.empty() && blank(text.back())) text.remove_suffix(1);
    return text;
}

std::string Normalise(std::string_view line) {
    std::string text;
    for (const char c : Upper(Trim(line))) {
        const char plain = static_cast<unsigned char>(c) <= ' ' ? ' ' : c;
        if (plain != ' ' || !text.ends_with(' ')) text += plain;
    }
    return text;
}

std::vector<std::string_view> Split(std::string_view text, char separator) {
    std::vector<std::string_view> pieces;
    for (size_t end; (end = text.find(separator)) != text.npos; text.remove_prefix(end + 1)) {
        pieces.push_back(text.substr(0, end));
    }
    pieces.push_back(text);
    return pieces;
}

std::string Shortest(double value) {
    char buffer[400];
    const auto end = std::to_chars(buffer, buffer + sizeof buffer, value, std::chars_format::fixed).ptr;
    return {buffer, end};
}

void Refuse(std::string_view what, std::string_view text) {
    throw std::invalid_argument(std::string{what} + " '" + Escape(text.substr(0, 80)) + "'");
}

std::string Escape(std::string_view bytes) {
    std::string text;
    for (const char c : bytes) {
        if (c == '\n') {
            text += "\\n";
        } else if (c == '\r') {
            text += "\\r";
        } else if (c == '\\') {
            text += "\\\\";
        } else if (c >= ' ' && c <= '~') {
            text += c;
        } else {
            text += Print("\\x%02X", static_cast<unsigned>(static_cast<unsigned char>(c)));
        }
    }
    return text;
}

std::string Unescape(std::string_view text) {
    std::string bytes;
    for (size_t i = 0; i < text.size(); ++i) {
        if (text[i] != '\\') {
            bytes += text[i];
            continue;
        }
        if (++i == text.size()) throw std::invalid_argument("a backslash at the end of the text");
        static constexpr std::string_view kNames = "nrt0\\\"", kBytes{"\n\r\t\0\\\"", 6};
        if (const size_t known = kNames.find(text[i]); known != kNames.npos) {
            bytes += kBytes[known];
        } else if (unsigned value = 0;
                   text[i] == 'x' && i + 2 < text.size() &&
                   std::from_chars(&text[i + 1], &text[i + 1] + 2, value, 16).ptr == &text[i + 1] + 2) {
            bytes += static_cast<char>(value);
            i += 2;
        } else {
            throw std::invalid_argument(std::string{"unknown sequence \\"} + text[i]);
        }
    }
    return bytes;
}

}  // namespace sim
