#include "simulator/Parser.h"

#include <charconv>
#include <cmath>

#include "simulator/ErrorQueue.h"
#include "simulator/Text.h"

namespace sim {

namespace {

// Splits at the separator wherever it stands outside of a quoted string. A quote left open runs to the end.
std::vector<std::string_view> SplitOutsideQuotes(std::string_view text, char separator) {
    std::vector<std::string_view> pieces;
    char quote = 0;
    size_t start = 0;
    for (size_t i = 0; i < text.size(); ++i) {
        const char c = text[i];
        if (quote != 0) {
            if (c == quote) quote = 0;
        } else if (c == '"' || c == '\'') {
            quote = c;
        } else if (c == separator) {
            pieces.push_back(text.substr(start, i - start));
            start = i + 1;
        }
    }
    pieces.push_back(text.substr(start));
    return pieces;
}

Unit ParseUnit(std::string_view text) {
    size_t end = 0;
    while (end < text.size() && static_cast<unsigned char>(text[end]) > ' ') ++end;
    Unit unit;
    unit.header = text.substr(0, end);
    if (unit.header.ends_with('?')) {
        unit.query = true;
        unit.header.pop_back();
    }
    const std::string_view rest = Trim(text.substr(end));
    if (!rest.empty()) {
        std::vector<std::string> texts;
        for (const std::string_view argument : SplitOutsideQuotes(rest, ',')) texts.emplace_back(Trim(argument));
        unit.arguments = Arguments{std::move(texts)};
    }
    return unit;
}

}  // namespace

void Arguments::Expect(size_t count) const {
    for (size_t i = 0; i < count; ++i) Text(i);
    if (Count() > count) throw ScpiError{-108};
}

const std::string& Arguments::Text(size_t index) const {
    if (index >= texts_.size() || texts_[index].empty()) throw ScpiError{-109};
    return texts_[index];
}

double Arguments::Number(size_t index) const {
    std::string_view text = Text(index);
    if (text.starts_with('+')) text.remove_prefix(1);
    double value = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    if (error == std::errc::result_out_of_range) throw ScpiError{-222};
    if (error != std::errc{} || !std::isfinite(value)) throw ScpiError{-104};
    if (end != text.data() + text.size()) throw ScpiError{-138};
    return value;
}

double Arguments::Number(size_t index, double lowest, double highest) const {
    const double value = Number(index);
    if (value < lowest || value > highest) throw ScpiError{-222};
    return value;
}

int Arguments::Whole(size_t index, int lowest, int highest) const {
    const double rounded = std::round(Number(index));
    if (rounded < lowest || rounded > highest) throw ScpiError{-222};
    return static_cast<int>(rounded);
}

std::string Arguments::Joined() const {
    std::string joined = Text(0);
    for (size_t i = 1; i < Count(); ++i) joined += "," + Text(i);
    return joined;
}

std::vector<Unit> ParseMessage(std::string_view line) {
    std::vector<Unit> units;
    for (const std::string_view piece : SplitOutsideQuotes(line, ';')) {
        if (const std::string_view text = Trim(piece); !text.empty()) units.push_back(ParseUnit(text));
    }
    return units;
}

}  // namespace sim
