#pragma once

#include <string>
#include <vector>

// The type library as compiled hosts know it, written down by hand: whoever changes it breaks them.

/// Members in the order of the function table: identifier, "call", "get" or "control" (a write followed by a read),
/// name, arguments and type.
inline const std::string DriverMembers =
    "600300D2 call Reset(); 68030110 get ScreenShot(udtMode As TarnScreenShotModes, bytBuffer As Byte()&) As Boolean; "
    "680300D1 get MeasureTsBitrate() As Double; 680300D0 get MeasureBitrateOffset() As Double; "
    "680300CF control MeasureNoiseGenerator() As Double; 6803010F control MeasureCdAddNoise() As TarnSwitchStates; "
    "6803010E control MeasureCdAddNoiseCn() As Double; 6803010D control MeasureCdSymbolCount() As Long; "
    "680300CE get ResponseString() As Variant; 680300CD get MeasureTdCcdfCrestFactorMargin() As Double; "
    "680300CC get MeasureTdCcdfCrestFactorMax() As Double; 680300CB get MeasureTdCcdfCrestFactorCurrent() As Double; "
    "680300CA get MeasureFdSpectrumShoulderLower() As Double; "
    "680300C9 get MeasureFdSpectrumShoulderUpper() As Double; "
    "680300C8 control MeasureFdSpectrumStartFreq() As Double; 680300C7 control MeasureFdSpectrumStopFreq() As Double; "
    "680300C6 get MeasureFrequencyOffset() As Double; 680300C5 get MeasureRfLevel() As Double; "
    "680300C4 get MeasureOfdmCarrierSuppression() As Double; "
    "680300C3 get MeasureOfdmCarrierSuppressionPhase() As Double; 680300C2 get MeasureOfdmMerRmsDb() As Double; "
    "680300C1 get MeasureOfdmMerRmsPct() As Double; 6803010C get MeasureOfdmMerPeakPct() As Double; "
    "680300C0 get MeasureOfdmPhaseJitter() As Double; 680300BF get MeasureOfdmIqPhaseError() As Double; "
    "680300BE get MeasureOfdmIqAmplImbalance() As Double; 680300BD get MeasureOfdmSignalToNoiseRatio() As Double; "
    "600300D3 call MeasureResetBer(); 680300BC get MeasureBerBeforeVit() As Double; "
    "680300BB get MeasureBerBeforeRS() As Double; 680300BA get MeasureBerAfterRS() As Double; "
    "680300B9 get MeasureCarrierLoopOutOfLock() As Boolean; 680300B8 get MeasureMpegTsUnSync() As Boolean; "
    "680300B7 get ReferenceLocked() As Boolean; 680300B6 get StateSignal() As Boolean; "
    "6803010B control SpecFuncLoopBandwidth() As TarnSpecFuncLoopBandwidths; "
    "680300B5 control SpecFuncMinBerIntegration() As TarnSpecFuncMinBerIntegrations; "
    "680300B4 get MeasureOrderOfQam() As TarnStatusOrderOfQams; "
    "680300B3 control StatusSawFilterBW() As TarnStatusSawFilterBWs; "
    "680300B2 control StatusChannelBW() As TarnStatusChannelBWs; "
    "680300B1 control Setup10MhzRef() As TarnReferenceSources; "
    "680300B0 control SetupLevelUnit() As TarnSetupLevelUnits; 6803010A control SetupTime() As Date; "
    "68030109 control SetupDate() As Date; 680300AF control InputAttenuation() As TarnInputAttenuations; "
    "680300AE control InputAttenuation_Receiver() As TarnInputAttenuations; "
    "68030108 control InputAttenuationMode_Receiver() As TarnRxAttenModes; "
    "680300AD get InputAttenuationValue() As TarnInputAttenuations; "
    "68030107 get InputAttenuationValue_Receiver() As TarnInputAttenuations; "
    "68030106 get InputAttenuationValue_Demod() As TarnDemodAttenVals; "
    "680300AC control InputAttenuation_Demod() As TarnDemodAttenuations; "
    "680300AB control InputPort() As TarnInputPorts; 680300AA control Mode() As TarnModes; "
    "680300A9 control MeasureMode() As TarnMeasureModes; 00000000 control RF() As Double; "
    "680300A8 get MeasureFdPhaseResponse() As Double; 680300A7 get MeasureFdGroupDelayResponse() As Double; "
    "680300A6 get MeasureFdAmplitudeResponse() As Double; 600300D4 call MeasureTdImpulseResponse(); "
    "680300A5 get ImpulseResponseAtten(intNumber As Integer&) As Double; "
    "680300A4 get ImpulseResponseDelay(intNumber As Integer&) As Double; 680300A3 get Prefix() As Variant; "
    "680300A2 get Postfix() As Variant; 680300A1 control MeasureOfdmStartCarrier() As Integer; "
    "680300A0 control MeasureOfdmStopCarrier() As Integer; 6803009F get MeasureFftMode() As TarnStatusFftModes; "
    "6803009E get MeasureOfdmAverage() As Integer; 68030105 control StatusOfdmAlpha() As TarnStatusAlphas; "
    "68030104 control StatusOfdmCodeRate(udtPriority As TarnStatusHierarchicalModes) As TarnStatusCodeRates; "
    "6803009D control StatusOfdmCodeRateMode() As TarnStatusOfdmCodeRateModes; "
    "68030103 control StatusOfdmFftMode() As TarnStatusFftModes; "
    "68030102 control StatusOfdmGuardInterval() As TarnStatusGuardIntervals; "
    "68030101 control StatusOfdmOrderOfQam() As TarnStatusOrderOfQams; "
    "6803009C control StatusMpegDataOutput() As TarnStatusHierarchicalModes; "
    "6803009B get MeasureFftModeTps() As TarnStatusFftModes; "
    "6803009A get MeasureGuardIntervalTps() As TarnStatusGuardIntervals; "
    "68030099 get MeasureOrderOfQamTps() As TarnStatusOrderOfQams; "
    "68030098 get MeasureAlphaTps() As TarnStatusAlphas; 68030097 get MeasureCodeRateTps() As TarnStatusCodeRates; "
    "68030096 get MeasureCodeRate() As TarnStatusCodeRates; "
    "68030095 control SpecFuncSystOptims() As TarnSpecFuncSystOptims; "
    "68030094 control InputAttenHighAdjChanPower() As TarnSwitchStates; "
    "68030093 control MeasureFdSpectrumDetector() As TarnFdSpectrumDetectors; "
    "68030092 get MeasureFdSpectrumAverage() As Integer; 68030091 control MeasureFdSpectrumAverageCount() As Integer; "
    "68030090 get MeasureTdCrestFactorAqu() As Integer; "
    "600300D7 call MeasureOfdmCarrierRange(intStart As Integer, intStop As Integer); "
    "6803008F get AlarmStatistics() As _clsStatistics&; 600300D8 call AlarmRegisterClear(); "
    "6803008E get Identity() As String; 6803008D get Manufacturer() As String; 68030100 get ModelNumber() As String; "
    "6803008B get SerialNumber() As String; 6803008A get FirmwareVersion() As String; "
    "68030089 get InstalledHardware() As String; "
    "600300E0 call FormatFftMode(udtValue As TarnStatusFftModes) As String; "
    "600300E1 call FormatGuardInterval(udtValue As TarnStatusGuardIntervals) As String; "
    "600300E2 call FormatOrderOfQam(udtValue As TarnStatusOrderOfQams) As String; "
    "600300E3 call FormatAlpha(udtValue As TarnStatusAlphas) As String; "
    "600300E4 call FormatCodeRate(udtValue As TarnStatusCodeRates) As String; "
    "600300F7 call ValueCodeRate(udtValue As TarnStatusCodeRates) As Double";

