#include "simulator/CommandLine.h"

#include <charconv>
#include <stdexcept>

namespace sim {

const char* const kUsage =
    R"(tarn4x-sim: a simulated DVB-T test receiver

usage: tarn4x-sim [--port N] [--serial PATH] [--front-panel N] [settings]

  --port N         answer on TCP port N of 127.0.0.1; 0 takes a free port. It is printed as
                   "listening on 127.0.0.1:N". Without --port, --serial and --front-panel: 5025.
  --serial PATH    answer on a pseudo-terminal that is linked at PATH
  --front-panel N  answer on TCP port N as the application behind the front panel does: there is no
                   error queue and no block transfer
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

namespace {

template <class Number>
Number ToNumber(const std::string& name, const std::string& text, Number highest) {
    Number value{};
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    if (error != std::errc{} || end != text.data() + text.size() || !(value >= 0 && value <= highest)) {
        throw std::invalid_argument(name + " cannot be '" + text + "'");
    }
    return value;
}

}  // namespace

CommandLine ParseCommandLine(const std::vector<std::string>& arguments) {
    CommandLine line;
    for (size_t i = 0; i < arguments.size(); ++i) {
        const std::string& name = arguments[i];
        const auto value = [&]() -> const std::string& {
            if (i + 1 == arguments.size()) throw std::invalid_argument(name + " needs a value");
            return arguments[++i];
        };
        if (name == "--port") {
            line.port = static_cast<uint16_t>(ToNumber(name, value(), 65535));
        } else if (name == "--front-panel") {
            line.frontPanel = static_cast<uint16_t>(ToNumber(name, value(), 65535));
        } else if (name == "--serial") {
            line.serial = value();
        } else if (name == "--script") {
            line.script = value();
        } else if (name == "--replay") {
            line.replay.push_back(value());
        } else if (name == "--replay-timing") {
            line.replayTiming = true;
        } else if (name == "--seed") {
            line.seed = ToNumber(name, value(), 4'000'000'000u);
        } else if (name == "--settle") {
            line.settle = std::chrono::milliseconds{static_cast<long>(1000 * ToNumber(name, value(), 3600.0))};
        } else if (name == "--options") {
            line.options = value();
        } else if (name == "--firmware") {
            line.firmware = value();
        } else if (name == "--verbose") {
            line.verbose = true;
        } else if (name == "--help") {
            line.help = true;
        } else {
            throw std::invalid_argument("unknown argument '" + name + "'");
        }
    }
    if (line.replayTiming && line.replay.empty()) throw std::invalid_argument("--replay-timing needs --replay");
    if (!line.port && !line.serial && !line.frontPanel) line.port = 5025;
    return line;
}

}  // namespace sim
