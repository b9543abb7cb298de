#include <cmath>

#include "driver/Dates.h"
#include "tests/driver/Bench.h"

using namespace tarn4x::test;

// clang-format off
TEST(SetupSettings, MapTheirWords) {
    const struct {
        Property Member;
        std::string Command, Query;
        const char *Written, *Read;  // an empty word: a value that has none
    } cases[] = {
        {PROPERTY(MeasureCdAddNoise), "SENS:DVBT:NOISE:MODE ", "SENS:DVBT:NOISE:MODE?", "0=OFF | 1=ON", "0=OFF | 0=0 | 1=ON | 1=1"},
        {PROPERTY(SpecFuncLoopBandwidth), "SENSE:DVBT:LOOP:BWIDTH:FREQ ", "SENSE:DVBT:LOOP:BWIDTH:FREQ?",
         "0=LO | 1=MED | 2=HI | 5= | -1=", "0=LO | 1=MED | 2=HI | 0=xHI"},
        {PROPERTY(SpecFuncMinBerIntegration), "SENS:DVBT:BERATE:INTEGRATION ", "SENSE:DVBT:BERATE:INTEGRATION?",
         "0=0 | 1000=1000 | 7=7", "1=1 | 10=10 | 100=100 | 1000=1000 | 12=11.5"},
        {PROPERTY(StatusSawFilterBW), "SENSE:DVBT:FILTER:SAW ", "SENSE:DVBT:FILTER:SAW?",
         "0=OFF | 6=MHZ6 | 7=MHZ7 | 8=MHZ8", "0=OFF | 0=0 | 6=MHZ6 | 7=MHZ7 | 8=MHZ8"},
        {PROPERTY(StatusChannelBW), "SENS:DVBT:CHANNEL:BWIDTH ", "SENSE:DVBT:CHANNEL:BWIDTH?",
         "6=MHZ6 | 7=MHZ7 | 8=MHZ8 | 9=", "6=MHZ6 | 7=MHZ7 | 8=MHZ8 | 0=MHZ80"},
        {PROPERTY(SetupLevelUnit), "UNIT:LEVEL:POWER ", "UNIT:LEVEL:POWER?",
         "0=DBMV | 1=DBPW | 2=DBUW | 3=DBM | 4=DBUV | 5=MV | 7=", "0=DBMV | 1=DBPW | 2=DBUW | 3=DBM | 4=DBUV | 5=MV"},
    };
    Bench bench;
    for (const auto& c : cases) {
        for (const auto& [number, word] : Words(c.Written)) {
            bench.Expect(c.Command + word);
            c.Member.Put(bench.driver, number);
        }
        for (const auto& [number, word] : Words(c.Read)) {
            bench.Expect(c.Query + " = \"" + word + '"');
            EXPECT_EQ(c.Member.Get(bench.driver), number) << c.Member.Name << ' ' << word;
        }
    }
}
// clang-format on

TEST(SetupSettings, RefuseWhatTheyDoNotKnow) {
    Bench bench;
    CHECK(bench, "SENS:DVBT:NOISE:MODE? = MAYBE", get_MeasureCdAddNoise(),
          "+380 .MeasureCdAddNoise: Device reported an unrecognised measurement mode (MAYBE)");
    CHECK(bench, "SENSE:DVBT:FILTER:SAW? = MHZ9 MHZ8", get_StatusSawFilterBW(),
          "+2004 .StatusSawFilterBW: Device reported an invalid filter bandwidth ( MHZ9 MHZ8 )");
    CHECK(bench, "SENS:REF:UNL? = 10", get_ReferenceLocked(),
          "+380 .ReferenceLocked: Device reported an unrecognised equalizer setting (10)");
    CHECK(bench, "SENS:REF? = \"INT\"", get_Setup10MhzRef(),  // compared with the raw answer
          "+380 .Setup10MhzRef: Device reported an unrecognised equalizer setting (\"INT\")");
    CHECK(bench, "SENSE:DVBT:BERATE:INTEGRATION? = 10 s", get_SpecFuncMinBerIntegration(),
          GetFailed("SpecFuncMinBerIntegration"));
    CHECK(bench, "", put_MeasureCdAddNoise(TarnSwitchStates(2)),
          "+380 .MeasureCdAddNoise: Invalid property value (MeasureCdAddNoise = 2)");
    CHECK(bench, "", put_StatusSawFilterBW(TarnStatusSawFilterBWs(5)),
          "+380 .StatusSawFilterBW: Invalid property value (Filter Bandwidth = 5)");
    for (const int value : {-1, 2}) {
        CHECK(bench, "", put_Setup10MhzRef(TarnReferenceSources(value)), "+380 .Setup10MhzRef: Invalid Property Value");
    }
}

