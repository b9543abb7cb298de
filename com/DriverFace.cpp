#include "com/DriverFace.h"

#include <cstdint>
#include <vector>

#include "com/Members.h"
#include "core/clsTarn4x.h"
#include "platform/com/DualFace.h"
#include "platform/com/Variants.h"

namespace com {
namespace {

using Driver = tarn4x::clsTarn4x;

// Gives the caller an array of the bytes for the one that it passed. Without bytes, and when the caller's array is
// fixed or locked, it stays as it is.
void HandOver(const std::vector<std::uint8_t>& bytes, SAFEARRAY** array) {
    if (bytes.empty() || (*array && ((*array)->fFeatures & FADF_FIXEDSIZE) != 0)) return;
    SAFEARRAY* handed = ToByteArray(bytes);
    if (*array && FAILED(SafeArrayDestroy(*array))) {
        SafeArrayDestroy(handed);
        return;
    }
    *array = handed;
}

class DriverFace : public DualFace<&CLSID_clsTarn4x, _clsTarn4x, IDriverIdentify, IDriverSetup> {
  public:
    // _clsTarn4x in table order; get_Manufacturer to get_InstalledHardware are those of IDriverIdentify too.

    STDMETHODIMP Reset() override { return Call(&Driver::Reset); }
    STDMETHODIMP get_ScreenShot(TarnScreenShotModes udtMode, SAFEARRAY** bytBuffer, VARIANT_BOOL* value) override {
        if (!bytBuffer) return E_POINTER;
        return Get(value, [&](Driver& driver) {
            std::vector<std::uint8_t> bytes;
            const bool done = driver.get_ScreenShot(static_cast<tarn4x::TarnScreenShotModes>(udtMode), bytes);
            HandOver(bytes, bytBuffer);
            return done;
        });
    }
    STDMETHODIMP get_MeasureTsBitrate(double* value) override { return Get(value, &Driver::get_MeasureTsBitrate); }
    STDMETHODIMP get_MeasureBitrateOffset(double* value) override {
        return Get(value, &Driver::get_MeasureBitrateOffset);
    }
    STDMETHODIMP put_MeasureNoiseGenerator(double value) override {
        return Put(value, &Driver::put_MeasureNoiseGenerator);
    }
    STDMETHODIMP get_MeasureNoiseGenerator(double* value) override {
        return Get(value, &Driver::get_MeasureNoiseGenerator);
    }
    STDMETHODIMP put_MeasureCdAddNoise(TarnSwitchStates value) override {
        return Put(value, &Driver::put_MeasureCdAddNoise);
    }
    STDMETHODIMP get_MeasureCdAddNoise(TarnSwitchStates* value) override {
        return Get(value, &Driver::get_MeasureCdAddNoise);
    }
    STDMETHODIMP put_MeasureCdAddNoiseCn(double value) override { return Put(value, &Driver::put_MeasureCdAddNoiseCn); }
    STDMETHODIMP get_MeasureCdAddNoiseCn(double* value) override {
        return Get(value, &Driver::get_MeasureCdAddNoiseCn);
    }
    STDMETHODIMP put_MeasureCdSymbolCount(long value) override { return Put(value, &Driver::put_MeasureCdSymbolCount); }
    STDMETHODIMP get_MeasureCdSymbolCount(long* value) override {
        return Get(value, &Driver::get_MeasureCdSymbolCount);
    }
    STDMETHODIMP get_ResponseString(VARIANT* value) override { return Get(value, &Driver::get_ResponseString); }
    STDMETHODIMP get_MeasureTdCcdfCrestFactorMargin(double* value) override {
        return Get(value, &Driver::get_MeasureTdCcdfCrestFactorMargin);
    }
    STDMETHODIMP get_MeasureTdCcdfCrestFactorMax(double* value) override {
        return Get(value, &Driver::get_MeasureTdCcdfCrestFactorMax);
    }
    STDMETHODIMP get_MeasureTdCcdfCrestFactorCurrent(double* value) override {
        return Get(value, &Driver::get_MeasureTdCcdfCrestFactorCurrent);
    }
    STDMETHODIMP get_MeasureFdSpectrumShoulderLower(double* value) override {
        return Get(value, &Driver::get_MeasureFdSpectrumShoulderLower);
    }
    STDMETHODIMP get_MeasureFdSpectrumShoulderUpper(double* value) override {
        return Get(value, &Driver::get_MeasureFdSpectrumShoulderUpper);
    }
    STDMETHODIMP put_MeasureFdSpectrumStartFreq(double value) override {
        return Put(value, &Driver::put_MeasureFdSpectrumStartFreq);
    }
    STDMETHODIMP get_MeasureFdSpectrumStartFreq(double* value) override {
        return Get(value, &Driver::get_MeasureFdSpectrumStartFreq);
    }
    STDMETHODIMP put_MeasureFdSpectrumStopFreq(double value) override {
        return Put(value, &Driver::put_MeasureFdSpectrumStopFreq);
    }
    STDMETHODIMP get_MeasureFdSpectrumStopFreq(double* value) override {
        return Get(value, &Driver::get_MeasureFdSpectrumStopFreq);
    }
    STDMETHODIMP get_MeasureFrequencyOffset(double* value) override {
        return Get(value, &Driver::get_MeasureFrequencyOffset);
    }
    STDMETHODIMP get_MeasureRfLevel(double* value) override { return Get(value, &Driver::get_MeasureRfLevel); }
    STDMETHODIMP get_MeasureOfdmCarrierSuppression(double* value) override {
        return Get(value, &Driver::get_MeasureOfdmCarrierSuppression);
    }
    STDMETHODIMP get_MeasureOfdmCarrierSuppressionPhase(double* value) override {
        return Get(value, &Driver::get_MeasureOfdmCarrierSuppressionPhase);
    }
    STDMETHODIMP get_MeasureOfdmMerRmsDb(double* value) override {
        return Get(value, &Driver::get_MeasureOfdmMerRmsDb);
    }
    STDMETHODIMP get_MeasureOfdmMerRmsPct(double* value) override {
        return Get(value, &Driver::get_MeasureOfdmMerRmsPct);
    }
    STDMETHODIMP get_MeasureOfdmMerPeakPct(double* value) override {
        return Get(value, &Driver::get_MeasureOfdmMerPeakPct);
    }
    STDMETHODIMP get_MeasureOfdmPhaseJitter(double* value) override {
        return Get(value, &Driver::get_MeasureOfdmPhaseJitter);
    }
    STDMETHODIMP get_MeasureOfdmIqPhaseError(double* value) override {
        return Get(value, &Driver::get_MeasureOfdmIqPhaseError);
    }
    STDMETHODIMP get_MeasureOfdmIqAmplImbalance(double* value) override {
        return Get(value, &Driver::get_MeasureOfdmIqAmplImbalance);
    }
    STDMETHODIMP get_MeasureOfdmSignalToNoiseRatio(double* value) override {
        return Get(value, &Driver::get_MeasureOfdmSignalToNoiseRatio);
    }
    STDMETHODIMP MeasureResetBer() override { return Call(&Driver::MeasureResetBer); }
    STDMETHODIMP get_MeasureBerBeforeVit(double* value) override {
        return Get(value, &Driver::get_MeasureBerBeforeVit);
    }
    STDMETHODIMP get_MeasureBerBeforeRS(double* value) override { return Get(value, &Driver::get_MeasureBerBeforeRS); }
    STDMETHODIMP get_MeasureBerAfterRS(double* value) override { return Get(value, &Driver::get_MeasureBerAfterRS); }
    STDMETHODIMP get_MeasureCarrierLoopOutOfLock(VARIANT_BOOL* value) override {
        return Get(value, &Driver::get_MeasureCarrierLoopOutOfLock);
    }
    STDMETHODIMP get_MeasureMpegTsUnSync(VARIANT_BOOL* value) override {
        return Get(value, &Driver::get_MeasureMpegTsUnSync);
    }
    STDMETHODIMP get_ReferenceLocked(VARIANT_BOOL* value) override { return Get(value, &Driver::get_ReferenceLocked); }
    STDMETHODIMP get_StateSignal(VARIANT_BOOL* value) override { return Get(value, &Driver::get_StateSignal); }
    STDMETHODIMP put_SpecFuncLoopBandwidth(TarnSpecFuncLoopBandwidths value) override {
        return Put(value, &Driver::put_SpecFuncLoopBandwidth);
    }
    STDMETHODIMP get_SpecFuncLoopBandwidth(TarnSpecFuncLoopBandwidths* value) override {
        return Get(value, &Driver::get_SpecFuncLoopBandwidth);
    }
    STDMETHODIMP put_SpecFuncMinBerIntegration(TarnSpecFuncMinBerIntegrations value) override {
        return Put(value, &Driver::put_SpecFuncMinBerIntegration);
    }
    STDMETHODIMP get_SpecFuncMinBerIntegration(TarnSpecFuncMinBerIntegrations* value) override {
        return Get(value, &Driver::get_SpecFuncMinBerIntegration);
    }
    STDMETHODIMP get_MeasureOrderOfQam(TarnStatusOrderOfQams* value) override {
        return Get(value, &Driver::get_MeasureOrderOfQam);
    }
    STDMETHODIMP put_StatusSawFilterBW(TarnStatusSawFilterBWs value) override {
        return Put(value, &Driver::put_StatusSawFilterBW);
    }
    STDMETHODIMP get_StatusSawFilterBW(TarnStatusSawFilterBWs* value) override {
        return Get(value, &Driver::get_StatusSawFilterBW);
    }
    STDMETHODIMP put_StatusChannelBW(TarnStatusChannelBWs value) override {
        return Put(value, &Driver::put_StatusChannelBW);
    }
    STDMETHODIMP get_StatusChannelBW(TarnStatusChannelBWs* value) override {
        return Get(value, &Driver::get_StatusChannelBW);
    }
    STDMETHODIMP put_Setup10MhzRef(TarnReferenceSources value) override {
        return Put(value, &Driver::put_Setup10MhzRef);
    }
    STDMETHODIMP get_Setup10MhzRef(TarnReferenceSources* value) override {
        return Get(value, &Driver::get_Setup10MhzRef);
    }
    STDMETHODIMP put_SetupLevelUnit(TarnSetupLevelUnits value) override {
        return Put(value, &Driver::put_SetupLevelUnit);
    }
    STDMETHODIMP get_SetupLevelUnit(TarnSetupLevelUnits* value) override {
        return Get(value, &Driver::get_SetupLevelUnit);
    }
    STDMETHODIMP put_SetupTime(DATE value) override { return Put(value, &Driver::put_SetupTime); }
    STDMETHODIMP get_SetupTime(DATE* value) override { return Get(value, &Driver::get_SetupTime); }
    STDMETHODIMP put_SetupDate(DATE value) override { return Put(value, &Driver::put_SetupDate); }
    STDMETHODIMP get_SetupDate(DATE* value) override { return Get(value, &Driver::get_SetupDate); }
    STDMETHODIMP put_InputAttenuation(TarnInputAttenuations value) override {
        return Put(value, &Driver::put_InputAttenuation);
    }
    STDMETHODIMP get_InputAttenuation(TarnInputAttenuations* value) override {
        return Get(value, &Driver::get_InputAttenuation);
    }
    STDMETHODIMP put_InputAttenuation_Receiver(TarnInputAttenuations value) override {
        return Put(value, &Driver::put_InputAttenuation_Receiver);
    }
    STDMETHODIMP get_InputAttenuation_Receiver(TarnInputAttenuations* value) override {
        return Get(value, &Driver::get_InputAttenuation_Receiver);
    }
    STDMETHODIMP put_InputAttenuationMode_Receiver(TarnRxAttenModes value) override {
        return Put(value, &Driver::put_InputAttenuationMode_Receiver);
    }
    STDMETHODIMP get_InputAttenuationMode_Receiver(TarnRxAttenModes* value) override {
        return Get(value, &Driver::get_InputAttenuationMode_Receiver);
    }
    STDMETHODIMP get_InputAttenuationValue(TarnInputAttenuations* value) override {
        return Get(value, &Driver::get_InputAttenuationValue);
    }
    STDMETHODIMP get_InputAttenuationValue_Receiver(TarnInputAttenuations* value) override {
        return Get(value, &Driver::get_InputAttenuationValue_Receiver);
    }
    STDMETHODIMP get_InputAttenuationValue_Demod(TarnDemodAttenVals* value) override {
        return Get(value, &Driver::get_InputAttenuationValue_Demod);
    }
    STDMETHODIMP put_InputAttenuation_Demod(TarnDemodAttenuations value) override {
        return Put(value, &Driver::put_InputAttenuation_Demod);
    }
    STDMETHODIMP get_InputAttenuation_Demod(TarnDemodAttenuations* value) override {
        return Get(value, &Driver::get_InputAttenuation_Demod);
    }
    STDMETHODIMP put_InputPort(TarnInputPorts value) override { return Put(value, &Driver::put_InputPort); }
    STDMETHODIMP get_InputPort(TarnInputPorts* value) override { return Get(value, &Driver::get_InputPort); }
    STDMETHODIMP put_Mode(TarnModes value) override { return Put(value, &Driver::put_Mode); }
    STDMETHODIMP get_Mode(TarnModes* value) override { return Get(value, &Driver::get_Mode); }
    STDMETHODIMP put_MeasureMode(TarnMeasureModes value) override { return Put(value, &Driver::put_MeasureMode); }
    STDMETHODIMP get_MeasureMode(TarnMeasureModes* value) override { return Get(value, &Driver::get_MeasureMode); }
    STDMETHODIMP put_RF(double value) override { return Put(value, &Driver::put_RF); }
    STDMETHODIMP get_RF(double* value) override { return Get(value, &Driver::get_RF); }
    STDMETHODIMP get_MeasureFdPhaseResponse(double* value) override {
        return Get(value, &Driver::get_MeasureFdPhaseResponse);
    }
    STDMETHODIMP get_MeasureFdGroupDelayResponse(double* value) override {
        return Get(value, &Driver::get_MeasureFdGroupDelayResponse);
    }
    STDMETHODIMP get_MeasureFdAmplitudeResponse(double* value) override {
        return Get(value, &Driver::get_MeasureFdAmplitudeResponse);
    }
    STDMETHODIMP MeasureTdImpulseResponse() override { return Call(&Driver::MeasureTdImpulseResponse); }
    STDMETHODIMP get_ImpulseResponseAtten(short* intNumber, double* value) override {
        return intNumber ? Get(value, &Driver::get_ImpulseResponseAtten, *intNumber) : E_POINTER;
    }
    STDMETHODIMP get_ImpulseResponseDelay(short* intNumber, double* value) override {
        return intNumber ? Get(value, &Driver::get_ImpulseResponseDelay, *intNumber) : E_POINTER;
    }
    STDMETHODIMP get_Prefix(VARIANT* value) override { return Get(value, &Driver::get_Prefix); }
    STDMETHODIMP get_Postfix(VARIANT* value) override { return Get(value, &Driver::get_Postfix); }
    STDMETHODIMP put_MeasureOfdmStartCarrier(short value) override {
        return Put(value, &Driver::put_MeasureOfdmStartCarrier);
    }
    STDMETHODIMP get_MeasureOfdmStartCarrier(short* value) override {
        return Get(value, &Driver::get_MeasureOfdmStartCarrier);
    }
    STDMETHODIMP put_MeasureOfdmStopCarrier(short value) override {
        return Put(value, &Driver::put_MeasureOfdmStopCarrier);
    }
    STDMETHODIMP get_MeasureOfdmStopCarrier(short* value) override {
        return Get(value, &Driver::get_MeasureOfdmStopCarrier);
    }
    STDMETHODIMP get_MeasureFftMode(TarnStatusFftModes* value) override {
        return Get(value, &Driver::get_MeasureFftMode);
    }
    STDMETHODIMP get_MeasureOfdmAverage(short* value) override { return Get(value, &Driver::get_MeasureOfdmAverage); }
    STDMETHODIMP put_StatusOfdmAlpha(TarnStatusAlphas value) override {
        return Put(value, &Driver::put_StatusOfdmAlpha);
    }
    STDMETHODIMP get_StatusOfdmAlpha(TarnStatusAlphas* value) override {
        return Get(value, &Driver::get_StatusOfdmAlpha);
    }
    STDMETHODIMP put_StatusOfdmCodeRate(TarnStatusHierarchicalModes udtPriority, TarnStatusCodeRates value) override {
        return Call(&Driver::put_StatusOfdmCodeRate, udtPriority, value);
    }
    STDMETHODIMP get_StatusOfdmCodeRate(TarnStatusHierarchicalModes udtPriority, TarnStatusCodeRates* value) override {
        return Get(value, &Driver::get_StatusOfdmCodeRate, udtPriority);
    }
    STDMETHODIMP put_StatusOfdmCodeRateMode(TarnStatusOfdmCodeRateModes value) override {
        return Put(value, &Driver::put_StatusOfdmCodeRateMode);
    }
    STDMETHODIMP get_StatusOfdmCodeRateMode(TarnStatusOfdmCodeRateModes* value) override {
        return Get(value, &Driver::get_StatusOfdmCodeRateMode);
    }
    STDMETHODIMP put_StatusOfdmFftMode(TarnStatusFftModes value) override {
        return Put(value, &Driver::put_StatusOfdmFftMode);
    }
    STDMETHODIMP get_StatusOfdmFftMode(TarnStatusFftModes* value) override {
        return Get(value, &Driver::get_StatusOfdmFftMode);
    }
    STDMETHODIMP put_StatusOfdmGuardInterval(TarnStatusGuardIntervals value) override {
        return Put(value, &Driver::put_StatusOfdmGuardInterval);
    }
    STDMETHODIMP get_StatusOfdmGuardInterval(TarnStatusGuardIntervals* value) override {
        return Get(value, &Driver::get_StatusOfdmGuardInterval);
    }
    STDMETHODIMP put_StatusOfdmOrderOfQam(TarnStatusOrderOfQams value) override {
        return Put(value, &Driver::put_StatusOfdmOrderOfQam);
    }
    STDMETHODIMP get_StatusOfdmOrderOfQam(TarnStatusOrderOfQams* value) override {
        return Get(value, &Driver::get_StatusOfdmOrderOfQam);
    }
    STDMETHODIMP put_StatusMpegDataOutput(TarnStatusHierarchicalModes value) override {
        return Put(value, &Driver::put_StatusMpegDataOutput);
    }
    STDMETHODIMP get_StatusMpegDataOutput(TarnStatusHierarchicalModes* value) override {
        return Get(value, &Driver::get_StatusMpegDataOutput);
    }
    STDMETHODIMP get_MeasureFftModeTps(TarnStatusFftModes* value) override {
        return Get(value, &Driver::get_MeasureFftModeTps);
    }
    STDMETHODIMP get_MeasureGuardIntervalTps(TarnStatusGuardIntervals* value) override {
        return Get(value, &Driver::get_MeasureGuardIntervalTps);
    }
    STDMETHODIMP get_MeasureOrderOfQamTps(TarnStatusOrderOfQams* value) override {
        return Get(value, &Driver::get_MeasureOrderOfQamTps);
    }
    STDMETHODIMP get_MeasureAlphaTps(TarnStatusAlphas* value) override {
        return Get(value, &Driver::get_MeasureAlphaTps);
    }
    STDMETHODIMP get_MeasureCodeRateTps(TarnStatusCodeRates* value) override {
        return Get(value, &Driver::get_MeasureCodeRateTps);
    }
    STDMETHODIMP get_MeasureCodeRate(TarnStatusCodeRates* value) override {
        return Get(value, &Driver::get_MeasureCodeRate);
    }
    STDMETHODIMP put_SpecFuncSystOptims(TarnSpecFuncSystOptims value) override {
        return Put(value, &Driver::put_SpecFuncSystOptims);
    }
    STDMETHODIMP get_SpecFuncSystOptims(TarnSpecFuncSystOptims* value) override {
        return Get(value, &Driver::get_SpecFuncSystOptims);
    }
    STDMETHODIMP put_InputAttenHighAdjChanPower(TarnSwitchStates value) override {
        return Put(value, &Driver::put_InputAttenHighAdjChanPower);
    }
    STDMETHODIMP get_InputAttenHighAdjChanPower(TarnSwitchStates* value) override {
        return Get(value, &Driver::get_InputAttenHighAdjChanPower);
    }
    STDMETHODIMP put_MeasureFdSpectrumDetector(TarnFdSpectrumDetectors value) override {
        return Put(value, &Driver::put_MeasureFdSpectrumDetector);
    }
    STDMETHODIMP get_MeasureFdSpectrumDetector(TarnFdSpectrumDetectors* value) override {
        return Get(value, &Driver::get_MeasureFdSpectrumDetector);
    }
    STDMETHODIMP get_MeasureFdSpectrumAverage(short* value) override {
        return Get(value, &Driver::get_MeasureFdSpectrumAverage);
    }
    STDMETHODIMP put_MeasureFdSpectrumAverageCount(short value) override {
        return Put(value, &Driver::put_MeasureFdSpectrumAverageCount);
    }
    STDMETHODIMP get_MeasureFdSpectrumAverageCount(short* value) override {
        return Get(value, &Driver::get_MeasureFdSpectrumAverageCount);
    }
    STDMETHODIMP get_MeasureTdCrestFactorAqu(short* value) override {
        return Get(value, &Driver::get_MeasureTdCrestFactorAqu);
    }
    STDMETHODIMP MeasureOfdmCarrierRange(short intStart, short intStop) override {
        return Call(&Driver::MeasureOfdmCarrierRange, intStart, intStop);
    }
    STDMETHODIMP get_AlarmStatistics(_clsStatistics** value) override {
        return Get(value, &Driver::get_AlarmStatistics);
    }
    STDMETHODIMP AlarmRegisterClear() override { return Call(&Driver::AlarmRegisterClear); }
    STDMETHODIMP get_Identity(BSTR* value) override { return Get(value, &Driver::get_Identity); }
    STDMETHODIMP get_Manufacturer(BSTR* value) override { return Get(value, &Driver::get_Manufacturer); }
    STDMETHODIMP get_ModelNumber(BSTR* value) override { return Get(value, &Driver::get_ModelNumber); }
    STDMETHODIMP get_SerialNumber(BSTR* value) override { return Get(value, &Driver::get_SerialNumber); }
    STDMETHODIMP get_FirmwareVersion(BSTR* value) override { return Get(value, &Driver::get_FirmwareVersion); }
    STDMETHODIMP get_InstalledHardware(BSTR* value) override { return Get(value, &Driver::get_InstalledHardware); }
    STDMETHODIMP FormatFftMode(TarnStatusFftModes udtValue, BSTR* value) override {
        return Get(value, &Driver::FormatFftMode, udtValue);
    }
    STDMETHODIMP FormatGuardInterval(TarnStatusGuardIntervals udtValue, BSTR* value) override {
        return Get(value, &Driver::FormatGuardInterval, udtValue);
    }
    STDMETHODIMP FormatOrderOfQam(TarnStatusOrderOfQams udtValue, BSTR* value) override {
        return Get(value, &Driver::FormatOrderOfQam, udtValue);
    }
    STDMETHODIMP FormatAlpha(TarnStatusAlphas udtValue, BSTR* value) override {
        return Get(value, &Driver::FormatAlpha, udtValue);
    }
    STDMETHODIMP FormatCodeRate(TarnStatusCodeRates udtValue, BSTR* value) override {
        return Get(value, &Driver::FormatCodeRate, udtValue);
    }
    STDMETHODIMP ValueCodeRate(TarnStatusCodeRates udtValue, double* value) override {
        return Get(value, &Driver::ValueCodeRate, udtValue);
    }

