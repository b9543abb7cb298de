#include <algorithm>

#include "tests/simulator/Bench.h"

namespace {

TEST(Settling, EndsWithTheTimeOrWithTheSecondReading) {
    for (const std::string change : {"SENS:DVBT:MEAS PAR\n", "SENS:FREQ:CENT 474E6\n", "*RST\n", "SYST:RES\n"}) {
        Bench bench;
        bench.Value("READ:RF:LEVEL?");
        bench.Play(change + "READ:RF:LEVEL? -> ---\nREAD:DVBT:BER:BVIT? -> ---\nREAD:RF:LEVEL? ~ -.*[0-9]");
        bench.Play(change + "+0.299 READ:RF:LEVEL? -> ---\n+0.001 READ:RF:LEVEL? ~ -.*[0-9]");
    }
}

TEST(Results, ExistOnlyInTheirMeasureModes) {
    const std::pair<const char*, std::string_view> queries[] = {
        {"READ:DVBT:FREQ:OFFSET?", "NORM"},
        {"READ:DVBT:CREST:MARGIN?", "ADIS CENV CCDF"},
        {"READ:DVBT:CRES:ACQ?", "ADIS CENV CCDF"},
        {"READ:DVBT:SPECTRUM:SHO:LOW?", "SP_1 SP_2 SP_3"},
        {"READ:DVBT:MER:RMS? DB", "HIST PAR"},
        {"READ:DVBT:MER:PEAK? PCT", "PAR"},
        {"READ:DVBT:JITTER?", "PAR"},
        {"READ:DVBT:AMPL_PHAS_GD:VALUE?", "APH AGD"},
        {"READ:DVBT:IRESPONSE:PEAK?", "IR_1 IR_2 IR_3"},
    };
    Bench bench;
    for (const std::string_view mode : sim::Split(kMeasureModes, ' ')) {
        bench.Ask("SENS:DVBT:MEAS " + std::string{mode});
        EXPECT_EQ(bench.Ask("SENS:DVBT:MEAS?"), mode);
        for (const auto& [query, where] : queries) {
            EXPECT_EQ(bench.Value(query) != "---", where.find(mode) != where.npos) << mode << " " << query;
        }
    }
    bench.Play("SYST:MODE QAM\nSENS:DVBT:MEAS? -> 0\n+1 READ:RF:LEVEL? -> ---");
}

TEST(Results, FollowTheSignal) {
    // 4.47 % is 27 dB; 22.118 Mbit/s: EN 300 744, table 17.
    Bench{}.Play(R"(SENS:DVBT:MEAS PAR
+1 READ:DVBT:TS:BITRATE? = 22.1177 +-0.001
READ:DVBT:MER:RMS? DB = 27 +-1
READ:DVBT:MER:RMS? PCT = 4.47 +-0.5
READ:DVBT:MER:PEAK? PCT = 17 +-4
READ:DVBT:BER:ARS? ~ <.*
READ:DVBT:TPS:CODE:RATE? -> 2/3
SENS:DVBT:NOISE 16;NOISE:MODE ON
+1 READ:DVBT:MER:RMS? DB = 15.6 +-0.5
READ:DVBT:BER:BVIT? ~ [0-9.]+E-[123] .*
READ:DVBT:BER:BRS? ~ [0-9.]+E-[1234] .*
SENS:DVBT:NOISE 8
+1 READ:DVBT:MER:RMS? DB ~ \*.*
+1 READ:DVBT:BER:BRS? ~ >.*
READ:DVBT:BER:ARS?;:READ:DVBT:OFDM:UNLOCKED?;:READ:DVBT:MPEG:TS:LOCKED? -> ---;0;0)");
}

TEST(Results, CarryMarkersForBadLevels) {
    Bench{}.Play(R"(+1 READ:RF:LEVEL?;:READ:SIGN:RF? ~ -4.*;OK
signal level -90
+1 READ:RF:LEVEL?;:READ:SIGN:RF? -> UNDER;UND
signal level -120
+1 READ:RF:LEVEL?;:READ:SIGN:RF? -> NORF;NORF
signal level 50
+1 READ:RF:LEVEL?;:READ:SIGN:RF? -> OVER;OVER)");
}

TEST(Results, RepeatWithTheSameSeedAndDialogueOnly) {
    const auto dialogue = [](unsigned seed) {
        sim::Configuration configuration;
        configuration.seed = seed;
        Bench bench{configuration};
        std::string answers = bench.Ask("SENS:DVBT:MEAS PAR;MEAS?");
        for (int i = 0; i < 20; ++i) answers += bench.Ask("READ:DVBT:MER:RMS?;:READ:DVBT:JITTER?;:READ:RF:LEVEL?");
        return answers;
    };
    EXPECT_EQ(dialogue(1), dialogue(1));
    EXPECT_NE(dialogue(1), dialogue(2));
}

TEST(Counters, AdvanceWithEveryResult) {
    Bench bench;  // 2E7 of 1E8 bits with each
    bench.Play(R"(+1 READ:DVBT:BER:ARS? -> <5.0E-8 (2/10) | <2.5E-8 (4/10) | <1.7E-8 (6/10) | <1.2E-8 (8/10) | <1.0E-8
READ:DVBT:BER:ARS? -> <1.0E-8
SENS:DVBT:BER:RES
READ:DVBT:BER:ARS? -> <5.0E-8 (2/10)
SENS:DVBT:MEAS PAR
+1 READ:DVBT:AVERAGE:PROGRESS? -> 10 | 20
SENS:DVBT:SPEC:AVG:COUN 2;:SENS:DVBT:SPEC:AVG ON;:SENS:DVBT:MEAS SP_1
+1 READ:DVBT:SPEC:AVG:COUN? -> 1 | 2 | 2
SENS:DVBT:MEAS CCDF)");
    const double first = bench.Number("READ:DVBT:CREST:MAX?");
    for (int i = 0; i < 30; ++i) EXPECT_LE(bench.Number("READ:DVBT:CREST:CURRENT?"), 15);
    EXPECT_EQ(bench.Value("READ:DVBT:CRES:ACQ?"), "32");
    EXPECT_GT(bench.Number("READ:DVBT:CREST:MAX?"), first);
}

// The last signal is too little for 64-QAM, and enough for the lock.
TEST(Statistics, AddUpWhileAFaultLasts) {
    Bench{}.Play(R"(+3600 READ:DVBT:ALAR:STAT? ~ 1:0:0,0:0:0,0.0,0:0:0,0.0,.*
signal present off
+1230
signal present on
+70 READ:DVBT:ALAR:STAT? ~ 1:21:40(,0:20:30,25.1){6}(,[^,]*){3}
signal cn 12
CONF:DVBT:ALAR:RES
+59 READ:DVBT:ALAR:STAT? ~ 0:0:59,0:0:0,0.0(,0:0:59,100.0){5}(,---){3})");
}

TEST(Calendar, RunsOnFromWhereItIsSet) {
    Bench{}.Play(R"(SYST:DATE 28,2,28;TIME 23,59,50
SYST:DATE?;TIME? -> 2028,2,28;23,59,50
+15 SYST:DATE?;TIME? -> 2028,2,29;0,0,5
SYST:DATE 99,12,31;DATE? -> 1999,12,31)");
}

TEST(Input, HasTheImpedancesOfItsOption) {
    Bench{}.Play("INP:ATT:IMP?\nINP:ATT:MODE LSD;MODE? -> LSD");
    // -47 dBm into 75 ohm, then into 50 ohm, in dBuV; the filter is not fitted.
    Bench{With("TARN-B3")}.Play(R"(UNIT:LEVEL:POWER DBUV
+1 READ:RF:LEVEL? = 61.75 +-0.3
INP:ATT:IMP O50
+1 READ:RF:LEVEL? = 59.99 +-0.3
INP:ATT:IMP?;REC NORM;REC?;MODE? -> O50;NORM;IGN
SENSE:DVBT:FILTER:SAW MHZ7;SAW? -> MHZ8
SYST:ERR? -> -241,"Hardware missing")");
}

TEST(Input, AttenuatorFollowsTheLevelUntilItIsSet) {
    Bench{}.Play(R"(INP:ATT?;ATT:AUTO? -> 10;1
signal level -20
INP:ATT? -> 35
INP:ATT 25;ATT?;ATT:AUTO? -> 25;0
INP:ATT:AUTO ON;:INP:ATT? -> 35)");
}

TEST(Options, AreShownAsMaskBoardsAndList) {
    constexpr const char* query = "READ:INFO:DATA?;:SYSTEM:SERVICE:GET:BOARD:INFO? -> ";
    for (const auto& [list, answer] : {std::pair{"TARN-B1,tarn-b3", R"(33;"0x01 CPU 5.1;0x40 TUNER 3.2")"},
                                       {"EXTREF,EXTMEM", R"(33619968;"0x01 CPU 5.1;0x40 TUNER 3.2")"},
                                       {"TARN-B11,TARN-B13", R"(0;"0x01 CPU 5.1;0x40 TUNER 3.2;0x83 SAW 6.0 8.0")"}}) {
        Bench{With(list)}.Play(std::string{query} + answer);
    }
    EXPECT_THROW(sim::InstalledOptions{"TARN-B99"}, std::invalid_argument);
}

TEST(Responses, ComeFromTheEchoes) {
    Bench bench;
    bench.Play("SENS:DVBT:MEAS IR_1\nREAD:DVBT:IRESPONSE:PEAK? ~ \"0.0,0.00(,[^,]*){48}");  // there at once
    bench.Ask("SENS:DVBT:MEAS APH");
    const std::string phase = bench.Value("READ:DVBT:AMPL_PHAS_GD:VALUE?");
    bench.Ask("SENS:DVBT:MEAS AGD");
    const std::string delay = bench.Value("READ:DVBT:AMPL_PHAS_GD:VALUE?");
    EXPECT_EQ(phase.substr(0, phase.find(',')), delay.substr(0, delay.find(',')));
    EXPECT_NE(phase, delay);
}

TEST(Manual, ParametersAreAutomaticUnlessSetByHand) {
    Bench{}.Play(R"(SENSE:DVBT:FFT:MODE?;:SENSE:DVBT:GUAR?;ORDER?;CODE:RATE:HP? -> AUTO;AUTO;64;2,3
SENSE:DVBT:CODE:RATE:MODE MAN
SENSE:DVBT:FFT:MODE?;:SENSE:DVBT:GUAR? -> F8K;GI8
SENSE:DVBT:CODE:RATE:HP 5,6;HP? -> 5,6
SENSE:DVBT:FFT:MODE F2K
SENSE:DVBT:CARRIER:START_STOP?;:READ:DVBT:OFDM:UNLOCKED? -> 0,1704;1
+1 READ:DVBT:TPS:FFT:MODE? -> ---)");
}

}  // namespace
