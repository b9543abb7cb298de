#pragma once

#include <gmock/gmock.h>

#include <cstdlib>
#include <string>

#include "simulator/Interpreter.h"
#include "simulator/Script.h"
#include "simulator/Text.h"

inline constexpr const char* kNoError = "0,\"No error\"";

inline constexpr std::string_view kMeasureModes =
    "NORM CDI MDB MPCT INT IQ APH AGD POL SP_1 SP_2 SP_3 ADIS CCDF IR_1 IR_2 IR_3 HIST PAR CENV";

inline sim::Configuration With(std::string_view options) {
    sim::Configuration configuration;
    configuration.options = sim::InstalledOptions{options};
    return configuration;
}

/// An instrument on the table, with a clock that only moves by hand.
struct Bench {
    explicit Bench(sim::Configuration configuration = {})
        : receiver(std::move(configuration), [this] { return now; }) {}

    /// The answer, or "(none)".
    std::string Ask(const std::string& line, sim::Face face = sim::Face::Remote) {
        return interpreter.Execute(line, face).value_or("(none)");
    }
    void Wait(double seconds) { now += std::chrono::milliseconds{std::lround(1000 * seconds)}; }
    /// The answer once it is settled.
    std::string Value(const std::string& line) {
        Wait(1);
        return Ask(line);
    }
    double Number(const std::string& line) { return std::strtod(Value(line).c_str(), nullptr); }
    std::string Error() { return Ask("SYST:ERR?"); }
    /// "cn 12", as scripts say it.
    void Signal(std::string_view change) {
        sim::Signal signal = receiver.OnAir();
        const sim::Script script{"signal " + std::string{change}};
        Change(signal, script.Signal().at(0));
        receiver.Transmit(signal);
    }

    /// Plays a dialogue, one step a line:
    ///     LINE                has no answer
    ///     LINE -> 12 | 13     is asked once for each of the answers, exactly
    ///     LINE ~ EXPRESSION   has an answer that the regular expression matches
    ///     LINE = 27 +- 1      has a number for an answer, as near as that
    ///     LINE ! ERROR        has no answer, and this alone is in the error queue
    ///     +0.3                so many seconds pass; "+1 LINE" does both, and before each of the answers
    ///     signal cn 12        what is on the air changes
    void Play(std::string_view dialogue) {
        for (const std::string_view step : sim::Split(dialogue, '\n')) {
            if (!step.empty()) PlayStep(std::string{step});
        }
    }

    sim::TimePoint now{std::chrono::sys_days{std::chrono::year{2026} / 3 / 1} + std::chrono::hours{12}};
    sim::Receiver receiver;
    sim::Interpreter interpreter{receiver};

  private:
    void PlayStep(std::string step) {
        SCOPED_TRACE(step);
        if (step.starts_with("signal ")) return Signal(step.substr(7));
        double seconds = 0;
        if (step[0] == '+') {
            const size_t blank = std::min(step.find(' '), step.size() - 1);
            seconds = std::stod(step);
            step.erase(0, blank + 1);
        }
        size_t sign = std::string::npos;
        for (const char* one : {" -> ", " ~ ", " = ", " ! "}) sign = std::min(sign, step.find(one));
        const std::string line = step.substr(0, sign);
        const size_t behind = sign == step.npos ? sign : step.find(' ', sign + 1) + 1;
        const std::string expected = sign == step.npos ? "(none)" : step.substr(behind);
        const auto ask = [&] {
            Wait(seconds);
            return Ask(line);
        };
        switch (sign == step.npos ? '-' : step[sign + 1]) {
            case '~':
                EXPECT_THAT(ask(), testing::MatchesRegex(expected));
                break;
            case '=':
                EXPECT_NEAR(std::stod(ask()), std::stod(expected), std::stod(expected.substr(expected.find("+-") + 2)));
                break;
            case '!':
                EXPECT_EQ(ask(), "(none)");
                EXPECT_EQ(Error(), expected);
                EXPECT_EQ(Error(), kNoError);
                break;
            default:
                for (const std::string_view answer : sim::Split(expected, '|')) EXPECT_EQ(ask(), sim::Trim(answer));
        }
    }
};

/// Plays each line of the dialogue on an instrument of its own.
inline void PlayEach(std::string_view dialogue, const sim::Configuration& configuration = {}) {
    for (const std::string_view line : sim::Split(dialogue, '\n')) Bench{configuration}.Play(line);
}
