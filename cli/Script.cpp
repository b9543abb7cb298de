#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iostream>

#include "cli/CommandLine.h"

namespace cli {

namespace {

/// The command of a line; a line that is none is a command that fails.
Command ParseLine(const std::string& line) {
    try {
        return ParseScriptLine(line);
    } catch (const Failure& failure) {
        return {"script", [failure](Context&) -> Outcome { throw failure; }};
    }
}

}  // namespace

Outcome Script(Context& context, const ScriptOptions& options) {
    std::ifstream file;
    if (options.File != "-") {
        file.open(std::filesystem::path(std::u8string(options.File.begin(), options.File.end())));
        if (!file) throw Misuse(options.File + " cannot be read");
    }
    std::istream& lines = file.is_open() ? file : std::cin;
    Outcome outcome{.Results = nullptr};
    int number = 0;
    for (std::string line; std::getline(lines, line);) {
        ++number;
        line.erase(line.find_last_not_of(" \t\r") + 1);
        const auto first = line.find_first_not_of(" \t");
        if (first == line.npos || line[first] == '#') continue;
        const auto end = Perform(context, ParseLine(line));
        if (end == Done) continue;
        if (outcome.End == Done) outcome.End = end;
        if (!context.Out.IsJson()) {
            Report({.Description = options.File + ':' + std::to_string(number) + ": " + line.substr(first)});
        }
        if (!options.KeepGoing || context.Receiver.TheApplication().AbortRequested()) break;
    }
    return outcome;
}

}  // namespace cli
