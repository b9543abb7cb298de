#include <sys/signalfd.h>

#include <csignal>
#include <cstdio>
#include <fstream>
#include <sstream>
#include <stdexcept>

#include "simulator/CommandLine.h"
#include "simulator/Server.h"

namespace {

using namespace sim;

// Becomes readable when the program is asked to end. Writing to a closed connection is no reason to end.
FileDescriptor StopRequests() {
    sigset_t signals;
    sigemptyset(&signals);
    sigaddset(&signals, SIGTERM);
    sigaddset(&signals, SIGINT);
    sigprocmask(SIG_BLOCK, &signals, nullptr);
    std::signal(SIGPIPE, SIG_IGN);
    return FileDescriptor{::signalfd(-1, &signals, SFD_CLOEXEC)};
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

Configuration Configure(const CommandLine& line) {
    Configuration configuration;
    if (line.seed) configuration.seed = *line.seed;
    if (line.settle) configuration.settle = *line.settle;
    if (line.options) configuration.options = InstalledOptions{*line.options};
    if (line.firmware) configuration.firmware = *line.firmware;
    return configuration;
}

void Announce(const char* what, const std::string& where) {
    std::printf("%s %s\n", what, where.c_str());
    std::fflush(stdout);
}

int Run(const std::vector<std::string>& arguments) {
    const CommandLine line = ParseCommandLine(arguments);
    if (line.help) {
        std::fputs(kUsage, stdout);
        return 0;
    }
    Script script;
    if (line.script) Read(*line.script, [&](const std::string& text) { script = Script{text}; });
    Replay replay;
    for (const std::string& path : line.replay) Read(path, [&](const std::string& text) { replay.Add(text); });
    if (!line.replay.empty() && replay.Empty()) {
        throw std::invalid_argument("nothing to replay in " + line.replay.back() +
                                    " (a driver is recorded while its setting Log Messages is Yes)");
    }
    Receiver receiver{Configure(line), [] { return std::chrono::system_clock::now(); }};
    Signal signal = receiver.OnAir();
    for (const SignalChange& change : script.Signal()) Change(signal, change);
    receiver.Transmit(signal);

    const FileDescriptor stop = StopRequests();
    Server server{receiver, script, replay, {line.replayTiming, line.verbose}};
    const auto address = [](uint16_t port) { return "127.0.0.1:" + std::to_string(port); };
    if (line.port) Announce("listening on", address(server.ListenOn(*line.port, Face::Remote)));
    if (line.frontPanel) Announce("front panel on", address(server.ListenOn(*line.frontPanel, Face::FrontPanel)));
    if (line.serial) {
        server.ServeSerialLine(*line.serial);
        Announce("serial line", *line.serial);
    }
    server.Run(stop.Get());
    return 0;
}

}  // namespace

int main(int count, char** arguments) {
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
