#include "simulator/Echoes.h"

#include <algorithm>
#include <cmath>
#include <numbers>
#include <vector>

#include "simulator/OfdmParameters.h"
#include "simulator/Random.h"

namespace sim {

Echoes::Echoes(unsigned seed, double frequency) {
    const Random random = Random{seed}.At(static_cast<uint64_t>(std::round(frequency / 1e6)));
    paths_[0] = {0, 0, 0};  // the phase response is the one relative to this path
    for (size_t i = 1; i < paths_.size(); ++i) {
        // Delays and strengths as in a town: an exponential profile, 8 us long, at least 18 dB down.
        const double delay = -8 * std::log(1 - random.At(3 * i).Uniform());
        const double attenuation = 18 + 1.5 * delay + 16 * random.At(3 * i + 1).Uniform();
        paths_[i] = {attenuation, std::min(delay, 27.0), 2 * std::numbers::pi * random.At(3 * i + 2).Uniform()};
    }
    std::sort(paths_.begin(), paths_.end(), [](const Echo& a, const Echo& b) { return a.attenuation < b.attenuation; });
}

std::complex<double> Echoes::Gain(double distance) const {
    std::complex<double> sum = 0;
    for (const Echo& path : paths_) {
        sum +=
            std::polar(std::pow(10, -path.attenuation / 20), path.phase - 2 * std::numbers::pi * distance * path.delay);
    }
    return sum;
}

double Echoes::GroupDelay(double distance) const {
    constexpr double kStep = 1e-3;  // MHz
    const double turn = std::arg(Gain(distance + kStep) / Gain(distance - kStep));
    return -turn / (2 * std::numbers::pi * 2 * kStep) * 1e3;
}

Echoes::Spread Echoes::Across(double bandwidth) const {
    constexpr int kPoints = 200;
    const double half = OccupiedBandwidth(bandwidth) / 2e6;
    std::vector<double> amplitude, phase, delay;
    for (int i = 0; i <= kPoints; ++i) {
        const double distance = half * (2.0 * i / kPoints - 1);
        amplitude.push_back(20 * std::log10(std::abs(Gain(distance))));
        const double angle = std::arg(Gain(distance)) * 180 / std::numbers::pi;
        phase.push_back(phase.empty() ? angle : phase.back() + std::remainder(angle - phase.back(), 360));
        delay.push_back(GroupDelay(distance));
    }
    const auto spread = [](const std::vector<double>& values) {
        const auto [lowest, highest] = std::minmax_element(values.begin(), values.end());
        return *highest - *lowest;
    };
    return {spread(amplitude), spread(phase), spread(delay)};
}

}  // namespace sim
