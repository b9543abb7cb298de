#pragma once

#include <array>
#include <complex>

#include "simulator/SignalModel.h"

namespace sim {

struct Echo {
    double attenuation;  // dB below the main path
    double delay;        // us behind the main path
    double phase;        // rad
};

/// A multipath channel of 25 paths, the strongest first; which ones, the seed and the tuned channel say.
class Echoes {
  public:
    Echoes(unsigned seed, double frequency);

    const std::array<Echo, 25>& Paths() const { return paths_; }
    /// Complex gain at a distance from the channel's centre, in MHz.
    std::complex<double> Gain(double distance) const;
    double GroupDelay(double distance) const;  // ns

    /// Differences between the highest and the lowest value in the occupied band.
    struct Spread {
        double amplitude;   // dB
        double phase;       // degrees, without the part that a mere delay has
        double groupDelay;  // ns
    };
    Spread Across(double bandwidth) const;

  private:
    std::array<Echo, 25> paths_;
};

}  // namespace sim
