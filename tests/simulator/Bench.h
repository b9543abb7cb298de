#pragma once

#include <cstdlib>
#include <string>

#include "simulator/Interpreter.h"

/// An instrument on the table, with a clock that only moves by hand.
struct Bench {
    explicit Bench(sim::Configuration configuration = {})
        : receiver(std::move(configuration), [this] { return now; }) {}

    /// The answer, or "(none)".
    std::string Ask(const std::string& line, sim::Face face = sim::Face::Remote) {
        return interpreter.Execute(line, face).value_or("(none)");
    }
    /// The answer once it is settled.
    std::string Value(const std::string& line) {
        now += std::chrono::seconds{1};
        return Ask(line);
    }
    double Number(const std::string& line) { return std::strtod(Value(line).c_str(), nullptr); }
    std::string Error() { return Ask("SYST:ERR?"); }

    template <class Change>
    void Signal(Change change) {
        sim::Signal signal = receiver.OnAir();
        change(signal);
        receiver.Transmit(signal);
    }

    sim::TimePoint now{std::chrono::sys_days{std::chrono::year{2026} / 3 / 1} + std::chrono::hours{12}};
    sim::Receiver receiver;
    sim::Interpreter interpreter{receiver};
};
