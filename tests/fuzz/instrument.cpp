// The simulated receiver takes any bytes: answers stay bounded, the error queue holds 30 entries at most. A line in
// front of which stands "!" changes the signal.
#include <algorithm>
#include <stdexcept>

#include "simulator/Interpreter.h"
#include "simulator/Script.h"
#include "simulator/Text.h"
#include "tests/fuzz/Fuzz.h"

namespace {

constexpr std::size_t LongestAnswer = 64 * 1024;  // of one query; the screen is by far the longest
constexpr std::string_view NoError = R"(0,"No error")";

/// "!name value", as a script would change the signal.
void ChangeSignal(sim::Receiver& receiver, const std::string& line) {
    const auto blank = line.find(' ');
    auto signal = receiver.OnAir();
    try {
        sim::Change(signal, {line.substr(0, blank), blank == line.npos ? "" : line.substr(blank + 1)});
    } catch (const std::invalid_argument&) {
        return;
    }
    receiver.Transmit(signal);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    sim::TimePoint now{std::chrono::sys_days{std::chrono::year{2026} / 3 / 1}};
    sim::Receiver receiver({}, [&] { return now; });
    sim::Interpreter interpreter(receiver);

    for (const auto piece : sim::Split(fuzz::Text(data, size), '\n')) {
        const std::string line{piece};
        if (line.starts_with('!')) {
            ChangeSignal(receiver, line.substr(1));
            continue;
        }
        const auto units = static_cast<std::size_t>(std::ranges::count(line, ';')) + 1;
        const auto answer = interpreter.Execute(line, sim::Face::Remote);
        REQUIRE(!answer || answer->size() <= units * LongestAnswer);
        REQUIRE(!answer || answer->find('\n') == std::string::npos || answer->find('#') != std::string::npos);

        const bool noErrors = receiver.errors.Empty();
        interpreter.Execute(line, sim::Face::FrontPanel);
        REQUIRE(receiver.errors.Empty() || !noErrors);
        now += std::chrono::milliseconds{137};
    }
    for (std::size_t entries = 0; interpreter.Execute("SYST:ERR?", sim::Face::Remote) != NoError; ++entries) {
        REQUIRE(entries < sim::ErrorQueue::kCapacity);
    }
    return 0;
}
