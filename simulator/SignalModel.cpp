#include "simulator/SignalModel.h"

#include <algorithm>
#include <cmath>
#include <numbers>

#include "simulator/OfdmParameters.h"
#include "simulator/Random.h"

namespace sim {

namespace {

double Power(double db) { return std::pow(10, db / 10); }
double Db(double power) { return 10 * std::log10(power); }

struct Channel {
    bool exists;
    double centre, bandwidth;  // Hz, MHz
    int number;
};

Channel NearestChannel(double frequency) {
    const auto nearest = [frequency](double first, double raster, int count, int number) -> Channel {
        const double index = std::round((frequency - first) / raster);
        const bool exists = index >= 0 && index < count;
        const int n = exists ? static_cast<int>(index) : 0;
        return {exists, first + n * raster, raster / 1e6, number + n};
    };
    const Channel uhf = nearest(474e6, 8e6, 49, 21);
    return uhf.exists ? uhf : nearest(177.5e6, 7e6, 8, 5);
}

// What arrives at the chosen port.
void Arrive(Reception& r, const Signal& signal, const Settings& settings, unsigned seed, double& cn) {
    r.present = signal.present;
    r.level = signal.level;
    r.offset = signal.offset;
    cn = signal.cn;
    if (settings.port != kPortRf) return;  // the cable from a converter: one signal at its fixed frequency
    const Channel channel = NearestChannel(settings.frequency);
    r.present = r.present && channel.exists;
    r.bandwidth = channel.bandwidth;
    r.offset = channel.centre + signal.offset - settings.frequency;
    if (channel.number != 21) {
        const Random random = Random{seed}.At(static_cast<uint64_t>(channel.number));
        r.level -= 20 * random.At(1).Uniform();
        cn -= 5 * random.At(2).Uniform();
    }
}

// The attenuator in use and the noise and distortion of the receiver's own input, relative to the signal.
double FrontEndNoise(Reception& r, const Settings& settings) {
    constexpr double kNoiseFigure = 7, kThermal = -174, kStrategy[] = {-5, 0, 5, 10};
    const double wanted = std::round((r.level + 57 + kStrategy[settings.attenuatorMode]) / 5) * 5;
    r.attenuator = settings.attenuatorAuto ? static_cast<int>(std::clamp(wanted, 0.0, 55.0)) : settings.attenuator;
    double loss = settings.port == kPortRf ? r.attenuator : 0;
    if (settings.highAdjacentPower) loss += 6;
    r.mixerLevel = r.level - loss;
    const double floor = kThermal + Db(OccupiedBandwidth(r.bandwidth)) + kNoiseFigure;
    // Third-order products grow by 2 dB relative to the signal for every dB at the mixer.
    const double distortion = Power(-60 + 2 * (r.mixerLevel + 40));
    return Power(floor - r.mixerLevel) + distortion;
}

}  // namespace

Reception Receive(const Signal& signal, const Settings& settings, unsigned seed) {
    constexpr double kImplementationFloor = 39;  // dB
    constexpr double kPullIn[] = {20e3, 70e3, 150e3};
    constexpr double kQefLimit = 2e-2;  // behind the Viterbi decoder: beyond it the packets' sync bytes are lost
    Reception r;
    double cn = 0;
    Arrive(r, signal, settings, seed, cn);
    double noise = Power(-cn) + FrontEndNoise(r, settings);
    if (settings.noise) noise += Power(-settings.noiseCn);
    const double channelBandwidth = 6 + settings.channelBandwidth;
    if (settings.saw != kSawOff && settings.saw + 5 < r.bandwidth) noise += Power(-12);  // cuts the outer carriers
    const double inBandNoise = noise;
    noise += Power(-kImplementationFloor);
    r.snr = -Db(noise);

    // TR 101 290, 9.18: all impairments add to the error vectors whose power MER compares with the signal's.
    const double radians = signal.phaseJitter * std::numbers::pi / 180;
    const double skew = signal.iqPhaseError * std::numbers::pi / 180, imbalance = signal.iqImbalance / 100;
    r.mer = -Db(noise + radians * radians + (skew * skew + imbalance * imbalance) / 4);
    const double gain = Power(r.mer);
    // The noise on the continual pilots reads as jitter as well.
    r.phaseJitter = std::sqrt(radians * radians + noise / 40) * 180 / std::numbers::pi;
    r.shoulders = -Db(Power(-signal.shoulders) + inBandNoise / 8);
    r.carrierSuppression = -Db(Power(-signal.carrierSuppression) + noise / 100);

    r.ofdm = settings.codeRateMode == kRateManual ? settings.ofdm : signal.ofdm;
    r.lowPriority = settings.mpegOutput == 1;
    r.present = r.present && r.level > -97;
    r.under = r.present && r.level < -85;
    r.over = r.present && r.mixerLevel > -10;
    const bool sameSymbols = r.ofdm.fft == signal.ofdm.fft && r.ofdm.guard == signal.ofdm.guard &&
                             r.ofdm.constellation == signal.ofdm.constellation;
    r.locked = r.present && sameSymbols && channelBandwidth == r.bandwidth && r.snr > 2 &&
               std::abs(r.offset) < kPullIn[settings.loopBandwidth] && settings.operatingMode == kDvbt;
    if (!r.locked) return r;

    const bool sameCode = r.ofdm == signal.ofdm;
    const int rate = CodeRate(r.ofdm, r.lowPriority);
    r.berBeforeViterbi = BerBeforeViterbi(r.ofdm.constellation, gain);
    r.berAfterViterbi = sameCode ? BerAfterViterbi(r.ofdm.constellation, rate, r.mer) : 0.5;
    r.berAfterReedSolomon = BerAfterReedSolomon(r.berAfterViterbi);
    r.tsLocked = r.berAfterViterbi < kQefLimit;
    return r;
}

double ConvertLevel(double dbm, int unit, double impedance) {
    const double volts = std::sqrt(Power(dbm - 30) * impedance);
    switch (unit) {
        case kDbmv:
            return 20 * std::log10(volts * 1e3);
        case kDbuv:
            return 20 * std::log10(volts * 1e6);
        case kMv:
            return volts * 1e3;
        case kDbpw:
            return dbm + 90;
        case kDbuw:
            return dbm + 30;
        default:
            return dbm;
    }
}

}  // namespace sim
