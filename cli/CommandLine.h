#pragma once

#include <optional>
#include <string>
#include <vector>

#include "cli/Commands.h"
#include "cli/Session.h"

namespace cli {

/// What the user's arguments ask for.
struct CommandLine {
    Session::Options Settings;
    bool Json = false;
    Command Run;       ///< without a function when there is only a text to print
    std::string Text;  ///< help or version
};

/// Reads the arguments of the program; without a receiver among them, those in `defaults` are taken as well. Throws
/// Failure.
CommandLine ParseArguments(std::vector<std::string> arguments, const std::string& defaults);

/// Reads a line of a script: a command with its arguments, quoted as in a shell. Throws Failure.
Command ParseScriptLine(const std::string& line);

}  // namespace cli