TEST(SetupSettings, CheckTheirRanges) {
    const std::string cn = "+380 .MeasureCdAddNoiseCn: Invalid property value (MeasureCdAddNoiseCn = ",
                      count = "+380 .MeasureCdSymbolCount: Invalid property value (MeasureCdSymbolCount = ";
    Bench bench;
    CHECK(bench, "SENS:DVBT:NOISE 2", put_MeasureCdAddNoiseCn(2.0), Done);
    CHECK(bench, "SENS:DVBT:NOISE 56", put_MeasureCdAddNoiseCn(56.0), Done);
    CHECK(bench, "SENS:DVBT:NOISE 12.345", put_MeasureCdAddNoiseCn(12.345), Done);
    CHECK(bench, "", put_MeasureCdAddNoiseCn(1.99), cn + "1.99)");
    CHECK(bench, "", put_MeasureCdAddNoiseCn(56.01), cn + "56.01)");
    CHECK(bench, "", put_MeasureCdAddNoiseCn(-3.0), cn + "-3)");
    CHECK(bench, "SENS:DVBT:INT:COUN 1", put_MeasureCdSymbolCount(1), Done);
    CHECK(bench, "SENS:DVBT:INT:COUN 99999", put_MeasureCdSymbolCount(99999), Done);
    CHECK(bench, "", put_MeasureCdSymbolCount(0), count + "0)");
    CHECK(bench, "", put_MeasureCdSymbolCount(100000), count + "100000)");
    CHECK(bench, "SENS:DVBT:INT:COUN? = 2.5", get_MeasureCdSymbolCount(), 2);
    CHECK(bench, "SENS:DVBT:INT:COUN? = 99999 (sym)", get_MeasureCdSymbolCount(), 99999);
}

TEST(SpectrumSpan, IsAtLeastThatWideAndStaysInside) {
    // On the wire in 10 kHz.
    const std::string start = "SENS:DVBT:SPEC:FREQ:STAR", stop = "SENS:DVBT:SPEC:FREQ:STOP", own = " | " + start + ' ',
                      startRange = OutOfRange("MeasureFdSpectrumStartFreq"),
                      stopRange = OutOfRange("MeasureFdSpectrumStopFreq");
    Bench bench(tarnSP_2);
    CHECK(bench, stop + "? = 400" + own + "266", put_MeasureFdSpectrumStartFreq(2660000.0), Done);
    CHECK(bench, stop + "? = 400", put_MeasureFdSpectrumStartFreq(2660001.0), startRange);
    CHECK(bench, stop + "? = 134.14" + own + "0.14", put_MeasureFdSpectrumStartFreq(1400.0), Done);
    CHECK(bench, stop + "? = 134.14", put_MeasureFdSpectrumStartFreq(1401.0), startRange);
    CHECK(bench, start + "? = 1e305", get_MeasureFdSpectrumStartFreq(), GetFailed("MeasureFdSpectrumStartFreq"));
    CHECK(bench, stop + "? = 400" + own + "-448", put_MeasureFdSpectrumStartFreq(-4480000.0), Done);
    CHECK(bench, stop + "? = 400", put_MeasureFdSpectrumStartFreq(-4480001.0), startRange);
    CHECK(bench, stop + "? = 400" + own + "134.5", put_MeasureFdSpectrumStartFreq(1345049.0), Done);
    CHECK(bench, stop + "? = 400" + own + "134.51", put_MeasureFdSpectrumStartFreq(1345050.0), Done);
    CHECK(bench, stop + "? = 400" + own + "-0.01", put_MeasureFdSpectrumStartFreq(-50.0), Done);
    CHECK(bench, stop + "? = 400" + own + "0", put_MeasureFdSpectrumStartFreq(-49.0), Done);
    CHECK(bench, start + "? = -100 | " + stop + " 448", put_MeasureFdSpectrumStopFreq(4480000.0), Done);
    CHECK(bench, start + "? = -100", put_MeasureFdSpectrumStopFreq(4480001.0), stopRange);
    CHECK(bench, start + "? = -100 | " + stop + " 34", put_MeasureFdSpectrumStopFreq(340000.0), Done);
    CHECK(bench, start + "? = -100", put_MeasureFdSpectrumStopFreq(339999.0), stopRange);
    CHECK(bench, start + "? = -448", get_MeasureFdSpectrumStartFreq(), -4480000);
    CHECK(bench, stop + "? = 134.5", get_MeasureFdSpectrumStopFreq(), 1345000);
}

