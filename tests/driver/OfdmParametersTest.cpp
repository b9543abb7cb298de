#include "tests/driver/Bench.h"

using namespace tarn4x::test;

const std::string Manual = "SENSE:DVBT:CODE:RATE:MODE? = MAN", Automatic = "SENSE:DVBT:CODE:RATE:MODE? = AUTO";

struct Parameter {
    Property Member;
    bool NeedsManual;
    std::string Header;
    const char* Words;        // the same written and read
    const char* OnlyWritten;  // numbers without a word included
    const char* OnlyRead;
    std::vector<int> OutOfRange;
};

// clang-format off
const Parameter Parameters[] = {
    {PROPERTY(StatusOfdmAlpha), true, "SENSE:DVBT:ALPHA", "0=NH1 | 1=H1 | 2=H2 | 3=H4", "", "0=xH4", {-1, 4}},
    {PROPERTY(StatusOfdmCodeRateMode), false, "SENSE:DVBT:CODE:RATE:MODE", "0=AUTO | 1=MAN | 2=TPS", "", "0=MANUAL", {-1, 3}},
    {PROPERTY(StatusOfdmFftMode), true, "SENSE:DVBT:FFT:MODE", "0=F2K | 1=F8K", "", "-1=AUTO", {-1, 2}},
    {PROPERTY(StatusOfdmGuardInterval), true, "SENSE:DVBT:GuardInterval", "4=GI4 | 8=GI8 | 16=GI16 | 32=GI32", "5= | 20=", "-1=AUTO", {3, 33, 64, -1}},
    {PROPERTY(StatusOfdmOrderOfQam), true, "SENSE:DVBT:ORDER", "4=4 | 16=16 | 64=64", "20=", "0=164", {3, 65, -1}},
    {PROPERTY(StatusMpegDataOutput), false, "SENSE:DVBT:MPEG:DATA:OUTPUT", "0=LO | 1=HI", "", "", {-1, 2}},
    {PROPERTY(SpecFuncSystOptims), false, "SENSE:DVBT:OPT", "0=MOB | 1=FAST | 2=HI | 3=SLOW", "", "", {-1, 4}},
    {PROPERTY(InputAttenHighAdjChanPower), false, "INPUT:DVBT:HIGH:ADJ:CHANNEL:POWER", "0=OFF | 1=ON", "", "0=0 | 1=1", {-1, 2}},
};
// clang-format on

TEST(OfdmParameters, MapTheirWordsBothWaysAndRefuseValuesOutOfRange) {
    for (const auto& p : Parameters) {
        const auto check = [&](const std::string& sent, auto call, const std::string& expected) {
            Bench bench((p.NeedsManual ? Manual + " | " : "") + sent);
            EXPECT_EQ(Outcome([&] { return call(bench.driver); }), expected) << p.Member.Name << ' ' << sent;
        };
        for (const auto list : {p.Words, p.OnlyWritten}) {
            for (const auto& [number, word] : Words(list)) {
                check(
                    p.Header + ' ' + word, [&, n = number](clsTarn4x& d) { p.Member.Put(d, n); }, Done);
            }
        }
        for (const auto list : {p.Words, p.OnlyRead}) {
            for (const auto& [number, word] : Words(list)) check(p.Header + "? = " + word, p.Member.Get, Text(number));
        }
        for (const int number : p.OutOfRange) {
            const std::string name = p.Member.Name;
            Bench bench(p.NeedsManual ? Manual : "");
            EXPECT_OUTCOME(p.Member.Put(bench.driver, number), "+380 ." + name + ": " + name + " value out of range");
        }
    }
}

TEST(OfdmParameters, NeedTheManualCodeRateModeUnlessTheUserAsksToStop) {
    for (const auto& p : Parameters) {
        if (!p.NeedsManual) continue;
        const auto refused = std::string("+2025 .") + p.Member.Name + ": Code rate mode does not support operation";
        const auto [number, word] = Words(p.Words).back();
        Bench bench(Automatic + " | SENSE:DVBT:CODE:RATE:MODE? = TPS");
        EXPECT_OUTCOME(p.Member.Get(bench.driver), refused);
        EXPECT_OUTCOME(p.Member.Put(bench.driver, Words(p.Words)[0].first), refused);
        bench.world->Abort = true;
        bench.Expect(Automatic + " | " + p.Header + "? = " + word);
        EXPECT_EQ(p.Member.Get(bench.driver), 0) << p.Member.Name;
    }
}

