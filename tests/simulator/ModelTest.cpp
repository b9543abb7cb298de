#include "simulator/OfdmParameters.h"
#include "simulator/SignalModel.h"
#include "tests/simulator/Bench.h"

namespace {

// EN 300 744, table 17 (8 MHz channels), the same formula for 7 MHz, and the hierarchical 64-QAM with two of its six
// bits at 1/2 and four at 3/4.
TEST(OfdmParameters, GiveTheBitRatesOfTheStandard) {
    const auto megabits = [](const sim::Ofdm& ofdm, double bandwidth = 8, bool lowPriority = false) {
        return std::round(BitRate(ofdm, lowPriority, bandwidth) / 1e3) / 1e3;
    };
    EXPECT_EQ(megabits({.fft = 0, .guard = 0, .constellation = 0, .rateHp = 0}), 4.976);
    EXPECT_EQ(megabits({.fft = 1, .guard = 2, .constellation = 1, .rateHp = 2}), 17.564);
    EXPECT_EQ(megabits({.fft = 1, .guard = 3, .constellation = 2, .rateHp = 4}), 31.668);
    EXPECT_EQ(megabits({.fft = 1, .guard = 1, .constellation = 2, .rateHp = 1}, 7), 19.353);
    const sim::Ofdm hierarchical{.fft = 1, .guard = 3, .constellation = 2, .alpha = 1, .rateHp = 0, .rateLp = 2};
    EXPECT_EQ(megabits(hierarchical), 6.032);
    EXPECT_EQ(megabits(hierarchical, 8, true), 18.096);
}

TEST(OfdmParameters, GiveTheErrorRatiosOfTheLiterature) {
    const double required[] = {9.8, 16.5, 22.5};  // dB of Es/N0 for 1E-3: QPSK, 16-QAM, 64-QAM
    for (const int order : {0, 1, 2}) {
        EXPECT_NEAR(sim::BerBeforeViterbi(order, std::pow(10, required[order] / 10)), 1e-3, 1e-4);
    }
    EXPECT_NEAR(sim::BerAfterViterbi(2, 1, 16.5), 2e-4, 1e-6);  // the definition of the required C/N
    EXPECT_NEAR(sim::BerAfterReedSolomon(2e-4), 5e-12, 5e-12);  // "quasi error free" is below 1E-11
    EXPECT_NEAR(sim::BerAfterReedSolomon(0.5), 0.5, 0.01);      // nothing is corrected any more
}

// Whether the carriers are unlocked and the transport stream is locked: on another channel, between two, in band III,
// through a filter that cuts the channel, and with parameters that are not the signal's.
TEST(SignalModel, LocksOnlyToWhatItIsSetTo) {
    constexpr std::string_view cases =
        "signal present off -> 1;0|signal offset 100000 -> 1;0|SYST:MODE QAM -> 1;0|INP:ATT 55 -> 1;0|"
        "SENS:FREQ:CENT 658E6 -> 0;1|SENS:FREQ:CENT 478E6 -> 1;0|SENS:DVBT:CHAN:BWID MHZ7 -> 1;0|"
        "SENS:DVBT:CHAN:BWID MHZ7;:SENS:FREQ:CENT 198.5E6 -> 0;1|SENS:DVBT:FILT:SAW MHZ6 -> 0;0|"
        "SENS:DVBT:CODE:RATE:MODE MAN;:SENS:DVBT:FFT:MODE F2K -> 1;0|SENS:DVBT:CODE:RATE:MODE MAN;HP 1,2 -> 0;0";
    for (const std::string_view row : sim::Split(cases, '|')) {
        const std::string step{row.substr(0, row.find(" ->"))}, locked{row.substr(row.find(" ->"))};
        Bench{}.Play("signal cn 35\n" + step + "\nREAD:DVBT:OFDM:UNL?;:READ:DVBT:MPEG:TS:LOCK?" + locked);
    }
}

}  // namespace
