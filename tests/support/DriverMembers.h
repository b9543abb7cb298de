#pragma once

#include <algorithm>
#include <cstdint>
#include <string>
#include <vector>

// Every member of the driver as tests expect it, written down by hand: what it needs, what goes over the wire, what it
// makes of an answer, and how it fails. For tests of the driver, of its COM side and of whole dialogues.

namespace support {

/// A control is written and read, a function needs no instrument, a piece (of the last answer) never fails.
enum class Kind { Read, Control, Method, Function, Piece };

/// Measure modes, a bit each; no bit: all of them.
struct Modes {
    std::uint32_t Bits = 0;
    int Comparisons = 0;  ///< how often a check of the mode reads MeasureMode
    constexpr bool Have(int mode) const { return Bits == 0 || (Bits >> mode & 1U) != 0; }
};

/// What a member reads before its own exchange. Dialogues are "QUERY? = ANSWER | QUERY? = ANSWER".
struct Before {
    const char* Member = "";   ///< what it reads; errors of that pass on
    const char* Suits = "";    ///< the dialogue that lets the member go on
    int Value = 0;             ///< the value of what it reads, then
    const char* Other = "";    ///< a dialogue with another value
    const char* Refusal = "";  ///< the error that then follows, as in lists; empty: none
};

struct Particulars {
    Modes In = {};
    Before First = {}, FirstWritten = {};  ///< the second for writing it only
    const char* FirstOffLine = "";         ///< the member whose error comes off-line, when these do not tell
    bool ForgetsPrefix = true;             ///< a read begins with the prefix "---"
    bool ChangesSignal = false;            ///< written or called, or read as True, it makes the known echoes worthless
    bool StopPasses = true;                ///< a stop request lets the member go on, whatever it reads first
    const char* FailsAs = "";              ///< the name in its failures; if it is a member's, they are that member's
    const char* ModeSource = "";           ///< the name in the source of a wrong measure mode
    const char* Interface = "";            ///< in front of the name in sources; the instrument's error is not told then
    const char* Ending = " failed";
    int Argument = 0;           ///< the first one, where the member has any beside its value
    const char* Stopped = "0";  ///< the result when the user has asked to stop; null: told elsewhere
    const char* Unknown = "";   ///< the error for an answer that it does not know; "%" stands for the answer
    const char* Invalid = "!380 @ value out of range";  ///< the error for a value that it refuses; "%" stands for it
};

/// Lists are "what goes in -> what comes out", separated by " | ": of answers and results, of values and what goes out
/// behind the command, of arguments and results. A result can be an error: "!380 description" ("@" stands for the
/// member), "unknown" and "invalid" as above ("invalid X": it tells X), "failed" for the member's failure. An answer
/// "11 x -5" comes that often. The first entry is a regular one, in the first of the member's measure modes.
struct Member {
    std::uint32_t Id = 0;  ///< of the dispatch interface
    /// That of the result as hosts see it, and in parentheses those of the arguments beside a value.
    const char* Type = "";
    support::Kind Kind = {};
    const char* Name = "";
    Particulars Has = {};
    const char *Query = "", *Answers = "";   ///< the query, or the command of a method
    const char *Values = "", *Command = "";  ///< the command, when its words are not those of the query
};

using enum Kind;

// clang-format off
inline constexpr Modes Norm{1U << 0, 1}, Aph{1U << 6, 1}, Agd{1U << 7, 1}, AphOrAgd{3U << 6, 2}, Spectrum{7U << 9, 2}, Crest{3U << 12 | 1U << 19, 3},
                       Ir1{1U << 14, 1}, Mer{3U << 17, 2}, Par{1U << 18, 1}, Carriers{0xFFU << 1 | 1U << 18, 1};

inline constexpr Before
    AnyPort{"InputPort", "ROUTE:ISELECT? = IF", 0, "ROUTE:ISELECT? = IF"},
    Receiver{"InputPort", "ROUTE:ISELECT? = RF", 2, "ROUTE:ISELECT? = IF", "!2018 Wrong input port selected"},
    Demodulator{"InputPort", "ROUTE:ISELECT? = DEM", 4, "ROUTE:ISELECT? = IF", "!2018 Wrong input port selected"},
    Manual{"StatusOfdmCodeRateMode", "SENSE:DVBT:CODE:RATE:MODE? = MAN", 1, "SENSE:DVBT:CODE:RATE:MODE? = AUTO", "!2025 Code rate mode does not support operation"},
    Fft{"MeasureFftMode", "READ:DVBT:FFT:MODE? = 2K", 0, "READ:DVBT:FFT:MODE? = 2K"},
    FftAndCarriers{"MeasureFftMode", "READ:DVBT:FFT:MODE? = 2K | SENSE:DVBT:CARRIER:START_STOP? = 10,1704"},
    StartFreq{"MeasureFdSpectrumStartFreq", "SENS:DVBT:SPEC:FREQ:STAR? = -100"},
    StopFreq{"MeasureFdSpectrumStopFreq", "SENS:DVBT:SPEC:FREQ:STOP? = 400"};

inline constexpr char
    UnknownReference[] = "!380 Device reported an unrecognised equalizer setting (%)",
    UnknownAttenuator[] = "!380 Device reported an unrecognised attenuator setting (%)",
    UnknownDemod[] = "!380 Device reported an unrecognised demod attenuator setting (%)",
    InvalidValue[] = "!380 Invalid property value (@ = %)";

// In the order of the function table.
inline constexpr Member DriverMembers[] = {
    {0x600300D2, "", Method, "Reset", {.ChangesSignal = true}, "SYST:RES"},
    {0x68030110, "Boolean(udtMode TarnScreenShotModes, bytBuffer Byte()&)", Read, "ScreenShot", {.Argument = 1, .Stopped = nullptr}, "READ:SCREEN:BUFFER?", R"(0 -> 1 | 1 -> 0 | 00 -> 0 | "0" -> 1)"},
    {0x680300D1, "Double", Read, "MeasureTsBitrate", {}, "READ:DVBT:TS:BITRATE?", "<1.5 (est) -> 1.5"},
    {0x680300D0, "Double", Read, "MeasureBitrateOffset", {.FailsAs = "MeasureTsBitrate"}, "READ:DVBT:BITRATE:OFFSET?", "<1.5 (est) -> 1.5"},
    {0x680300CF, "Double", Control, "MeasureNoiseGenerator", {.FailsAs = "MeasureCdAddNoiseCn"}, "SENS:DVBT:NOISE?", "23.5 -> 23.5", "20 -> 20"},
    {0x6803010F, "TarnSwitchStates", Control, "MeasureCdAddNoise", {.Unknown = "!380 Device reported an unrecognised measurement mode (%)", .Invalid = InvalidValue}, "SENS:DVBT:NOISE:MODE?", "OFF <-> 0 | 0 -> 0 | ON <-> 1 | 1 -> 1 | MAYBE -> unknown", "2 -> invalid"},
    {0x6803010E, "Double", Control, "MeasureCdAddNoiseCn", {.FailsAs = "MeasureCdAddNoiseCn ", .Invalid = InvalidValue}, "SENS:DVBT:NOISE?", "23.5 -> 23.5", "2 -> 2 | 56 -> 56 | 12.345 -> 12.345 | 1.99 -> invalid | 56.01 -> invalid | -3 -> invalid"},
    {0x6803010D, "Long", Control, "MeasureCdSymbolCount", {.Invalid = InvalidValue}, "SENS:DVBT:INT:COUN?", "2.5 -> 2 | 99999 (sym) -> 99999 | 2147483647.4 -> 2147483647 | 2147483648 -> failed", "1 -> 1 | 99999 -> 99999 | 0 -> invalid | 100000 -> invalid"},
    {0x680300CE, "Variant", Piece, "ResponseString"},
    {0x680300CD, "Double", Read, "MeasureTdCcdfCrestFactorMargin", {.In = Crest}, "READ:DVBT:CREST:MARGIN?", "<1.5 (est) -> 1.5"},
    {0x680300CC, "Double", Read, "MeasureTdCcdfCrestFactorMax", {.In = Crest}, "READ:DVBT:CREST:MAX?", "<1.5 (est) -> 1.5"},
    {0x680300CB, "Double", Read, "MeasureTdCcdfCrestFactorCurrent", {.In = Crest}, "READ:DVBT:CREST:CURRENT?", "<1.5 (est) -> 1.5"},
    {0x680300CA, "Double", Read, "MeasureFdSpectrumShoulderLower", {.In = Spectrum}, "READ:DVBT:SPECTRUM:SHO:LOW?", "<1.5 (est) -> 1.5"},
    {0x680300C9, "Double", Read, "MeasureFdSpectrumShoulderUpper", {.In = Spectrum}, "READ:DVBT:SPECTRUM:SHO:UPP?", "<1.5 (est) -> 1.5"},
    {0x680300C8, "Double", Control, "MeasureFdSpectrumStartFreq", {.In = Spectrum, .FirstWritten = StopFreq},
     "SENS:DVBT:SPEC:FREQ:STAR?", "-448 -> -4480000 | 1e305 -> failed", "-4480000 -> -448 | -4480001 -> invalid | 2660000 -> 266 | 2660001 -> invalid | 10050 -> 1.01 | -10050 -> -1.01 | 1344990 -> 134.5 | 1345049 -> 134.5 | 1345050 -> 134.51 | -50 -> -0.01 | -49 -> 0 | 4 -> 0 | 1e-16 -> 0"},
    {0x680300C7, "Double", Control, "MeasureFdSpectrumStopFreq", {.In = Spectrum, .FirstWritten = StartFreq}, "SENS:DVBT:SPEC:FREQ:STOP?", "134.5 -> 1345000", "340000 -> 34 | 339999 -> invalid | 4480000 -> 448 | 4480001 -> invalid"},
    {0x680300C6, "Double", Read, "MeasureFrequencyOffset", {.In = Norm}, "READ:DVBT:FREQ:OFFSET?", "<1.5 (est) -> 1500 | 1e308 -> failed"},
    {0x680300C5, "Double", Read, "MeasureRfLevel", {}, "READ:RF:LEVEL?", "<-50.5 (est) -> -50.5 | none -> 0"},
    {0x680300C4, "Double", Read, "MeasureOfdmCarrierSuppression", {.In = Par, .ModeSource = "MeasureOfdmAverage"}, "READ:DVBT:CARRIER:SUPPRESSION?", "<1.5 (est) -> 1.5"},
    {0x680300C3, "Double", Read, "MeasureOfdmCarrierSuppressionPhase", {.In = Par, .ModeSource = "MeasureOfdmAverage"}, "READ:DVBT:CARRIER:SUPPRESSION:PHASE?", "<1.5 (est) -> 1.5"},
    {0x680300C2, "Double", Read, "MeasureOfdmMerRmsDb", {.In = Mer}, "READ:DVBT:MER:RMS? DB", "<1.5 (est) -> 1.5"},
    {0x680300C1, "Double", Read, "MeasureOfdmMerRmsPct", {.In = Mer}, "READ:DVBT:MER:RMS? PCT", "<1.5 (est) -> 1.5"},
    {0x6803010C, "Double", Read, "MeasureOfdmMerPeakPct", {.In = Par}, "READ:DVBT:MER:PEAK? PCT", "<1.5 (est) -> 1.5"},
    {0x680300C0, "Double", Read, "MeasureOfdmPhaseJitter", {.In = Par}, "READ:DVBT:JITTER?", "<1.5 (est) -> 1.5"},
    {0x680300BF, "Double", Read, "MeasureOfdmIqPhaseError", {.In = Par, .ModeSource = "MeasureOfdmAverage"}, "READ:DVBT:IQ:QERROR?", "<1.5 (est) -> 1.5"},
    {0x680300BE, "Double", Read, "MeasureOfdmIqAmplImbalance", {.In = Par, .ModeSource = "MeasureOfdmAverage"}, "READ:DVBT:IQ:IMBALANCE?", "<1.5 (est) -> 1.5"},
    {0x680300BD, "Double", Read, "MeasureOfdmSignalToNoiseRatio", {.In = Par}, "READ:DVBT:SIGNAL:NOISE?", "<1.5 (est) -> 1.5"},
    {0x600300D3, "", Method, "MeasureResetBer", {}, "SENS:DVBT:BER:RES"},
    {0x680300BC, "Double", Read, "MeasureBerBeforeVit", {}, "READ:DVBT:BER:BVIT?", "<1.5E-4 (est) -> 0.00015"},
    {0x680300BB, "Double", Read, "MeasureBerBeforeRS", {}, "READ:DVBT:BER:BRS?", "<1.5E-4 (est) -> 0.00015"},
    {0x680300BA, "Double", Read, "MeasureBerAfterRS", {}, "READ:DVBT:BER:ARS?", "<1.5E-4 (est) -> 0.00015"},
    {0x680300B9, "Boolean", Read, "MeasureCarrierLoopOutOfLock", {.ChangesSignal = true}, "READ:DVBT:OFDM:UNLOCKED?", "1 -> 1 | 0 -> 0 | -1 -> 1 | 0.5 -> 1 | 0.0 -> 0 | -0 -> 0 | TRUE -> 1 |  true  -> 1 | fAlSe -> 0 | yes -> failed | 1x -> failed | Tru -> failed |  -> failed"},
    {0x680300B8, "Boolean", Read, "MeasureMpegTsUnSync", {.ChangesSignal = true}, "READ:DVBT:MPEG:TS:LOCKED?", "1 -> 0 | 0 -> 1 | maybe -> failed"},
    {0x680300B7, "Boolean", Read, "ReferenceLocked", {.Unknown = UnknownReference}, "SENS:REF:UNL?", R"(1 -> 0 | 0 -> 1 | 1.0 -> 0 | 00 -> 1 | "1" -> 1 | 10 -> unknown | 11 x 2 -> unknown)"},
    {0x680300B6, "Boolean", Read, "StateSignal", {}, "READ:SIGN:RF?", "OK -> 1 | UND -> 0 | NORF -> 0 | OVER -> 0 | 11 x LOW -> 0"},
    {0x6803010B, "TarnSpecFuncLoopBandwidths", Control, "SpecFuncLoopBandwidth", {}, "SENSE:DVBT:LOOP:BWIDTH:FREQ?", "LO <-> 0 | MED <-> 1 | HI <-> 2 | 11 x no -> 0", "5 ->  | -1 -> "},
    {0x680300B5, "TarnSpecFuncMinBerIntegrations", Control, "SpecFuncMinBerIntegration", {}, "SENSE:DVBT:BERATE:INTEGRATION?", "1 -> 1 | 10 -> 10 | 100 -> 100 | 1000 -> 1000 | 11.5 -> 12 | +1 -> 1 | +-1 -> failed | 1,5 -> failed | 10 s -> failed | x1 -> failed | 11 x 2 -> 2", "1000 -> 1000 | 0 -> 0 | 7 -> 7", "SENS:DVBT:BERATE:INTEGRATION "},
    {0x680300B4, "TarnStatusOrderOfQams", Read, "MeasureOrderOfQam", {.Stopped = "-1"}, "READ:DVBT:ORDER?", "4 -> 4 | 16 -> 16 | 64 -> 64 | 164 -> -1 | 11 x 8 -> -1"},
    {0x680300B3, "TarnStatusSawFilterBWs", Control, "StatusSawFilterBW", {.ChangesSignal = true, .Unknown = "!2004 Device reported an invalid filter bandwidth ( % )", .Invalid = "!380 Invalid property value (Filter Bandwidth = %)"},
     "SENSE:DVBT:FILTER:SAW?", "OFF <-> 0 | 0 -> 0 | MHZ6 <-> 6 | MHZ7 <-> 7 | MHZ8 <-> 8 | 11 x MHZ9 -> unknown", "5 -> invalid"},
    {0x680300B2, "TarnStatusChannelBWs", Control, "StatusChannelBW", {.ChangesSignal = true, .FailsAs = "ChannelFilterBW"}, "SENSE:DVBT:CHANNEL:BWIDTH?", "MHZ6 <-> 6 | MHZ7 <-> 7 | MHZ8 <-> 8 | 11 x MHZ9 -> 0", "9 -> ", "SENS:DVBT:CHANNEL:BWIDTH "},
    {0x680300B1, "TarnReferenceSources", Control, "Setup10MhzRef", {.ChangesSignal = true, .Unknown = UnknownReference, .Invalid = "!380 Invalid Property Value"}, "SENS:REF?", R"(EXT <-> 1 | INT <-> 0 | "INT" -> unknown | 11 x int -> unknown)", "-1 -> invalid | 2 -> invalid"},
    {0x680300B0, "TarnSetupLevelUnits", Control, "SetupLevelUnit", {}, "UNIT:LEVEL:POWER?", "DBMV <-> 0 | DBPW <-> 1 | DBUW <-> 2 | DBM <-> 3 | DBUV <-> 4 | MV <-> 5 | 11 x V -> 0", "7 -> "},
    {0x6803010A, "Date", Control, "SetupTime", {}, "SYST:TIME?", R"(9,5,7 -> 0.378553240740741 | "23,59.9,0" -> 0.999305555555556 | 25,0,0 -> 1.04166666666667 | 0,90,0 -> 0.0625 | 9,5 -> failed)",
     "0.378553240740741 -> 9,5,7 | 46096.75 -> 18,0,0 | 0 -> 0,0,0 | -1.25 -> 6,0,0 | 0.9999999 -> 0,0,0 | nan -> failed | inf -> failed | -657435 -> failed | 2958466 -> failed", "SYST:Time "},
    {0x68030109, "Date", Control, "SetupDate", {}, "SYST:DATE?", "2026,3,15 -> 46096 | 29,1,1 -> 47119 | 30,1,1 -> 10959 | 1899,12,29 -> -1 | 1900,1,1 -> 2 | 2026,14,1 -> 46419 | 2026,3,0 -> 46081 | 26,3,15 -> 46096 | 26,3 -> failed | 10000,1,1 -> failed | 32767,32767,32767 -> failed | 99999,1,1 -> failed",
     "38354 -> 5,1,2 | 46096.75 -> 26,3,15 | 46095.9999999 -> 26,3,15 | -1 -> 99,12,29 | 2958465.5 -> 99,12,31 | -657434.25 -> 0,1,1 | nan -> failed | -657435 -> failed | 2958465.9999999 -> failed | 1e300 -> failed"},
    {0x680300AF, "TarnInputAttenuations", Control, "InputAttenuation", {.First = AnyPort, .ChangesSignal = true, .FailsAs = "InputAttenuation_Receiver"}, "INPUT:ATTENUATION:AUTO?", "ON -> 255", "255 -> ON"},
    {0x680300AE, "TarnInputAttenuations", Control, "InputAttenuation_Receiver", {.First = AnyPort, .ChangesSignal = true, .Unknown = UnknownAttenuator},
     "INPUT:ATTENUATION:AUTO?", "ON -> 255 | 1 -> 255 | OFF & INPUT:ATTENUATION? = 35 -> 35 | 0 & INPUT:ATTENUATION? = 0 -> 0 | OFF & INPUT:ATTENUATION? = 5 dB -> failed | 11 x on -> unknown", "255 -> ON | 7 -> OFF & INPUT:ATTENUATION 7"},
    {0x68030108, "TarnRxAttenModes", Control, "InputAttenuationMode_Receiver", {.First = Receiver, .StopPasses = false, .Unknown = UnknownDemod, .Invalid = "!380 Invalid Property Value (%)"}, "INP:ATT:MODE?", "LNO <-> 0 | IGN <-> 1 | NORM -> 1 | LDIS <-> 2 | LSD <-> 3 | HIGH -> unknown", "4 -> invalid", "INPUT:ATTENUATION:MODE "},
    {0x680300AD, "TarnInputAttenuations", Read, "InputAttenuationValue", {.First = Receiver, .FailsAs = "InputAttenuationValue_Receiver"}, "INPUT:ATTENUATION?", "55 -> 55"},
    {0x68030107, "TarnInputAttenuations", Read, "InputAttenuationValue_Receiver", {.First = Receiver, .Unknown = UnknownAttenuator}, "INPUT:ATTENUATION?", R"(35 -> 35 | 0 -> 0 | 5 -> 5 | 55 -> 55 | 60 -> unknown | -5 -> unknown | 52 -> unknown | "5.6" -> unknown | 5 dB -> failed | 11 x 7 -> unknown)"},
    {0x68030106, "TarnDemodAttenVals", Read, "InputAttenuationValue_Demod", {.First = Demodulator, .FirstOffLine = "FirmwareVersion", .StopPasses = false, .Unknown = UnknownDemod}, "INPUT:ATTENUATION:DEM:VAL?", "0 -> 0 | 1 -> 1 | 2 -> 2 | 10 -> 10 | 11 -> 11 | 12 -> 12 | 3 -> unknown"},
    {0x680300AC, "TarnDemodAttenuations", Control, "InputAttenuation_Demod", {.First = Demodulator, .Unknown = UnknownDemod, .Invalid = "!380 Invalid Property Value (@ = %)"}, "INPUT:ATTENUATION:DEM?", "AUTO <-> 1 | MNLW <-> 2 | MNLE <-> 3 | MNHI <-> 4 | 11 x MAN -> unknown", "0 -> invalid | 5 -> invalid"},
    {0x680300AB, "TarnInputPorts", Control, "InputPort", {.ChangesSignal = true, .Unknown = "!380 Invalid Property Value  (@ = %)", .Invalid = "!380 Invalid Property Value (@ = %)"}, "ROUTE:ISELECT?", "RF <-> 2 | DEM <-> 4 | IF <-> 128 | RF1 -> unknown | 11 x XYZ -> unknown", "50 -> RF | 75 -> RF | 3 -> invalid", "ROUT:ISEL "},
    {0x680300AA, "TarnModes", Control, "Mode", {.ChangesSignal = true, .Unknown = "!380 Device reported an unrecognised mode (%)", .Invalid = InvalidValue}, "SYST:MODE?",
     "DVBT -> 13 | NYQI -> 1 | NYQM -> 2 | NYQN -> 3 | QAM -> 4 | QAMA -> 5 | J83A -> 6 | J83B -> 7 | J83C -> 8 | MPEG -> 9 | M83A -> 10 | M83B -> 11 | M83C -> 12 | ATSC -> 14 | NTSC -> 15 | 11 x DVB -> unknown",
     "13 -> DVBT | 1 -> invalid NYQI | 2 -> invalid NYQM | 3 -> invalid NYQN | 4 -> invalid QAM | 5 -> invalid QAMA | 6 -> invalid J83A | 7 -> invalid J83B | 8 -> invalid J83C | 9 -> invalid MPEG | 10 -> invalid M83A | 11 -> invalid M83B | 12 -> invalid M83C | 14 -> invalid ATSC | 15 -> invalid NTSC | 0 -> invalid | 16 -> invalid"},
    {0x680300A9, "TarnMeasureModes", Control, "MeasureMode", {.Unknown = "!380 Device reported an unrecognised measurement mode (%)", .Invalid = InvalidValue}, "SENS:DVBT:MEAS?",
     "0 -> -1 | NORM <-> 0 | CDI <-> 1 | MDB <-> 2 | MPCT <-> 3 | INT <-> 4 | IQ <-> 5 | APH <-> 6 | AGD <-> 7 | POL <-> 8 | SP_1 <-> 9 | SP_2 <-> 10 | SP_3 <-> 11 | ADIS <-> 12 | CCDF <-> 13 | IR_1 <-> 14 | IR_2 <-> 15 | IR_3 <-> 16 | HIST <-> 17 | PAR <-> 18 | CENV <-> 19 | 10 dB -> unknown | 11 x none -> unknown", "-1 -> invalid | 20 -> invalid"},
    {0, "Double", Control, "RF", {.ChangesSignal = true, .Invalid = "!380 Invalid property value (@ = % Hz)"}, "SENS:FREQ:CENT?", "474000000.3 -> 474000000.3 | none -> 0",
     "474000000 -> 474000000 | 474000000.25 -> 474000000.3 | 3000000 -> 3000000 | 3000000.04 -> 3000000 | 3000000.05 -> 3000000.1 | 9999999999.95 -> 10000000000 | 10000000009 -> 10000000009 | 2999999.9 -> invalid | 10000000009.5 -> invalid | -1E+20 -> invalid | nan -> invalid", "SENS:FREQ:CENT  "},
    {0x680300A8, "Double", Read, "MeasureFdPhaseResponse", {.In = Aph}, "READ:DVBT:AMPL_PHAS_GD:VALUE?", R"(1.5,-3.2 -> -3.2 | "<1.5, 2.5" -> 2.5 | -1,x,9 -> 0)"},
    {0x680300A7, "Double", Read, "MeasureFdGroupDelayResponse", {.In = Agd}, "READ:DVBT:AMPL_PHAS_GD:VALUE?", "1.5,-3.2 -> -3.2"},
    {0x680300A6, "Double", Read, "MeasureFdAmplitudeResponse", {.In = AphOrAgd}, "READ:DVBT:AMPL_PHAS_GD:VALUE?", "1.5,-3.2 -> 1.5"},
    {0x600300D4, "", Method, "MeasureTdImpulseResponse", {.In = Ir1, .Stopped = ""}, "READ:DVBT:IRESPONSE:PEAK?", "--- -> "},
    {0x680300A5, "Double(intNumber Integer&)", Read, "ImpulseResponseAtten", {.In = Ir1, .FailsAs = "MeasureTdImpulseResponse", .Argument = 1}, "READ:DVBT:IRESPONSE:PEAK?", "--- -> 0"},
    {0x680300A4, "Double(intNumber Integer&)", Read, "ImpulseResponseDelay", {.In = Ir1, .FailsAs = "MeasureTdImpulseResponse", .Argument = 1}, "READ:DVBT:IRESPONSE:PEAK?", "--- -> 0"},
    {0x680300A3, "Variant", Piece, "Prefix"},
    {0x680300A2, "Variant", Piece, "Postfix"},
    {0x680300A1, "Integer", Control, "MeasureOfdmStartCarrier", {.In = Carriers, .FirstWritten = FftAndCarriers, .Unknown = "!380 Device did not report a start carrier (%)"},
     "SENSE:DVBT:CARRIER:START_STOP?", R"("10.5, 20.6" -> 10 | (none) -> unknown | 40000,1 -> failed)", "100 ->  100, 1704 | 1704 ->  1704, 1704 | 0 ->  0, 1704"},
    {0x680300A0, "Integer", Control, "MeasureOfdmStopCarrier", {.In = Carriers, .FirstWritten = FftAndCarriers, .ModeSource = "MeasureOfdmStartCarrier", .Unknown = "!380 Device did  not report a stop carrier (%)"},
     "SENSE:DVBT:CARRIER:START_STOP?", "10, 20.6 -> 21 |  -> unknown | 7 -> failed", "100 ->  10, 100 | 10 ->  10, 10 | 1704 ->  10, 1704"},
    {0x6803009F, "TarnStatusFftModes", Read, "MeasureFftMode", {.Stopped = "-1"}, "READ:DVBT:FFT:MODE?", "2K -> 0 | 8K -> 1 | 11 x 4 -> -1"},
    {0x6803009E, "Integer", Read, "MeasureOfdmAverage", {.In = Par}, "READ:DVBT:AVERAGE:PROGRESS?", "2.5 -> 2 | 3.5 -> 4 | -2.5 -> -2 | 32767.4 -> 32767 | 32767.5 -> failed | -32768.6 -> failed"},
    {0x68030105, "TarnStatusAlphas", Control, "StatusOfdmAlpha", {.First = Manual}, "SENSE:DVBT:ALPHA?", "NH1 <-> 0 | H1 <-> 1 | H2 <-> 2 | H4 <-> 3 | 11 x 1 -> 0", "-1 -> invalid | 4 -> invalid"},
    {0x68030104, "TarnStatusCodeRates(udtPriority TarnStatusHierarchicalModes)", Control, "StatusOfdmCodeRate", {.First = Manual, .Argument = 1}, "SENSE:DVBT:CODE:RATE:HP?", "1,2 <-> 0 | 2,3 <-> 1 | 3,4 <-> 2 | 5,6 -> 0 | H5,6 -> 3 | 7,8 <-> 4 | 11 x 1;2 -> 0", "3 -> 5,6 | -1 -> invalid | 5 -> invalid"},
    {0x6803009D, "TarnStatusOfdmCodeRateModes", Control, "StatusOfdmCodeRateMode", {}, "SENSE:DVBT:CODE:RATE:MODE?", "AUTO <-> 0 | MAN <-> 1 | TPS <-> 2 | 11 x 1 -> 0", "-1 -> invalid | 3 -> invalid"},
    {0x68030103, "TarnStatusFftModes", Control, "StatusOfdmFftMode", {.First = Manual}, "SENSE:DVBT:FFT:MODE?", "AUTO -> -1 | F2K <-> 0 | F8K <-> 1 | 11 x 2K -> 0", "-1 -> invalid | 2 -> invalid"},
    {0x68030102, "TarnStatusGuardIntervals", Control, "StatusOfdmGuardInterval", {.First = Manual}, "SENSE:DVBT:GuardInterval?", "AUTO -> -1 | GI4 <-> 4 | GI8 <-> 8 | GI16 <-> 16 | GI32 <-> 32 | 11 x 4 -> 0", "20 ->  | 3 -> invalid | 33 -> invalid"},
    {0x68030101, "TarnStatusOrderOfQams", Control, "StatusOfdmOrderOfQam", {.First = Manual}, "SENSE:DVBT:ORDER?", "4 <-> 4 | 16 <-> 16 | 64 <-> 64 | 11 x 8 -> 0", "20 ->  | 3 -> invalid | 65 -> invalid"},
    {0x6803009C, "TarnStatusHierarchicalModes", Control, "StatusMpegDataOutput", {}, "SENSE:DVBT:MPEG:DATA:OUTPUT?", "HI <-> 1 | LO <-> 0 | 11 x 1 -> 0", "-1 -> invalid | 2 -> invalid"},
    {0x6803009B, "TarnStatusFftModes", Read, "MeasureFftModeTps", {.Stopped = "-1"}, "READ:DVBT:TPS:FFT:MODE?", "2K -> 0 | 8K -> 1 | 11 x 4 -> -1"},
    {0x6803009A, "TarnStatusGuardIntervals", Read, "MeasureGuardIntervalTps", {.Stopped = "-1"}, "READ:DVBT:TPS:GUARD:INTERVAL?", "1/4 -> 4 | 1/8 -> 8 | 1/16 -> 16 | 1/32 -> 32 | 11 x 4 -> -1"},
    {0x68030099, "TarnStatusOrderOfQams", Read, "MeasureOrderOfQamTps", {.Stopped = "-1"}, "READ:DVBT:TPS:ORDER?", "4 -> 4 | 16 -> 16 | 64 -> 64 | 11 x 8 -> -1"},
    {0x68030098, "TarnStatusAlphas", Read, "MeasureAlphaTps", {.Stopped = "-1"}, "READ:DVBT:TPS:ALPHA?", "1 NH -> 0 | 1 H -> 1 | 2 H -> 2 | 4 H -> 3 | 11 x 1 -> -1"},
    {0x68030097, "TarnStatusCodeRates", Read, "MeasureCodeRateTps", {.Stopped = "-1"}, "READ:DVBT:TPS:CODE:RATE?", "1/2 -> 0 | 2/3 -> 1 | 3/4 -> 2 | 5/6 -> 3 | 7/8 -> 4 | 11 x 1 -> -1"},
    {0x68030096, "TarnStatusCodeRates", Read, "MeasureCodeRate", {.Stopped = "-1"}, "READ:DVBT:CODE:RATE?", "1/2 -> 0 | 2/3 -> 1 | 3/4 -> 2 | 5/6 -> 3 | 7/8 -> 4 | 11 x 1 -> -1"},
    {0x68030095, "TarnSpecFuncSystOptims", Control, "SpecFuncSystOptims", {}, "SENSE:DVBT:OPT?", "FAST <-> 1 | MOB <-> 0 | HI <-> 2 | SLOW <-> 3 | 11 x LO -> 0", "-1 -> invalid | 4 -> invalid"},
    {0x68030094, "TarnSwitchStates", Control, "InputAttenHighAdjChanPower", {}, "INPUT:DVBT:HIGH:ADJ:CHANNEL:POWER?", "ON <-> 1 | 1 -> 1 | OFF <-> 0 | 0 -> 0 | 11 x on -> 0", "-1 -> invalid | 2 -> invalid"},
    {0x68030093, "TarnFdSpectrumDetectors", Control, "MeasureFdSpectrumDetector", {.In = Spectrum}, "SENS:DVBT:SPEC:DET?", "RMS <-> 1 | MIN <-> 0 | MAX <-> 2 | 11 x AVG -> 0", "-1 -> invalid | 3 -> invalid"},
    {0x68030092, "Integer", Read, "MeasureFdSpectrumAverage", {.In = Spectrum}, "READ:DVBT:SPEC:AVG:COUN?", "3.5 -> 4"},
    {0x68030091, "Integer", Control, "MeasureFdSpectrumAverageCount", {.In = Spectrum}, "SENS:DVBT:SPEC:AVG?", "OFF -> 0 | ON & SENS:DVBT:SPEC:AVG:COUN? = 12.5 -> 12 | 1 & SENS:DVBT:SPEC:AVG:COUN? = 1 -> 1 | 0 -> 0 | 10 -> 0 | 11 x on -> 0", "0 -> OFF | 999 -> ON & SENS:DVBT:SPEC:AVG:COUN 999 | -1 -> invalid | 1000 -> invalid"},
    {0x68030090, "Integer", Read, "MeasureTdCrestFactorAqu", {.In = Crest}, "READ:DVBT:CRES:ACQ?", "100 -> 100"},
    {0x600300D7, "(intStart Integer, intStop Integer)", Method, "MeasureOfdmCarrierRange", {.In = Carriers, .First = Fft}, "SENSE:DVBT:CARRIER:START_STOP  10, 1704"},
    {0x6803008F, "_clsStatistics&", Read, "AlarmStatistics", {.Stopped = nullptr}, "READ:DVBT:ALAR:STAT?", R"("1:0:0,0,-,0,-,0,-,0,-,0,-,0,-,1,2,3" -> 1:0:0,0,-,0,-,0,-,0,-,0,-,0,-,1,2,3 | 1:0:0,0 -> failed)"},
    {0x600300D8, "", Method, "AlarmRegisterClear", {.Ending = " method failed"}, "CONF:DVBT:ALAR:RES"},
    {0x6803008E, "String", Read, "Identity", {.Stopped = ""}, "*IDN?", "VANTERRA,TARN,100123,5.10 -> VANTERRA,TARN,100123,5.10"},
    {0x6803008D, "String", Read, "Manufacturer", {.Interface = "IDriverIdentify_", .Stopped = ""}, "*IDN?", "VANTERRA,TARN,100123,5.10 -> VANTERRA |  -> "},
    {0x68030100, "String", Read, "ModelNumber", {.Interface = "IDriverIdentify_", .Stopped = ""}, "*IDN?", R"(VANTERRA,TARN,100123,5.10 -> TARN | "VANTERRA,TARN" -> TARN | VANTERRA -> )"},
    {0x6803008B, "String", Read, "SerialNumber", {.Interface = "IDriverIdentify_", .Stopped = ""}, "*IDN?", "VANTERRA,TARN,100123,5.10 -> 100123 | VANTERRA,TARN -> "},
    {0x6803008A, "String", Read, "FirmwareVersion", {.Interface = "IDriverIdentify_", .Stopped = ""}, "*IDN?", "VANTERRA,TARN,100123,5.10 -> 5.10 | VANTERRA,TARN,100123 -> "},
    {0x68030089, "String", Read, "InstalledHardware", {.ForgetsPrefix = false, .Interface = "IDriverIdentify_", .Stopped = ""}, "READ:INFO:DATA?", "0 & *IDN? = VANTERRA,TARN,100123,5.10 & SYSTEM:SERVICE:GET:BOARD:INFO? = 0x83 7.0 -> TARN-B12"},
    {0x600300E0, "String(udtValue TarnStatusFftModes)", Function, "FormatFftMode", {}, "", "0 -> 2K | 1 -> 8K | 2 ->  | -1 -> "},
    {0x600300E1, "String(udtValue TarnStatusGuardIntervals)", Function, "FormatGuardInterval", {}, "", "4 -> '1/4' | 8 -> '1/8' | 16 -> '1/16' | 32 -> '1/32' | 5 ->  | -1 -> "},
    {0x600300E2, "String(udtValue TarnStatusOrderOfQams)", Function, "FormatOrderOfQam", {}, "", "4 -> 4QAM | 16 -> 16QAM | 64 -> 64QAM | 32 -> "},
    {0x600300E3, "String(udtValue TarnStatusAlphas)", Function, "FormatAlpha", {}, "", "0 -> non-hierarchical | 1 -> alpha = 1 | 2 -> alpha = 2 | 3 -> alpha = 4 | 4 -> "},
    {0x600300E4, "String(udtValue TarnStatusCodeRates)", Function, "FormatCodeRate", {}, "", "0 -> '1/2' | 1 -> '2/3' | 2 -> '3/4' | 3 -> '5/6' | 4 -> '7/8' | 5 -> "},
    {0x600300F7, "Double(udtValue TarnStatusCodeRates)", Function, "ValueCodeRate", {}, "", "0 -> 0.5 | 1 -> 0.666666666666667 | 2 -> 0.75 | 3 -> 0.833333333333333 | 4 -> 0.875 | 5 -> 0 | -1 -> 0"},
};
// clang-format on

/// The member of that name; null when there is none.
inline const Member* Find(std::string_view name) {
    const auto found = std::ranges::find_if(DriverMembers, [&](const auto& member) { return member.Name == name; });
    return found == std::end(DriverMembers) ? nullptr : found;
}

/// The entries of a list: what goes in, what comes out; turned around, only those that go both ways. " | " is between
/// the lines of a dialogue in them.
inline std::vector<std::pair<std::string, std::string>> Entries(std::string_view list, bool around = false) {
    constexpr std::string_view between = " | ", oneWay = " -> ", bothWays = " <-> ";
    std::vector<std::pair<std::string, std::string>> entries;
    while (!list.empty()) {
        std::string entry(list.substr(0, list.find(between)));
        list.remove_prefix(std::min(list.size(), entry.size() + between.size()));
        std::ranges::replace(entry, '&', '|');
        const bool both = entry.find(bothWays) != entry.npos;
        const auto arrow = both ? bothWays : oneWay;
        const auto in = entry.substr(0, entry.find(arrow)), out = entry.substr(in.size() + arrow.size());
        if (!around) entries.emplace_back(in, out);
        if (around && both) entries.emplace_back(out, in);
    }
    return entries;
}

/// The values that can be written, and the commands that go out for them; or errors.
inline auto Values(const Member& member) {
    auto values = Entries(member.Answers, true);
    for (const auto& entry : Entries(member.Values)) values.push_back(entry);
    return values;
}
inline std::string Command(const Member& member) {
    const std::string query = member.Query;
    return *member.Command ? member.Command : query.substr(0, query.find('?')) + ' ';
}

/// The member whose failures this one has: mostly its own.
inline const Member& FailingFor(const Member& member) {
    const auto* other = Find(member.Has.FailsAs);
    return other == nullptr ? member : *other;
}

// Errors are "+number source: description": "+" stands for the offset of object errors, the source is without
// "clsTarn4x".

/// The failure of a member that is read or called, or that is written.
inline std::string Failure(const Member& member, bool written) {
    const auto& failing = FailingFor(member);
    const std::string verb = written ? "Let " : failing.Kind == Method ? "" : "Get ";
    const std::string name = *failing.Has.FailsAs ? failing.Has.FailsAs : failing.Name;
    return (verb == "Get " ? "+2004 ." : "+2005 .") + (failing.Has.Interface + name) + ": " + verb + name +
           failing.Has.Ending;
}

/// What a list says comes out, for what goes in.
inline std::string Outcome(const Member& member, bool written, std::string in, const std::string& out) {
    if (out == "failed") return Failure(member, written);
    if (in.starts_with("11 x ")) in.erase(0, 5);
    if (out.starts_with("invalid ")) in = out.substr(8);
    std::string error = out == "unknown" ? member.Has.Unknown : out.starts_with("invalid") ? member.Has.Invalid : out;
    if (!error.starts_with('!')) return out;
    const std::string name = FailingFor(member).Name;
    if (const auto at = error.find('@'); at != error.npos) error.replace(at, 1, name);
    if (const auto at = error.find('%'); at != error.npos) error.replace(at, 1, in);
    return '+' + error.substr(1).insert(error.find(' ') - 1, " ." + name + ':');
}

/// The error in a measure mode in which the member does not exist.
inline std::string WrongMode(const Member& member) {
    const auto& failing = FailingFor(member);
    const std::string source = *failing.Has.ModeSource ? failing.Has.ModeSource : failing.Name;
    return "+2016 ." + source + ": Wrong measurement mode selected";
}

/// The error off-line; empty for members that need no instrument.
inline std::string OffLine(const Member& member, bool written) {
    if (member.Kind == Function || member.Kind == Piece) return {};
    const auto& has = member.Has;
    for (const auto* first : {has.FirstOffLine, written ? has.FirstWritten.Member : "", has.First.Member}) {
        if (*first) return Failure(*Find(first), false);
    }
    return Failure(member, written);
}

}  // namespace support
