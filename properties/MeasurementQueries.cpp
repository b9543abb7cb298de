#include "core/Recipes.h"
#include "properties/SharedRows.h"

namespace tarn4x {

namespace {

constexpr auto SharedModeSource = "MeasureOfdmAverage";  // four members name it in their mode error

}  // namespace

// A member is one line.
// clang-format off
double clsTarn4x::get_MeasureTsBitrate() { return ReadNumber({.Member = "MeasureTsBitrate", .Query = "READ:DVBT:TS:BITRATE?"}); }
double clsTarn4x::get_MeasureBitrateOffset() { return ReadNumber({.Member = "MeasureBitrateOffset", .Query = "READ:DVBT:BITRATE:OFFSET?", .FailsAs = "MeasureTsBitrate"}); }
double clsTarn4x::get_MeasureTdCcdfCrestFactorMargin() { return ReadNumber({.Member = "MeasureTdCcdfCrestFactorMargin", .Query = "READ:DVBT:CREST:MARGIN?", .Modes = {{tarnADIS, tarnCENV, tarnCCDF}}}); }
double clsTarn4x::get_MeasureTdCcdfCrestFactorMax() { return ReadNumber({.Member = "MeasureTdCcdfCrestFactorMax", .Query = "READ:DVBT:CREST:MAX?", .Modes = {{tarnCENV, tarnADIS, tarnCCDF}}}); }
double clsTarn4x::get_MeasureTdCcdfCrestFactorCurrent() { return ReadNumber({.Member = "MeasureTdCcdfCrestFactorCurrent", .Query = "READ:DVBT:CREST:CURRENT?", .Modes = {{tarnCENV, tarnADIS, tarnCCDF}}}); }
double clsTarn4x::get_MeasureFdSpectrumShoulderLower() { return ReadNumber({.Member = "MeasureFdSpectrumShoulderLower", .Query = "READ:DVBT:SPECTRUM:SHO:LOW?", .Modes = Spectrum}); }
double clsTarn4x::get_MeasureFdSpectrumShoulderUpper() { return ReadNumber({.Member = "MeasureFdSpectrumShoulderUpper", .Query = "READ:DVBT:SPECTRUM:SHO:UPP?", .Modes = Spectrum}); }
double clsTarn4x::get_MeasureFrequencyOffset() { return 1000.0 * ReadNumber({.Member = "MeasureFrequencyOffset", .Query = "READ:DVBT:FREQ:OFFSET?", .Modes = {{tarnNORM}}}); }
double clsTarn4x::get_MeasureRfLevel() { return ReadNumber({.Member = "MeasureRfLevel", .Query = "READ:RF:LEVEL?"}); }
double clsTarn4x::get_MeasureOfdmCarrierSuppression() { return ReadNumber({.Member = "MeasureOfdmCarrierSuppression", .Query = "READ:DVBT:CARRIER:SUPPRESSION?", .Modes = {{tarnPAR}}, .ModeSource = SharedModeSource}); }
double clsTarn4x::get_MeasureOfdmCarrierSuppressionPhase() { return ReadNumber({.Member = "MeasureOfdmCarrierSuppressionPhase", .Query = "READ:DVBT:CARRIER:SUPPRESSION:PHASE?", .Modes = {{tarnPAR}}, .ModeSource = SharedModeSource}); }
double clsTarn4x::get_MeasureOfdmMerRmsDb() { return ReadNumber({.Member = "MeasureOfdmMerRmsDb", .Query = "READ:DVBT:MER:RMS? DB", .Modes = {{tarnHIST, tarnPAR}}}); }
double clsTarn4x::get_MeasureOfdmMerRmsPct() { return ReadNumber({.Member = "MeasureOfdmMerRmsPct", .Query = "READ:DVBT:MER:RMS? PCT", .Modes = {{tarnHIST, tarnPAR}}}); }
double clsTarn4x::get_MeasureOfdmMerPeakPct() { return ReadNumber({.Member = "MeasureOfdmMerPeakPct", .Query = "READ:DVBT:MER:PEAK? PCT", .Modes = {{tarnPAR}}}); }
double clsTarn4x::get_MeasureOfdmPhaseJitter() { return ReadNumber({.Member = "MeasureOfdmPhaseJitter", .Query = "READ:DVBT:JITTER?", .Modes = {{tarnPAR}}}); }
double clsTarn4x::get_MeasureOfdmIqPhaseError() { return ReadNumber({.Member = "MeasureOfdmIqPhaseError", .Query = "READ:DVBT:IQ:QERROR?", .Modes = {{tarnPAR}}, .ModeSource = SharedModeSource}); }
double clsTarn4x::get_MeasureOfdmIqAmplImbalance() { return ReadNumber({.Member = "MeasureOfdmIqAmplImbalance", .Query = "READ:DVBT:IQ:IMBALANCE?", .Modes = {{tarnPAR}}, .ModeSource = SharedModeSource}); }
double clsTarn4x::get_MeasureOfdmSignalToNoiseRatio() { return ReadNumber({.Member = "MeasureOfdmSignalToNoiseRatio", .Query = "READ:DVBT:SIGNAL:NOISE?", .Modes = {{tarnPAR}}}); }
double clsTarn4x::get_MeasureBerBeforeVit() { return ReadNumber({.Member = "MeasureBerBeforeVit", .Query = "READ:DVBT:BER:BVIT?"}); }
double clsTarn4x::get_MeasureBerBeforeRS() { return ReadNumber({.Member = "MeasureBerBeforeRS", .Query = "READ:DVBT:BER:BRS?"}); }
double clsTarn4x::get_MeasureBerAfterRS() { return ReadNumber({.Member = "MeasureBerAfterRS", .Query = "READ:DVBT:BER:ARS?"}); }
// clang-format on

void clsTarn4x::MeasureResetBer() {
    Guarded(MethodOf("MeasureResetBer"), [&] { channel.SendCommand("SENS:DVBT:BER:RES"); });
}

// A loss of lock or synchronisation makes the stored impulse response worthless.
bool clsTarn4x::get_MeasureCarrierLoopOutOfLock() {
    return Asked({.Member = "MeasureCarrierLoopOutOfLock", .Query = "READ:DVBT:OFDM:UNLOCKED?"},
                 [this](const std::string& text) {
                     const bool unlocked = ToBoolean(text);
                     if (unlocked) ImpulseResponseKnown = false;
                     return unlocked;
                 });
}

bool clsTarn4x::get_MeasureMpegTsUnSync() {
    return Asked({.Member = "MeasureMpegTsUnSync", .Query = "READ:DVBT:MPEG:TS:LOCKED?"},
                 [this](const std::string& text) {
                     const bool unsynchronised = !ToBoolean(text);
                     if (unsynchronised) ImpulseResponseKnown = false;
                     return unsynchronised;
                 });
}

}  // namespace tarn4x
