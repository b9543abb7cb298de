#pragma once

#include <cstdint>
#include <string>
#include <utility>

namespace cli {

/// How the program ends.
enum ExitCode : std::int8_t { Done = 0, Refused = 1, WrongUsage = 2, NotConnected = 3 };

/// Why a command did not do what it should, as the user is told.
struct Failure {
    ExitCode Ends = WrongUsage;
    std::int32_t Number = 0;  ///< as ErrorConstants and platform::TransportError count; 0 for wrong usage
    std::string Source = {};  ///< who raised it: "clsTarn4x.MeasureRfLevel"
    std::string Description = {};
    std::string Cause = {};   ///< what happened on the link; may be empty
    std::string Advice = {};  ///< what to do, one line; may be empty
};

inline Failure Misuse(std::string description, std::string advice = {}) {
    return {.Description = std::move(description), .Advice = std::move(advice)};
}

}  // namespace cli
