#pragma once

#include <deque>
#include <string>

namespace sim {

/// Thrown by a command that the instrument refuses; the number is one of SCPI-99, volume 2, chapter 21.
struct ScpiError {
    int number;
};

/// The instrument's error queue: first in, first out, at most 30 entries (SCPI-99, volume 2, 21.8).
class ErrorQueue {
  public:
    static constexpr size_t kCapacity = 30;

    /// A full queue keeps its entries, the last of which turns into -350 "Queue overflow".
    void Push(int number);
    /// Takes the oldest entry out, as text: -113,"Undefined header"; an empty queue gives 0,"No error".
    std::string Pop();
    void Clear() { entries_.clear(); }
    bool Empty() const { return entries_.empty(); }

  private:
    std::deque<int> entries_;
};

}  // namespace sim
