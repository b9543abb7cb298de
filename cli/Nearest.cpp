#include "cli/Nearest.h"

#include <algorithm>
#include <numeric>
#include <utility>
#include <vector>

#include "driver/Conversions.h"

namespace cli {

namespace {

/// How many characters have to be put in, left out or exchanged to make one text of the other (Levenshtein).
std::size_t Distance(std::string_view one, std::string_view other) {
    std::vector<std::size_t> row(other.size() + 1);
    std::iota(row.begin(), row.end(), 0U);
    for (std::size_t i = 0; i < one.size(); ++i) {
        auto diagonal = std::exchange(row[0], i + 1);
        for (std::size_t j = 0; j < other.size(); ++j) {
            const auto exchanged = diagonal + (one[i] == other[j] ? 0 : 1);
            diagonal = row[j + 1];
            row[j + 1] = std::min({exchanged, row[j] + 1, diagonal + 1});
        }
    }
    return row.back();
}

}  // namespace

std::string Nearest(std::string_view word, std::span<const std::string_view> names) {
    constexpr std::size_t most = 4;
    const auto sought = tarn4x::LowerCase(word);
    if (sought.empty()) return {};
    const auto limit = std::min(std::max<std::size_t>(2, sought.size() / 3), sought.size() - 1);
    struct Candidate {
        std::size_t Distance;
        std::string_view Name;
    };
    std::vector<Candidate> candidates;
    for (const auto name : names) {
        const auto lower = tarn4x::LowerCase(name);
        const bool part = sought.size() > 2 && lower.find(sought) != lower.npos;
        const auto distance = part ? 1 : Distance(sought, lower);
        if (distance <= limit) candidates.push_back({distance, name});
    }
    std::ranges::stable_sort(candidates, {}, &Candidate::Distance);
    if (candidates.size() > most) candidates.resize(most);
    std::string text;
    for (std::size_t i = 0; i < candidates.size(); ++i) {
        if (i > 0) text += i + 1 == candidates.size() ? " or " : ", ";
        text += candidates[i].Name;
    }
    return text;
}

}  // namespace cli
