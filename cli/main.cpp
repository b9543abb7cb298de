#include <cstdio>
#include <cstdlib>
#include <exception>
#include <filesystem>

#include "cli/CommandLine.h"
#include "cli/Terminal.h"

namespace {

using namespace cli;

ExitCode Run(const CommandLine& line) {
    Output out(line.Json);
    if (!line.Run.Run) {
        out.Raw(line.Text);
        return Done;
    }
    Session session(line.Settings);
    Context context{session, out};
    try {
        return Perform(context, line.Run);
    } catch (const OutputClosed&) {  // who read has seen enough
        session.TheApplication().SetAbortRequested(true);
        return Done;
    }
}

int Run(std::vector<std::string> arguments) {
    try {
        const char* receiver = std::getenv("TARN4X_RECEIVER");
        return Run(ParseArguments(std::move(arguments), receiver ? receiver : ""));
    } catch (const Failure& failure) {
        Report(failure);
        return failure.Ends;
    } catch (const OutputClosed&) {
        return Done;
    } catch (const std::exception& error) {
        Report({.Ends = Refused, .Description = error.what()});
        return Refused;
    }
}

}  // namespace

#ifdef _WIN32
int wmain(int count, wchar_t** words) {
#else
int main(int count, char** words) {
#endif
    cli::terminal::Prepare();
    std::vector<std::string> arguments;
    for (int i = 1; i < count; ++i) {
        const auto word = std::filesystem::path(words[i]).u8string();
        arguments.emplace_back(word.begin(), word.end());
    }
    return Run(std::move(arguments));
}
