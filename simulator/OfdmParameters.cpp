#include "simulator/OfdmParameters.h"

#include <algorithm>
#include <cmath>

namespace sim {

namespace {

constexpr double kRates[] = {1.0 / 2, 2.0 / 3, 3.0 / 4, 5.0 / 6, 7.0 / 8};
constexpr double kGuards[] = {1.0 / 4, 1.0 / 8, 1.0 / 16, 1.0 / 32};

}  // namespace

int BitsPerCarrier(const Ofdm& ofdm, bool lowPriority) {
    const int all = 2 * (ofdm.constellation + 1);
    if (ofdm.alpha == 0) return all;
    return lowPriority ? all - 2 : 2;
}

int CodeRate(const Ofdm& ofdm, bool lowPriority) { return ofdm.alpha != 0 && lowPriority ? ofdm.rateLp : ofdm.rateHp; }

double SymbolDuration(int fft, double bandwidth) { return (fft == 0 ? 224e-6 : 896e-6) * 8.0 / bandwidth; }

double OccupiedBandwidth(double bandwidth) { return 6817 / SymbolDuration(1, bandwidth); }

double BitRate(const Ofdm& ofdm, bool lowPriority, double bandwidth) {
    const double dataCarriers = ofdm.fft == 0 ? 1512 : 6048;
    const double duration = SymbolDuration(ofdm.fft, bandwidth) * (1 + kGuards[ofdm.guard]);
    const double bits = dataCarriers * BitsPerCarrier(ofdm, lowPriority) * kRates[CodeRate(ofdm, lowPriority)];
    return bits / duration * 188 / 204;
}

double BerBeforeViterbi(int constellation, double signalToNoise) {
    constexpr double kWeight[] = {1.0 / 2, 3.0 / 8, 7.0 / 24}, kDistance[] = {2, 10, 42};
    return kWeight[constellation] * std::erfc(std::sqrt(signalToNoise / kDistance[constellation]));
}

double BerAfterViterbi(int constellation, int codeRate, double mer) {
    constexpr double kRequired[3][5] = {
        {3.1, 4.9, 5.9, 6.9, 7.7}, {8.8, 11.1, 12.5, 13.5, 13.9}, {14.4, 16.5, 18.0, 19.3, 20.1}};
    constexpr double kDecadesPerDb = 1.6;
    const double exponent = std::log10(2e-4) - kDecadesPerDb * (mer - kRequired[constellation][codeRate]);
    return std::pow(10, std::min(exponent, std::log10(0.5)));
}

double BerAfterReedSolomon(double berBefore) {
    constexpr int kLength = 204, kCorrected = 8;
    const double byteError = -std::expm1(8 * std::log1p(-berBefore));
    if (byteError <= 0) return 0;
    double wrongBytes = 0;
    for (int i = kCorrected + 1; i <= kLength; ++i) {
        const double ways = std::lgamma(kLength + 1) - std::lgamma(i + 1) - std::lgamma(kLength - i + 1);
        const double chance = ways + i * std::log(byteError) + (kLength - i) * std::log1p(-byteError);
        wrongBytes += std::exp(chance) * i / kLength;
    }
    return wrongBytes * berBefore / byteError;
}

}  // namespace sim
