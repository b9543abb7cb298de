// The simulated receiver takes any bytes: answers stay bounded, the error queue holds 30 entries at most. A line in
// front of which stands "!" is one of a script, which is understood or refused; its changes of the signal hold at once.
#include <stdexcept>

#include "simulator/Interpreter.h"
#include "simulator/Script.h"
#include "simulator/Text.h"
#include "tests/fuzz/Fuzz.h"

namespace {

constexpr std::size_t LongestAnswer = 64 * 1024;  // the screen is by far the longest

void ReadScript(sim::Receiver& receiver, std::string_view text) try {
    const sim::Script script(text);
    auto signal = receiver.OnAir();
    for (const auto& change : script.Signal()) sim::Change(signal, change);
    receiver.Transmit(signal);
} catch (const std::invalid_argument&) {
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    sim::TimePoint now{std::chrono::sys_days{std::chrono::year{2026} / 3 / 1}};
    sim::Receiver receiver({}, [&] { return now; });
    sim::Interpreter interpreter(receiver);

    for (const auto line : sim::Split(fuzz::Input(data, size).rest, '\n')) {
        if (line.starts_with('!')) ReadScript(receiver, line.substr(1));
        const auto answer = interpreter.Execute(line, sim::Face::Remote).value_or("");
        assert(answer.size() <= (line.size() / std::string_view("*IDN?").size() + 1) * LongestAnswer);
        assert(answer.find('\n') == answer.npos || answer.find('#') != answer.npos);

        const bool noErrors = receiver.errors.Empty();
        interpreter.Execute(line, sim::Face::FrontPanel);
        assert(receiver.errors.Empty() || !noErrors);
        now += std::chrono::milliseconds{137};
    }
    for (std::size_t entry = 0; entry < sim::ErrorQueue::kCapacity; ++entry) receiver.errors.Pop();
    assert(receiver.errors.Empty());
    return 0;
}
