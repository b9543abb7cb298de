#include "core/Dates.h"
#include "tests/core/Bench.h"

namespace tarn4x::test {
namespace {

template <class Value>
struct TokenMember {
    const char* Name;
    Value (clsTarn4x::*Get)();
    void (clsTarn4x::*Put)(Value);
    const char* Command;
    const char* Query;
    struct Pair {
        int Number;
        const char* Token;
    };
    std::vector<Pair> Written;
    std::vector<Pair> Read;
};

template <class Value>
void CheckTokens(const TokenMember<Value>& member) {
    for (const auto& [number, token] : member.Written) {
        Bench bench{{std::string(member.Command) + token}};
        (bench.driver.*member.Put)(static_cast<Value>(number));
    }
    for (const auto& [number, token] : member.Read) {
        Bench bench{{{member.Query, std::string("\"") + token + "\""}}};
        EXPECT_EQ((bench.driver.*member.Get)(), number) << member.Name << ' ' << token;
    }
}

TEST(SetupSettings, MapTheirTokens) {
    CheckTokens<TarnSwitchStates>({"MeasureCdAddNoise",
                                   &clsTarn4x::get_MeasureCdAddNoise,
                                   &clsTarn4x::put_MeasureCdAddNoise,
                                   "SENS:DVBT:NOISE:MODE ",
                                   "SENS:DVBT:NOISE:MODE?",
                                   {{0, "OFF"}, {1, "ON"}},
                                   {{0, "OFF"}, {0, "0"}, {1, "ON"}, {1, "1"}}});
    CheckTokens<TarnSpecFuncLoopBandwidths>({"SpecFuncLoopBandwidth",
                                             &clsTarn4x::get_SpecFuncLoopBandwidth,
                                             &clsTarn4x::put_SpecFuncLoopBandwidth,
                                             "SENSE:DVBT:LOOP:BWIDTH:FREQ ",
                                             "SENSE:DVBT:LOOP:BWIDTH:FREQ?",
                                             {{0, "LO"}, {1, "MED"}, {2, "HI"}, {5, ""}, {-1, ""}},
                                             {{0, "LO"}, {1, "MED"}, {2, "HI"}, {0, "xHI"}}});
    CheckTokens<TarnSpecFuncMinBerIntegrations>({"SpecFuncMinBerIntegration",
                                                 &clsTarn4x::get_SpecFuncMinBerIntegration,
                                                 &clsTarn4x::put_SpecFuncMinBerIntegration,
                                                 "SENS:DVBT:BERATE:INTEGRATION ",
                                                 "SENSE:DVBT:BERATE:INTEGRATION?",
                                                 {{0, "0"}, {1000, "1000"}, {7, "7"}},
                                                 {{1, "1"}, {10, "10"}, {100, "100"}, {1000, "1000"}, {12, "11.5"}}});
    CheckTokens<TarnStatusSawFilterBWs>({"StatusSawFilterBW",
                                         &clsTarn4x::get_StatusSawFilterBW,
                                         &clsTarn4x::put_StatusSawFilterBW,
                                         "SENSE:DVBT:FILTER:SAW ",
                                         "SENSE:DVBT:FILTER:SAW?",
                                         {{0, "OFF"}, {6, "MHZ6"}, {7, "MHZ7"}, {8, "MHZ8"}},
                                         {{0, "OFF"}, {0, "0"}, {6, "MHZ6"}, {7, "MHZ7"}, {8, "MHZ8"}}});
    CheckTokens<TarnStatusChannelBWs>({"StatusChannelBW",
                                       &clsTarn4x::get_StatusChannelBW,
                                       &clsTarn4x::put_StatusChannelBW,
                                       "SENS:DVBT:CHANNEL:BWIDTH ",
                                       "SENSE:DVBT:CHANNEL:BWIDTH?",
                                       {{6, "MHZ6"}, {7, "MHZ7"}, {8, "MHZ8"}, {9, ""}},
                                       {{6, "MHZ6"}, {7, "MHZ7"}, {8, "MHZ8"}, {0, "MHZ80"}}});
    CheckTokens<TarnSetupLevelUnits>(
        {"SetupLevelUnit",
         &clsTarn4x::get_SetupLevelUnit,
         &clsTarn4x::put_SetupLevelUnit,
         "UNIT:LEVEL:POWER ",
         "UNIT:LEVEL:POWER?",
         {{0, "DBMV"}, {1, "DBPW"}, {2, "DBUW"}, {3, "DBM"}, {4, "DBUV"}, {5, "MV"}, {7, ""}},
         {{0, "DBMV"}, {1, "DBPW"}, {2, "DBUW"}, {3, "DBM"}, {4, "DBUV"}, {5, "MV"}}});
}

TEST(SetupSettings, CompareTheReferenceWithTheRawAnswer) {
    Bench bench{
        {{"SENS:REF INT"}, {"SENS:REF EXT"}, {"SENS:REF?", "EXT"}, {"SENS:REF?", "INT"}, {"SENS:REF?", "\"INT\""}}};
    bench.driver.put_Setup10MhzRef(tarnInternal);
    bench.driver.put_Setup10MhzRef(tarnExternal);
    EXPECT_EQ(bench.driver.get_Setup10MhzRef(), tarnExternal);
    EXPECT_EQ(bench.driver.get_Setup10MhzRef(), tarnInternal);
    EXPECT_RAISES(bench.driver.get_Setup10MhzRef(), 0x8004017C, "clsTarn4x.Setup10MhzRef",
                  "Device reported an unrecognised equalizer setting (\"INT\")");
    for (const int value : {-1, 2}) {
        EXPECT_RAISES(bench.driver.put_Setup10MhzRef(static_cast<TarnReferenceSources>(value)), 0x8004017C,
                      "clsTarn4x.Setup10MhzRef", "Invalid Property Value");
    }
}

TEST(SetupSettings, RefuseWhatTheyDoNotKnow) {
    Bench bench{{{"SENS:DVBT:NOISE:MODE?", "MAYBE"}, {"SENSE:DVBT:FILTER:SAW?", "MHZ9 MHZ8"}, {"SENS:REF:UNL?", "10"}}};
    EXPECT_RAISES(bench.driver.get_MeasureCdAddNoise(), 0x8004017C, "clsTarn4x.MeasureCdAddNoise",
                  "Device reported an unrecognised measurement mode (MAYBE)");
    EXPECT_RAISES(bench.driver.get_StatusSawFilterBW(), 0x800407D4, "clsTarn4x.StatusSawFilterBW",
                  "Device reported an invalid filter bandwidth ( MHZ9 MHZ8 )");
    EXPECT_RAISES(bench.driver.get_ReferenceLocked(), 0x8004017C, "clsTarn4x.ReferenceLocked",
                  "Device reported an unrecognised equalizer setting (10)");
    EXPECT_RAISES(bench.driver.put_MeasureCdAddNoise(static_cast<TarnSwitchStates>(2)), 0x8004017C,
                  "clsTarn4x.MeasureCdAddNoise", "Invalid property value (MeasureCdAddNoise = 2)");
    EXPECT_RAISES(bench.driver.put_StatusSawFilterBW(static_cast<TarnStatusSawFilterBWs>(5)), 0x8004017C,
                  "clsTarn4x.StatusSawFilterBW", "Invalid property value (Filter Bandwidth = 5)");
}

TEST(SetupSettings, ReportFailuresUnderTheirIrregularNames) {
    const auto late = TransportFailure(2014);
    Bench bench{{{"SENS:DVBT:NOISE 10", late},
                 {"SENS:DVBT:NOISE?", late},
                 {"SENS:DVBT:CHANNEL:BWIDTH MHZ8", late},
                 {"SENSE:DVBT:CHANNEL:BWIDTH?", late},
                 {"SENSE:DVBT:BERATE:INTEGRATION?", "10 s"}}};
    EXPECT_RAISES(bench.driver.put_MeasureNoiseGenerator(10.0), 0x800407D5, "clsTarn4x.MeasureCdAddNoiseCn ",
                  "Let MeasureCdAddNoiseCn  failed");
    EXPECT_RAISES(bench.driver.get_MeasureNoiseGenerator(), 0x800407D4, "clsTarn4x.MeasureCdAddNoiseCn ",
                  "Get MeasureCdAddNoiseCn  failed");
    EXPECT_RAISES(bench.driver.put_StatusChannelBW(tarnCh8MHz), 0x800407D5, "clsTarn4x.ChannelFilterBW",
                  "Let ChannelFilterBW failed");
    EXPECT_RAISES(bench.driver.get_StatusChannelBW(), 0x800407D4, "clsTarn4x.ChannelFilterBW",
                  "Get ChannelFilterBW failed");
    EXPECT_RAISES(bench.driver.get_SpecFuncMinBerIntegration(), 0x800407D4, "clsTarn4x.SpecFuncMinBerIntegration",
                  "Get SpecFuncMinBerIntegration failed");
}

TEST(SetupSettings, CheckTheirRanges) {
    Bench bench{{"SENS:DVBT:NOISE 2",
                 "SENS:DVBT:NOISE 56",
                 "SENS:DVBT:NOISE 12.345",
                 "SENS:DVBT:INT:COUN 1",
                 "SENS:DVBT:INT:COUN 99999",
                 {"SENS:DVBT:INT:COUN?", "2.5"},
                 {"SENS:DVBT:INT:COUN?", "99999 (sym)"}}};
    for (const double cn : {2.0, 56.0, 12.345}) bench.driver.put_MeasureCdAddNoiseCn(cn);
    for (const int count : {1, 99999}) bench.driver.put_MeasureCdSymbolCount(count);
    EXPECT_EQ(bench.driver.get_MeasureCdSymbolCount(), 2);
    EXPECT_EQ(bench.driver.get_MeasureCdSymbolCount(), 99999);
    for (const auto& [cn, text] : {std::pair(1.99, "1.99"), std::pair(56.01, "56.01"), std::pair(-3.0, "-3")}) {
        EXPECT_RAISES(bench.driver.put_MeasureCdAddNoiseCn(cn), 0x8004017C, "clsTarn4x.MeasureCdAddNoiseCn",
                      std::string("Invalid property value (MeasureCdAddNoiseCn = ") + text + ")");
    }
    for (const auto& [count, text] : {std::pair(0, "0"), std::pair(100000, "100000")}) {
        EXPECT_RAISES(bench.driver.put_MeasureCdSymbolCount(count), 0x8004017C, "clsTarn4x.MeasureCdSymbolCount",
                      std::string("Invalid property value (MeasureCdSymbolCount = ") + text + ")");
    }
}

TEST(SpectrumSpan, IsAtLeastThatWideAndStaysInside) {
    const struct {
        bool Start;
        double Hz;
        const char* Other;  // in 10 kHz
        const char* Sent;   // nullptr: refused
    } cases[] = {
        {true, 2660000.0, "400", "266"},     {true, 2660001.0, "400", nullptr}, {true, -4480000.0, "400", "-448"},
        {true, -4480001.0, "400", nullptr},  {true, 1345049.0, "400", "134.5"}, {true, 1345050.0, "400", "134.51"},
        {true, -50.0, "400", "-0.01"},       {true, -49.0, "400", "0"},         {false, 4480000.0, "-100", "448"},
        {false, 4480001.0, "-100", nullptr}, {false, 340000.0, "-100", "34"},   {false, 339999.0, "-100", nullptr},
    };
    for (const auto& c : cases) {
        Bench bench;
        bench.KnowMode(tarnSP_2);
        const std::string own = c.Start ? "STAR" : "STOP", other = c.Start ? "STOP" : "STAR";
        bench.Expect({{"SENS:DVBT:SPEC:FREQ:" + other + "?", c.Other}});
        if (c.Sent != nullptr) bench.Expect({"SENS:DVBT:SPEC:FREQ:" + own + ' ' + c.Sent});
        const auto raised = Raised([&] {
            c.Start ? bench.driver.put_MeasureFdSpectrumStartFreq(c.Hz)
                    : bench.driver.put_MeasureFdSpectrumStopFreq(c.Hz);
        });
        if (c.Sent != nullptr) continue;
        const std::string name = c.Start ? "MeasureFdSpectrumStartFreq" : "MeasureFdSpectrumStopFreq";
        EXPECT_EQ(raised.Number, static_cast<std::int32_t>(0x8004017C));
        EXPECT_EQ(raised.Source, "clsTarn4x." + name);
        EXPECT_EQ(raised.Description, name + " value out of range");
    }
    Bench bench;
    bench.KnowMode(tarnSP_1);
    bench.Expect({{"SENS:DVBT:SPEC:FREQ:STAR?", "-448"}, {"SENS:DVBT:SPEC:FREQ:STOP?", "134.5"}});
    EXPECT_DOUBLE_EQ(bench.driver.get_MeasureFdSpectrumStartFreq(), -4480000.0);
    EXPECT_DOUBLE_EQ(bench.driver.get_MeasureFdSpectrumStopFreq(), 1345000.0);
}

TEST(SpectrumSpan, NeedsASpectrumUnlessTheUserAsksToStop) {
    Bench bench;
    bench.KnowMode(tarnADIS);
    EXPECT_RAISES(bench.driver.put_MeasureFdSpectrumStartFreq(0.0), 0x800407E0, "clsTarn4x.MeasureFdSpectrumStartFreq",
                  "Wrong measurement mode selected");
    EXPECT_RAISES(bench.driver.get_MeasureFdSpectrumStopFreq(), 0x800407E0, "clsTarn4x.MeasureFdSpectrumStopFreq",
                  "Wrong measurement mode selected");
    bench.world->Abort = true;
    bench.Expect({{"SENS:DVBT:SPEC:FREQ:STOP?", "1"}, {"SENS:DVBT:SPEC:FREQ:STAR 900"}});
    bench.driver.put_MeasureFdSpectrumStartFreq(9000000.0);
}

TEST(StatusReads, TurnAnswersIntoBooleansAndUnknowns) {
    const struct {
        const char* Answer;
        bool Result;
    } locked[] = {{"1", false}, {"0", true}, {"1.0", false}, {"00", true}};
    for (const auto& c : locked) {
        Bench bench{{{"SENS:REF:UNL?", c.Answer}}};
        EXPECT_EQ(bench.driver.get_ReferenceLocked(), c.Result) << c.Answer;
    }
    for (const char* answer : {"OK", "UND", "NORF", "OVER"}) {
        Bench bench{{{"READ:SIGN:RF?", answer}}};
        EXPECT_EQ(bench.driver.get_StateSignal(), answer == std::string("OK"));
    }
    Bench bench{{{"READ:DVBT:ORDER?", "16"}, {"READ:DVBT:ORDER?", "164"}}};
    EXPECT_EQ(bench.driver.get_MeasureOrderOfQam(), tarnQam16);
    EXPECT_EQ(bench.driver.get_MeasureOrderOfQam(), tarnQamUnknown);
}

TEST(Clock, GoesOverTheWireAsPlainNumbers) {
    Bench bench{{"SYST:Time 9,5,7",
                 "SYST:DATE 26,3,15",
                 "SYST:DATE 5,1,2",
                 {"SYST:TIME?", "9,5,7"},
                 {"SYST:TIME?", "\"23,59.9,0\""},
                 {"SYST:DATE?", "2026,3,15"},
                 {"SYST:DATE?", "26,3,15"},
                 {"SYST:DATE?", "26,3"}}};
    bench.driver.put_SetupTime(46096.0 + (9 * 3600 + 5 * 60 + 7) / 86400.0);
    bench.driver.put_SetupDate(46096.75);
    bench.driver.put_SetupDate(DateFromDay(2005, 1, 2));
    EXPECT_DOUBLE_EQ(bench.driver.get_SetupTime(), (9 * 3600 + 5 * 60 + 7) / 86400.0);
    EXPECT_DOUBLE_EQ(bench.driver.get_SetupTime(), (23 * 60 + 59) / 1440.0);
    EXPECT_DOUBLE_EQ(bench.driver.get_SetupDate(), 46096.0);
    EXPECT_DOUBLE_EQ(bench.driver.get_SetupDate(), 46096.0);
    EXPECT_RAISES(bench.driver.get_SetupDate(), 0x800407D4, "clsTarn4x.SetupDate", "Get SetupDate failed");
}

TEST(SetupSettings, ThatChangeTheSignalForgetTheImpulseResponse) {
    const std::vector<std::pair<const char*, void (*)(clsTarn4x&)>> writes = {
        {"SENSE:DVBT:FILTER:SAW MHZ8", [](clsTarn4x& d) { d.put_StatusSawFilterBW(tarnSaw8MHz); }},
        {"SENS:DVBT:CHANNEL:BWIDTH MHZ8", [](clsTarn4x& d) { d.put_StatusChannelBW(tarnCh8MHz); }},
        {"SENS:REF INT", [](clsTarn4x& d) { d.put_Setup10MhzRef(tarnInternal); }},
        {"SENS:FREQ:CENT  474000000", [](clsTarn4x& d) { d.put_RF(474e6); }},
        {"ROUT:ISEL DEM", [](clsTarn4x& d) { d.put_InputPort(tarnDemod); }},
    };
    const Exchange echoes{"READ:DVBT:IRESPONSE:PEAK?", "1"};
    for (const auto& [command, write] : writes) {
        Bench bench;
        bench.KnowMode(tarnIR_1);
        bench.Expect({echoes, {command}, echoes});
        bench.driver.get_ImpulseResponseDelay(1);
        write(bench.driver);
        bench.driver.get_ImpulseResponseDelay(1);
    }
}

}  // namespace
}  // namespace tarn4x::test
