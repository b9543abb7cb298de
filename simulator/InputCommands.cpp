#include "simulator/CommandRows.h"
#include "simulator/Commands.h"
#include "simulator/Receiver.h"

// Input ports, attenuators, tuning, reference and unit.
namespace sim {

namespace {

constexpr const char* kImpedanceOption = "TARN-B3";

// The commands of the input module that the impedance option brings are refused without it.
Command NeedsImpedanceOption(const Command& command) {
    const auto check = [](const Receiver& receiver) {
        if (!receiver.configuration.options.Has(kImpedanceOption)) throw ScpiError{-241};
    };
    return {command.pattern,
            [=, set = command.set](Receiver& receiver, const Arguments& arguments) {
                check(receiver);
                set(receiver, arguments);
            },
            [=, query = command.query](Receiver& receiver, const Arguments& arguments) {
                check(receiver);
                return query(receiver, arguments);
            }};
}

void SetAttenuation(Receiver& receiver, const Arguments& arguments) {
    arguments.Expect(1);
    const int attenuation = arguments.Whole(0, 0, 55);
    if (attenuation % 5 != 0) throw ScpiError{-222};
    receiver.settings.attenuator = attenuation;
    receiver.settings.attenuatorAuto = false;
    receiver.Restart();
}

const std::vector<std::string_view> kRfModes = {"LNO", "IGN", "LDIS", "LSD"};
const std::vector<std::string_view> kRfModesWithImpedance = {"LNO", "NORM", "LDIS", "LDIS"};

// 0 low with preamplifier, 1 low with attenuator, 2 high; 10 more while automatic.
std::string DemodulatorPath(Receiver& receiver) {
    switch (receiver.settings.demodAttenuator) {
        case kDemodLowPreamplifier:
            return "0";
        case kDemodLowAttenuator:
            return "1";
        case kDemodHigh:
            return "2";
        default:
            break;
    }
    const double level = receiver.Receive().level;
    return level < -60 ? "10" : level < -30 ? "11" : "12";
}

void CheckSaw(const Receiver& receiver) {
    const int saw = receiver.settings.saw;
    if (saw != kSawOff && !receiver.configuration.options.HasSaw(saw + 5)) throw ScpiError{-241};
}

std::string ReferenceUnlocked(Receiver& receiver) {
    return receiver.settings.externalReference == 1 && !receiver.OnAir().externalReference ? "1" : "0";
}

std::string SignalState(Receiver& receiver) {
    const Reception r = receiver.Receive();
    return !r.present ? "NORF" : r.over ? "OVER" : r.under ? "UND" : "OK";
}

}  // namespace

std::vector<Command> InputCommands() {
    return {
        Number("SENSe:FREQuency:CENTer", &Settings::frequency, 3e6, 10'000'000'009, Effect::Restart),
        Choice("ROUTe:ISELect", &Settings::port, {"RF", "DEM", "IF"}, Effect::Restart),
        Switch("INPut:ATTenuation:AUTO", &Settings::attenuatorAuto, "0", "1", Effect::Restart),
        {"INPut:ATTenuation", SetAttenuation,
         Answer("", [](const Receiver& receiver) { return std::to_string(receiver.Receive().attenuator); }).query},
        Choice("INPut:ATTenuation:MODE", &Settings::attenuatorMode, kRfModes, Effect::Restart),
        NeedsImpedanceOption(
            Choice("INPut:ATTenuation:RECeiver", &Settings::attenuatorMode, kRfModesWithImpedance, Effect::Restart)),
        NeedsImpedanceOption(Choice("INPut:ATTenuation:IMPedance", &Settings::impedance, {"O50", "O75"})),
        Choice("INPut:ATTenuation:DEModulator", &Settings::demodAttenuator, {"AUTO", "MNLW", "MNLE", "MNHI"},
               Effect::Restart),
        Answer("INPut:ATTenuation:DEModulator:VALue", DemodulatorPath),
        Switch("INPut:DVBT:HIGH:ADJacent:CHANnel:POWer", &Settings::highAdjacentPower, "OFF", "ON", Effect::Restart),
        Checked(Choice("SENSe:DVBT:FILTer:SAW", &Settings::saw, {"OFF", "MHZ6", "MHZ7", "MHZ8"}, Effect::Restart),
                CheckSaw),
        Choice("SENSe:DVBT:CHANnel:BWIDth", &Settings::channelBandwidth, {"MHZ6", "MHZ7", "MHZ8"}, Effect::Restart),
        Choice("SENSe:REFerence", &Settings::externalReference, {"INT", "EXT"}, Effect::Restart),
        Answer("SENSe:REFerence:UNLocked", ReferenceUnlocked),
        Choice("UNIT:LEVel:POWer", &Settings::levelUnit, {"DBMV", "DBPW", "DBUW", "DBM", "DBUV", "MV"}),
        Answer("READ:SIGNal:RF", SignalState),
    };
}

}  // namespace sim
