#include "driver/Recipes.h"
#include "driver/RuntimeErrors.h"

namespace tarn4x {

namespace {

constexpr Token DetectorTokens[] = {{tarnMIN, "MIN"}, {tarnRMS, "RMS"}, {tarnMAX, "MAX"}};
constexpr Token AverageTokens[] = {{0, "0"}, {0, "OFF"}, {1, "1"}, {1, "ON"}};

constexpr auto CarrierModeSource = "MeasureOfdmStartCarrier";  // the mode error of both carriers names it

constexpr int ResponseAttempts = 10;
constexpr std::int16_t HighestAverageCount = 999;
constexpr std::int16_t HighestCarrier2k = 1704, HighestCarrier8k = 6816;

}  // namespace

// ---- Frequency response ----

double clsTarn4x::get_MeasureFdPhaseResponse() {
    return ReadResponse(Members::MeasureFdPhaseResponse, &ParsedAnswer::mdblPairSecond);
}

double clsTarn4x::get_MeasureFdGroupDelayResponse() {
    return ReadResponse(Members::MeasureFdGroupDelayResponse, &ParsedAnswer::mdblPairSecond);
}

double clsTarn4x::get_MeasureFdAmplitudeResponse() {
    return ReadResponse(Members::MeasureFdAmplitudeResponse, &ParsedAnswer::mdblPairFirst);
}

double clsTarn4x::ReadResponse(Members member, double ParsedAnswer::*value) {
    RequireMode(member);
    std::string raw;
    const auto read = Guarded(GetOf(member), [&]() -> std::optional<bool> {
        for (int attempt = 1;; ++attempt) {
            ForgetPrefix();
            const auto response = AskRaw("READ:DVBT:AMPL_PHAS_GD:VALUE?");
            if (!response) return {};
            if (answer.ParseValuePair(*response)) return true;
            raw = *response;
            if (attempt == ResponseAttempts) return false;
            Delay(1.0F);
        }
    });
    if (!read) return 0.0;
    if (!*read) RaiseFor(member, xtarnQueryFailed, "Invalid TARN response string (" + raw + ")");
    return answer.*value;
}

// ---- Impulse response ----

void clsTarn4x::MeasureTdImpulseResponse() {
    RequireMode(Members::MeasureTdImpulseResponse);
    ForgetPrefix();
    Guarded(MethodOf(Members::MeasureTdImpulseResponse), [&] {
        struct SingleTry {  // the query is sent once, however it ends
            explicit SingleTry(std::int16_t& limit) : Limit(limit), Kept(limit) { limit = 0; }
            ~SingleTry() { Limit = Kept; }
            std::int16_t& Limit;
            std::int16_t Kept;
        };
        const auto raw = [&] {
            const SingleTry once(channel.RetryLimit);
            return AskRaw("READ:DVBT:IRESPONSE:PEAK?");
        }();
        if (!raw) return;
        std::string_view text = *raw;
        if (text.starts_with('"')) text.remove_prefix(1);
        if (text.ends_with('"')) text.remove_suffix(1);
        const auto items = Split(text);
        const bool complete = items.size() >= 2 * ImpulseAttenTexts.size();
        const auto item = [&](std::size_t index) {
            const auto trimmed = complete ? Trim(items[index]) : std::string_view();
            return std::string(trimmed.empty() ? "---" : trimmed);
        };
        for (std::size_t i = 0; i < ImpulseAttenTexts.size(); ++i) {
            ImpulseAttenTexts[i] = item(2 * i);
            ImpulseDelayTexts[i] = item(2 * i + 1);
        }
        ImpulseResponseKnown = true;
    });
}

double clsTarn4x::get_ImpulseResponseAtten(std::int16_t intNumber) {
    return ReadEcho(Members::ImpulseResponseAtten, intNumber, ImpulseAttenTexts);
}

double clsTarn4x::get_ImpulseResponseDelay(std::int16_t intNumber) {
    return ReadEcho(Members::ImpulseResponseDelay, intNumber, ImpulseDelayTexts);
}

double clsTarn4x::ReadEcho(Members member, std::int16_t number, const std::array<std::string, 25>& texts) {
    if (!ImpulseResponseKnown) MeasureTdImpulseResponse();
    if (AbortRequested()) return 0.0;
    const auto refuse = [&](std::string_view why) {
        RaiseFor(member, xtarnQueryFailed, std::string("Get ").append(NameOf(member)).append(why));
    };
    if (number < 1 || static_cast<std::size_t>(number) > texts.size()) refuse(": index value out of range");
    const auto& text = texts[static_cast<std::size_t>(number) - 1];
    if (text.empty()) refuse(": no value available");
    answer.Prefix = text == "---" ? "---" : "";
    return LeadingNumber(text);
}

// ---- OFDM carriers ----

clsTarn4x::Bounds clsTarn4x::AskCarrierBounds() {
    switch (get_MeasureFftMode()) {
        case tarn2k:
            return {0, HighestCarrier2k};
        case tarn8k:
            return {0, HighestCarrier8k};
        default:
            return {INT16_MIN, INT16_MAX};
    }
}

void clsTarn4x::TellCarriers(const Operation& operation, std::int16_t start, std::int16_t stop) {
    Guarded(operation, [&] {
        channel.SendCommand("SENSE:DVBT:CARRIER:START_STOP " + SignedNumber(start) + ',' + SignedNumber(stop));
    });
}

std::int16_t clsTarn4x::ReadCarrier(Members member, std::size_t index, std::string_view missing) {
    RequireMode(member, CarrierModeSource);
    ForgetPrefix();
    bool reported = true;
    const auto carrier = Guarded(GetOf(member), [&]() -> std::int16_t {
        const auto text = Ask("SENSE:DVBT:CARRIER:START_STOP?");
        if (!text) return 0;
        const auto items = Split(*text);
        reported = !items.empty();
        if (!reported) return 0;
        if (index >= items.size()) RaiseSubscriptOutOfRange();
        return ToInteger(LeadingNumber(items[index]));
    });
    if (!reported) RaiseInvalid(member, answer.Raw, missing);
    return carrier;
}

std::int16_t clsTarn4x::get_MeasureOfdmStartCarrier() {
    return ReadCarrier(Members::MeasureOfdmStartCarrier, 0, "Device did not report a start carrier (");
}

std::int16_t clsTarn4x::get_MeasureOfdmStopCarrier() {
    return ReadCarrier(Members::MeasureOfdmStopCarrier, 1, "Device did  not report a stop carrier (");
}

bool clsTarn4x::MaySetCarrier(Members member) {
    if (InModeOf(member)) return true;
    if (!AbortRequested()) RaiseWrongMode(CarrierModeSource);
    return false;
}

void clsTarn4x::put_MeasureOfdmStartCarrier(std::int16_t value) {
    constexpr auto member = Members::MeasureOfdmStartCarrier;
    if (!MaySetCarrier(member)) return;
    RequireRange(member, value, AskCarrierBounds());
    const auto stop = get_MeasureOfdmStopCarrier();
    RequireRange(member, value, {INT16_MIN, stop});
    TellCarriers(LetOf(member), value, stop);
}

void clsTarn4x::put_MeasureOfdmStopCarrier(std::int16_t value) {
    constexpr auto member = Members::MeasureOfdmStopCarrier;
    if (!MaySetCarrier(member)) return;
    RequireRange(member, value, AskCarrierBounds());
    const auto start = get_MeasureOfdmStartCarrier();
    RequireRange(member, value, {start, INT16_MAX});
    TellCarriers(LetOf(member), start, value);
}

void clsTarn4x::MeasureOfdmCarrierRange(std::int16_t intStart, std::int16_t intStop) {
    constexpr auto member = Members::MeasureOfdmCarrierRange;
    RequireMode(member);
    const auto bounds = AskCarrierBounds();
    RequireRange(member, intStart, bounds, "intStart");
    RequireRange(member, intStop, bounds, "intStop");
    if (intStart > intStop) {
        RaiseFor(member, xtarnInvalidPropertyValue, "intStart value greater than intStop value");
    }
    TellCarriers(MethodOf(member), intStart, intStop);
}

// ---- Spectrum and crest factor ----

TarnFdSpectrumDetectors clsTarn4x::get_MeasureFdSpectrumDetector() {
    return ReadToken<TarnFdSpectrumDetectors>(
        {.Member = Members::MeasureFdSpectrumDetector, .Query = "SENS:DVBT:SPEC:DET?", .Expected = "MIN,RMS,MAX"},
        DetectorTokens);
}

void clsTarn4x::put_MeasureFdSpectrumDetector(TarnFdSpectrumDetectors value) {
    constexpr auto member = Members::MeasureFdSpectrumDetector;
    RequireMode(member);
    RequireRange(member, value, {tarnMIN, tarnMAX});
    WriteToken({.Member = member, .Command = "SENS:DVBT:SPEC:DET "}, DetectorTokens, value);
}

std::int16_t clsTarn4x::get_MeasureFdSpectrumAverage() {
    return ReadInteger({.Member = Members::MeasureFdSpectrumAverage, .Query = "READ:DVBT:SPEC:AVG:COUN?"});
}

std::int16_t clsTarn4x::get_MeasureFdSpectrumAverageCount() {
    const auto on = AskToken(
        {.Member = Members::MeasureFdSpectrumAverageCount, .Query = "SENS:DVBT:SPEC:AVG?", .Expected = "0,OFF,1,ON"},
        AverageTokens);
    if (on.value_or(0) == 0) return 0;
    return ReadInteger({.Member = Members::MeasureFdSpectrumAverageCount, .Query = "SENS:DVBT:SPEC:AVG:COUN?"});
}

void clsTarn4x::put_MeasureFdSpectrumAverageCount(std::int16_t value) {
    constexpr auto member = Members::MeasureFdSpectrumAverageCount;
    RequireMode(member);
    RequireRange(member, value, {0, HighestAverageCount});
    Guarded(LetOf(member), [&] {
        if (value == 0) return channel.SendCommand("SENS:DVBT:SPEC:AVG OFF");
        channel.SendCommand("SENS:DVBT:SPEC:AVG ON");
        channel.SendCommand("SENS:DVBT:SPEC:AVG:COUN " + std::to_string(value));
    });
}

std::int16_t clsTarn4x::get_MeasureTdCrestFactorAqu() {
    return ReadInteger({.Member = Members::MeasureTdCrestFactorAqu, .Query = "READ:DVBT:CRES:ACQ?"});
}

}  // namespace tarn4x
