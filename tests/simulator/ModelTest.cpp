#include "simulator/Echoes.h"
#include "simulator/OfdmParameters.h"
#include "simulator/SignalModel.h"
#include "tests/simulator/Bench.h"

namespace {

using namespace sim;

// EN 300 744, table 17 (8 MHz channels), and the same formula for 7 MHz.
TEST(OfdmParameters, GiveTheBitRatesOfTheStandard) {
    struct Case {
        int constellation, rate, guard;
        double bandwidth, megabits;
    };
    for (const Case& c : {Case{0, 0, 0, 8, 4.976}, Case{1, 2, 2, 8, 17.564}, Case{2, 1, 1, 8, 22.118},
                          Case{2, 4, 3, 8, 31.668}, Case{2, 1, 1, 7, 19.353}}) {
        for (const int fft : {0, 1}) {
            const Ofdm ofdm{fft, c.guard, c.constellation, 0, c.rate, 0};
            EXPECT_NEAR(BitRate(ofdm, false, c.bandwidth) / 1e6, c.megabits, 0.0006);
        }
    }
    // Hierarchical 64-QAM: two of six bits at 1/2, four at 3/4.
    const Ofdm hierarchical{1, 3, 2, 1, 0, 2};
    EXPECT_NEAR(BitRate(hierarchical, false, 8) / 1e6, 6.032, 0.0006);
    EXPECT_NEAR(BitRate(hierarchical, true, 8) / 1e6, 18.096, 0.0006);
}

TEST(OfdmParameters, GiveTheErrorRatiosOfTheLiterature) {
    EXPECT_NEAR(BerBeforeViterbi(0, 9.5495), 1e-3, 1e-4);  // QPSK: 1E-3 at 9.8 dB of Es/N0
    EXPECT_NEAR(BerAfterViterbi(2, 1, 16.5), 2e-4, 1e-6);  // the definition of the required C/N
    EXPECT_LT(BerAfterReedSolomon(2e-4), 1e-11);           // "quasi error free"
    EXPECT_NEAR(BerAfterReedSolomon(0.5), 0.5, 0.01);      // nothing is corrected any more
    EXPECT_EQ(BerAfterReedSolomon(0), 0);
}

// Less C/N can only make things worse, whichever noise it is.
TEST(SignalModel, DegradesMonotonically) {
    for (const std::string noise : {"channel", "generator", "level"}) {
        std::vector<double> last;
        Reception r;
        for (int step = 0; step < 50; ++step) {
            Signal signal;
            Settings settings;
            settings.attenuatorAuto = false;  // its steps of 5 dB make a weaker signal better at times
            if (noise == "channel") signal.cn = 50 - step;
            if (noise == "generator") settings.noise = true, settings.noiseCn = 56 - step;
            if (noise == "level") signal.level = -47 - step;
            r = Receive(signal, settings, 1);
            EXPECT_LE(r.mer, r.snr);
            const std::vector<double> goodness{r.mer,       r.snr,          -r.berBeforeViterbi, -r.berAfterViterbi,
                                               r.shoulders, -r.phaseJitter, 1.0 * r.tsLocked,    1.0 * r.locked};
            if (step > 0) {
                EXPECT_THAT(goodness, testing::Pointwise(testing::Le(), last)) << noise << step;
            }
            last = goodness;
        }
        EXPECT_FALSE(r.tsLocked) << noise;
    }
}

TEST(SignalModel, LocksOnlyToWhatItIsSetTo) {
    const struct {
        const char *signal, *settings, *locked;  // OFDM unlocked; transport stream locked
    } cases[] = {
        {"present on", "", "0;1"},
        {"present off", "", "1;0"},
        {"cn 35", "SENS:FREQ:CENT 658E6", "0;1"},  // another channel
        {"cn 35", "SENS:FREQ:CENT 478E6", "1;0"},  // between channels
        {"cn 35", "SENS:FREQ:CENT 1.2E9", "1;0"},  // out of the bands
        {"offset 100000", "", "1;0"},              // far off
        {"offset 100000", "SENS:DVBT:LOOP:BWID:FREQ HI", "0;1"},
        {"cn 35", "SENS:DVBT:CHAN:BWID MHZ7", "1;0"},
        {"cn 35", "SENS:DVBT:CHAN:BWID MHZ7;:SENS:FREQ:CENT 198.5E6", "0;1"},  // band III
        {"cn 35", "SENS:DVBT:FILT:SAW MHZ6", "0;0"},                           // cuts the channel
        {"cn 35", "SENS:DVBT:CODE:RATE:MODE MAN", "0;1"},
        {"cn 35", "SENS:DVBT:CODE:RATE:MODE MAN;:SENS:DVBT:FFT:MODE F2K", "1;0"},
        {"cn 35", "SENS:DVBT:CODE:RATE:MODE MAN;:SENS:DVBT:CODE:RATE:HP 1,2", "0;0"},
        {"cn 35", "SYST:MODE QAM", "1;0"},
        {"cn 35", "INP:ATT 55", "1;0"},
    };
    for (const auto& [signal, settings, locked] : cases) {
        Bench bench{With("TARN-B11,TARN-B12,TARN-B13")};
        bench.Signal(signal);
        bench.Play(settings);
        EXPECT_EQ(bench.Ask("READ:DVBT:OFDM:UNLOCKED?;:READ:DVBT:MPEG:TS:LOCKED?"), locked) << signal << settings;
        EXPECT_EQ(bench.Error(), kNoError);
    }
}

TEST(SignalModel, ConvertsLevels) {  // 0 dBm into 75 ohm is 273.86 mV, into 50 ohm 223.61 mV
    struct Case {
        int unit;
        double impedance, level;
    };
    for (const Case& c : {Case{kDbm, 75, 0}, Case{kMv, 75, 273.86}, Case{kMv, 50, 223.61}, Case{kDbmv, 75, 48.75},
                          Case{kDbuv, 75, 108.75}, Case{kDbuv, 50, 106.99}, Case{kDbpw, 75, 90}, Case{kDbuw, 75, 30}}) {
        EXPECT_NEAR(ConvertLevel(0, c.unit, c.impedance), c.level, 0.006) << c.unit;
    }
}

TEST(Echoes, AreThoseOfTheSeedAndOfNoOther) {
    const Echoes one{1, 474e6}, same{1, 474e6}, other{2, 474e6}, elsewhere{1, 482e6};
    EXPECT_EQ(one.Paths()[0].attenuation, 0);
    EXPECT_EQ(one.Paths()[0].delay, 0);
    EXPECT_EQ(one.Paths()[3].delay, same.Paths()[3].delay);
    EXPECT_NE(one.Paths()[3].delay, other.Paths()[3].delay);
    EXPECT_NE(one.Paths()[3].delay, elsewhere.Paths()[3].delay);
    for (size_t i = 1; i < 25; ++i) EXPECT_GE(one.Paths()[i].attenuation, one.Paths()[i - 1].attenuation);
    // In the middle of the channel the gain is the sum of the paths as they are.
    std::complex<double> sum = 0;
    for (const Echo& path : one.Paths()) sum += std::polar(std::pow(10, -path.attenuation / 20), path.phase);
    EXPECT_NEAR(std::abs(one.Gain(0) - sum), 0, 1e-12);
}

}  // namespace
