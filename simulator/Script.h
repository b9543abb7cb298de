#pragma once

#include <chrono>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "simulator/SignalModel.h"

namespace sim {

enum class Close { No, Before, In, After };

/// A change of the signal: "cn 12".
struct SignalChange {
    std::string name, value;
};

/// How the instrument deals with one line, where a script wants it otherwise than usual.
struct Treatment {
    std::optional<std::string> answer;      // instead of the instrument's own
    std::optional<std::string> raw;         // bytes instead of answer and terminator
    std::optional<std::string> terminator;  // instead of the usual one
    bool silence = false;                   // the line is executed, the answer kept back
    bool deaf = false;                      // from now on nothing on this link is heard
    bool reset = false;                     // the connection is not closed but reset
    Close close = Close::No;
    std::chrono::milliseconds delay{0}, gap{20};
    std::vector<size_t> pieces;         // sizes; the last one repeats
    std::optional<size_t> truncate;     // bytes of the answer that are sent, terminator included
    std::chrono::milliseconds busy{0};  // before the line is executed
    std::vector<int> errors;            // put into the error queue before the line is executed
    std::vector<SignalChange> signal;   // before the line is executed
};

/// Scripted answers and faults; the format is told in README.md.
class Script {
  public:
    Script() = default;
    /// Throws std::invalid_argument with the line's number for a text that it does not understand.
    explicit Script(std::string_view text);

    /// How to treat a line that came in; it uses a rule up.
    Treatment Treat(std::string_view line);
    /// Changes that hold from the start.
    const std::vector<SignalChange>& Signal() const { return signal_; }
    const std::string& Terminator() const { return terminator_; }
    bool RefusesConnections() const { return refuse_; }

  private:
    static constexpr int kAlways = -1;

    struct Rule {
        std::string pattern;  // as Normalise gives it; empty: every line
        int skip = 0, times = 1;
        Treatment treatment;
    };

    void ReadLine(std::string_view line);
    Rule ReadRule(std::string_view text);

    std::vector<Rule> rules_;
    std::vector<SignalChange> signal_;
    std::string terminator_ = "\n";
    bool refuse_ = false;
};

/// Makes a change: level, cn, offset, jitter, bitrate, iq-phase, iq-imbalance, suppression and shoulders take numbers,
/// present and reference take on or off, fft, guard, qam, alpha, rate and lp-rate a value such as 8k, 1/4, 64, 1, 2/3.
/// Throws std::invalid_argument when there is no such condition or value.
void Change(Signal& signal, const SignalChange& change);

}  // namespace sim
