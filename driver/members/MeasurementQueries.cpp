#include "driver/Recipes.h"

namespace tarn4x {

namespace {

constexpr auto SharedModeSource = "MeasureOfdmAverage";  // four members name it in their mode error

}  // namespace

// A member is one line.
// clang-format off
double clsTarn4x::get_MeasureTsBitrate() { return ReadNumber({.Member = Members::MeasureTsBitrate, .Query = "READ:DVBT:TS:BITRATE?"}); }
double clsTarn4x::get_MeasureBitrateOffset() { return ReadNumber({.Member = Members::MeasureBitrateOffset, .Query = "READ:DVBT:BITRATE:OFFSET?", .FailsAs = "MeasureTsBitrate"}); }
double clsTarn4x::get_MeasureTdCcdfCrestFactorMargin() { return ReadNumber({.Member = Members::MeasureTdCcdfCrestFactorMargin, .Query = "READ:DVBT:CREST:MARGIN?"}); }
double clsTarn4x::get_MeasureTdCcdfCrestFactorMax() { return ReadNumber({.Member = Members::MeasureTdCcdfCrestFactorMax, .Query = "READ:DVBT:CREST:MAX?"}); }
double clsTarn4x::get_MeasureTdCcdfCrestFactorCurrent() { return ReadNumber({.Member = Members::MeasureTdCcdfCrestFactorCurrent, .Query = "READ:DVBT:CREST:CURRENT?"}); }
double clsTarn4x::get_MeasureFdSpectrumShoulderLower() { return ReadNumber({.Member = Members::MeasureFdSpectrumShoulderLower, .Query = "READ:DVBT:SPECTRUM:SHO:LOW?"}); }
double clsTarn4x::get_MeasureFdSpectrumShoulderUpper() { return ReadNumber({.Member = Members::MeasureFdSpectrumShoulderUpper, .Query = "READ:DVBT:SPECTRUM:SHO:UPP?"}); }
double clsTarn4x::get_MeasureFrequencyOffset() { return ReadNumber({.Member = Members::MeasureFrequencyOffset, .Query = "READ:DVBT:FREQ:OFFSET?", .Scale = 1000.0}); }
double clsTarn4x::get_MeasureRfLevel() { return ReadNumber({.Member = Members::MeasureRfLevel, .Query = "READ:RF:LEVEL?"}); }
double clsTarn4x::get_MeasureOfdmCarrierSuppression() { return ReadNumber({.Member = Members::MeasureOfdmCarrierSuppression, .Query = "READ:DVBT:CARRIER:SUPPRESSION?", .ModeSource = SharedModeSource}); }
double clsTarn4x::get_MeasureOfdmCarrierSuppressionPhase() { return ReadNumber({.Member = Members::MeasureOfdmCarrierSuppressionPhase, .Query = "READ:DVBT:CARRIER:SUPPRESSION:PHASE?", .ModeSource = SharedModeSource}); }
double clsTarn4x::get_MeasureOfdmMerRmsDb() { return ReadNumber({.Member = Members::MeasureOfdmMerRmsDb, .Query = "READ:DVBT:MER:RMS? DB"}); }
double clsTarn4x::get_MeasureOfdmMerRmsPct() { return ReadNumber({.Member = Members::MeasureOfdmMerRmsPct, .Query = "READ:DVBT:MER:RMS? PCT"}); }
double clsTarn4x::get_MeasureOfdmMerPeakPct() { return ReadNumber({.Member = Members::MeasureOfdmMerPeakPct, .Query = "READ:DVBT:MER:PEAK? PCT"}); }
double clsTarn4x::get_MeasureOfdmPhaseJitter() { return ReadNumber({.Member = Members::MeasureOfdmPhaseJitter, .Query = "READ:DVBT:JITTER?"}); }
double clsTarn4x::get_MeasureOfdmIqPhaseError() { return ReadNumber({.Member = Members::MeasureOfdmIqPhaseError, .Query = "READ:DVBT:IQ:QERROR?", .ModeSource = SharedModeSource}); }
double clsTarn4x::get_MeasureOfdmIqAmplImbalance() { return ReadNumber({.Member = Members::MeasureOfdmIqAmplImbalance, .Query = "READ:DVBT:IQ:IMBALANCE?", .ModeSource = SharedModeSource}); }
double clsTarn4x::get_MeasureOfdmSignalToNoiseRatio() { return ReadNumber({.Member = Members::MeasureOfdmSignalToNoiseRatio, .Query = "READ:DVBT:SIGNAL:NOISE?"}); }
double clsTarn4x::get_MeasureBerBeforeVit() { return ReadNumber({.Member = Members::MeasureBerBeforeVit, .Query = "READ:DVBT:BER:BVIT?"}); }
double clsTarn4x::get_MeasureBerBeforeRS() { return ReadNumber({.Member = Members::MeasureBerBeforeRS, .Query = "READ:DVBT:BER:BRS?"}); }
double clsTarn4x::get_MeasureBerAfterRS() { return ReadNumber({.Member = Members::MeasureBerAfterRS, .Query = "READ:DVBT:BER:ARS?"}); }
// clang-format on

void clsTarn4x::MeasureResetBer() {
    Guarded(MethodOf(Members::MeasureResetBer), [&] { channel.SendCommand("SENS:DVBT:BER:RES"); });
}

// A loss of lock or synchronisation makes the stored impulse response worthless.
bool clsTarn4x::get_MeasureCarrierLoopOutOfLock() {
    return Asked({.Member = Members::MeasureCarrierLoopOutOfLock, .Query = "READ:DVBT:OFDM:UNLOCKED?"},
                 [this](const std::string& text) {
                     const bool unlocked = ToBoolean(text);
                     if (unlocked) ImpulseResponseKnown = false;
                     return unlocked;
                 });
}

bool clsTarn4x::get_MeasureMpegTsUnSync() {
    return Asked({.Member = Members::MeasureMpegTsUnSync, .Query = "READ:DVBT:MPEG:TS:LOCKED?"},
                 [this](const std::string& text) {
                     const bool unsynchronised = !ToBoolean(text);
                     if (unsynchronised) ImpulseResponseKnown = false;
                     return unsynchronised;
                 });
}

}  // namespace tarn4x
