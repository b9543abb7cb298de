#include <csignal>
#include <cstdio>
#include <fstream>
#include <map>
#include <sstream>
#include <stdexcept>

#include "simulator/Simulator.h"
#include "simulator/Text.h"

namespace {

using namespace sim;

constexpr const char* kUsage =
    R"(tarn4x-sim: a simulated DVB-T test receiver

usage: tarn4x-sim [--port N] [--serial PATH] [--front-panel N] [settings]

  --port N         answer on TCP port N of 127.0.0.1; 0 takes a free port. It is printed as
                   "listening on 127.0.0.1:N". Without --port, --serial and --front-panel: 5025.
  --serial PATH    answer on a pseudo-terminal that is linked at PATH (Linux)
  --front-panel N  answer on TCP port N as the application behind the front panel does: there is no
                   error queue and no block transfer
  --listen ADDRESS
                   the TCP ports are those of this IPv4 address, not of 127.0.0.1; 0.0.0.0: of all
  --script FILE    scripted answers and faults
  --replay FILE    answer as a trace of the message log tells; may be repeated, the older trace first
  --replay-timing  answers of a trace take as long as they took when it was recorded
  --seed N         seed of the noise, the channels and their echoes (1)
  --settle S       longest time in seconds for which results read "---" after a change (0.3)
  --options LIST   installed options, separated by commas (TARN-B1,TARN-B11,TARN-B12,TARN-B13)
  --firmware V     firmware version (5.10)
  --verbose        write the dialogue to the standard error output
  --help           print this text
)";

struct CommandLine {
    std::optional<uint16_t> port, frontPanel;
    std::optional<std::string> serial, script;
    std::string listen = "127.0.0.1";
    std::vector<std::string> replay;
    Options options;
    bool verbose = false, help = false;
};

// Throws std::invalid_argument with a text for the user.
CommandLine ParseCommandLine(const std::vector<std::string>& arguments) {
    CommandLine line;
    Configuration& configuration = line.options.configuration;
    std::string name, value;
    const auto number = [&](auto highest) {
        const auto parsed = ParseNumber(value, decltype(highest){0}, highest);
        if (!parsed) throw std::invalid_argument(name + " cannot be '" + value + "'");
        return *parsed;
    };
    const std::map<std::string, bool*> switches{
        {"--replay-timing", &line.options.replayTiming}, {"--verbose", &line.verbose}, {"--help", &line.help}};
    const std::map<std::string, std::function<void()>> settings{
        {"--port", [&] { line.port = number(uint16_t{65535}); }},
        {"--serial", [&] { line.serial = value; }},
        {"--front-panel", [&] { line.frontPanel = number(uint16_t{65535}); }},
        {"--listen", [&] { line.listen = value; }},
        {"--script", [&] { line.script = value; }},
        {"--replay", [&] { line.replay.push_back(value); }},
        {"--seed", [&] { configuration.seed = number(4'000'000'000u); }},
        {"--settle",
         [&] { configuration.settle = std::chrono::milliseconds{static_cast<long>(1000 * number(3600.0))}; }},
        {"--options", [&] { configuration.options = InstalledOptions{value}; }},
        {"--firmware", [&] { configuration.firmware = value; }},
    };
    for (size_t i = 0; i < arguments.size(); ++i) {
        name = arguments[i];
        if (const auto found = switches.find(name); found != switches.end()) {
            *found->second = true;
            continue;
        }
        const auto setting = settings.find(name);
        if (setting == settings.end()) throw std::invalid_argument("unknown argument '" + name + "'");
        if (++i == arguments.size()) throw std::invalid_argument(name + " needs a value");
        value = arguments[i];
        setting->second();
    }
    if (line.options.replayTiming && line.replay.empty()) throw std::invalid_argument("--replay-timing needs --replay");
    if (!line.port && !line.serial && !line.frontPanel) line.port = 5025;
    return line;
}

// Hands the text of a file over; what is wrong in it is told under the file's name.
template <class Reader>
void Read(const std::string& path, Reader reader) {
    std::ifstream file{path, std::ios::binary};
    if (!file) throw std::invalid_argument("cannot read " + path);
    std::ostringstream text;
    text << file.rdbuf();
    try {
        reader(text.str());
    } catch (const std::invalid_argument& error) {
        throw std::invalid_argument(path + ", " + error.what());
    }
}

void Announce(const char* what, const std::string& where) {
    std::printf("%s %s\n", what, where.c_str());
    std::fflush(stdout);
}

int Run(const std::vector<std::string>& arguments) {
    CommandLine line = ParseCommandLine(arguments);
    if (line.help) {
        std::fputs(kUsage, stdout);
        return 0;
    }
    Options& options = line.options;
    if (line.script) Read(*line.script, [&](const std::string& text) { options.script = Script{text}; });
    for (const std::string& path : line.replay) Read(path, [&](const std::string& text) { options.replay.Add(text); });
    if (!line.replay.empty() && options.replay.Empty()) {
        throw std::invalid_argument("nothing to replay in " + line.replay.back() +
                                    " (a driver is recorded while its setting Log Messages is Yes)");
    }
    if (line.verbose) options.log = [](const std::string& entry) { std::fprintf(stderr, "%s\n", entry.c_str()); };

    Simulator simulator{std::move(options)};
    simulator.StopOnSignals();
    if (line.serial) simulator.OpenSerialLine(*line.serial);
    const auto listen = [&](const char* what, uint16_t port, Face face) {
        Announce(what, line.listen + ":" + std::to_string(simulator.Listen(port, face, line.listen)));
    };
    if (line.port) listen("listening on", *line.port, Face::Remote);
    if (line.frontPanel) listen("front panel on", *line.frontPanel, Face::FrontPanel);
    if (line.serial) Announce("serial line", *line.serial);
    simulator.Run();
    return 0;
}

}  // namespace

int main(int count, char** arguments) {
#ifdef SIGPIPE
    std::signal(SIGPIPE, SIG_IGN);  // that nobody reads the dialogue is no reason to end
#endif
    try {
        return Run({arguments + 1, arguments + count});
    } catch (const std::invalid_argument& error) {
        std::fprintf(stderr, "tarn4x-sim: %s\nTry --help.\n", error.what());
        return 2;
    } catch (const std::exception& error) {
        std::fprintf(stderr, "tarn4x-sim: %s\n", error.what());
        return 1;
    }
}
