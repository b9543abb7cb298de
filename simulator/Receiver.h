#pragma once

#include <chrono>
#include <functional>
#include <string>
#include <vector>

#include "simulator/AlarmStatistics.h"
#include "simulator/ErrorQueue.h"
#include "simulator/InstalledOptions.h"
#include "simulator/Settings.h"
#include "simulator/SignalModel.h"

namespace sim {

using TimePoint = std::chrono::system_clock::time_point;
using Clock = std::function<TimePoint()>;

/// What is fixed when the instrument is made.
struct Configuration {
    std::string manufacturer = "VANTERRA", model = "TARN", serialNumber = "100042", firmware = "5.10";
    InstalledOptions options{"TARN-B1,TARN-B11,TARN-B12,TARN-B13"};
    unsigned seed = 1;
    std::chrono::milliseconds settle{300};
};

inline constexpr const char* kNoValue = "---";

/// The instrument behind its commands: settings, signal, results and their state.
///
/// A result that was given counts as one frame of measuring (a second of signal). Averages and counters advance with
/// the frames and the noise of a result depends on the frame alone, so that a dialogue always gives the same answers.
class Receiver {
  public:
    Receiver(Configuration configuration, Clock clock);

    const Configuration configuration;
    Settings settings;
    ErrorQueue errors;
    AlarmStatistics statistics;
    std::string capturedScreen;  // PCX; empty before the first capture

    const Signal& OnAir() const { return signal_; }
    /// Changes the signal; what has been measured so far stays measured.
    void Transmit(const Signal& signal);

    /// Everything has to be acquired anew: results read "---" until the settling time is over or two of them have
    /// been asked for, and all averages start again.
    void Restart();
    /// The power-on state.
    void Reset();

    Reception Receive() const { return sim::Receive(signal_, settings, configuration.seed); }
    double Impedance() const { return settings.impedance == 0 ? 50 : 75; }

    enum class Needs { Nothing, Lock, TsLock };
    /// Gives the answer of measure, or "---" while there is none: outside of the modes (an empty list stands for all),
    /// while settling, and without the lock it needs.
    std::string Result(const std::vector<MeasureMode>& modes, Needs needs,
                       const std::function<std::string(const Reception&)>& measure);
    /// Whether results of these modes exist now.
    bool Measuring(const std::vector<MeasureMode>& modes) const;

    /// Results given since the last restart.
    int Frames() const { return frame_ - startFrame_; }
    /// Starts the bit error counters, not the other averages.
    void ResetBer() { berFrame_ = frame_; }
    /// Normally distributed noise of the current frame; each quantity has a place of its own.
    double Noise(int place) const;
    /// A bit error ratio as it is counted: "4.1E-7 (4/10)" while counting, "<1.0E-8" when there were no errors.
    std::string CountedBer(double ratio) const;

    TimePoint Now() const { return clock_() + calendarOffset_; }
    void SetNow(TimePoint now) { calendarOffset_ = now - clock_(); }
    /// Adds the time since the last call to the statistics; called before anything changes.
    void PassTime();

  private:
    bool Settling();

    Clock clock_;
    Signal signal_;
    TimePoint::duration calendarOffset_{};
    TimePoint accountedUntil_, settledAt_;
    int settlingAnswers_ = 0;
    int frame_ = 0, startFrame_ = 0, berFrame_ = 0;
};

}  // namespace sim