    // IDriverSetup

    STDMETHODIMP put_Name(BSTR name) override { return Put(name, &Driver::put_IDriverSetup_Name); }
    STDMETHODIMP get_Name(BSTR* name) override { return Get(name, &Driver::get_IDriverSetup_Name); }
    STDMETHODIMP get_Settings(INode** settings) override { return Get(settings, &Driver::get_IDriverSetup_Settings); }
    STDMETHODIMP put_OnLine(VARIANT_BOOL onLine) override { return Put(onLine, &Driver::put_IDriverSetup_OnLine); }
    STDMETHODIMP get_OnLine(VARIANT_BOOL* onLine) override { return Get(onLine, &Driver::get_IDriverSetup_OnLine); }

  private:
    template <class Out, class Member, class... In>
    HRESULT Get(Out* value, Member member, In... arguments) {
        return GetMember(driver_, __uuidof(_clsTarn4x), value, member, arguments...);
    }
    template <class Member, class... In>
    HRESULT Call(Member member, In... arguments) {
        return CallMember(driver_, __uuidof(_clsTarn4x), member, arguments...);
    }
    template <class In, class Member>
    HRESULT Put(In value, Member member) {
        return Call(member, value);
    }

    Driver driver_{ComFramework()};
};

}  // namespace

HRESULT CreateDriver(REFIID iid, void** object) { return Create<DriverFace>(iid, object); }

}  // namespace com
