#include <cmath>

#include "driver/Dates.h"
#include "driver/Recipes.h"
#include "driver/RuntimeErrors.h"
#include "driver/members/SharedRows.h"

namespace tarn4x {

namespace {

constexpr Token LoopTokens[] = {{tarnLbsLo, "LO"}, {tarnLbsMed, "MED"}, {tarnLbsHi, "HI"}};
constexpr Token SawTokens[] = {
    {tarnSawOFF, "OFF"}, {tarnSawOFF, "0"}, {tarnSaw6MHz, "MHZ6"}, {tarnSaw7MHz, "MHZ7"}, {tarnSaw8MHz, "MHZ8"}};
constexpr Token ChannelTokens[] = {{tarnCh6MHz, "MHZ6"}, {tarnCh7MHz, "MHZ7"}, {tarnCh8MHz, "MHZ8"}};
constexpr Token ReferenceTokens[] = {{tarnExternal, "EXT"}, {tarnInternal, "INT"}};
constexpr Token LevelTokens[] = {{tarnDBMV, "DBMV"}, {tarnDBPW, "DBPW"}, {tarnDBUW, "DBUW"},
                                 {tarnDBM, "DBM"},   {tarnDBUV, "DBUV"}, {tarnMV, "MV"}};

constexpr auto NoiseFailsAs = "MeasureCdAddNoiseCn ";  // the blank goes into text and source of its failures
constexpr auto ChannelFailsAs = "ChannelFilterBW";

constexpr auto UnknownReference = "Device reported an unrecognised equalizer setting (";

constexpr double LowestCn = 2.0, HighestCn = 56.0;  // dB
constexpr std::int32_t HighestSymbolCount = 99999;

constexpr double HzPerStep = 10'000.0;         // the instrument counts in 10 kHz
constexpr double SpectrumEdge = 4'480'000.0;   // Hz on either side of the centre
constexpr double NarrowestSpan = 1'340'000.0;  // Hz

/// Bounds are compared in millionths of a Hz, so that what is computed from an answer meets the bound that it stands
/// for.
double Millionths(double frequency) { return std::round(frequency * 1e6); }

/// The numbers of an answer "a,b,c", without what is behind their points.
std::array<int, 3> ThreeNumbers(std::string_view text) {
    const auto fields = Split(text);
    if (fields.size() < 3) RaiseSubscriptOutOfRange();
    std::array<int, 3> numbers{};
    for (std::size_t i = 0; i < numbers.size(); ++i) numbers[i] = ToInteger(std::trunc(LeadingNumber(fields[i])));
    return numbers;
}

std::string Joined(int first, int second, int third) {
    return std::to_string(first) + ',' + std::to_string(second) + ',' + std::to_string(third);
}

}  // namespace

double clsTarn4x::get_MeasureNoiseGenerator() { return get_MeasureCdAddNoiseCn(); }
void clsTarn4x::put_MeasureNoiseGenerator(double value) { put_MeasureCdAddNoiseCn(value); }

TarnSwitchStates clsTarn4x::get_MeasureCdAddNoise() {
    return ReadToken<TarnSwitchStates>({.Member = Members::MeasureCdAddNoise,
                                        .Query = "SENS:DVBT:NOISE:MODE?",
                                        .Unknown = "Device reported an unrecognised measurement mode ("},
                                       SwitchTokens);
}

void clsTarn4x::put_MeasureCdAddNoise(TarnSwitchStates value) {
    WriteToken({.Member = Members::MeasureCdAddNoise, .Command = "SENS:DVBT:NOISE:MODE ", .Refuses = true},
               SwitchTokens, value);
}

double clsTarn4x::get_MeasureCdAddNoiseCn() {
    return ReadNumber({.Member = Members::MeasureCdAddNoiseCn, .Query = "SENS:DVBT:NOISE?", .FailsAs = NoiseFailsAs});
}

void clsTarn4x::put_MeasureCdAddNoiseCn(double value) {
    const auto text = platform::GeneralNumber(value);
    if (!(value >= LowestCn && value <= HighestCn)) RaiseInvalid(Members::MeasureCdAddNoiseCn, text);
    Tell({.Member = Members::MeasureCdAddNoiseCn, .Command = "SENS:DVBT:NOISE ", .FailsAs = NoiseFailsAs}, text);
}

std::int32_t clsTarn4x::get_MeasureCdSymbolCount() {
    return ReadLong({.Member = Members::MeasureCdSymbolCount, .Query = "SENS:DVBT:INT:COUN?"});
}

void clsTarn4x::put_MeasureCdSymbolCount(std::int32_t value) {
    const auto text = std::to_string(value);
    if (value < 1 || value > HighestSymbolCount) RaiseInvalid(Members::MeasureCdSymbolCount, text);
    Tell({.Member = Members::MeasureCdSymbolCount, .Command = "SENS:DVBT:INT:COUN "}, text);
}

double clsTarn4x::get_MeasureFdSpectrumStartFreq() {
    return ReadNumber(
        {.Member = Members::MeasureFdSpectrumStartFreq, .Query = "SENS:DVBT:SPEC:FREQ:STAR?", .Scale = HzPerStep});
}

void clsTarn4x::put_MeasureFdSpectrumStartFreq(double value) {
    RequireMode(Members::MeasureFdSpectrumStartFreq);
    const double stop = get_MeasureFdSpectrumStopFreq();
    PutSpectrumFrequency({.Member = Members::MeasureFdSpectrumStartFreq, .Command = "SENS:DVBT:SPEC:FREQ:STAR "}, value,
                         -SpectrumEdge, stop - NarrowestSpan);
}

double clsTarn4x::get_MeasureFdSpectrumStopFreq() {
    return ReadNumber(
        {.Member = Members::MeasureFdSpectrumStopFreq, .Query = "SENS:DVBT:SPEC:FREQ:STOP?", .Scale = HzPerStep});
}

void clsTarn4x::put_MeasureFdSpectrumStopFreq(double value) {
    RequireMode(Members::MeasureFdSpectrumStopFreq);
    const double start = get_MeasureFdSpectrumStartFreq();
    PutSpectrumFrequency({.Member = Members::MeasureFdSpectrumStopFreq, .Command = "SENS:DVBT:SPEC:FREQ:STOP "}, value,
                         start + NarrowestSpan, SpectrumEdge);
}

void clsTarn4x::PutSpectrumFrequency(const Write& write, double value, double lowest, double highest) {
    const bool inRange = Millionths(value) >= Millionths(lowest) && Millionths(value) <= Millionths(highest);
    if (!std::isfinite(value) || (!inRange && !AbortRequested())) RaiseOutOfRange(write.Member);
    Tell(write, platform::GeneralNumber(RoundDecimals(value / HzPerStep, 2)));
}

bool clsTarn4x::get_ReferenceLocked() {
    const Read read{.Member = Members::ReferenceLocked,
                    .Query = "SENS:REF:UNL?",
                    .Expected = "0,1",
                    .AsItCame = true,
                    .Unknown = UnknownReference};
    const auto raw = Asked(read, [](std::string came) { return std::optional(std::move(came)); });
    if (!raw) return false;
    const double unlocked = LeadingNumber(*raw);
    if (unlocked != 0.0 && unlocked != 1.0) RaiseUnknown(read, *raw);
    return unlocked == 0.0;
}

bool clsTarn4x::get_StateSignal() {
    return Asked({.Member = Members::StateSignal, .Query = "READ:SIGN:RF?", .Expected = "OK,UND,NORF,OVER"},
                 [](const std::string& text) { return text == "OK"; });
}

TarnSpecFuncLoopBandwidths clsTarn4x::get_SpecFuncLoopBandwidth() {
    return ReadToken<TarnSpecFuncLoopBandwidths>(
        {.Member = Members::SpecFuncLoopBandwidth, .Query = "SENSE:DVBT:LOOP:BWIDTH:FREQ?", .Expected = "LO,MED,HI"},
        LoopTokens);
}

void clsTarn4x::put_SpecFuncLoopBandwidth(TarnSpecFuncLoopBandwidths value) {
    WriteToken({.Member = Members::SpecFuncLoopBandwidth, .Command = "SENSE:DVBT:LOOP:BWIDTH:FREQ "}, LoopTokens,
               value);
}

TarnSpecFuncMinBerIntegrations clsTarn4x::get_SpecFuncMinBerIntegration() {
    return static_cast<TarnSpecFuncMinBerIntegrations>(Asked({.Member = Members::SpecFuncMinBerIntegration,
                                                              .Query = "SENSE:DVBT:BERATE:INTEGRATION?",
                                                              .Expected = "1,10,100,1000"},
                                                             [](const std::string& text) { return ToInteger(text); }));
}

void clsTarn4x::put_SpecFuncMinBerIntegration(TarnSpecFuncMinBerIntegrations value) {
    Tell({.Member = Members::SpecFuncMinBerIntegration, .Command = "SENS:DVBT:BERATE:INTEGRATION "},
         std::to_string(value));
}

TarnStatusOrderOfQams clsTarn4x::get_MeasureOrderOfQam() {
    return ReadToken<TarnStatusOrderOfQams>({.Member = Members::MeasureOrderOfQam,
                                             .Query = "READ:DVBT:ORDER?",
                                             .Expected = "4,16,64",
                                             .Otherwise = tarnQamUnknown},
                                            QamTokens);
}

std::optional<std::int32_t> clsTarn4x::AskSawFilter() {
    return AskToken({.Member = Members::StatusSawFilterBW,
                     .Query = "SENSE:DVBT:FILTER:SAW?",
                     .Expected = "OFF,0,MHZ6,MHZ7,MHZ8",
                     .Unknown = "Device reported an invalid filter bandwidth ( ",
                     .UnknownEnd = " )",
                     .UnknownCode = xtarnQueryFailed},
                    SawTokens);
}

TarnStatusSawFilterBWs clsTarn4x::get_StatusSawFilterBW() {
    return static_cast<TarnStatusSawFilterBWs>(AskSawFilter().value_or(tarnSawOFF));
}

void clsTarn4x::put_StatusSawFilterBW(TarnStatusSawFilterBWs value) {
    WriteToken({.Member = Members::StatusSawFilterBW,
                .Command = "SENSE:DVBT:FILTER:SAW ",
                .Refuses = true,
                .Refusal = "Invalid property value (Filter Bandwidth = "},
               SawTokens, value);
    ImpulseResponseKnown = false;
}

TarnStatusChannelBWs clsTarn4x::get_StatusChannelBW() {
    return ReadToken<TarnStatusChannelBWs>({.Member = Members::StatusChannelBW,
                                            .Query = "SENSE:DVBT:CHANNEL:BWIDTH?",
                                            .Expected = "MHZ6,MHZ7,MHZ8",
                                            .FailsAs = ChannelFailsAs},
                                           ChannelTokens);
}

void clsTarn4x::put_StatusChannelBW(TarnStatusChannelBWs value) {
    WriteToken({.Member = Members::StatusChannelBW, .Command = "SENS:DVBT:CHANNEL:BWIDTH ", .FailsAs = ChannelFailsAs},
               ChannelTokens, value);
    ImpulseResponseKnown = false;
}

TarnReferenceSources clsTarn4x::get_Setup10MhzRef() {
    return ReadToken<TarnReferenceSources>({.Member = Members::Setup10MhzRef,
                                            .Query = "SENS:REF?",
                                            .Expected = "EXT,INT",
                                            .AsItCame = true,
                                            .Unknown = UnknownReference},
                                           ReferenceTokens);
}

void clsTarn4x::put_Setup10MhzRef(TarnReferenceSources value) {
    const auto token = TokenOf(ReferenceTokens, value);
    if (token.empty()) RaiseFor(Members::Setup10MhzRef, xtarnInvalidPropertyValue, "Invalid Property Value");
    Tell({.Member = Members::Setup10MhzRef, .Command = "SENS:REF "}, token);
    ImpulseResponseKnown = false;
}

TarnSetupLevelUnits clsTarn4x::get_SetupLevelUnit() {
    return ReadToken<TarnSetupLevelUnits>(
        {.Member = Members::SetupLevelUnit, .Query = "UNIT:LEVEL:POWER?", .Expected = "DBMV,DBPW,DBUW,DBM,DBUV,MV"},
        LevelTokens);
}

void clsTarn4x::put_SetupLevelUnit(TarnSetupLevelUnits value) {
    WriteToken({.Member = Members::SetupLevelUnit, .Command = "UNIT:LEVEL:POWER "}, LevelTokens, value);
}

Date clsTarn4x::get_SetupTime() {
    return Asked({.Member = Members::SetupTime, .Query = "SYST:TIME?"}, [](const std::string& text) {
        const auto [hour, minute, second] = ThreeNumbers(text);
        return DateFromTime(hour, minute, second);
    });
}

void clsTarn4x::put_SetupTime(Date value) {
    Guarded(LetOf(Members::SetupTime), [&] {
        const auto time = TimeOf(value);
        channel.SendCommand("SYST:Time " + Joined(time.Hour, time.Minute, time.Second));
    });
}

Date clsTarn4x::get_SetupDate() {
    return Asked({.Member = Members::SetupDate, .Query = "SYST:DATE?"}, [](const std::string& text) {
        const auto [year, month, day] = ThreeNumbers(text);
        return DateFromDay(year, month, day);
    });
}

void clsTarn4x::put_SetupDate(Date value) {
    Guarded(LetOf(Members::SetupDate), [&] {
        const auto day = DayOf(value);
        channel.SendCommand("SYST:DATE " + Joined(day.Year % 100, day.Month, day.Day));
    });
}

}  // namespace tarn4x
