#include "tests/driver/Bench.h"

using namespace tarn4x::test;

struct NumberMember {
    const char* Name;
    double (clsTarn4x::*Get)();
    const char* Query;
    std::vector<TarnMeasureModes> Modes = {};  // empty: any
    const char* ModeSource = nullptr;          // another member that the mode error names
    double Factor = 1.0;
};

#define NUMBER(name) #name, &clsTarn4x::get_##name

const std::vector<TarnMeasureModes> Crest{tarnADIS, tarnCCDF, tarnCENV}, Shoulders{tarnSP_1, tarnSP_2, tarnSP_3},
    Mer{tarnHIST, tarnPAR}, Par{tarnPAR}, Normal{tarnNORM};
constexpr auto Average = "MeasureOfdmAverage";

// clang-format off
const NumberMember Numbers[] = {
    {NUMBER(MeasureTsBitrate), "READ:DVBT:TS:BITRATE?"},
    {NUMBER(MeasureBitrateOffset), "READ:DVBT:BITRATE:OFFSET?"},
    {NUMBER(MeasureTdCcdfCrestFactorMargin), "READ:DVBT:CREST:MARGIN?", Crest},
    {NUMBER(MeasureTdCcdfCrestFactorMax), "READ:DVBT:CREST:MAX?", Crest},
    {NUMBER(MeasureTdCcdfCrestFactorCurrent), "READ:DVBT:CREST:CURRENT?", Crest},
    {NUMBER(MeasureFdSpectrumShoulderLower), "READ:DVBT:SPECTRUM:SHO:LOW?", Shoulders},
    {NUMBER(MeasureFdSpectrumShoulderUpper), "READ:DVBT:SPECTRUM:SHO:UPP?", Shoulders},
    {NUMBER(MeasureFrequencyOffset), "READ:DVBT:FREQ:OFFSET?", Normal, nullptr, 1000.0},
    {NUMBER(MeasureRfLevel), "READ:RF:LEVEL?"},
    {NUMBER(MeasureOfdmCarrierSuppression), "READ:DVBT:CARRIER:SUPPRESSION?", Par, Average},
    {NUMBER(MeasureOfdmCarrierSuppressionPhase), "READ:DVBT:CARRIER:SUPPRESSION:PHASE?", Par, Average},
    {NUMBER(MeasureOfdmMerRmsDb), "READ:DVBT:MER:RMS? DB", Mer},
    {NUMBER(MeasureOfdmMerRmsPct), "READ:DVBT:MER:RMS? PCT", Mer},
    {NUMBER(MeasureOfdmMerPeakPct), "READ:DVBT:MER:PEAK? PCT", Par},
    {NUMBER(MeasureOfdmPhaseJitter), "READ:DVBT:JITTER?", Par},
    {NUMBER(MeasureOfdmIqPhaseError), "READ:DVBT:IQ:QERROR?", Par, Average},
    {NUMBER(MeasureOfdmIqAmplImbalance), "READ:DVBT:IQ:IMBALANCE?", Par, Average},
    {NUMBER(MeasureOfdmSignalToNoiseRatio), "READ:DVBT:SIGNAL:NOISE?", Par},
    {NUMBER(MeasureBerBeforeVit), "READ:DVBT:BER:BVIT?"},
    {NUMBER(MeasureBerBeforeRS), "READ:DVBT:BER:BRS?"},
    {NUMBER(MeasureBerAfterRS), "READ:DVBT:BER:ARS?"},
};
// clang-format on

TEST(Measurements, ReadTheirNumberWithOneDrainAndOneQueryInTheirModesOnly) {
    for (const auto& member : Numbers) {
        for (int mode = tarnNORM; mode <= tarnCENV; ++mode) {
            SCOPED_TRACE(std::string(member.Name) + " in mode " + std::to_string(mode));
            Bench bench{TarnMeasureModes(mode)};
            const auto read = [&] { return (bench.driver.*member.Get)(); };
            if (!member.Modes.empty() && std::ranges::count(member.Modes, mode) == 0) {
                const std::string source = member.ModeSource != nullptr ? member.ModeSource : member.Name;
                EXPECT_EQ(Outcome(read), WrongMode(source));
                EXPECT_EQ(bench->get_Prefix(), "---");
                continue;
            }
            bench.Expect(std::string(member.Query) + " = <1.5 (est)");
            EXPECT_EQ(Outcome(read), Text(1.5 * member.Factor));
            EXPECT_EQ(bench.world->Drains, 1);
            EXPECT_THAT((std::vector{bench->get_Prefix(), bench->get_Postfix(), bench->get_ResponseString()}),
                        ElementsAre("<", "(est)", "<1.5 (est)"));
        }
    }
}

