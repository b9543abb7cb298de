#pragma once

#include <gmock/gmock.h>

#include <regex>

#include "simulator/Interpreter.h"
#include "simulator/Script.h"
#include "simulator/Text.h"

/// An instrument on the table, with a clock that only moves by hand.
struct Bench {
    explicit Bench(std::string_view options = "TARN-B11,TARN-B12,TARN-B13")
        : receiver({.options = sim::InstalledOptions{options}}, [this] { return now; }) {}

    std::string Ask(std::string_view line) { return interpreter.Execute(line, sim::Face::Remote).value_or(""); }

    /// Plays a dialogue, one step a line, which leaves no error behind:
    ///     LINE                       has no answer
    ///     LINE -> 12;13              has that answer
    ///     LINE ~ EXPRESSION          has an answer that the regular expression matches
    ///     +0.3 LINE                  comes after so many seconds
    ///     signal cn 12;offset 1000   what is on the air changes
    void Play(const std::string& dialogue) {
        for (const std::string_view step : sim::Split(dialogue, '\n')) PlayStep(std::string{step});
        EXPECT_EQ(Ask("SYST:ERR?"), "0,\"No error\"") << dialogue;
    }

    sim::TimePoint now{std::chrono::sys_days{std::chrono::year{2026} / 3 / 1}};
    sim::Receiver receiver;
    sim::Interpreter interpreter{receiver};

  private:
    void PlayStep(const std::string& step) {
        static const std::regex form{R"((?:\+(\S+) )?(.*?)(?: (->|~) (.*))?)"};
        std::smatch parts;
        std::regex_match(step, parts, form);
        const std::string line = parts[2], expected = parts[4];
        if (parts[1].matched) now += std::chrono::milliseconds{std::lround(1000 * std::stod(parts[1]))};
        if (line.starts_with("signal ")) {
            const sim::Script script{std::regex_replace(line, std::regex{";"}, "\nsignal ")};
            sim::Signal signal = receiver.OnAir();
            for (const auto& change : script.Signal()) Change(signal, change);
            return receiver.Transmit(signal);
        }
        const std::string given = Ask(line);
        EXPECT_TRUE(parts[3] == "~" ? std::regex_match(given, std::regex{expected}) : given == expected)
            << step << given;
    }
};
