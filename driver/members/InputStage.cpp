#include "driver/Recipes.h"

namespace tarn4x {

namespace {

constexpr auto UnknownAttenuator = "Device reported an unrecognised attenuator setting (";
constexpr auto UnknownDemod = "Device reported an unrecognised demod attenuator setting (";  // receiver mode included
constexpr auto InvalidValue = "Invalid Property Value (";
constexpr auto UnknownPort = "Invalid Property Value  (InputPort = ";  // two blanks here, one when written

constexpr auto Attenuations = "55,50,45,40,35,30,25,20,15,10,5,0";

constexpr std::int32_t ReceiverBit = 2, DemodBit = 4;

constexpr Token AutoTokens[] = {{1, "1"}, {1, "ON"}, {0, "0"}, {0, "OFF"}};
// The RF input without the impedance option, and the 50 and 75 ohm inputs, have commands of their own.
constexpr Token ReceiverModeTokens[] = {{tarnRxAttenLoNoise, "LNO"},
                                        {tarnRxAttenNormal, "IGN"},
                                        {tarnRxAttenLoDistn, "LDIS"},
                                        {tarnRxAttenLowestDistn, "LSD"}};
constexpr Token ImpedanceModeTokens[] = {
    {tarnRxAttenLoNoise, "LNO"}, {tarnRxAttenNormal, "NORM"}, {tarnRxAttenLoDistn, "LDIS"}};
constexpr Token AnyModeTokens[] = {{tarnRxAttenLoNoise, "LNO"},
                                   {tarnRxAttenNormal, "IGN"},
                                   {tarnRxAttenNormal, "NORM"},
                                   {tarnRxAttenLoDistn, "LDIS"},
                                   {tarnRxAttenLowestDistn, "LSD"}};
constexpr Token DemodValueTokens[] = {{tarnDAVManualLowPreamp, "0"}, {tarnDAVManualLowAtten, "1"},
                                      {tarnDAVManualHigh, "2"},      {tarnDAVAutoLowPreamp, "10"},
                                      {tarnDAVAutoLowAtten, "11"},   {tarnDAVAutoHigh, "12"}};
constexpr Token DemodTokens[] = {{tarnDemodAttenAuto, "AUTO"},
                                 {tarnDemodManualLowAtten, "MNLW"},
                                 {tarnDemodManualLowPreamp, "MNLE"},
                                 {tarnDemodManualHigh, "MNHI"}};
constexpr Token PortTokens[] = {
    {tarnReceiver, "RF"}, {tarnDemod, "DEM"}, {tarnIF, "IF"}, {tarnReceiver50ohm, "RF"}, {tarnReceiver75ohm, "RF"}};
constexpr Token ImpedanceTokens[] = {{tarnReceiver50ohm, "O50"}, {tarnReceiver75ohm, "O75"}};

constexpr double DemodValueFirmware = 5.05;  // first firmware that reports it

}  // namespace

TarnInputPorts clsTarn4x::RequirePort(Members member, std::int32_t bit, bool stopRequestPasses) {
    const auto port = get_InputPort();
    if ((port & bit) == 0 && !(stopRequestPasses && AbortRequested())) {
        RaiseFor(member, xtarnBadInputPort, "Wrong input port selected");
    }
    return port;
}

bool clsTarn4x::HasImpedanceOption() { return get_InstalledHardware().find("TARN-B3") != std::string::npos; }

TarnInputAttenuations clsTarn4x::get_InputAttenuation() { return get_InputAttenuation_Receiver(); }
void clsTarn4x::put_InputAttenuation(TarnInputAttenuations value) { put_InputAttenuation_Receiver(value); }
TarnInputAttenuations clsTarn4x::get_InputAttenuationValue() { return get_InputAttenuationValue_Receiver(); }

TarnInputAttenuations clsTarn4x::get_InputAttenuation_Receiver() {
    ForgetPrefix();
    get_InputPort();  // read and not looked at: the traffic belongs to the member
    const auto automatic = AskToken({.Member = Members::InputAttenuation_Receiver,
                                     .Query = "INPUT:ATTENUATION:AUTO?",
                                     .Expected = "1,ON,0,OFF",
                                     .Unknown = UnknownAttenuator},
                                    AutoTokens);
    if (!automatic) return tarnAtten00;
    if (*automatic != 0) return tarnAttenAuto;
    return AskAttenuation({.Member = Members::InputAttenuation_Receiver,
                           .Query = "INPUT:ATTENUATION?",
                           .Expected = Attenuations,
                           .Unknown = UnknownAttenuator});
}

void clsTarn4x::put_InputAttenuation_Receiver(TarnInputAttenuations value) {
    get_InputPort();  // as in the read
    Guarded(LetOf(Members::InputAttenuation_Receiver), [&] {
        if (value == tarnAttenAuto) {
            channel.SendCommand("INPUT:ATTENUATION:AUTO ON");
        } else {
            channel.SendCommand("INPUT:ATTENUATION:AUTO OFF");
            channel.SendCommand("INPUT:ATTENUATION " + std::to_string(value));
        }
        ImpulseResponseKnown = false;
    });
}

TarnInputAttenuations clsTarn4x::get_InputAttenuationValue_Receiver() {
    ForgetPrefix();
    RequirePort(Members::InputAttenuationValue_Receiver, ReceiverBit, true);
    return AskAttenuation({.Member = Members::InputAttenuationValue_Receiver,
                           .Query = "INPUT:ATTENUATION?",
                           .Expected = Attenuations,
                           .Unknown = UnknownAttenuator});
}

TarnInputAttenuations clsTarn4x::AskAttenuation(const Read& read) {
    const auto attenuation = Asked(read, [](const std::string& text) { return std::optional(ToInteger(text)); });
    if (!attenuation) return tarnAtten00;
    if (*attenuation < tarnAtten00 || *attenuation > tarnAtten55 || *attenuation % 5 != 0) {
        RaiseUnknown(read, answer.Raw);
    }
    return static_cast<TarnInputAttenuations>(*attenuation);
}

TarnRxAttenModes clsTarn4x::get_InputAttenuationMode_Receiver() {
    ForgetPrefix();
    const auto port = RequirePort(Members::InputAttenuationMode_Receiver, ReceiverBit, false);
    return ReadToken<TarnRxAttenModes>({.Member = Members::InputAttenuationMode_Receiver,
                                        .Query = port == tarnReceiver ? "INP:ATT:MODE?" : "INP:ATT:REC?",
                                        .Unknown = UnknownDemod},
                                       AnyModeTokens);
}

void clsTarn4x::put_InputAttenuationMode_Receiver(TarnRxAttenModes value) {
    constexpr auto member = Members::InputAttenuationMode_Receiver;
    if (RequirePort(member, ReceiverBit, false) == tarnReceiver) {
        WriteToken({.Member = member, .Command = "INPUT:ATTENUATION:MODE ", .Refuses = true, .Refusal = InvalidValue},
                   ReceiverModeTokens, value);
    } else {
        WriteToken({.Member = member, .Command = "INP:ATT:REC ", .Refuses = true, .Refusal = InvalidValue},
                   ImpedanceModeTokens, value);
    }
}

TarnDemodAttenVals clsTarn4x::get_InputAttenuationValue_Demod() {
    constexpr auto member = Members::InputAttenuationValue_Demod;
    ForgetPrefix();
    if (LeadingNumber(get_FirmwareVersion()) < DemodValueFirmware) {
        RaiseFor(member, xtarnFuntionNotAvailable,
                 std::string(NameOf(member)) + " is not supported by current firmware.");
    }
    RequirePort(member, DemodBit, false);
    return ReadToken<TarnDemodAttenVals>(
        {.Member = member, .Query = "INPUT:ATTENUATION:DEM:VAL?", .Unknown = UnknownDemod}, DemodValueTokens);
}

TarnDemodAttenuations clsTarn4x::get_InputAttenuation_Demod() {
    ForgetPrefix();
    RequirePort(Members::InputAttenuation_Demod, DemodBit, true);
    return ReadToken<TarnDemodAttenuations>({.Member = Members::InputAttenuation_Demod,
                                             .Query = "INPUT:ATTENUATION:DEM?",
                                             .Expected = "AUTO,MNLW,MNLE,MNHI",
                                             .Unknown = UnknownDemod},
                                            DemodTokens);
}

void clsTarn4x::put_InputAttenuation_Demod(TarnDemodAttenuations value) {
    RequirePort(Members::InputAttenuation_Demod, DemodBit, true);
    WriteToken({.Member = Members::InputAttenuation_Demod,
                .Command = "INPUT:ATTENUATION:DEM ",
                .Refuses = true,
                .Refusal = "Invalid Property Value (InputAttenuation_Demod = "},
               DemodTokens, value);
}

TarnInputPorts clsTarn4x::get_InputPort() {
    const auto port = AskToken(
        {.Member = Members::InputPort, .Query = "ROUTE:ISELECT?", .Expected = "RF,DEM,IF", .Unknown = UnknownPort},
        PortTokens);
    if (!port) return static_cast<TarnInputPorts>(0);
    if (*port != tarnReceiver || !Guarded(GetOf(Members::InputPort), [&] { return HasImpedanceOption(); })) {
        return static_cast<TarnInputPorts>(*port);
    }
    return ReadToken<TarnInputPorts>({.Member = Members::InputPort,
                                      .Query = "INPUT:ATTENUATION:IMP?",
                                      .Expected = "O50,O75",
                                      .Unknown = UnknownPort},
                                     ImpedanceTokens);
}

void clsTarn4x::put_InputPort(TarnInputPorts value) {
    const auto port = TokenOf(PortTokens, value);
    if (port.empty()) RaiseInvalid(Members::InputPort, std::to_string(value), "Invalid Property Value (InputPort = ");
    Guarded(LetOf(Members::InputPort), [&] {
        auto impedance = TokenOf(ImpedanceTokens, value);
        if (!impedance.empty() && !HasImpedanceOption()) impedance = {};
        channel.SendCommand(std::string("ROUT:ISEL ").append(port));
        ImpulseResponseKnown = false;
        Delay(1.0F);
        if (!impedance.empty()) channel.SendCommand(std::string("INP:ATT:IMP ").append(impedance));
    });
}

}  // namespace tarn4x
