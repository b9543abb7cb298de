#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>

#include "tests/simulator/Bench.h"

namespace {

using testing::HasSubstr;
using testing::MatchesRegex;
using testing::StartsWith;

TEST(Settling, EndsWithTheTimeOrWithTheSecondReading) {
    for (const char* change : {"SENS:DVBT:MEAS PAR", "SENS:FREQ:CENT 474E6", "*RST", "SYST:RES"}) {
        Bench bench;
        bench.Value("READ:RF:LEVEL?");
        bench.Ask(change);
        EXPECT_EQ(bench.Ask("READ:RF:LEVEL?"), "---") << change;
        EXPECT_EQ(bench.Ask("READ:DVBT:BER:BVIT?"), "---") << change;
        EXPECT_NE(bench.Ask("READ:RF:LEVEL?"), "---") << change;
        bench.Ask(change);
        bench.now += std::chrono::milliseconds{299};
        EXPECT_EQ(bench.Ask("READ:RF:LEVEL?"), "---") << change;
        bench.now += std::chrono::milliseconds{1};
        EXPECT_NE(bench.Ask("READ:RF:LEVEL?"), "---") << change;
    }
}

TEST(Results, ExistOnlyInTheirMeasureModes) {
    const std::string modes[] = {"NORM", "CDI",  "MDB",  "MPCT", "INT",  "IQ",   "APH",  "AGD",  "POL", "SP_1",
                                 "SP_2", "SP_3", "ADIS", "CCDF", "IR_1", "IR_2", "IR_3", "HIST", "PAR", "CENV"};
    const std::pair<const char*, std::string> queries[] = {
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
    for (const std::string& mode : modes) {
        bench.Ask("SENS:DVBT:MEAS " + mode);
        EXPECT_EQ(bench.Ask("SENS:DVBT:MEAS?"), mode);
        for (const auto& [query, where] : queries) {
            EXPECT_EQ(bench.Value(query) != "---", where.find(mode) != where.npos) << mode << " " << query;
        }
    }
    bench.Ask("SYST:MODE QAM");
    EXPECT_EQ(bench.Ask("SENS:DVBT:MEAS?"), "0");
    EXPECT_EQ(bench.Value("READ:RF:LEVEL?"), "---");
}

TEST(Results, FollowTheSignal) {
    Bench bench;
    bench.Ask("SENS:DVBT:MEAS PAR");
    EXPECT_NEAR(bench.Number("READ:DVBT:TS:BITRATE?"), 22.1177, 0.001);
    const double mer = bench.Number("READ:DVBT:MER:RMS? DB");
    EXPECT_NEAR(mer, 27, 1);
    EXPECT_NEAR(bench.Number("READ:DVBT:MER:RMS? PCT"), 100 * std::pow(10, -mer / 20), 0.1);
    EXPECT_GT(bench.Number("READ:DVBT:MER:PEAK? PCT"), 2 * bench.Number("READ:DVBT:MER:RMS? PCT"));
    EXPECT_THAT(bench.Value("READ:DVBT:BER:ARS?"), StartsWith("<"));
    EXPECT_EQ(bench.Value("READ:DVBT:TPS:CODE:RATE?"), "2/3");

    bench.Ask("SENS:DVBT:NOISE 16;NOISE:MODE ON");
    EXPECT_NEAR(bench.Number("READ:DVBT:MER:RMS? DB"), 15.6, 0.5);
    EXPECT_GT(bench.Number("READ:DVBT:BER:BVIT?"), 1e-3);
    EXPECT_GT(bench.Number("READ:DVBT:BER:BRS?"), 1e-4);
    bench.Ask("SENS:DVBT:NOISE 8");
    EXPECT_THAT(bench.Value("READ:DVBT:MER:RMS? DB"), StartsWith("*"));
    EXPECT_THAT(bench.Value("READ:DVBT:BER:BRS?"), StartsWith(">"));
    EXPECT_EQ(bench.Ask("READ:DVBT:BER:ARS?;:READ:DVBT:OFDM:UNLOCKED?;:READ:DVBT:MPEG:TS:LOCKED?"), "---;0;0");
}

TEST(Results, CarryMarkersForBadLevels) {
    struct Case {
        double level;
        const char *shown, *state;
    };
    for (const Case& c :
         {Case{-47, "-4.*", "OK"}, Case{-90, "UNDER", "UND"}, Case{-120, "NORF", "NORF"}, Case{50, "OVER", "OVER"}}) {
        Bench bench;
        bench.Signal([&](sim::Signal& signal) { signal.level = c.level; });
        EXPECT_THAT(bench.Value("READ:RF:LEVEL?"), MatchesRegex(c.shown));
        EXPECT_EQ(bench.Ask("READ:SIGN:RF?"), c.state);
    }
}

TEST(Results, RepeatWithTheSameSeedAndDialogueOnly) {
    const auto dialogue = [](unsigned seed) {
        sim::Configuration configuration;
        configuration.seed = seed;
        Bench bench{configuration};
        std::string answers = bench.Ask("SENS:DVBT:MEAS PAR;MEAS?");
        for (int i = 0; i < 20; ++i)
            answers += " " + bench.Ask("READ:DVBT:MER:RMS?;:READ:DVBT:JITTER?;:READ:RF:LEVEL?");
        return answers;
    };
    EXPECT_EQ(dialogue(1), dialogue(1));
    EXPECT_NE(dialogue(1), dialogue(2));
}

TEST(Counters, AdvanceWithEveryResult) {
    Bench bench;
    EXPECT_EQ(bench.Value("READ:DVBT:BER:ARS?"), "<5.0E-8 (2/10)");  // 2E7 of 1E8 bits
    for (const char* answer : {"<2.5E-8 (4/10)", "<1.7E-8 (6/10)", "<1.2E-8 (8/10)", "<1.0E-8", "<1.0E-8"}) {
        EXPECT_EQ(bench.Value("READ:DVBT:BER:ARS?"), answer);
    }
    bench.Ask("SENS:DVBT:BER:RES");
    EXPECT_EQ(bench.Value("READ:DVBT:BER:ARS?"), "<5.0E-8 (2/10)");

    bench.Ask("SENS:DVBT:MEAS PAR");
    EXPECT_EQ(bench.Value("READ:DVBT:AVERAGE:PROGRESS?"), "10");
    EXPECT_EQ(bench.Value("READ:DVBT:AVERAGE:PROGRESS?"), "20");
    bench.Ask("SENS:DVBT:SPEC:AVG:COUN 2;:SENS:DVBT:SPEC:AVG ON;:SENS:DVBT:MEAS SP_1");
    for (const char* count : {"1", "2", "2"}) EXPECT_EQ(bench.Value("READ:DVBT:SPEC:AVG:COUN?"), count);
    bench.Ask("SENS:DVBT:MEAS CCDF");
    const double first = bench.Number("READ:DVBT:CREST:MAX?");
    for (int i = 0; i < 30; ++i) EXPECT_LE(bench.Number("READ:DVBT:CREST:CURRENT?"), 15);
    EXPECT_EQ(bench.Value("READ:DVBT:CRES:ACQ?"), "32");
    EXPECT_GT(bench.Number("READ:DVBT:CREST:MAX?"), first);
}

TEST(Statistics, AddUpWhileAFaultLasts) {
    Bench bench;
    bench.now += std::chrono::seconds{3600};
    EXPECT_THAT(bench.Ask("READ:DVBT:ALAR:STAT?"), StartsWith("1:0:0,0:0:0,0.0,0:0:0,0.0,"));
    bench.Signal([](sim::Signal& signal) { signal.present = false; });
    bench.now += std::chrono::seconds{1230};
    bench.Signal([](sim::Signal& signal) { signal.present = true; });
    bench.now += std::chrono::seconds{70};
    const std::string report = bench.Ask("READ:DVBT:ALAR:STAT?");
    EXPECT_EQ(std::count(report.begin(), report.end(), ','), 15);
    EXPECT_THAT(report,
                StartsWith("1:21:40,0:20:30,25.1,0:20:30,25.1,0:20:30,25.1,0:20:30,25.1,0:20:30,25.1,0:20:30,25.1,"));
    bench.Signal([](sim::Signal& signal) { signal.cn = 12; });  // too little for 64-QAM, enough for the lock
    bench.Ask("CONF:DVBT:ALAR:RES");
    bench.now += std::chrono::seconds{59};
    EXPECT_EQ(bench.Ask("READ:DVBT:ALAR:STAT?"),
              "0:0:59,0:0:0,0.0,0:0:59,100.0,0:0:59,100.0,0:0:59,100.0,0:0:59,100.0,0:0:59,100.0,---,---,---");
}

TEST(Calendar, RunsOnFromWhereItIsSet) {
    Bench bench;
    bench.Ask("SYST:DATE 28,2,28;TIME 23,59,50");
    EXPECT_EQ(bench.Ask("SYST:DATE?;TIME?"), "2028,2,28;23,59,50");
    bench.now += std::chrono::seconds{15};
    EXPECT_EQ(bench.Ask("SYST:DATE?;TIME?"), "2028,2,29;0,0,5");
    bench.Ask("SYST:DATE 99,12,31");
    EXPECT_EQ(bench.Ask("SYST:DATE?"), "1999,12,31");
}

TEST(Input, HasTheImpedancesOfItsOption) {
    Bench plain;
    EXPECT_EQ(plain.Ask("INP:ATT:IMP?"), "(none)");
    EXPECT_EQ(plain.Ask("INP:ATT:MODE LSD;MODE?"), "LSD");
    sim::Configuration configuration;
    configuration.options = sim::InstalledOptions{"TARN-B3"};
    Bench bench{configuration};
    bench.Ask("UNIT:LEVEL:POWER DBUV");
    EXPECT_NEAR(bench.Number("READ:RF:LEVEL?"), -47 + 108.75, 0.3);
    bench.Ask("INP:ATT:IMP O50");
    EXPECT_NEAR(bench.Number("READ:RF:LEVEL?"), -47 + 106.99, 0.3);
    EXPECT_EQ(bench.Ask("INP:ATT:IMP?;REC NORM;REC?;MODE?"), "O50;NORM;IGN");
    EXPECT_EQ(bench.Ask("SENSE:DVBT:FILTER:SAW MHZ7;SAW?"), "MHZ8");  // not fitted
    EXPECT_EQ(bench.Error(), "-241,\"Hardware missing\"");
}

TEST(Input, AttenuatorFollowsTheLevelUntilItIsSet) {
    Bench bench;
    EXPECT_EQ(bench.Ask("INP:ATT?;ATT:AUTO?"), "10;1");
    bench.Signal([](sim::Signal& signal) { signal.level = -20; });
    EXPECT_EQ(bench.Ask("INP:ATT?"), "35");
    EXPECT_EQ(bench.Ask("INP:ATT 25;ATT?;ATT:AUTO?"), "25;0");
    EXPECT_EQ(bench.Ask("INP:ATT:AUTO ON;:INP:ATT?"), "35");
}

TEST(Options, AreShownAsMaskBoardsAndList) {
    struct Case {
        const char *list, *mask, *boards;
    };
    for (const Case& c : {Case{"TARN-B1,tarn-b3", "33", "\"0x01 CPU 5.1;0x40 TUNER 3.2\""},
                          Case{"EXTREF,EXTMEM", "33619968", "\"0x01 CPU 5.1;0x40 TUNER 3.2\""},
                          Case{"TARN-B11,TARN-B13", "0", "\"0x01 CPU 5.1;0x40 TUNER 3.2;0x83 SAW 6.0 8.0\""}}) {
        sim::Configuration configuration;
        configuration.options = sim::InstalledOptions{c.list};
        Bench bench{configuration};
        EXPECT_EQ(bench.Ask("READ:INFO:DATA?"), c.mask);
        EXPECT_EQ(bench.Ask("SYSTEM:SERVICE:GET:BOARD:INFO?"), c.boards);
    }
    EXPECT_THROW(sim::InstalledOptions{"TARN-B99"}, std::invalid_argument);
}

TEST(Responses, ComeFromTheEchoes) {
    Bench bench;
    bench.Ask("SENS:DVBT:MEAS IR_1");
    const std::string peaks = bench.Ask("READ:DVBT:IRESPONSE:PEAK?");  // there at once
    EXPECT_THAT(peaks, StartsWith("\"0.0,0.00,"));
    EXPECT_EQ(std::count(peaks.begin(), peaks.end(), ','), 49);
    bench.Ask("SENS:DVBT:MEAS APH");
    const std::string phase = bench.Value("READ:DVBT:AMPL_PHAS_GD:VALUE?");
    bench.Ask("SENS:DVBT:MEAS AGD");
    const std::string delay = bench.Value("READ:DVBT:AMPL_PHAS_GD:VALUE?");
    EXPECT_EQ(phase.substr(0, phase.find(',')), delay.substr(0, delay.find(',')));
    EXPECT_NE(phase, delay);
}

TEST(Manual, ParametersAreAutomaticUnlessSetByHand) {
    Bench bench;
    EXPECT_EQ(bench.Ask("SENSE:DVBT:FFT:MODE?;:SENSE:DVBT:GUAR?;ORDER?;CODE:RATE:HP?"), "AUTO;AUTO;64;2,3");
    bench.Ask("SENSE:DVBT:CODE:RATE:MODE MAN");
    EXPECT_EQ(bench.Ask("SENSE:DVBT:FFT:MODE?;:SENSE:DVBT:GUAR?"), "F8K;GI8");
    EXPECT_EQ(bench.Ask("SENSE:DVBT:CODE:RATE:HP 5,6;HP?"), "5,6");
    bench.Ask("SENSE:DVBT:FFT:MODE F2K");
    EXPECT_EQ(bench.Ask("SENSE:DVBT:CARRIER:START_STOP?;:READ:DVBT:OFDM:UNLOCKED?"), "0,1704;1");
    EXPECT_EQ(bench.Value("READ:DVBT:TPS:FFT:MODE?"), "---");
}

}  // namespace
