#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace sim {

/// Puts lines together from what arrives. A line ends in LF; a CR before it is dropped.
class LineBuffer {
  public:
    static constexpr size_t kLongestLine = size_t{64} * 1024;

    void Add(std::string_view bytes) { bytes_ += bytes; }

    struct Line {
        std::string text;
        bool overrun = false;  // it was longer than kLongestLine and is lost
    };
    /// The next whole line. What is too long is thrown away as it comes, so that the memory stays bounded.
    std::optional<Line> Next() {
        const size_t end = bytes_.find('\n', searched_);
        if (end == bytes_.npos) {
            searched_ = bytes_.size();
            if (searched_ > kLongestLine) {
                bytes_.clear();
                searched_ = 0;
                overrun_ = true;
            }
            return std::nullopt;
        }
        Line line{bytes_.substr(0, end), overrun_ || end > kLongestLine};
        bytes_.erase(0, end + 1);
        searched_ = 0;
        overrun_ = false;
        if (line.overrun) line.text.clear();
        if (line.text.ends_with('\r')) line.text.pop_back();
        return line;
    }

  private:
    std::string bytes_;
    size_t searched_ = 0;
    bool overrun_ = false;
};

}  // namespace sim
