#pragma once

#include <memory>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "cli/Output.h"
#include "cli/Reading.h"

namespace cli {

/// What was read at one time.
struct Sample {
    std::string Time;                    ///< UTC, ISO 8601
    std::vector<Reading> Readings = {};  ///< none while there is no connection
    std::string Notice = {};             ///< what happened on the link; mostly empty
    std::optional<Failure> Outage = {};
};

/// How samples are shown.
class WatchView {
  public:
    virtual ~WatchView() = default;
    /// Throws OutputClosed.
    virtual void Show(const Sample& sample) = 0;
};

/// A table that renews itself on a terminal, else JSON Lines or CSV.
std::unique_ptr<WatchView> CreateWatchView(Output& out, std::span<const Request> requests);

}  // namespace cli
