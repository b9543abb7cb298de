#pragma once

#include <atomic>
#include <chrono>

#include "platform/Framework.h"

namespace host {

/// Application services of a process without a test framework. Every member may be called from any thread.
class Application : public platform::Application {
  public:
    /// Value of AppState between SuspendState and ResumeState.
    static constexpr std::int32_t Suspended = 4;

    bool AbortRequested() override { return abortRequested_; }
    void SetAbortRequested(bool requested) { abortRequested_ = requested; }

    /// Waits that many seconds times DelayScale. Raises 5 for a negative time.
    void Delay(float seconds) override;

    double DelayScale() const { return delayScale_; }
    /// Raises 5 for a negative factor.
    void SetDelayScale(double scale);

    std::int32_t AppState() override { return state_; }
    void SetAppState(std::int32_t state) { state_ = state; }
    /// Running becomes Suspended; any other state stays.
    void SuspendState() override;
    /// Suspended becomes Running again; any other state stays.
    void ResumeState() override;

  protected:
    /// One wait of a Delay on the caller's thread, at most 50 ms. May return early. A program with windows handles
    /// their messages here.
    virtual void Wait(std::chrono::milliseconds time);

  private:
    std::atomic<bool> abortRequested_ = false;
    std::atomic<double> delayScale_ = 1.0;
    std::atomic<std::int32_t> state_ = 0;
};

}  // namespace host
