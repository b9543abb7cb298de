#include "cli/Output.h"

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <system_error>

#include "cli/Clean.h"
#include "cli/Failure.h"

namespace cli {

namespace {

bool BeginsCharacter(char byte) { return (byte & 0xC0) != 0x80; }

}  // namespace

void Output::Line(std::string_view text) { Raw(Clean(text) + '\n'); }

void Output::Raw(std::string_view text) {
    errno = 0;
    if (std::fwrite(text.data(), 1, text.size(), stdout) == text.size() && std::fflush(stdout) == 0) return;
    // Windows reports EINVAL for a pipe without a reader.
    if (errno == EPIPE || errno == EINVAL) throw OutputClosed{};
    throw Failure{.Ends = Refused,
                  .Description = "The output cannot be written: " + std::generic_category().message(errno)};
}

std::size_t Length(std::string_view text) {
    return static_cast<std::size_t>(std::ranges::count_if(text, BeginsCharacter));
}

std::string Shortened(const std::string& text, std::size_t length) {
    const auto end = std::ranges::find_if(text, [&](char byte) { return BeginsCharacter(byte) && length-- == 0; });
    return {text.begin(), end};
}

std::vector<std::string> InColumns(const std::vector<std::vector<std::string>>& rows) {
    std::vector<std::size_t> widths;
    for (const auto& row : rows) {
        widths.resize(std::max(widths.size(), row.size()));
        for (std::size_t i = 0; i < row.size(); ++i) widths[i] = std::max(widths[i], Length(row[i]));
    }
    std::vector<std::string> lines;
    for (const auto& row : rows) {
        std::string line;
        for (std::size_t i = 0; i < row.size(); ++i) {
            line += row[i];
            line.append(widths[i] - Length(row[i]) + 2, ' ');
        }
        line.erase(line.find_last_not_of(' ') + 1);
        lines.push_back(std::move(line));
    }
    return lines;
}

}  // namespace cli