TEST(CodeRate, IsWrittenAndReadForEachPriority) {
    const std::string low = Manual + " | SENSE:DVBT:CODE:RATE:LP", high = Manual + " | SENSE:DVBT:CODE:RATE:HP";
    const std::string refused = "+380 .StatusOfdmCodeRate: ";
    Bench bench;
    for (const auto& [rate, word] : Words("0=1,2 | 1=2,3 | 2=3,4 | 3=5,6 | 4=7,8")) {
        CHECK(bench, low + ' ' + word, put_StatusOfdmCodeRate(tarnLow, TarnStatusCodeRates(rate)), Done);
        CHECK(bench, high + "? = " + word, get_StatusOfdmCodeRate(tarnHigh), rate == tarn5_6 ? 0 : rate);
    }
    CHECK(bench, high + " 1,2", put_StatusOfdmCodeRate(tarnHigh, tarn1_2), Done);
    CHECK(bench, low + "? = H5,6", get_StatusOfdmCodeRate(tarnLow), tarn5_6);
    const auto priority = TarnStatusHierarchicalModes(2);
    CHECK(bench, Manual, get_StatusOfdmCodeRate(priority), refused + "udtPriority value out of range");
    CHECK(bench, Manual, put_StatusOfdmCodeRate(priority, tarnCrUnknown), refused + "udtPriority value out of range");
    CHECK(bench, Manual, put_StatusOfdmCodeRate(tarnLow, tarnCrUnknown),
          refused + "StatusOfdmCodeRate value out of range");
}

#define READING(name) [](clsTarn4x& d) { return static_cast<int>(d.get_##name()); }

TEST(MeasuredParameters, AreUnknownForAnyOtherAnswer) {
    const struct {
        int (*Get)(clsTarn4x&);
        std::string Query;
        const char* Words;
    } cases[] = {
        {READING(MeasureFftMode), "READ:DVBT:FFT:MODE?", "0=2K | 1=8K | -1=28K"},
        {READING(MeasureFftModeTps), "READ:DVBT:TPS:FFT:MODE?", "0=2K | 1=8K | -1=8K2K"},
        {READING(MeasureGuardIntervalTps), "READ:DVBT:TPS:GUARD:INTERVAL?",
         "4=1/4 | 8=1/8 | 16=1/16 | 32=1/32 | -1=1/45"},
        {READING(MeasureOrderOfQamTps), "READ:DVBT:TPS:ORDER?", "4=4 | 16=16 | 64=64 | -1=46"},
        {READING(MeasureOrderOfQam), "READ:DVBT:ORDER?", "4=4 | 16=16 | 64=64 | -1=164"},
        {READING(MeasureAlphaTps), "READ:DVBT:TPS:ALPHA?", "0=1 NH | 1=1 H | 2=2 H | 3=4 H | -1=1 H2 H"},
        {READING(MeasureCodeRateTps), "READ:DVBT:TPS:CODE:RATE?", "0=1/2 | 1=2/3 | 2=3/4 | 3=5/6 | 4=7/8 | -1=1/23"},
        {READING(MeasureCodeRate), "READ:DVBT:CODE:RATE?", "0=1/2 | 4=7/8 | -1=7/89"},
    };
    for (const auto& c : cases) {
        Bench bench;
        for (const auto& [number, word] : Words(c.Words)) {
            bench.Expect(c.Query + " = " + word);
            EXPECT_EQ(c.Get(bench.driver), number) << c.Query << word;
        }
        bench.world->Abort = true;
        bench.Expect(c.Query + " = " + Words(c.Words)[0].second);
        EXPECT_EQ(c.Get(bench.driver), -1) << c.Query;
    }
}

TEST(MeasureOfdmAverage, RoundsHalvesToEven) {
    const std::string query = "READ:DVBT:AVERAGE:PROGRESS? = ";
    Bench bench(tarnPAR);
    CHECK(bench, query + "2.5", get_MeasureOfdmAverage(), 2);
    CHECK(bench, query + "3.5", get_MeasureOfdmAverage(), 4);
    CHECK(bench, query + "40000", get_MeasureOfdmAverage(), GetFailed("MeasureOfdmAverage"));
}
