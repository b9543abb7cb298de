#include "tests/core/Bench.h"

namespace tarn4x::test {
namespace {

const Exchange Manual{"SENSE:DVBT:CODE:RATE:MODE?", "MAN"}, Automatic{"SENSE:DVBT:CODE:RATE:MODE?", "AUTO"};

struct Parameter {
    const char* Name;
    const char* Header;
    bool NeedsManual;
    int (*Get)(clsTarn4x&);
    void (*Put)(clsTarn4x&, int);
    struct Pair {
        int Number;
        const char* Token;
    };
    std::vector<Pair> Written;  // values without a word included
    std::vector<Pair> Read;
    std::vector<int> OutOfRange;
};

#define MEMBER(name, type)                                                     \
#name, [](clsTarn4x & d) -> int { return d.get_##name(); },                \
                                                             [](clsTarn4x & d, \
                                                                int value) { d.put_##name(static_cast<type>(value)); }

Parameter Make(const char* header, bool manual, const char* name, int (*get)(clsTarn4x&), void (*put)(clsTarn4x&, int),
               std::vector<Parameter::Pair> written, std::vector<Parameter::Pair> read, std::vector<int> outside) {
    return {name, header, manual, get, put, std::move(written), std::move(read), std::move(outside)};
}

const Parameter Parameters[] = {
    Make("SENSE:DVBT:ALPHA", true, MEMBER(StatusOfdmAlpha, TarnStatusAlphas),
         {{0, "NH1"}, {1, "H1"}, {2, "H2"}, {3, "H4"}}, {{0, "NH1"}, {1, "H1"}, {2, "H2"}, {3, "H4"}, {0, "xH4"}},
         {-1, 4}),
    Make("SENSE:DVBT:CODE:RATE:MODE", false, MEMBER(StatusOfdmCodeRateMode, TarnStatusOfdmCodeRateModes),
         {{0, "AUTO"}, {1, "MAN"}, {2, "TPS"}}, {{0, "AUTO"}, {1, "MAN"}, {2, "TPS"}, {0, "MANUAL"}}, {-1, 3}),
    Make("SENSE:DVBT:FFT:MODE", true, MEMBER(StatusOfdmFftMode, TarnStatusFftModes), {{0, "F2K"}, {1, "F8K"}},
         {{-1, "AUTO"}, {0, "F2K"}, {1, "F8K"}}, {-1, 2}),
    Make("SENSE:DVBT:GuardInterval", true, MEMBER(StatusOfdmGuardInterval, TarnStatusGuardIntervals),
         {{4, "GI4"}, {8, "GI8"}, {16, "GI16"}, {32, "GI32"}, {5, ""}, {20, ""}},
         {{-1, "AUTO"}, {4, "GI4"}, {8, "GI8"}, {16, "GI16"}, {32, "GI32"}}, {3, 33, 64, -1}),
    Make("SENSE:DVBT:ORDER", true, MEMBER(StatusOfdmOrderOfQam, TarnStatusOrderOfQams),
         {{4, "4"}, {16, "16"}, {64, "64"}, {20, ""}}, {{4, "4"}, {16, "16"}, {64, "64"}, {0, "164"}}, {3, 65, -1}),
    Make("SENSE:DVBT:MPEG:DATA:OUTPUT", false, MEMBER(StatusMpegDataOutput, TarnStatusHierarchicalModes),
         {{0, "LO"}, {1, "HI"}}, {{0, "LO"}, {1, "HI"}}, {-1, 2}),
    Make("SENSE:DVBT:OPT", false, MEMBER(SpecFuncSystOptims, TarnSpecFuncSystOptims),
         {{0, "MOB"}, {1, "FAST"}, {2, "HI"}, {3, "SLOW"}}, {{0, "MOB"}, {1, "FAST"}, {2, "HI"}, {3, "SLOW"}}, {-1, 4}),
    Make("INPUT:DVBT:HIGH:ADJ:CHANNEL:POWER", false, MEMBER(InputAttenHighAdjChanPower, TarnSwitchStates),
         {{0, "OFF"}, {1, "ON"}}, {{0, "OFF"}, {0, "0"}, {1, "ON"}, {1, "1"}}, {-1, 2}),
};

TEST(OfdmParameters, MapTheirWordsBothWays) {
    for (const auto& p : Parameters) {
        for (const auto& [number, token] : p.Written) {
            Bench bench;
            if (p.NeedsManual) bench.Expect({Manual});
            bench.Expect({std::string(p.Header) + ' ' + token});
            p.Put(bench.driver, number);
        }
        for (const auto& [number, token] : p.Read) {
            Bench bench;
            if (p.NeedsManual) bench.Expect({Manual});
            bench.Expect({{std::string(p.Header) + '?', token}});
            EXPECT_EQ(p.Get(bench.driver), number) << p.Name << ' ' << token;
        }
    }
}

TEST(OfdmParameters, RefuseValuesOutOfRange) {
    for (const auto& p : Parameters) {
        for (const int value : p.OutOfRange) {
            Bench bench;
            if (p.NeedsManual) bench.Expect({Manual});
            EXPECT_RAISES(p.Put(bench.driver, value), 0x8004017C, std::string("clsTarn4x.") + p.Name,
                          std::string(p.Name) + " value out of range");
        }
    }
}

TEST(OfdmParameters, NeedTheManualCodeRateModeUnlessTheUserAsksToStop) {
    for (const auto& p : Parameters) {
        if (!p.NeedsManual) continue;
        Bench bench{{Automatic, {"SENSE:DVBT:CODE:RATE:MODE?", "TPS"}}};
        const auto source = std::string("clsTarn4x.") + p.Name;
        EXPECT_RAISES(p.Get(bench.driver), 0x800407E9, source, "Code rate mode does not support operation");
        EXPECT_RAISES(p.Put(bench.driver, p.Written[0].Number), 0x800407E9, source,
                      "Code rate mode does not support operation");
        bench.world->Abort = true;
        bench.Expect({Automatic, {std::string(p.Header) + '?', p.Read.back().Token}});
        EXPECT_EQ(p.Get(bench.driver), 0) << p.Name;
    }
}

TEST(CodeRate, IsWrittenAndReadForEachPriority) {
    const struct {
        int Rate;
        const char* Token;
        int ReadBack;
    } cases[] = {{0, "1,2", 0}, {1, "2,3", 1}, {2, "3,4", 2}, {3, "5,6", 0}, {4, "7,8", 4}};
    for (const auto& c : cases) {
        Bench bench{{Manual,
                     {std::string("SENSE:DVBT:CODE:RATE:LP ") + c.Token},
                     Manual,
                     {"SENSE:DVBT:CODE:RATE:HP?", c.Token}}};
        bench.driver.put_StatusOfdmCodeRate(tarnLow, static_cast<TarnStatusCodeRates>(c.Rate));
        EXPECT_EQ(bench.driver.get_StatusOfdmCodeRate(tarnHigh), c.ReadBack) << c.Token;
    }
    Bench bench{{Manual,
                 {"SENSE:DVBT:CODE:RATE:HP 1,2"},
                 Manual,
                 {"SENSE:DVBT:CODE:RATE:LP?", "H5,6"},
                 Manual,
                 Manual,
                 Manual}};
    bench.driver.put_StatusOfdmCodeRate(tarnHigh, tarn1_2);
    EXPECT_EQ(bench.driver.get_StatusOfdmCodeRate(tarnLow), tarn5_6);
    const auto priority = static_cast<TarnStatusHierarchicalModes>(2);
    EXPECT_RAISES(bench.driver.get_StatusOfdmCodeRate(priority), 0x8004017C, "clsTarn4x.StatusOfdmCodeRate",
                  "udtPriority value out of range");
    EXPECT_RAISES(bench.driver.put_StatusOfdmCodeRate(priority, tarnCrUnknown), 0x8004017C,
                  "clsTarn4x.StatusOfdmCodeRate", "udtPriority value out of range");
    EXPECT_RAISES(bench.driver.put_StatusOfdmCodeRate(tarnLow, tarnCrUnknown), 0x8004017C,
                  "clsTarn4x.StatusOfdmCodeRate", "StatusOfdmCodeRate value out of range");
}

TEST(MeasuredParameters, AreUnknownForAnyOtherAnswer) {
    const struct {
        int (*Get)(clsTarn4x&);
        const char* Query;
        std::vector<Parameter::Pair> Read;
    } cases[] = {
        {[](clsTarn4x& d) -> int { return d.get_MeasureFftMode(); },
         "READ:DVBT:FFT:MODE?",
         {{0, "2K"}, {1, "8K"}, {-1, "28K"}}},
        {[](clsTarn4x& d) -> int { return d.get_MeasureFftModeTps(); },
         "READ:DVBT:TPS:FFT:MODE?",
         {{0, "2K"}, {1, "8K"}, {-1, "8K2K"}}},
        {[](clsTarn4x& d) -> int { return d.get_MeasureGuardIntervalTps(); },
         "READ:DVBT:TPS:GUARD:INTERVAL?",
         {{4, "1/4"}, {8, "1/8"}, {16, "1/16"}, {32, "1/32"}, {-1, "1/45"}}},
        {[](clsTarn4x& d) -> int { return d.get_MeasureOrderOfQamTps(); },
         "READ:DVBT:TPS:ORDER?",
         {{4, "4"}, {16, "16"}, {64, "64"}, {-1, "46"}}},
        {[](clsTarn4x& d) -> int { return d.get_MeasureAlphaTps(); },
         "READ:DVBT:TPS:ALPHA?",
         {{0, "1 NH"}, {1, "1 H"}, {2, "2 H"}, {3, "4 H"}, {-1, "1 H2 H"}}},
        {[](clsTarn4x& d) -> int { return d.get_MeasureCodeRateTps(); },
         "READ:DVBT:TPS:CODE:RATE?",
         {{0, "1/2"}, {1, "2/3"}, {2, "3/4"}, {3, "5/6"}, {4, "7/8"}, {-1, "1/23"}}},
        {[](clsTarn4x& d) -> int { return d.get_MeasureCodeRate(); },
         "READ:DVBT:CODE:RATE?",
         {{0, "1/2"}, {4, "7/8"}, {-1, "7/89"}}},
    };
    for (const auto& c : cases) {
        for (const auto& [number, token] : c.Read) {
            Bench bench{{{c.Query, token}}};
            EXPECT_EQ(c.Get(bench.driver), number) << c.Query << token;
        }
        Bench aborted{{{c.Query, c.Read[0].Token}}};
        aborted.world->Abort = true;
        EXPECT_EQ(c.Get(aborted.driver), -1) << c.Query;
    }
}

TEST(MeasureOfdmAverage, RoundsHalvesToEven) {
    Bench bench;
    bench.KnowMode(tarnPAR);
    const auto query = "READ:DVBT:AVERAGE:PROGRESS?";
    bench.Expect({{query, "2.5"}, {query, "3.5"}, {query, "40000"}});
    EXPECT_EQ(bench.driver.get_MeasureOfdmAverage(), 2);
    EXPECT_EQ(bench.driver.get_MeasureOfdmAverage(), 4);
    EXPECT_RAISES(bench.driver.get_MeasureOfdmAverage(), 0x800407D4, "clsTarn4x.MeasureOfdmAverage",
                  "Get MeasureOfdmAverage failed");
    Bench wrong;
    wrong.KnowMode(tarnHIST);
    EXPECT_RAISES(wrong.driver.get_MeasureOfdmAverage(), 0x800407E0, "clsTarn4x.MeasureOfdmAverage",
                  "Wrong measurement mode selected");
}

}  // namespace
}  // namespace tarn4x::test