inline const std::string StatisticsMembers =
    "68030015 control Statistics() As String; 68030014 get MonitoringTime() As Date; 68030013 get Level() As Date; "
    "68030012 get Synchronisation() As Date; 68030011 get BerBeforeVit() As Date; 68030010 get BerBeforeRs() As Date; "
    "6803000F get BerAfterRs() As Date; 6803000E get MpegDataErrorTime() As Date; "
    "6803000D get CorrCntBeforeVit() As Double; 6803000C get CorrCntBeforeRs() As Double; "
    "6803000B get MpegDataErrorCntAfterRs() As Double; 68030016 get ModErrorRatio() As Date";

inline const std::string RegisterMembers =
    "60030000 call IRegister_GetClassDescription() As String; 60030001 call IRegister_GetClassName() As String";

struct ExpectedEnumeration {
    const char* name;
    const char* values;
};

// clang-format off
inline const std::vector<ExpectedEnumeration> Enumerations = {
    {"ErrorConstants", "xtarnInvalidPropertyValue 380, xtarnArgumentNotOptional 449, xtarnQueryFailed 2004, "
     "xtarnCommandFailed 2005, xtarnBadMeasureMode 2016, xtarnBadInputPort 2018, xtarnFuntionNotAvailable 2019, "
     "xtarnBadRemoteControlPort 2024, xtarnBadCodeRateMode 2025"},
    {"TarnMeasureModes", "tarnUndefined -1, tarnNORM 0, tarnCDI 1, tarnMDB 2, tarnMPCT 3, tarnINT 4, tarnIQ 5, "
     "tarnAPH 6, tarnAGD 7, tarnPOL 8, tarnSP_1 9, tarnSP_2 10, tarnSP_3 11, tarnADIS 12, tarnCCDF 13, tarnIR_1 14, "
     "tarnIR_2 15, tarnIR_3 16, tarnHIST 17, tarnPAR 18, tarnCENV 19"},
    {"TarnModes", "tarnNYQI 1, tarnNYQM 2, tarnNYQN 3, tarnQAM 4, tarnQAMA 5, tarnJ83A 6, tarnJ83B 7, tarnJ83C 8, "
     "tarnMPEG 9, tarnM83A 10, tarnM83B 11, tarnM83C 12, tarnDVBT 13, tarnATSC 14, tarnNTSC 15"},
    {"TarnInputPorts", "tarnReceiver 2, tarnDemod 4, tarnIF 128, tarnReceiver50ohm 50, tarnReceiver75ohm 75"},
    {"TarnInputAttenuations", "tarnAttenAuto 255, tarnAtten00 0, tarnAtten05 5, tarnAtten10 10, tarnAtten15 15, "
     "tarnAtten20 20, tarnAtten25 25, tarnAtten30 30, tarnAtten35 35, tarnAtten40 40, tarnAtten45 45, tarnAtten50 "
     "50, tarnAtten55 55"},
    {"TarnStatusOrderOfQams", "tarnQamUnknown -1, tarnQam4 4, tarnQam16 16, tarnQam64 64"},
    {"TarnDemodAttenuations", "tarnDemodAttenAuto 1, tarnDemodManualLowAtten 2, tarnDemodManualLowPreamp 3, "
     "tarnDemodManualHigh 4"},
    {"TarnDemodAttenVals", "tarnDAVManualLowPreamp 0, tarnDAVManualLowAtten 1, tarnDAVManualHigh 2, "
     "tarnDAVAutoLowPreamp 10, tarnDAVAutoLowAtten 11, tarnDAVAutoHigh 12"},
    {"TarnRxAttenModes", "tarnRxAttenLoNoise 0, tarnRxAttenNormal 1, tarnRxAttenLoDistn 2, tarnRxAttenLowestDistn 3"},
    {"TarnSetupLevelUnits", "tarnDBMV 0, tarnDBPW 1, tarnDBUW 2, tarnDBM 3, tarnDBUV 4, tarnMV 5"},
    {"TarnStatusSawFilterBWs", "tarnSawOFF 0, tarnSaw6MHz 6, tarnSaw7MHz 7, tarnSaw8MHz 8"},
    {"TarnStatusChannelBWs", "tarnCh6MHz 6, tarnCh7MHz 7, tarnCh8MHz 8"},
    {"TarnSpecFuncMinBerIntegrations", "tarnBerEXT 0, tarnBer1 1, tarnBer10 10, tarnBer100 100, tarnBer1000 1000"},
    {"TarnSpecFuncEqualizers", "tarnEqualizerOff 0, tarnEqualizerOn 1, tarnEqualizerFreeze 2"},
    {"TarnReferenceSources", "tarnInternal 0, tarnExternal 1"},
    {"TarnStatusFftModes", "tarnFftUnknown -1, tarn2k 0, tarn8k 1"},
    {"TarnStatusOfdmCodeRateModes", "tarnAuto 0, tarnMan 1, tarnTps 2"},
    {"TarnStatusHierarchicalModes", "tarnLow 0, tarnHigh 1"},
    {"TarnStatusGuardIntervals", "tarnGiUnknown -1, tarn1_4 4, tarn1_8 8, tarn1_16 16, tarn1_32 32"},
    {"TarnStatusCodeRates", "tarnCrUnknown -1, tarn1_2 0, tarn2_3 1, tarn3_4 2, tarn5_6 3, tarn7_8 4"},
    {"TarnStatusAlphas", "tarnAlphaUnknown -1, tarn1NH 0, tarn1H 1, tarn2H 2, tarn4H 3"},
    {"TarnSpecFuncSystOptims", "tarnMobile 0, tarnFastSfn 1, tarnSlowHighNoise 2, tarnSlowLab 3"},
    {"TarnSpecFuncLoopBandwidths", "tarnLbsLo 0, tarnLbsMed 1, tarnLbsHi 2"},
    {"TarnSwitchStates", "tarnOff 0, tarnOn 1"},
    {"TarnFdSpectrumDetectors", "tarnMIN 0, tarnRMS 1, tarnMAX 2"},
    {"TarnScreenShotModes", "tarnCapture 1, tarnTransfer 2, tarnIncludeHeader 4"},
};
// clang-format on
