#pragma once

#include <chrono>
#include <string>

#include "simulator/SignalModel.h"

namespace sim {

/// Adds up for how long each alarm condition has lasted since the last clearing, and what the decoders corrected.
class AlarmStatistics {
  public:
    void Clear() { *this = {}; }
    /// The signal has been received like this for so long.
    void Add(std::chrono::duration<double> time, const Reception& reception, double bitRate);
    /// 16 fields: the monitoring time, then time and share in per cent of each of six alarms (level, synchronisation,
    /// MER, BER before Viterbi, BER before RS, MPEG data error), then what was corrected before Viterbi and RS and
    /// the packets lost behind RS; "---" while nothing was decoded.
    std::string Report() const;

  private:
    static constexpr int kAlarms = 6;

    double monitored_ = 0;  // s
    double active_[kAlarms] = {};
    double decodedBits_ = 0, corrected_[2] = {}, lostPackets_ = 0;
};

}  // namespace sim
