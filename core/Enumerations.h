#pragma once

#include <cstdint>

namespace tarn4x {

/// Codes of the errors that the driver raises, offset by ObjectErrorBase.
enum ErrorConstants : std::int32_t {
    xtarnInvalidPropertyValue = 380,
    xtarnArgumentNotOptional = 449,
    xtarnQueryFailed = 2004,
    xtarnCommandFailed = 2005,
    xtarnBadMeasureMode = 2016,
    xtarnBadInputPort = 2018,
    xtarnFuntionNotAvailable = 2019,
    xtarnBadRemoteControlPort = 2024,
    xtarnBadCodeRateMode = 2025,
};

/// Measurement screens of the DVB-T receiver.
enum TarnMeasureModes : std::int32_t {
    tarnUndefined = -1,
    tarnNORM = 0,
    tarnCDI = 1,
    tarnMDB = 2,
    tarnMPCT = 3,
    tarnINT = 4,
    tarnIQ = 5,
    tarnAPH = 6,
    tarnAGD = 7,
    tarnPOL = 8,
    tarnSP_1 = 9,
    tarnSP_2 = 10,
    tarnSP_3 = 11,
    tarnADIS = 12,
    tarnCCDF = 13,
    tarnIR_1 = 14,
    tarnIR_2 = 15,
    tarnIR_3 = 16,
    tarnHIST = 17,
    tarnPAR = 18,
    tarnCENV = 19,
};

/// Operating standards. The driver only ever selects tarnDVBT.
enum TarnModes : std::int32_t {
    tarnNYQI = 1,
    tarnNYQM = 2,
    tarnNYQN = 3,
    tarnQAM = 4,
    tarnQAMA = 5,
    tarnJ83A = 6,
    tarnJ83B = 7,
    tarnJ83C = 8,
    tarnMPEG = 9,
    tarnM83A = 10,
    tarnM83B = 11,
    tarnM83C = 12,
    tarnDVBT = 13,
    tarnATSC = 14,
    tarnNTSC = 15,
};

/// Signal inputs. Receiver ports have bit 2 set, the demodulator port bit 4.
enum TarnInputPorts : std::int32_t {
    tarnReceiver = 2,
    tarnDemod = 4,
    tarnIF = 128,
    tarnReceiver50ohm = 50,
    tarnReceiver75ohm = 75,
};

/// Attenuation of the RF input in dB.
enum TarnInputAttenuations : std::int32_t {
    tarnAttenAuto = 255,
    tarnAtten00 = 0,
    tarnAtten05 = 5,
    tarnAtten10 = 10,
    tarnAtten15 = 15,
    tarnAtten20 = 20,
    tarnAtten25 = 25,
    tarnAtten30 = 30,
    tarnAtten35 = 35,
    tarnAtten40 = 40,
    tarnAtten45 = 45,
    tarnAtten50 = 50,
    tarnAtten55 = 55,
};

/// Order of the constellation.
enum TarnStatusOrderOfQams : std::int32_t {
    tarnQamUnknown = -1,
    tarnQam4 = 4,
    tarnQam16 = 16,
    tarnQam64 = 64,
};

/// Attenuator and preamplifier switch of the demodulator input.
enum TarnDemodAttenuations : std::int32_t {
    tarnDemodAttenAuto = 1,
    tarnDemodManualLowAtten = 2,
    tarnDemodManualLowPreamp = 3,
    tarnDemodManualHigh = 4,
};

/// State of the demodulator input as the instrument has chosen it.
enum TarnDemodAttenVals : std::int32_t {
    tarnDAVManualLowPreamp = 0,
    tarnDAVManualLowAtten = 1,
    tarnDAVManualHigh = 2,
    tarnDAVAutoLowPreamp = 10,
    tarnDAVAutoLowAtten = 11,
    tarnDAVAutoHigh = 12,
};

/// Strategy of the automatic RF attenuator.
enum TarnRxAttenModes : std::int32_t {
    tarnRxAttenLoNoise = 0,
    tarnRxAttenNormal = 1,
    tarnRxAttenLoDistn = 2,
    tarnRxAttenLowestDistn = 3,
};

/// Unit of the RF level.
enum TarnSetupLevelUnits : std::int32_t {
    tarnDBMV = 0,
    tarnDBPW = 1,
    tarnDBUW = 2,
    tarnDBM = 3,
    tarnDBUV = 4,
    tarnMV = 5,
};

/// Bandwidth of the SAW filter in MHz.
enum TarnStatusSawFilterBWs : std::int32_t {
    tarnSawOFF = 0,
    tarnSaw6MHz = 6,
    tarnSaw7MHz = 7,
    tarnSaw8MHz = 8,
};

/// Bandwidth of the channel in MHz.
enum TarnStatusChannelBWs : std::int32_t {
    tarnCh6MHz = 6,
    tarnCh7MHz = 7,
    tarnCh8MHz = 8,
};

/// Integration length of the bit error ratio.
enum TarnSpecFuncMinBerIntegrations : std::int32_t {
    tarnBerEXT = 0,
    tarnBer1 = 1,
    tarnBer10 = 10,
    tarnBer100 = 100,
    tarnBer1000 = 1000,
};

/// State of the equalizer.
enum TarnSpecFuncEqualizers : std::int32_t {
    tarnEqualizerOff = 0,
    tarnEqualizerOn = 1,
    tarnEqualizerFreeze = 2,
};

/// Source of the 10 MHz reference.
enum TarnReferenceSources : std::int32_t {
    tarnInternal = 0,
    tarnExternal = 1,
};

/// FFT mode (EN 300 744).
enum TarnStatusFftModes : std::int32_t {
    tarnFftUnknown = -1,
    tarn2k = 0,
    tarn8k = 1,
};

/// Whether transmission parameters are found, set by hand or taken from the TPS.
enum TarnStatusOfdmCodeRateModes : std::int32_t {
    tarnAuto = 0,
    tarnMan = 1,
    tarnTps = 2,
};

/// Stream of a hierarchical transmission.
enum TarnStatusHierarchicalModes : std::int32_t {
    tarnLow = 0,
    tarnHigh = 1,
};

/// Guard interval, as the denominator of its fraction (EN 300 744).
enum TarnStatusGuardIntervals : std::int32_t {
    tarnGiUnknown = -1,
    tarn1_4 = 4,
    tarn1_8 = 8,
    tarn1_16 = 16,
    tarn1_32 = 32,
};

/// Code rate of the inner code (EN 300 744).
enum TarnStatusCodeRates : std::int32_t {
    tarnCrUnknown = -1,
    tarn1_2 = 0,
    tarn2_3 = 1,
    tarn3_4 = 2,
    tarn5_6 = 3,
    tarn7_8 = 4,
};

/// Hierarchy factor alpha (EN 300 744).
enum TarnStatusAlphas : std::int32_t {
    tarnAlphaUnknown = -1,
    tarn1NH = 0,
    tarn1H = 1,
    tarn2H = 2,
    tarn4H = 3,
};

/// Optimisation of the channel estimator.
enum TarnSpecFuncSystOptims : std::int32_t {
    tarnMobile = 0,
    tarnFastSfn = 1,
    tarnSlowHighNoise = 2,
    tarnSlowLab = 3,
};

/// Bandwidth of the carrier loop.
enum TarnSpecFuncLoopBandwidths : std::int32_t {
    tarnLbsLo = 0,
    tarnLbsMed = 1,
    tarnLbsHi = 2,
};

/// A switch.
enum TarnSwitchStates : std::int32_t {
    tarnOff = 0,
    tarnOn = 1,
};

/// Detector of the spectrum.
enum TarnFdSpectrumDetectors : std::int32_t {
    tarnMIN = 0,
    tarnRMS = 1,
    tarnMAX = 2,
};

/// What ScreenShot does; values are added.
enum TarnScreenShotModes : std::int32_t {
    tarnCapture = 1,
    tarnTransfer = 2,
    tarnIncludeHeader = 4,
};

}  // namespace tarn4x
