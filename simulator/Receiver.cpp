#include "simulator/Receiver.h"

#include <algorithm>
#include <cmath>

#include "simulator/OfdmParameters.h"
#include "simulator/Random.h"
#include "simulator/Text.h"

namespace sim {

Receiver::Receiver(Configuration theConfiguration, Clock clock)
    : configuration(std::move(theConfiguration)), clock_(std::move(clock)), accountedUntil_(clock_()) {
    Restart();
}

void Receiver::Transmit(const Signal& signal) {
    PassTime();
    signal_ = signal;
}

void Receiver::Restart() {
    settledAt_ = clock_() + configuration.settle;
    settlingAnswers_ = 2;
    startFrame_ = berFrame_ = frame_;
}

void Receiver::Reset() {
    settings = {};
    statistics.Clear();
    capturedScreen.clear();
    Restart();
}

bool Receiver::Settling() {
    if (settlingAnswers_ == 0) return false;
    if (clock_() >= settledAt_) {
        settlingAnswers_ = 0;
        return false;
    }
    --settlingAnswers_;
    return true;
}

bool Receiver::Measuring(const std::vector<MeasureMode>& modes) const {
    return settings.operatingMode == kDvbt &&
           (modes.size() == 0 || std::find(modes.begin(), modes.end(), settings.measureMode) != modes.end());
}

std::string Receiver::Result(const std::vector<MeasureMode>& modes, Needs needs,
                             const std::function<std::string(const Reception&)>& measure) {
    if (!Measuring(modes) || Settling()) return kNoValue;
    const Reception reception = Receive();
    if (needs == Needs::Lock && !reception.locked) return kNoValue;
    if (needs == Needs::TsLock && !reception.tsLocked) return kNoValue;
    ++frame_;
    return measure(reception);
}

double Receiver::Noise(int place) const {
    return Random{configuration.seed}.At(static_cast<uint64_t>(frame_)).At(static_cast<uint64_t>(place)).Normal();
}

std::string Receiver::CountedBer(double ratio) const {
    constexpr int kLengths[] = {1, 1, 10, 100, 1000};  // in units of 1E7 bits; external: as long as the shortest
    constexpr double kUnit = 1e7;
    constexpr int kUnitsPerFrame = 2;
    const int length = kLengths[settings.berIntegration];
    const int counted = std::min(length, kUnitsPerFrame * (frame_ - berFrame_));
    const std::string remark = counted < length ? Print(" (%d/%d)", counted, length) : "";
    const double bits = kUnit * std::max(counted, 1);
    const auto text = [](double value) {
        std::string number = Print("%.1E", value);  // the exponent without its leading zero: 1.0E-8
        if (const size_t zero = number.find("E-0"); zero != number.npos) number.erase(zero + 2, 1);
        return number;
    };
    if (ratio * bits < 1) return "<" + text(1 / bits) + remark;
    const double spread = std::clamp(Noise(20) / std::sqrt(ratio * bits), -0.5, 0.5);
    return text(std::min(ratio * (1 + spread), 0.5)) + remark;
}

void Receiver::PassTime() {
    const TimePoint now = clock_();
    const Reception reception = Receive();
    if (now > accountedUntil_) {
        statistics.Add(now - accountedUntil_, reception,
                       BitRate(reception.ofdm, reception.lowPriority, reception.bandwidth));
    }
    accountedUntil_ = now;
}

}  // namespace sim
