#pragma once

#include <vector>

// The type library as compiled hosts know it, written down by hand: whoever changes it breaks them.

/// What a member's slots are: Control is a write followed by a read.
enum Access { Method, Read, Control };

struct ExpectedMember {
    const char* name;
    unsigned identifier;
    Access access;
    const char* type;
    const char* arguments = "";
};

struct ExpectedEnumeration {
    const char* name;
    const char* values;
};

inline const std::vector<ExpectedMember> DriverMembers = {
    {"Reset", 0x600300D2, Method, ""},
    {"ScreenShot", 0x68030110, Read, "Boolean", "udtMode As TarnScreenShotModes, bytBuffer As Byte()&"},
    {"MeasureTsBitrate", 0x680300D1, Read, "Double"},
    {"MeasureBitrateOffset", 0x680300D0, Read, "Double"},
    {"MeasureNoiseGenerator", 0x680300CF, Control, "Double"},
    {"MeasureCdAddNoise", 0x6803010F, Control, "TarnSwitchStates"},
    {"MeasureCdAddNoiseCn", 0x6803010E, Control, "Double"},
    {"MeasureCdSymbolCount", 0x6803010D, Control, "Long"},
    {"ResponseString", 0x680300CE, Read, "Variant"},
    {"MeasureTdCcdfCrestFactorMargin", 0x680300CD, Read, "Double"},
    {"MeasureTdCcdfCrestFactorMax", 0x680300CC, Read, "Double"},
    {"MeasureTdCcdfCrestFactorCurrent", 0x680300CB, Read, "Double"},
    {"MeasureFdSpectrumShoulderLower", 0x680300CA, Read, "Double"},
    {"MeasureFdSpectrumShoulderUpper", 0x680300C9, Read, "Double"},
    {"MeasureFdSpectrumStartFreq", 0x680300C8, Control, "Double"},
    {"MeasureFdSpectrumStopFreq", 0x680300C7, Control, "Double"},
    {"MeasureFrequencyOffset", 0x680300C6, Read, "Double"},
    {"MeasureRfLevel", 0x680300C5, Read, "Double"},
    {"MeasureOfdmCarrierSuppression", 0x680300C4, Read, "Double"},
    {"MeasureOfdmCarrierSuppressionPhase", 0x680300C3, Read, "Double"},
    {"MeasureOfdmMerRmsDb", 0x680300C2, Read, "Double"},
    {"MeasureOfdmMerRmsPct", 0x680300C1, Read, "Double"},
    {"MeasureOfdmMerPeakPct", 0x6803010C, Read, "Double"},
    {"MeasureOfdmPhaseJitter", 0x680300C0, Read, "Double"},
    {"MeasureOfdmIqPhaseError", 0x680300BF, Read, "Double"},
    {"MeasureOfdmIqAmplImbalance", 0x680300BE, Read, "Double"},
    {"MeasureOfdmSignalToNoiseRatio", 0x680300BD, Read, "Double"},
    {"MeasureResetBer", 0x600300D3, Method, ""},
    {"MeasureBerBeforeVit", 0x680300BC, Read, "Double"},
    {"MeasureBerBeforeRS", 0x680300BB, Read, "Double"},
    {"MeasureBerAfterRS", 0x680300BA, Read, "Double"},
    {"MeasureCarrierLoopOutOfLock", 0x680300B9, Read, "Boolean"},
    {"MeasureMpegTsUnSync", 0x680300B8, Read, "Boolean"},
    {"ReferenceLocked", 0x680300B7, Read, "Boolean"},
    {"StateSignal", 0x680300B6, Read, "Boolean"},
    {"SpecFuncLoopBandwidth", 0x6803010B, Control, "TarnSpecFuncLoopBandwidths"},
    {"SpecFuncMinBerIntegration", 0x680300B5, Control, "TarnSpecFuncMinBerIntegrations"},
    {"MeasureOrderOfQam", 0x680300B4, Read, "TarnStatusOrderOfQams"},
    {"StatusSawFilterBW", 0x680300B3, Control, "TarnStatusSawFilterBWs"},
    {"StatusChannelBW", 0x680300B2, Control, "TarnStatusChannelBWs"},
    {"Setup10MhzRef", 0x680300B1, Control, "TarnReferenceSources"},
    {"SetupLevelUnit", 0x680300B0, Control, "TarnSetupLevelUnits"},
    {"SetupTime", 0x6803010A, Control, "Date"},
    {"SetupDate", 0x68030109, Control, "Date"},
    {"InputAttenuation", 0x680300AF, Control, "TarnInputAttenuations"},
    {"InputAttenuation_Receiver", 0x680300AE, Control, "TarnInputAttenuations"},
    {"InputAttenuationMode_Receiver", 0x68030108, Control, "TarnRxAttenModes"},
    {"InputAttenuationValue", 0x680300AD, Read, "TarnInputAttenuations"},
    {"InputAttenuationValue_Receiver", 0x68030107, Read, "TarnInputAttenuations"},
    {"InputAttenuationValue_Demod", 0x68030106, Read, "TarnDemodAttenVals"},
    {"InputAttenuation_Demod", 0x680300AC, Control, "TarnDemodAttenuations"},
    {"InputPort", 0x680300AB, Control, "TarnInputPorts"},
    {"Mode", 0x680300AA, Control, "TarnModes"},
    {"MeasureMode", 0x680300A9, Control, "TarnMeasureModes"},
    {"RF", 0, Control, "Double"},
    {"MeasureFdPhaseResponse", 0x680300A8, Read, "Double"},
    {"MeasureFdGroupDelayResponse", 0x680300A7, Read, "Double"},
    {"MeasureFdAmplitudeResponse", 0x680300A6, Read, "Double"},
    {"MeasureTdImpulseResponse", 0x600300D4, Method, ""},
    {"ImpulseResponseAtten", 0x680300A5, Read, "Double", "intNumber As Integer&"},
    {"ImpulseResponseDelay", 0x680300A4, Read, "Double", "intNumber As Integer&"},
    {"Prefix", 0x680300A3, Read, "Variant"},
    {"Postfix", 0x680300A2, Read, "Variant"},
    {"MeasureOfdmStartCarrier", 0x680300A1, Control, "Integer"},
    {"MeasureOfdmStopCarrier", 0x680300A0, Control, "Integer"},
    {"MeasureFftMode", 0x6803009F, Read, "TarnStatusFftModes"},
    {"MeasureOfdmAverage", 0x6803009E, Read, "Integer"},
    {"StatusOfdmAlpha", 0x68030105, Control, "TarnStatusAlphas"},
    {"StatusOfdmCodeRate", 0x68030104, Control, "TarnStatusCodeRates", "udtPriority As TarnStatusHierarchicalModes"},
    {"StatusOfdmCodeRateMode", 0x6803009D, Control, "TarnStatusOfdmCodeRateModes"},
    {"StatusOfdmFftMode", 0x68030103, Control, "TarnStatusFftModes"},
    {"StatusOfdmGuardInterval", 0x68030102, Control, "TarnStatusGuardIntervals"},
    {"StatusOfdmOrderOfQam", 0x68030101, Control, "TarnStatusOrderOfQams"},
    {"StatusMpegDataOutput", 0x6803009C, Control, "TarnStatusHierarchicalModes"},
    {"MeasureFftModeTps", 0x6803009B, Read, "TarnStatusFftModes"},
    {"MeasureGuardIntervalTps", 0x6803009A, Read, "TarnStatusGuardIntervals"},
    {"MeasureOrderOfQamTps", 0x68030099, Read, "TarnStatusOrderOfQams"},
    {"MeasureAlphaTps", 0x68030098, Read, "TarnStatusAlphas"},
    {"MeasureCodeRateTps", 0x68030097, Read, "TarnStatusCodeRates"},
    {"MeasureCodeRate", 0x68030096, Read, "TarnStatusCodeRates"},
    {"SpecFuncSystOptims", 0x68030095, Control, "TarnSpecFuncSystOptims"},
    {"InputAttenHighAdjChanPower", 0x68030094, Control, "TarnSwitchStates"},
    {"MeasureFdSpectrumDetector", 0x68030093, Control, "TarnFdSpectrumDetectors"},
    {"MeasureFdSpectrumAverage", 0x68030092, Read, "Integer"},
    {"MeasureFdSpectrumAverageCount", 0x68030091, Control, "Integer"},
    {"MeasureTdCrestFactorAqu", 0x68030090, Read, "Integer"},
    {"MeasureOfdmCarrierRange", 0x600300D7, Method, "", "intStart As Integer, intStop As Integer"},
    {"AlarmStatistics", 0x6803008F, Read, "_clsStatistics"},
    {"AlarmRegisterClear", 0x600300D8, Method, ""},
    {"Identity", 0x6803008E, Read, "String"},
    {"Manufacturer", 0x6803008D, Read, "String"},
    {"ModelNumber", 0x68030100, Read, "String"},
    {"SerialNumber", 0x6803008B, Read, "String"},
    {"FirmwareVersion", 0x6803008A, Read, "String"},
    {"InstalledHardware", 0x68030089, Read, "String"},
    {"FormatFftMode", 0x600300E0, Method, "String", "udtValue As TarnStatusFftModes"},
    {"FormatGuardInterval", 0x600300E1, Method, "String", "udtValue As TarnStatusGuardIntervals"},
    {"FormatOrderOfQam", 0x600300E2, Method, "String", "udtValue As TarnStatusOrderOfQams"},
    {"FormatAlpha", 0x600300E3, Method, "String", "udtValue As TarnStatusAlphas"},
    {"FormatCodeRate", 0x600300E4, Method, "String", "udtValue As TarnStatusCodeRates"},
    {"ValueCodeRate", 0x600300F7, Method, "Double", "udtValue As TarnStatusCodeRates"},
};