TEST(Measurements, AreZeroInAnyModeWhenTheUserHasAskedToStop) {
    Bench bench(tarnNORM);
    bench.world->Abort = true;
    CHECK(bench, "READ:DVBT:CREST:MARGIN? = 9", get_MeasureTdCcdfCrestFactorMargin(), 0);
    CHECK(bench, "READ:DVBT:OFDM:UNLOCKED? = 1", get_MeasureCarrierLoopOutOfLock(), false);
}

TEST(Measurements, PassOnTheErrorOfTheMeasureModeAndReadItOncePerComparison) {
    Bench bench;
    CHECK(bench, "SENS:DVBT:MEAS? = 0?", get_MeasureOfdmMerRmsDb(),
          "+380 .MeasureMode: Device reported an unrecognised measurement mode (0?)");
    // Nothing is cached while the user asks to stop, so each comparison shows on the wire.
    bench.world->Abort = true;
    const std::string mode = "x SENS:DVBT:MEAS? = PAR | ";
    CHECK(bench, "3 " + mode + "READ:DVBT:CREST:MAX? = 1", get_MeasureTdCcdfCrestFactorMax(), 0);
    CHECK(bench, "2 " + mode + "READ:DVBT:SPECTRUM:SHO:LOW? = 1", get_MeasureFdSpectrumShoulderLower(), 0);
    CHECK(bench, "1 " + mode + "READ:DVBT:JITTER? = 1", get_MeasureOfdmPhaseJitter(), 0);
}

TEST(LockIndicators, ConvertTextToBooleanAndForgetTheImpulseResponse) {
    const struct {
        bool (clsTarn4x::*Get)();
        const char* Exchange;
        bool Result;
    } cases[] = {{&clsTarn4x::get_MeasureCarrierLoopOutOfLock, "READ:DVBT:OFDM:UNLOCKED? = 1", true},
                 {&clsTarn4x::get_MeasureCarrierLoopOutOfLock, "READ:DVBT:OFDM:UNLOCKED? = FALSE", false},
                 {&clsTarn4x::get_MeasureMpegTsUnSync, "READ:DVBT:MPEG:TS:LOCKED? = 1", false},
                 {&clsTarn4x::get_MeasureMpegTsUnSync, "READ:DVBT:MPEG:TS:LOCKED? = 0", true}};
    const std::string echoes = "READ:DVBT:IRESPONSE:PEAK? = 1";
    for (const auto& c : cases) {
        Bench bench(tarnIR_1);
        CHECK(bench, echoes, get_ImpulseResponseAtten(1), 0);
        bench.Expect(c.Exchange);
        EXPECT_EQ((bench.driver.*c.Get)(), c.Result) << c.Exchange;
        CHECK(bench, c.Result ? echoes : "", get_ImpulseResponseAtten(1), 0);  // measured anew
    }
    Bench bench;
    CHECK(bench, "READ:DVBT:OFDM:UNLOCKED? = maybe", get_MeasureCarrierLoopOutOfLock(),
          GetFailed("MeasureCarrierLoopOutOfLock"));
    CHECK(bench, "READ:DVBT:MPEG:TS:LOCKED?", get_MeasureMpegTsUnSync(), GetFailed("MeasureMpegTsUnSync"));
}

TEST(MeasureResetBer, SendsItsCommandAndLeavesThePrefixAlone) {
    Bench bench;
    CHECK(bench, "READ:RF:LEVEL? = <1", get_MeasureRfLevel(), 1);
    CHECK(bench, "SENS:DVBT:BER:RES", MeasureResetBer(), Done);
    EXPECT_EQ(bench->get_Prefix(), "<");
}
