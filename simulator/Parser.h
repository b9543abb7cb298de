#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace sim {

/// The parameters of one command. Every accessor throws ScpiError.
class Arguments {
  public:
    Arguments() = default;
    explicit Arguments(std::vector<std::string> texts) : texts_(std::move(texts)) {}

    size_t Count() const { return texts_.size(); }
    /// -109 when there are fewer or one of them is empty, -108 when there are more.
    void Expect(size_t count) const;
    /// -109 when it is missing or empty.
    const std::string& Text(size_t index) const;
    /// -104 when the parameter is not a number, -138 when something follows the number.
    double Number(size_t index) const;
    /// As Number, but -222 when it is outside the range.
    double Number(size_t index, double lowest, double highest) const;
    /// As Number with a range; a fraction is rounded, as SCPI-99 prescribes for integer settings.
    int Whole(size_t index, int lowest, int highest) const;
    /// All parameters as one text, without blanks around the commas.
    std::string Joined() const;

  private:
    std::vector<std::string> texts_;
};

/// One program message unit: a header with its parameters.
struct Unit {
    std::string header;  // without the question mark
    bool query = false;
    Arguments arguments;
};

/// Splits a line at ";" outside of quotes; any bytes are taken, empty units are left out.
std::vector<Unit> ParseMessage(std::string_view line);

}  // namespace sim
