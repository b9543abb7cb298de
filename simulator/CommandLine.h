#pragma once

#include <chrono>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace sim {

struct CommandLine {
    std::optional<uint16_t> port, frontPanel;
    std::optional<std::string> serial, script, options, firmware;
    std::vector<std::string> replay;
    std::optional<unsigned> seed;
    std::optional<std::chrono::milliseconds> settle;
    bool replayTiming = false, verbose = false, help = false;
};

/// Throws std::invalid_argument with a text for the user.
CommandLine ParseCommandLine(const std::vector<std::string>& arguments);

extern const char* const kUsage;

}  // namespace sim
