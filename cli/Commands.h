#pragma once

#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "cli/Json.h"
#include "cli/Output.h"
#include "cli/Session.h"

namespace cli {

/// What a command works with.
struct Context {
    Session& Receiver;
    Output& Out;
};

/// What came of a command. It has printed its results, unless the output is JSON.
struct Outcome {
    Json Results = Json::array();
    std::vector<Failure> Errors = {};
    ExitCode End = Done;  ///< of what has been reported already
};

// The commands. Each throws Failure, AutomationError, Stopped and OutputClosed.

struct GetOptions {
    std::vector<std::string> Members;
    bool Switch = false;  ///< goes to the measure modes that are needed, and back
};
Outcome Get(Context& context, const GetOptions& options);
Outcome Identify(Context& context);

/// Each "MEMBER=VALUE".
Outcome Set(Context& context, const std::vector<std::string>& assignments);
Outcome Call(Context& context, const std::string& method);

struct WatchOptions {
    std::vector<std::string> Members;
    double Every = 1.0;         ///< seconds
    std::optional<double> For;  ///< seconds
    std::optional<int> Count;   ///< samples
    bool Switch = false;
};
Outcome Watch(Context& context, const WatchOptions& options);

/// The file's ending tells its form: ".png" or ".pcx".
Outcome Screenshot(Context& context, const std::string& file);
/// The members whose names the pattern matches, "*" and "?" standing for any; all without one.
Outcome ListMembers(Context& context, const std::string& pattern);
Outcome ListPorts(Context& context);

struct ScriptOptions {
    std::string File;  ///< "-" is the standard input
    bool KeepGoing = false;
};
Outcome Script(Context& context, const ScriptOptions& options);

/// A command with its options.
struct Command {
    std::string Name;
    std::function<Outcome(Context& context)> Run;
};

/// Runs a command, prints what is left of its outcome, and gives the exit code. Throws OutputClosed.
ExitCode Perform(Context& context, const Command& command);

/// Tells the user on the standard error why something failed.
void Report(const Failure& failure);

}  // namespace cli
