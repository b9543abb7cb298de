#include "simulator/AlarmStatistics.h"

#include <algorithm>
#include <cmath>

#include "simulator/Text.h"

namespace sim {

namespace {

std::string Duration(double time) {
    const long seconds = std::lround(std::floor(time));
    return Print("%ld:%ld:%ld", seconds / 3600, seconds / 60 % 60, seconds % 60);
}

}  // namespace

void AlarmStatistics::Add(std::chrono::duration<double> time, const Reception& r, double bitRate) {
    const double seconds = time.count();
    monitored_ += seconds;
    const bool alarms[kAlarms] = {
        !r.present || r.level < -80,
        !r.tsLocked,
        !r.locked || r.mer < 20,
        !r.locked || r.berBeforeViterbi > 1e-2,
        !r.locked || r.berAfterViterbi > 2e-4,
        !r.tsLocked || r.berAfterReedSolomon > 1e-11,
    };
    for (int i = 0; i < kAlarms; ++i) {
        if (alarms[i]) active_[i] += seconds;
    }
    if (!r.tsLocked) return;
    const double bits = seconds * bitRate;
    decodedBits_ += bits;
    corrected_[0] += bits * r.berBeforeViterbi;
    corrected_[1] += bits * r.berAfterViterbi;
    lostPackets_ += std::min(bits * r.berAfterReedSolomon, bits / (188 * 8));
}

std::string AlarmStatistics::Report() const {
    std::string report = Duration(monitored_);
    for (const double active : active_) {
        report += "," + Duration(active) + Print(",%.1f", monitored_ > 0 ? 100 * active / monitored_ : 0);
    }
    for (const double count : {corrected_[0], corrected_[1], lostPackets_}) {
        report += decodedBits_ > 0 ? Print(",%.0f", std::floor(count)) : ",---";
    }
    return report;
}

}  // namespace sim
