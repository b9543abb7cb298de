#pragma once

#include <boost/asio/io_context.hpp>
#include <boost/asio/steady_timer.hpp>
#include <mutex>

#include "simulator/Simulator.h"

namespace sim {

/// The receiver as its partners meet it: a script or a trace may have it answer otherwise than usual.
class Instrument {
  public:
    Instrument(boost::asio::io_context& io, Options theOptions)
        : options(std::move(theOptions)),
          receiver_(options.configuration, [] { return std::chrono::system_clock::now(); }),
          ready_(io) {
        Transmit(options.script.Signal());
    }

    Options options;

    /// How to deal with a line. This uses up a rule of the script and a recorded answer.
    Treatment Treat(const std::string& line) {
        const std::lock_guard lock{mutex_};
        Treatment treatment = options.script.Treat(line);
        options.replay.Apply(line, options.replayTiming, treatment);
        return treatment;
    }

    std::optional<std::string> Execute(const std::string& line, Face face, const Treatment& treatment) {
        const std::lock_guard lock{mutex_};
        Transmit(treatment.signal);
        for (const int error : treatment.errors) receiver_.errors.Push(error);
        if (treatment.deaf) return std::nullopt;
        std::optional<std::string> answer = interpreter_.Execute(line, face);
        if (treatment.answer) answer = treatment.answer;
        if (treatment.raw) answer = treatment.raw;
        if (treatment.silence) answer.reset();
        return answer;
    }

    /// Calls the action as soon as the instrument is not busy.
    void WhenReady(std::function<void()> action) {
        if (std::chrono::steady_clock::now() >= ready_.expiry()) return action();
        ready_.async_wait([this, action = std::move(action)](boost::system::error_code) { WhenReady(action); });
    }
    /// Calls the action after a time in which the instrument does nothing.
    void AfterBeingBusy(std::chrono::milliseconds time, std::function<void()> action) {
        if (time.count() == 0) return action();
        ready_.expires_after(time);
        ready_.async_wait([action = std::move(action)](boost::system::error_code) { action(); });
    }

  private:
    void Transmit(const std::vector<SignalChange>& changes) {
        if (changes.empty()) return;
        Signal signal = receiver_.OnAir();
        for (const SignalChange& change : changes) Change(signal, change);
        receiver_.Transmit(signal);
    }

    std::mutex mutex_;  // of the options, the receiver and the interpreter
    Receiver receiver_;
    Interpreter interpreter_{receiver_};
    boost::asio::steady_timer ready_;  // expires when the instrument is no longer busy
};

}  // namespace sim
