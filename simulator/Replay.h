#pragma once

#include <chrono>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "simulator/Script.h"

namespace sim {

/// Answers as the traces of a message log tell them; what is replayed how is told in README.md.
class Replay {
  public:
    /// Takes a trace in behind those before it. Throws std::invalid_argument with the line's number for a line that is
    /// not one of a trace.
    void Add(std::string_view trace);
    bool Empty() const { return histories_.empty(); }

    /// Adds to the treatment of a line what the traces say about it, this time; what the treatment has already stays.
    /// Delays are only added when the recorded durations are to be kept.
    void Apply(std::string_view line, bool timing, Treatment& treatment);

  private:
    enum class Outcome { Silence, Answer, Block };

    struct Exchange {
        Outcome outcome = Outcome::Silence;
        std::string answer{};
        std::chrono::milliseconds duration{0};
    };

    /// What became of one text, each time that it was sent.
    struct History {
        std::vector<Exchange> exchanges;
        size_t next = 0;
    };

    void ReadLine(std::string_view line);

    std::unordered_map<std::string, History> histories_;  // by text, as Normalise gives it
    std::string open_;  // the text that was sent last, until its answer has been read; else empty
};

}  // namespace sim
