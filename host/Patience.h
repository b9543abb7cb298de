#pragma once

#include <algorithm>
#include <chrono>
#include <thread>

#include "host/Transports.h"

namespace host {

/// Thrown out of a wait when the user has asked to stop.
struct Aborted {};

/// How long one operation may wait, however many waits it is made of.
class Patience {
  public:
    using Clock = std::chrono::steady_clock;
    using Milliseconds = std::chrono::milliseconds;

    /// The services must outlive it.
    Patience(double seconds, const TransportServices& services) : end_(start_ + Time(seconds)), services_(&services) {}

    /// For a step of the operation with a limit of its own.
    Patience AtMost(double seconds) const {
        Patience step(seconds, *services_);
        step.end_ = std::min(step.end_, end_);
        return step;
    }

    /// Begins the time anew.
    void Renew(double seconds) { end_ = Clock::now() + Time(seconds); }

    /// How long the next single wait may last: at most 50 ms, 0 when the time is over. Throws Aborted when the user
    /// has asked to stop; an answer that is there within the first 50 ms is still taken.
    Milliseconds Slice() {
        const auto now = Clock::now();
        if (now >= nextQuestion_) {
            nextQuestion_ = now + QuestionInterval;
            if (services_->AbortRequested && services_->AbortRequested()) throw Aborted{};
        }
        return std::chrono::ceil<Milliseconds>(std::max(std::min(end_, nextQuestion_) - now, Clock::duration::zero()));
    }

    /// Waits for nothing in particular, at most that long. Throws Aborted as Slice does.
    void Pause(Milliseconds most) {
        const auto time = std::min(Slice(), most);
        if (services_->Wait) return services_->Wait(time);
        std::this_thread::sleep_for(time);
    }

    bool Over() const { return Clock::now() >= end_; }
    double Remaining() const { return std::chrono::duration<double>(end_ - Clock::now()).count(); }
    double Waited() const { return std::chrono::duration<double>(Clock::now() - start_).count(); }

    static constexpr double Longest = 1e6;  // seconds; keeps the clock arithmetic far from its limits

  private:
    static constexpr Milliseconds QuestionInterval{50};

    static Clock::duration Time(double seconds) {
        return std::chrono::duration_cast<Clock::duration>(std::chrono::duration<double>(std::min(seconds, Longest)));
    }

    Clock::time_point start_ = Clock::now();
    Clock::time_point end_;
    Clock::time_point nextQuestion_ = start_ + QuestionInterval;
    const TransportServices* services_;
};

}  // namespace host
