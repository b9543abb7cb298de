#include "driver/Recipes.h"
#include "driver/members/SharedRows.h"

namespace tarn4x {

namespace {

// Tables are compared in their order; a value takes its first word.
constexpr Token AlphaTokens[] = {{tarn1NH, "NH1"}, {tarn1H, "H1"}, {tarn2H, "H2"}, {tarn4H, "H4"}};
constexpr Token CodeRateTokens[] = {
    {tarn1_2, "1,2"}, {tarn2_3, "2,3"}, {tarn3_4, "3,4"}, {tarn5_6, "5,6"}, {tarn7_8, "7,8"}};
// Read back, 5/6 goes by another word than the instrument sends: it reads as tarn1_2, and hosts rely on that.
constexpr Token CodeRateAnswers[] = {
    {tarn1_2, "1,2"}, {tarn2_3, "2,3"}, {tarn3_4, "3,4"}, {tarn5_6, "H5,6"}, {tarn7_8, "7,8"}};
constexpr Token CodeRateModeTokens[] = {{tarnAuto, "AUTO"}, {tarnMan, "MAN"}, {tarnTps, "TPS"}};
constexpr Token FftTokens[] = {{tarnFftUnknown, "AUTO"}, {tarn2k, "F2K"}, {tarn8k, "F8K"}};
constexpr Token GuardTokens[] = {
    {tarnGiUnknown, "AUTO"}, {tarn1_4, "GI4"}, {tarn1_8, "GI8"}, {tarn1_16, "GI16"}, {tarn1_32, "GI32"}};
constexpr Token OutputTokens[] = {{tarnHigh, "HI"}, {tarnLow, "LO"}};
constexpr Token OptimTokens[] = {
    {tarnFastSfn, "FAST"}, {tarnMobile, "MOB"}, {tarnSlowHighNoise, "HI"}, {tarnSlowLab, "SLOW"}};

constexpr Token MeasuredFftTokens[] = {{tarn2k, "2K"}, {tarn8k, "8K"}};
constexpr Token MeasuredGuardTokens[] = {{tarn1_4, "1/4"}, {tarn1_8, "1/8"}, {tarn1_16, "1/16"}, {tarn1_32, "1/32"}};
constexpr Token MeasuredAlphaTokens[] = {{tarn1NH, "1 NH"}, {tarn1H, "1 H"}, {tarn2H, "2 H"}, {tarn4H, "4 H"}};
constexpr Token MeasuredRateTokens[] = {
    {tarn1_2, "1/2"}, {tarn2_3, "2/3"}, {tarn3_4, "3/4"}, {tarn5_6, "5/6"}, {tarn7_8, "7/8"}};

}  // namespace

// A member is one line.
// clang-format off
TarnStatusAlphas clsTarn4x::get_StatusOfdmAlpha() { return ReadToken<TarnStatusAlphas>({.Member = Members::StatusOfdmAlpha, .Query = "SENSE:DVBT:ALPHA?", .Expected = "NH1,H1,H2,H4", .NeedsManualCodeRate = true}, AlphaTokens); }
TarnStatusOfdmCodeRateModes clsTarn4x::get_StatusOfdmCodeRateMode() { return ReadToken<TarnStatusOfdmCodeRateModes>({.Member = Members::StatusOfdmCodeRateMode, .Query = "SENSE:DVBT:CODE:RATE:MODE?", .Expected = "AUTO,MAN,TPS"}, CodeRateModeTokens); }
TarnStatusFftModes clsTarn4x::get_StatusOfdmFftMode() { return ReadToken<TarnStatusFftModes>({.Member = Members::StatusOfdmFftMode, .Query = "SENSE:DVBT:FFT:MODE?", .Expected = "AUTO,F2K,F8K", .NeedsManualCodeRate = true}, FftTokens); }
TarnStatusGuardIntervals clsTarn4x::get_StatusOfdmGuardInterval() { return ReadToken<TarnStatusGuardIntervals>({.Member = Members::StatusOfdmGuardInterval, .Query = "SENSE:DVBT:GuardInterval?", .Expected = "AUTO,GI4,GI8,GI16,GI32", .NeedsManualCodeRate = true}, GuardTokens); }
TarnStatusOrderOfQams clsTarn4x::get_StatusOfdmOrderOfQam() { return ReadToken<TarnStatusOrderOfQams>({.Member = Members::StatusOfdmOrderOfQam, .Query = "SENSE:DVBT:ORDER?", .Expected = "4,16,64", .NeedsManualCodeRate = true}, QamTokens); }
TarnStatusHierarchicalModes clsTarn4x::get_StatusMpegDataOutput() { return ReadToken<TarnStatusHierarchicalModes>({.Member = Members::StatusMpegDataOutput, .Query = "SENSE:DVBT:MPEG:DATA:OUTPUT?", .Expected = "HI,LO"}, OutputTokens); }
TarnSpecFuncSystOptims clsTarn4x::get_SpecFuncSystOptims() { return ReadToken<TarnSpecFuncSystOptims>({.Member = Members::SpecFuncSystOptims, .Query = "SENSE:DVBT:OPT?", .Expected = "FAST,MOB,HI,SLOW"}, OptimTokens); }
TarnSwitchStates clsTarn4x::get_InputAttenHighAdjChanPower() { return ReadToken<TarnSwitchStates>({.Member = Members::InputAttenHighAdjChanPower, .Query = "INPUT:DVBT:HIGH:ADJ:CHANNEL:POWER?", .Expected = "OFF,0,ON,1"}, SwitchTokens); }

TarnStatusFftModes clsTarn4x::get_MeasureFftMode() { return ReadToken<TarnStatusFftModes>({.Member = Members::MeasureFftMode, .Query = "READ:DVBT:FFT:MODE?", .Expected = "2K,8K", .Otherwise = tarnFftUnknown}, MeasuredFftTokens); }
TarnStatusFftModes clsTarn4x::get_MeasureFftModeTps() { return ReadToken<TarnStatusFftModes>({.Member = Members::MeasureFftModeTps, .Query = "READ:DVBT:TPS:FFT:MODE?", .Expected = "2K,8K", .Otherwise = tarnFftUnknown}, MeasuredFftTokens); }
TarnStatusGuardIntervals clsTarn4x::get_MeasureGuardIntervalTps() { return ReadToken<TarnStatusGuardIntervals>({.Member = Members::MeasureGuardIntervalTps, .Query = "READ:DVBT:TPS:GUARD:INTERVAL?", .Expected = "1/4,1/8,1/16,1/32", .Otherwise = tarnGiUnknown}, MeasuredGuardTokens); }
TarnStatusOrderOfQams clsTarn4x::get_MeasureOrderOfQamTps() { return ReadToken<TarnStatusOrderOfQams>({.Member = Members::MeasureOrderOfQamTps, .Query = "READ:DVBT:TPS:ORDER?", .Expected = "4,16,64", .Otherwise = tarnQamUnknown}, QamTokens); }
TarnStatusAlphas clsTarn4x::get_MeasureAlphaTps() { return ReadToken<TarnStatusAlphas>({.Member = Members::MeasureAlphaTps, .Query = "READ:DVBT:TPS:ALPHA?", .Expected = "1 NH,1 H,2 H,4 H", .Otherwise = tarnAlphaUnknown}, MeasuredAlphaTokens); }
TarnStatusCodeRates clsTarn4x::get_MeasureCodeRateTps() { return ReadToken<TarnStatusCodeRates>({.Member = Members::MeasureCodeRateTps, .Query = "READ:DVBT:TPS:CODE:RATE?", .Expected = "1/2,2/3,3/4,5/6,7/8", .Otherwise = tarnCrUnknown}, MeasuredRateTokens); }
TarnStatusCodeRates clsTarn4x::get_MeasureCodeRate() { return ReadToken<TarnStatusCodeRates>({.Member = Members::MeasureCodeRate, .Query = "READ:DVBT:CODE:RATE?", .Expected = "1/2,2/3,3/4,5/6,7/8", .Otherwise = tarnCrUnknown}, MeasuredRateTokens); }
std::int16_t clsTarn4x::get_MeasureOfdmAverage() { return ReadInteger({.Member = Members::MeasureOfdmAverage, .Query = "READ:DVBT:AVERAGE:PROGRESS?"}); }

// The bounds admit numbers without a word (a guard interval of 20): those go out as the bare command.
void clsTarn4x::put_StatusOfdmAlpha(TarnStatusAlphas value) { PutParameter({.Member = Members::StatusOfdmAlpha, .Command = "SENSE:DVBT:ALPHA ", .NeedsManualCodeRate = true}, AlphaTokens, value, {0, 3}); }
void clsTarn4x::put_StatusOfdmCodeRateMode(TarnStatusOfdmCodeRateModes value) { PutParameter({.Member = Members::StatusOfdmCodeRateMode, .Command = "SENSE:DVBT:CODE:RATE:MODE "}, CodeRateModeTokens, value, {0, 2}); }
void clsTarn4x::put_StatusOfdmFftMode(TarnStatusFftModes value) { PutParameter({.Member = Members::StatusOfdmFftMode, .Command = "SENSE:DVBT:FFT:MODE ", .NeedsManualCodeRate = true}, FftTokens, value, {0, 1}); }
void clsTarn4x::put_StatusOfdmGuardInterval(TarnStatusGuardIntervals value) { PutParameter({.Member = Members::StatusOfdmGuardInterval, .Command = "SENSE:DVBT:GuardInterval ", .NeedsManualCodeRate = true}, GuardTokens, value, {4, 32}); }
void clsTarn4x::put_StatusOfdmOrderOfQam(TarnStatusOrderOfQams value) { PutParameter({.Member = Members::StatusOfdmOrderOfQam, .Command = "SENSE:DVBT:ORDER ", .NeedsManualCodeRate = true}, QamTokens, value, {4, 64}); }
void clsTarn4x::put_StatusMpegDataOutput(TarnStatusHierarchicalModes value) { PutParameter({.Member = Members::StatusMpegDataOutput, .Command = "SENSE:DVBT:MPEG:DATA:OUTPUT "}, OutputTokens, value, {0, 1}); }
void clsTarn4x::put_SpecFuncSystOptims(TarnSpecFuncSystOptims value) { PutParameter({.Member = Members::SpecFuncSystOptims, .Command = "SENSE:DVBT:OPT "}, OptimTokens, value, {0, 3}); }
void clsTarn4x::put_InputAttenHighAdjChanPower(TarnSwitchStates value) { PutParameter({.Member = Members::InputAttenHighAdjChanPower, .Command = "INPUT:DVBT:HIGH:ADJ:CHANNEL:POWER "}, SwitchTokens, value, {0, 1}); }
// clang-format on

TarnStatusCodeRates clsTarn4x::get_StatusOfdmCodeRate(TarnStatusHierarchicalModes udtPriority) {
    constexpr auto member = Members::StatusOfdmCodeRate;
    ForgetPrefix();
    RequireManualCodeRate(member);
    RequireRange(member, udtPriority, {tarnLow, tarnHigh}, "udtPriority");
    return ReadToken<TarnStatusCodeRates>(
        {.Member = member,
         .Query = udtPriority == tarnHigh ? "SENSE:DVBT:CODE:RATE:HP?" : "SENSE:DVBT:CODE:RATE:LP?",
         .Expected = "1,2;2,3;3,4;5,6;7,8",
         .Delimiter = ";"},
        CodeRateAnswers);
}

void clsTarn4x::put_StatusOfdmCodeRate(TarnStatusHierarchicalModes udtPriority, TarnStatusCodeRates value) {
    constexpr auto member = Members::StatusOfdmCodeRate;
    RequireManualCodeRate(member);
    RequireRange(member, udtPriority, {tarnLow, tarnHigh}, "udtPriority");
    RequireRange(member, value, {tarn1_2, tarn7_8});
    WriteToken({.Member = member,
                .Command = udtPriority == tarnHigh ? "SENSE:DVBT:CODE:RATE:HP " : "SENSE:DVBT:CODE:RATE:LP "},
               CodeRateTokens, value);
}

}  // namespace tarn4x
