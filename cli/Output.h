#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace cli {

/// Thrown when nobody reads the standard output any more.
struct OutputClosed {};

/// The standard output.
class Output {
  public:
    explicit Output(bool json) : json_(json) {}

    /// True: the user wants JSON, and nothing else may be printed.
    bool IsJson() const { return json_; }

    /// Prints a line, control characters written as \xNN. Throws OutputClosed.
    void Line(std::string_view text);
    /// Prints text as it stands, escape sequences included. Throws OutputClosed.
    void Raw(std::string_view text);

  private:
    bool json_;
};

/// Characters of a text in UTF-8.
std::size_t Length(std::string_view text);
/// At most that many characters of it.
std::string Shortened(const std::string& text, std::size_t length);

/// Lines of cells in columns, each as wide as its widest cell; two blanks between them.
std::vector<std::string> InColumns(const std::vector<std::vector<std::string>>& rows);

}  // namespace cli
