#include "tests/core/Bench.h"

namespace tarn4x::test {
namespace {

const std::vector<TarnMeasureModes> Crest{tarnADIS, tarnCCDF, tarnCENV}, Shoulders{tarnSP_1, tarnSP_2, tarnSP_3},
    Mer{tarnHIST, tarnPAR}, Parameters{tarnPAR}, Normal{tarnNORM}, Any;

struct NumberMember {
    double (clsTarn4x::*Get)();
    const char* Name;
    const char* Query;
    std::vector<TarnMeasureModes> Modes;
    const char* ModeSource = nullptr;
    const char* FailsAs = nullptr;
    double Factor = 1.0;
};

const NumberMember Numbers[] = {
    {&clsTarn4x::get_MeasureTsBitrate, "MeasureTsBitrate", "READ:DVBT:TS:BITRATE?", Any},
    {&clsTarn4x::get_MeasureBitrateOffset, "MeasureBitrateOffset", "READ:DVBT:BITRATE:OFFSET?", Any, nullptr,
     "MeasureTsBitrate"},
    {&clsTarn4x::get_MeasureTdCcdfCrestFactorMargin, "MeasureTdCcdfCrestFactorMargin", "READ:DVBT:CREST:MARGIN?",
     Crest},
    {&clsTarn4x::get_MeasureTdCcdfCrestFactorMax, "MeasureTdCcdfCrestFactorMax", "READ:DVBT:CREST:MAX?", Crest},
    {&clsTarn4x::get_MeasureTdCcdfCrestFactorCurrent, "MeasureTdCcdfCrestFactorCurrent", "READ:DVBT:CREST:CURRENT?",
     Crest},
    {&clsTarn4x::get_MeasureFdSpectrumShoulderLower, "MeasureFdSpectrumShoulderLower", "READ:DVBT:SPECTRUM:SHO:LOW?",
     Shoulders},
    {&clsTarn4x::get_MeasureFdSpectrumShoulderUpper, "MeasureFdSpectrumShoulderUpper", "READ:DVBT:SPECTRUM:SHO:UPP?",
     Shoulders},
    {&clsTarn4x::get_MeasureFrequencyOffset, "MeasureFrequencyOffset", "READ:DVBT:FREQ:OFFSET?", Normal, nullptr,
     nullptr, 1000.0},
    {&clsTarn4x::get_MeasureRfLevel, "MeasureRfLevel", "READ:RF:LEVEL?", Any},
    {&clsTarn4x::get_MeasureOfdmCarrierSuppression, "MeasureOfdmCarrierSuppression", "READ:DVBT:CARRIER:SUPPRESSION?",
     Parameters, "MeasureOfdmAverage"},
    {&clsTarn4x::get_MeasureOfdmCarrierSuppressionPhase, "MeasureOfdmCarrierSuppressionPhase",
     "READ:DVBT:CARRIER:SUPPRESSION:PHASE?", Parameters, "MeasureOfdmAverage"},
    {&clsTarn4x::get_MeasureOfdmMerRmsDb, "MeasureOfdmMerRmsDb", "READ:DVBT:MER:RMS? DB", Mer},
    {&clsTarn4x::get_MeasureOfdmMerRmsPct, "MeasureOfdmMerRmsPct", "READ:DVBT:MER:RMS? PCT", Mer},
    {&clsTarn4x::get_MeasureOfdmMerPeakPct, "MeasureOfdmMerPeakPct", "READ:DVBT:MER:PEAK? PCT", Parameters},
    {&clsTarn4x::get_MeasureOfdmPhaseJitter, "MeasureOfdmPhaseJitter", "READ:DVBT:JITTER?", Parameters},
    {&clsTarn4x::get_MeasureOfdmIqPhaseError, "MeasureOfdmIqPhaseError", "READ:DVBT:IQ:QERROR?", Parameters,
     "MeasureOfdmAverage"},
    {&clsTarn4x::get_MeasureOfdmIqAmplImbalance, "MeasureOfdmIqAmplImbalance", "READ:DVBT:IQ:IMBALANCE?", Parameters,
     "MeasureOfdmAverage"},
    {&clsTarn4x::get_MeasureOfdmSignalToNoiseRatio, "MeasureOfdmSignalToNoiseRatio", "READ:DVBT:SIGNAL:NOISE?",
     Parameters},
    {&clsTarn4x::get_MeasureBerBeforeVit, "MeasureBerBeforeVit", "READ:DVBT:BER:BVIT?", Any},
    {&clsTarn4x::get_MeasureBerBeforeRS, "MeasureBerBeforeRS", "READ:DVBT:BER:BRS?", Any},
    {&clsTarn4x::get_MeasureBerAfterRS, "MeasureBerAfterRS", "READ:DVBT:BER:ARS?", Any},
};

TEST(Measurements, ReadTheirNumberWithOneDrainAndOneQuery) {
    for (const auto& member : Numbers) {
        Bench bench;
        if (!member.Modes.empty()) bench.KnowMode(member.Modes.back());
        bench.Expect({{member.Query, "<1.5 (est)"}});
        EXPECT_DOUBLE_EQ((bench.driver.*member.Get)(), 1.5 * member.Factor) << member.Name;
        EXPECT_EQ(bench.world->Drains, 1) << member.Name;
        EXPECT_EQ(bench.driver.get_Prefix(), "<");
        EXPECT_EQ(bench.driver.get_Postfix(), "(est)");
        EXPECT_EQ(bench.driver.get_ResponseString(), "<1.5 (est)");
    }
}

TEST(Measurements, ExistOnlyInTheirMeasureModes) {
    for (const auto& member : Numbers) {
        for (int mode = tarnNORM; mode <= tarnCENV; ++mode) {
            Bench bench;
            bench.KnowMode(static_cast<TarnMeasureModes>(mode));
            const bool allowed = member.Modes.empty() || std::ranges::count(member.Modes, mode) != 0;
            if (allowed) bench.Expect({{member.Query, "2"}});
            const auto raised = Raised([&] { EXPECT_DOUBLE_EQ((bench.driver.*member.Get)(), 2.0 * member.Factor); });
            EXPECT_EQ(raised.Number, allowed ? 0 : static_cast<std::int32_t>(0x800407E0)) << member.Name << mode;
            if (allowed) continue;
            EXPECT_EQ(raised.Description, "Wrong measurement mode selected");
            EXPECT_EQ(raised.Source,
                      std::string("clsTarn4x.") + (member.ModeSource != nullptr ? member.ModeSource : member.Name));
            EXPECT_EQ(bench.driver.get_Prefix(), "---");
        }
    }
}

TEST(Measurements, ReportTheirFailures) {
    for (const auto& member : Numbers) {
        Bench bench;
        if (!member.Modes.empty()) bench.KnowMode(member.Modes.front());
        bench.Expect({{member.Query, TransportFailure(2014)}, {member.Query, TransportFailure(2010)}});
        const std::string name = member.FailsAs != nullptr ? member.FailsAs : member.Name;
        EXPECT_RAISES((bench.driver.*member.Get)(), 0x800407D4, "clsTarn4x." + name, "Get " + name + " failed");
        EXPECT_RAISES((bench.driver.*member.Get)(), 0x800407D4, "clsTarn4x." + name,
                      "Get " + name + " failed.  Error : 0,\"No error\"");
    }
}

TEST(Measurements, AreZeroInAnyModeWhenTheUserHasAskedToStop) {
    Bench bench;
    bench.KnowMode(tarnNORM);
    bench.world->Abort = true;
    bench.Expect({{"READ:DVBT:CREST:MARGIN?", "9"}, {"READ:DVBT:OFDM:UNLOCKED?", "1"}});
    EXPECT_DOUBLE_EQ(bench.driver.get_MeasureTdCcdfCrestFactorMargin(), 0.0);
    EXPECT_FALSE(bench.driver.get_MeasureCarrierLoopOutOfLock());
}

TEST(Measurements, PassOnTheErrorOfTheMeasureModeAndReadItOncePerComparison) {
    Bench bench{{{"SENS:DVBT:MEAS?", "0?"}}};
    EXPECT_RAISES(bench.driver.get_MeasureOfdmMerRmsDb(), 0x8004017C, "clsTarn4x.MeasureMode",
                  "Device reported an unrecognised measurement mode (0?)");
    // Nothing is cached while the user asks to stop, so each comparison shows on the wire.
    bench.world->Abort = true;
    const Exchange mode{"SENS:DVBT:MEAS?", "PAR"};
    bench.Expect({mode,
                  mode,
                  mode,
                  {"READ:DVBT:CREST:MAX?", "1"},
                  mode,
                  mode,
                  {"READ:DVBT:SPECTRUM:SHO:LOW?", "1"},
                  mode,
                  {"READ:DVBT:JITTER?", "1"}});
    bench.driver.get_MeasureTdCcdfCrestFactorMax();
    bench.driver.get_MeasureFdSpectrumShoulderLower();
    bench.driver.get_MeasureOfdmPhaseJitter();
}

TEST(LockIndicators, ConvertTextToBooleanAndForgetTheImpulseResponse) {
    const struct {
        bool (clsTarn4x::*Get)();
        const char *Query, *Answer;
        bool Result;
    } cases[] = {
        {&clsTarn4x::get_MeasureCarrierLoopOutOfLock, "READ:DVBT:OFDM:UNLOCKED?", "1", true},
        {&clsTarn4x::get_MeasureCarrierLoopOutOfLock, "READ:DVBT:OFDM:UNLOCKED?", "FALSE", false},
        {&clsTarn4x::get_MeasureMpegTsUnSync, "READ:DVBT:MPEG:TS:LOCKED?", "1", false},
        {&clsTarn4x::get_MeasureMpegTsUnSync, "READ:DVBT:MPEG:TS:LOCKED?", "0", true},
    };
    for (const auto& c : cases) {
        Bench bench;
        bench.KnowMode(tarnIR_1);
        const Exchange echoes{"READ:DVBT:IRESPONSE:PEAK?", "1"};
        bench.Expect({echoes, {c.Query, c.Answer}});
        bench.driver.get_ImpulseResponseAtten(1);
        EXPECT_EQ((bench.driver.*c.Get)(), c.Result) << c.Query << c.Answer;
        if (c.Result) bench.Expect({echoes});  // must be measured anew
        bench.driver.get_ImpulseResponseAtten(1);
    }
    Bench bench{{{"READ:DVBT:OFDM:UNLOCKED?", "maybe"}, {"READ:DVBT:MPEG:TS:LOCKED?", ""}}};
    EXPECT_RAISES(bench.driver.get_MeasureCarrierLoopOutOfLock(), 0x800407D4, "clsTarn4x.MeasureCarrierLoopOutOfLock",
                  "Get MeasureCarrierLoopOutOfLock failed");
    EXPECT_RAISES(bench.driver.get_MeasureMpegTsUnSync(), 0x800407D4, "clsTarn4x.MeasureMpegTsUnSync",
                  "Get MeasureMpegTsUnSync failed");
}

TEST(MeasureResetBer, SendsItsCommandAndLeavesThePrefixAlone) {
    Bench bench{{{"READ:RF:LEVEL?", "<1"}, {"SENS:DVBT:BER:RES"}}};
    bench.driver.get_MeasureRfLevel();
    bench.driver.MeasureResetBer();
    EXPECT_EQ(bench.driver.get_Prefix(), "<");
}

}  // namespace
}  // namespace tarn4x::test
