#pragma once

#include <span>
#include <string>
#include <string_view>

namespace cli {

/// The names that a misspelt word may have meant, at most four, nearest first, with " or " before the last: "A, B or
/// C". Empty when none comes near. Letter case does not count.
std::string Nearest(std::string_view word, std::span<const std::string_view> names);

}  // namespace cli