inline const std::vector<ExpectedMember> StatisticsMembers = {
    {"Statistics", 0x68030015, Control, "String"},
    {"MonitoringTime", 0x68030014, Read, "Date"},
    {"Level", 0x68030013, Read, "Date"},
    {"Synchronisation", 0x68030012, Read, "Date"},
    {"BerBeforeVit", 0x68030011, Read, "Date"},
    {"BerBeforeRs", 0x68030010, Read, "Date"},
    {"BerAfterRs", 0x6803000F, Read, "Date"},
    {"MpegDataErrorTime", 0x6803000E, Read, "Date"},
    {"CorrCntBeforeVit", 0x6803000D, Read, "Double"},
    {"CorrCntBeforeRs", 0x6803000C, Read, "Double"},
    {"MpegDataErrorCntAfterRs", 0x6803000B, Read, "Double"},
    {"ModErrorRatio", 0x68030016, Read, "Date"},
};

inline const std::vector<ExpectedMember> RegisterMembers = {
    {"IRegister_GetClassDescription", 0x60030000, Method, "String"},
    {"IRegister_GetClassName", 0x60030001, Method, "String"},
};

inline const std::vector<ExpectedEnumeration> Enumerations = {
    {"ErrorConstants",
     "xtarnInvalidPropertyValue 380, xtarnArgumentNotOptional 449, xtarnQueryFailed 2004, xtarnCommandFailed 2005, "
     "xtarnBadMeasureMode 2016, xtarnBadInputPort 2018, xtarnFuntionNotAvailable 2019, xtarnBadRemoteControlPort 2024, "
     "xtarnBadCodeRateMode 2025"},
    {"TarnMeasureModes",
     "tarnUndefined -1, tarnNORM 0, tarnCDI 1, tarnMDB 2, tarnMPCT 3, tarnINT 4, tarnIQ 5, tarnAPH 6, tarnAGD 7, "
     "tarnPOL 8, tarnSP_1 9, tarnSP_2 10, tarnSP_3 11, tarnADIS 12, tarnCCDF 13, tarnIR_1 14, tarnIR_2 15, tarnIR_3 "
     "16, tarnHIST 17, tarnPAR 18, tarnCENV 19"},
    {"TarnModes",
     "tarnNYQI 1, tarnNYQM 2, tarnNYQN 3, tarnQAM 4, tarnQAMA 5, tarnJ83A 6, tarnJ83B 7, tarnJ83C 8, tarnMPEG 9, "
     "tarnM83A 10, tarnM83B 11, tarnM83C 12, tarnDVBT 13, tarnATSC 14, tarnNTSC 15"},
    {"TarnInputPorts", "tarnReceiver 2, tarnDemod 4, tarnIF 128, tarnReceiver50ohm 50, tarnReceiver75ohm 75"},
    {"TarnInputAttenuations",
     "tarnAttenAuto 255, tarnAtten00 0, tarnAtten05 5, tarnAtten10 10, tarnAtten15 15, tarnAtten20 20, tarnAtten25 25, "
     "tarnAtten30 30, tarnAtten35 35, tarnAtten40 40, tarnAtten45 45, tarnAtten50 50, tarnAtten55 55"},
    {"TarnStatusOrderOfQams", "tarnQamUnknown -1, tarnQam4 4, tarnQam16 16, tarnQam64 64"},
    {"TarnDemodAttenuations",
     "tarnDemodAttenAuto 1, tarnDemodManualLowAtten 2, tarnDemodManualLowPreamp 3, tarnDemodManualHigh 4"},
    {"TarnDemodAttenVals",
     "tarnDAVManualLowPreamp 0, tarnDAVManualLowAtten 1, tarnDAVManualHigh 2, tarnDAVAutoLowPreamp 10, "
     "tarnDAVAutoLowAtten 11, tarnDAVAutoHigh 12"},
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
