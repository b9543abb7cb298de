#pragma once

#include <deque>
#include <optional>
#include <string>

namespace cli {

/// How a value develops.
class Trend {
  public:
    /// The next value; nothing when there was none.
    void Add(std::optional<double> value);

    // Texts; empty before the first value.

    std::string Minimum() const;
    std::string Mean() const;
    std::string Maximum() const;

    /// The latest values as a line of that many characters, from the lowest to the highest value so far.
    std::string History(std::size_t width, bool unicode) const;

  private:
    std::deque<std::optional<double>> history_;
    std::size_t count_ = 0;
    double sum_ = 0.0, minimum_ = 0.0, maximum_ = 0.0;
    int decimals_ = 0;  ///< the most that a value had
};

}  // namespace cli