TEST(SpectrumSpan, HasNoBoundsWhenTheUserAsksToStop) {
    Bench bench(tarnADIS);
    bench.world->Abort = true;
    CHECK(bench, "SENS:DVBT:SPEC:FREQ:STOP? = 1 | SENS:DVBT:SPEC:FREQ:STAR 900",
          put_MeasureFdSpectrumStartFreq(9000000.0), Done);
    CHECK(bench, "SENS:DVBT:SPEC:FREQ:STAR? = 1", put_MeasureFdSpectrumStopFreq(std::nan("")),
          OutOfRange("MeasureFdSpectrumStopFreq"));
}

TEST(StatusReads, TurnAnswersIntoBooleans) {
    Bench bench;
    for (const auto& [result, answer] : Words("0=1 | 1=0 | 0=1.0 | 1=00")) {
        CHECK(bench, "SENS:REF:UNL? = " + answer, get_ReferenceLocked(), result);
    }
    for (const auto& [result, answer] : Words("1=OK | 0=UND | 0=NORF | 0=OVER")) {
        CHECK(bench, "READ:SIGN:RF? = " + answer, get_StateSignal(), result);
    }
}

TEST(Clock, GoesOverTheWireAsPlainNumbers) {
    constexpr double time = (9 * 3600 + 5 * 60 + 7) / 86400.0;
    Bench bench;
    CHECK(bench, "SYST:Time 9,5,7", put_SetupTime(46096.0 + time), Done);
    CHECK(bench, "SYST:DATE 26,3,15", put_SetupDate(46096.75), Done);
    CHECK(bench, "SYST:DATE 5,1,2", put_SetupDate(DateFromDay(2005, 1, 2)), Done);
    CHECK(bench, "SYST:TIME? = 9,5,7", get_SetupTime(), time);
    CHECK(bench, "SYST:TIME? = \"23,59.9,0\"", get_SetupTime(), (23 * 60 + 59) / 1440.0);
    CHECK(bench, "SYST:DATE? = 2026,3,15", get_SetupDate(), 46096);
    CHECK(bench, "SYST:DATE? = 26,3,15", get_SetupDate(), 46096);
    for (const auto* answer : {"26,3", "10000,1,1", "32767,32767,32767", "99999,1,1"}) {
        CHECK(bench, "SYST:DATE? = " + std::string(answer), get_SetupDate(), GetFailed("SetupDate"));
    }
    for (const double none : {std::nan(""), HUGE_VAL, -657435.0, 2958466.0, 1e300}) {
        CHECK(bench, "", put_SetupTime(none), LetFailed("SetupTime"));
        CHECK(bench, "", put_SetupDate(none), LetFailed("SetupDate"));
    }
    CHECK(bench, "SYST:DATE 99,12,31", put_SetupDate(2958465.5), Done);
    CHECK(bench, "SYST:DATE 0,1,1", put_SetupDate(-657434.25), Done);
}

TEST(SetupSettings, ThatChangeTheSignalForgetTheImpulseResponse) {
    const std::string echoes = "READ:DVBT:IRESPONSE:PEAK? = 1";
    Bench bench(tarnIR_1, echoes);
    bench->MeasureTdImpulseResponse();
#define EXPECT_FORGETS(dialogue, write)                           \
    CHECK(bench, "", get_ImpulseResponseDelay(1), 0); /* known */ \
    CHECK(bench, dialogue, write, Done);                          \
    CHECK(bench, echoes, get_ImpulseResponseDelay(1), 0)
    EXPECT_FORGETS("SENSE:DVBT:FILTER:SAW MHZ8", put_StatusSawFilterBW(tarnSaw8MHz));
    EXPECT_FORGETS("SENS:DVBT:CHANNEL:BWIDTH MHZ8", put_StatusChannelBW(tarnCh8MHz));
    EXPECT_FORGETS("SENS:REF INT", put_Setup10MhzRef(tarnInternal));
    EXPECT_FORGETS("SENS:FREQ:CENT  474000000", put_RF(474e6));
    EXPECT_FORGETS("ROUT:ISEL DEM", put_InputPort(tarnDemod));
#undef EXPECT_FORGETS
    CHECK(bench, "SENS:REF EXT", put_Setup10MhzRef(tarnExternal), Done);
    CHECK(bench, "SENS:REF? = EXT", get_Setup10MhzRef(), tarnExternal);
    CHECK(bench, "SENS:REF? = INT", get_Setup10MhzRef(), tarnInternal);
}
