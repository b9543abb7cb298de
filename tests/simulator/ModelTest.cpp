#include <gtest/gtest.h>

#include "simulator/Echoes.h"
#include "simulator/OfdmParameters.h"
#include "simulator/SignalModel.h"

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
    for (const char* noise : {"channel", "generator", "level"}) {
        Reception last;
        for (int step = 0; step < 50; ++step) {
            Signal signal;
            Settings settings;
            settings.attenuatorAuto = false;  // its steps of 5 dB make a weaker signal better at times
            if (noise[0] == 'c') signal.cn = 50 - step;
            if (noise[0] == 'g') settings.noise = true, settings.noiseCn = 56 - step;
            if (noise[0] == 'l') signal.level = -47 - step;
            const Reception r = Receive(signal, settings, 1);
            if (step > 0) {
                EXPECT_LE(r.mer, last.mer) << noise << step;
                EXPECT_LE(r.snr, last.snr) << noise << step;
                EXPECT_GE(r.berBeforeViterbi, last.berBeforeViterbi) << noise << step;
                EXPECT_GE(r.berAfterViterbi, last.berAfterViterbi) << noise << step;
                EXPECT_LE(r.shoulders, last.shoulders) << noise << step;
                EXPECT_GE(r.phaseJitter, last.phaseJitter) << noise << step;
                EXPECT_LE(r.tsLocked, last.tsLocked) << noise << step;
                EXPECT_LE(r.locked, last.locked) << noise << step;
            }
            EXPECT_LE(r.mer, r.snr);
            last = r;
        }
        EXPECT_FALSE(last.tsLocked) << noise;
    }
}

TEST(SignalModel, LocksOnlyToWhatItIsSetTo) {
    struct Case {
        const char* what;
        void (*change)(Signal&, Settings&);
        bool locked, tsLocked;
    };
    for (const Case& c : {
             Case{"as it is", [](Signal&, Settings&) {}, true, true},
             Case{"no signal", [](Signal&s, Settings&) { s.present = false; }, false, false},
             Case{"another channel", [](Signal&, Settings&s) { s.frequency = 658e6; }, true, true},
             Case{"between channels", [](Signal&, Settings&s) { s.frequency = 478e6; }, false, false},
             Case{"out of the bands", [](Signal&, Settings&s) { s.frequency = 1.2e9; }, false, false},
             Case{"far off", [](Signal&s, Settings&) { s.offset = 100e3; }, false, false},
             Case{"far off, wide loop", [](Signal&s, Settings&t) { s.offset = 100e3, t.loopBandwidth = 2; }, true,
                  true},
             Case{"narrow channel", [](Signal&, Settings&s) { s.channelBandwidth = 1; }, false, false},
             Case{"band III", [](Signal&, Settings&s) { s.channelBandwidth = 1, s.frequency = 198.5e6; }, true, true},
             Case{"narrow filter", [](Signal&, Settings&s) { s.saw = 2; }, true, false},
             Case{"manual, right", [](Signal&, Settings&s) { s.codeRateMode = kRateManual; }, true, true},
             Case{"manual, 2K", [](Signal&, Settings&s) { s.codeRateMode = kRateManual, s.ofdm.fft = 0; }, false,
                  false},
             Case{"manual, rate", [](Signal&, Settings&s) { s.codeRateMode = kRateManual, s.ofdm.rateHp = 0; }, true,
                  false},
             Case{"DVB-C", [](Signal&, Settings&s) { s.operatingMode = 3; }, false, false},
             Case{"too much attenuation", [](Signal&, Settings&s) { s.attenuatorAuto = false, s.attenuator = 55; },
                  false, false},
         }) {
        Signal signal;
        Settings settings;
        c.change(signal, settings);
        const Reception r = Receive(signal, settings, 1);
        EXPECT_EQ(r.locked, c.locked) << c.what;
        EXPECT_EQ(r.tsLocked, c.tsLocked) << c.what;
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
