#include "cli/Trend.h"

#include <algorithm>
#include <charconv>
#include <cmath>

#include "driver/Conversions.h"
#include "platform/Value.h"

namespace cli {

namespace {

constexpr std::size_t Remembered = 1000;

int Decimals(double number) {
    const auto text = platform::GeneralNumber(number);
    const auto point = text.find('.');
    return point == text.npos ? 0 : static_cast<int>(text.size() - point - 1);
}

}  // namespace

void Trend::Add(std::optional<double> value) {
    history_.push_back(value);
    if (history_.size() > Remembered) history_.pop_front();
    if (!value) return;
    minimum_ = count_ > 0 ? std::min(minimum_, *value) : *value;
    maximum_ = count_ > 0 ? std::max(maximum_, *value) : *value;
    decimals_ = std::max(decimals_, Decimals(*value));
    sum_ += *value;
    ++count_;
}

std::string Trend::Minimum() const { return count_ > 0 ? platform::GeneralNumber(minimum_) : ""; }
std::string Trend::Maximum() const { return count_ > 0 ? platform::GeneralNumber(maximum_) : ""; }

// One more decimal than the values have, or four digits of a very small number.
std::string Trend::Mean() const {
    if (count_ == 0) return {};
    const double mean = sum_ / static_cast<double>(count_);
    if (std::abs(mean) >= 1e-3 || mean == 0.0) {
        return platform::GeneralNumber(tarn4x::RoundDecimals(mean, decimals_ + 1));
    }
    char text[32];
    const auto end = std::to_chars(text, std::end(text), mean, std::chars_format::scientific, 3).ptr;
    std::transform(text, end, text, [](char c) { return c == 'e' ? 'E' : c; });
    return {text, end};
}

std::string Trend::History(std::size_t width, bool unicode) const {
    static constexpr const char* blocks[] = {"▁", "▂", "▃", "▄", "▅", "▆", "▇", "█"};
    static constexpr const char* letters[] = {"_", ".", "-", "~", "=", "+", "*", "#"};
    constexpr double levels = std::size(blocks) - 1;
    std::string text;
    for (auto i = history_.size() - std::min(width, history_.size()); i < history_.size(); ++i) {
        if (!history_[i]) {
            text += ' ';
            continue;
        }
        const double span = maximum_ - minimum_;
        const double height = span > 0.0 ? (*history_[i] - minimum_) / span : 0.5;
        const auto level = static_cast<std::size_t>(std::lround(height * levels));
        text += (unicode ? blocks : letters)[level];
    }
    return text;
}

}  // namespace cli
