#pragma once

#include <cmath>
#include <cstdint>
#include <numbers>

namespace sim {

/// Random numbers without a state: the same key always gives the same number, so an answer depends on the seed and
/// on its place in the dialogue only.
class Random {
  public:
    explicit Random(uint64_t key) : key_(key) {}

    /// A generator of its own for a purpose or a place.
    Random At(uint64_t place) const { return Random{Mix(key_ ^ Mix(place + 1))}; }
    /// Evenly spread in 0 to 1, without the 1.
    double Uniform() const { return static_cast<double>(Mix(key_) >> 11) * 0x1p-53; }
    /// Normally spread with the variance 1 (Box-Muller).
    double Normal() const {
        return std::sqrt(-2 * std::log(1 - At(1).Uniform())) * std::cos(2 * std::numbers::pi * At(2).Uniform());
    }

  private:
    // The finaliser of the public-domain generator splitmix64.
    static uint64_t Mix(uint64_t x) {
        x += 0x9E3779B97F4A7C15u;
        x = (x ^ (x >> 30)) * 0xBF58476D1CE4E5B9u;
        x = (x ^ (x >> 27)) * 0x94D049BB133111EBu;
        return x ^ (x >> 31);
    }

    uint64_t key_;
};

}  // namespace sim
