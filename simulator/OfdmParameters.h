#pragma once

#include <string_view>

#include "simulator/Settings.h"

// The transmission parameters of EN 300 744.
namespace sim {

inline constexpr std::string_view kFftNames[] = {"2K", "8K"};
inline constexpr std::string_view kGuardNames[] = {"1/4", "1/8", "1/16", "1/32"};
inline constexpr std::string_view kConstellationNames[] = {"4", "16", "64"};
inline constexpr std::string_view kAlphaNames[] = {"1 NH", "1 H", "2 H", "4 H"};
inline constexpr std::string_view kRateNames[] = {"1/2", "2/3", "3/4", "5/6", "7/8"};

/// The highest carrier number.
constexpr int LastCarrier(int fft) { return fft == 0 ? 1704 : 6816; }
/// Bits on a carrier of the stream at the output: in a hierarchical signal the high priority stream has two.
int BitsPerCarrier(const Ofdm& ofdm, bool lowPriority);
int CodeRate(const Ofdm& ofdm, bool lowPriority);
/// Useful bit rate of the transport stream in bit/s (EN 300 744, 4.7). Bandwidth in MHz.
double BitRate(const Ofdm& ofdm, bool lowPriority, double bandwidth);
/// Bandwidth that the carriers occupy, in Hz: 7.61 MHz in an 8 MHz channel.
double OccupiedBandwidth(double bandwidth);
/// Duration of the useful part of a symbol in seconds: 896 us for 8K in an 8 MHz channel.
double SymbolDuration(int fft, double bandwidth);

/// Bit error ratio of a constellation before any correction, Gray mapped, in white noise. The ratio is linear.
double BerBeforeViterbi(int constellation, double signalToNoise);
/// Bit error ratio behind the Viterbi decoder, through the C/N that EN 300 744, table A.1, gives for 2E-4 in a
/// Gaussian channel, with the slope that such a decoder has there. MER in dB.
double BerAfterViterbi(int constellation, int codeRate, double mer);
/// Bit error ratio behind the RS(204,188) decoder, which corrects eight bytes (EN 300 744, 4.3.2).
double BerAfterReedSolomon(double berBefore);

}  // namespace sim
