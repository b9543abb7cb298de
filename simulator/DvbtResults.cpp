#include <algorithm>
#include <cmath>

#include "simulator/CommandRows.h"
#include "simulator/Commands.h"
#include "simulator/Echoes.h"
#include "simulator/OfdmParameters.h"
#include "simulator/Receiver.h"
#include "simulator/Text.h"

// What the receiver measures. Numbers follow the unit in brackets at each row.
namespace sim {

namespace {

using Needs = Receiver::Needs;

// A result: the modes in which it exists (none: in all of them), the lock it needs, and how it is measured.
Command Result(std::string_view pattern, std::initializer_list<MeasureMode> modes, Needs needs,
               std::function<std::string(const Receiver&, const Reception&)> measure) {
    return Answer(pattern, [modes = std::vector<MeasureMode>{modes}, needs, measure](Receiver& receiver) {
        return receiver.Result(modes, needs, [&](const Reception& reception) { return measure(receiver, reception); });
    });
}

// A transmission parameter by its name.
Command Parameter(std::string_view pattern, const std::function<std::string_view(const Reception&)>& name) {
    return Result(pattern, {}, Needs::Lock,
                  [name](const Receiver&, const Reception& r) { return std::string{name(r)}; });
}

std::string RfLevel(const Receiver& receiver, const Reception& r) {
    if (!r.present) return "NORF";
    if (r.over) return "OVER";
    if (r.under) return "UNDER";
    const int unit = receiver.settings.levelUnit;
    const double level = ConvertLevel(r.level + 0.05 * receiver.Noise(1), unit, receiver.Impedance());
    return unit == kMv ? Print("%.4g", level) : Print("%.1f", level);
}

double Mer(const Receiver& receiver, const Reception& r) { return r.mer + 0.05 * receiver.Noise(2); }
double Percent(double mer) { return 100 * std::pow(10, -mer / 20); }  // TR 101 290: the error vectors' rms amplitude

// While the transport stream is lost the decisions behind the error vectors are uncertain: "*" says so.
std::string Decided(const Reception& r, const std::string& value) { return (r.tsLocked ? "" : "*") + value; }

std::string MerRms(Receiver& receiver, const Arguments& arguments) {
    const bool percent = arguments.Count() > 0 && TokenIndex({"DB", "PCT"}, arguments) == 1;
    return receiver.Result({HIST, PAR}, Needs::Lock, [&](const Reception& r) {
        const double mer = Mer(receiver, r);
        return Decided(r, percent ? Print("%.2f", Percent(mer)) : Print("%.1f", mer));
    });
}

std::string MerPeak(Receiver& receiver, const Arguments& arguments) {
    const bool percent = arguments.Count() > 0 && TokenIndex({"DB", "PCT"}, arguments) == 1;
    return receiver.Result({PAR}, Needs::Lock, [&](const Reception& r) {
        const double mer = Mer(receiver, r) - 20 * std::log10(3.4 + 0.2 * std::abs(receiver.Noise(3)));
        return Decided(r, percent ? Print("%.2f", Percent(mer)) : Print("%.1f", mer));
    });
}

// Shoulders are measured down to 50 dB (TR 101 290, annex C).
std::string Shoulder(const Receiver& receiver, const Reception& r, double asymmetry, int place) {
    const double attenuation = r.shoulders + asymmetry + 0.1 * receiver.Noise(place);
    return attenuation > 50 ? ">50.0" : Print("%.1f", std::max(attenuation, 0.0));
}

// The highest peak seen so far grows slowly with the observed time; the margin is what is left up to 15 dB.
constexpr double kCrestLimit = 15;
double CrestMax(const Receiver& receiver) {
    return 11.2 + 0.6 * std::log10(1 + receiver.Frames()) - (receiver.settings.highAdjacentPower ? 0.2 : 0);
}
double CrestCurrent(const Receiver& receiver) {
    return CrestMax(receiver) - std::min(0.3 + 0.2 * std::abs(receiver.Noise(6)), 2.0);
}

int Progress(const Receiver& receiver, int target, int perFrame) {
    return std::min(target, perFrame * receiver.Frames());
}

// The receiver measures the response when it is asked for it: it is there at once and needs no settling.
std::string ImpulseResponse(Receiver& receiver) {
    std::string list;
    const bool known = receiver.Measuring({IR_1, IR_2, IR_3}) && receiver.Receive().locked;
    if (!known) return kNoValue;
    const Echoes echoes{receiver.configuration.seed, receiver.settings.frequency};
    for (const Echo& path : echoes.Paths()) {
        list += Print("%s%.1f,%.2f", list.empty() ? "" : ",", path.attenuation, path.delay);
    }
    return '"' + list + '"';
}

// Amplitude [dB] with phase [degrees] or with group delay [ns].
std::string Response(const Receiver& receiver, const Reception& r) {
    const auto spread = Echoes{receiver.configuration.seed, receiver.settings.frequency}.Across(r.bandwidth);
    const bool phase = receiver.settings.measureMode == APH;
    return Print("%.2f,%.1f", spread.amplitude, phase ? spread.phase : spread.groupDelay);
}

std::string BerBehindViterbi(const Receiver& receiver, const Reception& r) {
    return r.tsLocked ? receiver.CountedBer(r.berAfterViterbi) : ">2.0E-2";
}

}  // namespace

std::vector<Command> DvbtResults() {
    return {
        Result("READ:RF:LEVel", {}, Needs::Nothing, RfLevel),  // [UNIT:LEVel:POWer]
        Result("READ:DVBT:FREQuency:OFFSet", {NORM}, Needs::Lock,
               [](const Receiver& receiver, const Reception& r) {  // [kHz]
                   return Print("%.3f", (r.offset + 2 * receiver.Noise(4)) / 1e3);
               }),
        Result("READ:DVBT:TS:BITRate", {}, Needs::TsLock,
               [](const Receiver& receiver, const Reception& r) {  // [Mbit/s]
                   const double deviation = 1 + receiver.OnAir().bitRateOffset * 1e-6;
                   return Print("%.6f", BitRate(r.ofdm, r.lowPriority, r.bandwidth) * deviation / 1e6);
               }),
        Result("READ:DVBT:BITRate:OFFSet", {}, Needs::TsLock,
               [](const Receiver& receiver, const Reception&) {  // [ppm]
                   return Print("%.2f", receiver.OnAir().bitRateOffset + 0.02 * receiver.Noise(5));
               }),
        Answer("READ:DVBT:OFDM:UNLocked",
               [](const Receiver& receiver) { return std::string{receiver.Receive().locked ? "0" : "1"}; }),
        Answer("READ:DVBT:MPEG:TS:LOCKed",
               [](const Receiver& receiver) { return std::string{receiver.Receive().tsLocked ? "1" : "0"}; }),

        Result("READ:DVBT:BERate:BVIT", {}, Needs::Lock,
               [](const Receiver& receiver, const Reception& r) { return receiver.CountedBer(r.berBeforeViterbi); }),
        Result("READ:DVBT:BERate:BRS", {}, Needs::Lock, BerBehindViterbi),
        Result("READ:DVBT:BERate:ARS", {}, Needs::TsLock,
               [](const Receiver& receiver, const Reception& r) { return receiver.CountedBer(r.berAfterReedSolomon); }),

        {"READ:DVBT:MER:RMS", nullptr, MerRms},    // [dB or per cent]
        {"READ:DVBT:MER:PEAK", nullptr, MerPeak},  // [dB or per cent]
        Result("READ:DVBT:SIGNal:NOISe", {PAR}, Needs::Lock,
               [](const Receiver& receiver, const Reception& r) {  // [dB]
                   return Print("%.1f", r.snr + 0.05 * receiver.Noise(7));
               }),
        Result("READ:DVBT:JITTer", {PAR}, Needs::Lock,
               [](const Receiver& receiver, const Reception& r) {  // [degrees rms]
                   return Print("%.2f", std::max(r.phaseJitter + 0.01 * receiver.Noise(8), 0.01));
               }),
        Result("READ:DVBT:IQ:QERRor", {PAR}, Needs::Lock,
               [](const Receiver& receiver, const Reception&) {  // [degrees]
                   return Print("%.2f", receiver.OnAir().iqPhaseError + 0.01 * receiver.Noise(9));
               }),
        Result("READ:DVBT:IQ:IMBalance", {PAR}, Needs::Lock,
               [](const Receiver& receiver, const Reception&) {  // [per cent]
                   return Print("%.2f", receiver.OnAir().iqImbalance + 0.01 * receiver.Noise(10));
               }),
        Result("READ:DVBT:CARRier:SUPPression", {PAR}, Needs::Lock,
               [](const Receiver& receiver, const Reception& r) {  // [dB]
                   const double suppression = r.carrierSuppression + 0.1 * receiver.Noise(11);
                   return suppression > 60 ? std::string{">60.0"} : Print("%.1f", suppression);
               }),
        Result("READ:DVBT:CARRier:SUPPression:PHASe", {PAR}, Needs::Lock,
               [](const Receiver& receiver, const Reception&) {  // [degrees]
                   return Print("%.1f", 37 + 0.5 * receiver.Noise(12));
               }),
        Result("READ:DVBT:AVERage:PROGress", {PAR}, Needs::Lock,
               [](const Receiver& receiver, const Reception&) {  // [per cent]
                   return std::to_string(Progress(receiver, 100, 10));
               }),

        Result("READ:DVBT:SPECtrum:SHOulder:LOWer", {SP_1, SP_2, SP_3}, Needs::Nothing,
               [](const Receiver& receiver, const Reception& r) { return Shoulder(receiver, r, -0.4, 13); }),  // [dB]
        Result("READ:DVBT:SPECtrum:SHOulder:UPPer", {SP_1, SP_2, SP_3}, Needs::Nothing,
               [](const Receiver& receiver, const Reception& r) { return Shoulder(receiver, r, 0.4, 14); }),  // [dB]
        Result("READ:DVBT:SPECtrum:AVG:COUNt", {SP_1, SP_2, SP_3}, Needs::Nothing,
               [](const Receiver& receiver, const Reception&) {
                   const Settings& settings = receiver.settings;
                   return std::to_string(Progress(receiver, settings.averaging ? settings.averageCount : 1, 1));
               }),
        Result(
            "READ:DVBT:CRESt:CURRent", {ADIS, CENV, CCDF}, Needs::Nothing,
            [](const Receiver& receiver, const Reception&) { return Print("%.1f", CrestCurrent(receiver)); }),  // [dB]
        Result("READ:DVBT:CRESt:MAX", {ADIS, CENV, CCDF}, Needs::Nothing,
               [](const Receiver& receiver, const Reception&) { return Print("%.1f", CrestMax(receiver)); }),  // [dB]
        Result("READ:DVBT:CRESt:MARGin", {ADIS, CENV, CCDF}, Needs::Nothing,
               [](const Receiver& receiver, const Reception&) {  // [dB]
                   return Print("%.1f", kCrestLimit - CrestMax(receiver));
               }),
        Result("READ:DVBT:CRESt:ACQuisition", {ADIS, CENV, CCDF}, Needs::Nothing,
               [](const Receiver& receiver, const Reception&) { return std::to_string(Progress(receiver, 32000, 1)); }),

        Result("READ:DVBT:AMPL_PHAS_GD:VALue", {APH, AGD}, Needs::Lock, Response),
        Answer("READ:DVBT:IRESponse:PEAK", ImpulseResponse),

        Parameter("READ:DVBT:FFT:MODE", [](const Reception& r) { return kFftNames[r.ofdm.fft]; }),
        Parameter("READ:DVBT:TPS:FFT:MODE", [](const Reception& r) { return kFftNames[r.ofdm.fft]; }),
        Parameter("READ:DVBT:TPS:GUARd:INTerval", [](const Reception& r) { return kGuardNames[r.ofdm.guard]; }),
        Parameter("READ:DVBT:TPS:ORDer", [](const Reception& r) { return kConstellationNames[r.ofdm.constellation]; }),
        Parameter("READ:DVBT:ORDer", [](const Reception& r) { return kConstellationNames[r.ofdm.constellation]; }),
        Result("READ:DVBT:TPS:ALPHa", {}, Needs::Lock,
               [](const Receiver& receiver, const Reception&) {
                   return std::string{kAlphaNames[receiver.OnAir().ofdm.alpha]};
               }),
        Result("READ:DVBT:TPS:CODE:RATE", {}, Needs::Lock,
               [](const Receiver& receiver, const Reception& r) {
                   return std::string{kRateNames[CodeRate(receiver.OnAir().ofdm, r.lowPriority)]};
               }),
        Parameter("READ:DVBT:CODE:RATE",
                  [](const Reception& r) { return kRateNames[CodeRate(r.ofdm, r.lowPriority)]; }),

        Answer("READ:DVBT:ALARm:STATistics", [](Receiver& receiver) { return receiver.statistics.Report(); }),
    };
}

}  // namespace sim
