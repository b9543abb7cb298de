#include "cli/Advice.h"

#include "driver/Conversions.h"
#include "driver/Enumerations.h"

namespace cli {

std::string AdviceOn(std::int32_t number, std::string_view member, std::string_view modes,
                     std::string_view presentMode) {
    switch (number) {
        case tarn4x::xtarnInvalidPropertyValue:
            return "\"tarn4x members " + std::string(member) + "\" tells what it takes.";
        case tarn4x::xtarnQueryFailed:
        case tarn4x::xtarnCommandFailed:
            return "With --trace FILE the dialogue with the receiver is written down.";
        case tarn4x::xtarnBadMeasureMode: {
            const auto first = modes.substr(0, modes.find_first_of(" ,"));
            return std::string(member)
                       .append(" exists in measure mode ")
                       .append(modes)
                       .append(", the receiver is in ") +
                   std::string(presentMode)
                       .append(": set MeasureMode=")
                       .append(first)
                       .append(" first (get and watch do it with --switch).");
        }
        case tarn4x::xtarnBadInputPort:
            return "Select the input that it belongs to first: \"tarn4x members InputPort\" lists them.";
        case tarn4x::xtarnFuntionNotAvailable:
            return "The receiver's firmware (tarn4x identify) is too old for it.";
        case tarn4x::xtarnBadRemoteControlPort:
            return "Use another link than the front panel's: --host, --serial or --gpib.";
        case tarn4x::xtarnBadCodeRateMode:
            return "Transmission parameters are set by hand after: tarn4x set StatusOfdmCodeRateMode=Man";
        default:
            return {};
    }
}

std::string AdviceOnConnection(std::string_view link, std::string_view reason) {
    struct Case {
        std::string_view Link, Reason;
        const char* Advice;
    };
    // The first that fits; an empty field fits everything.
    constexpr Case cases[] = {
        {"TCP/IP", "refused", "Is it the receiver's address and port, and is its remote control over LAN switched on?"},
        {"TCP/IP", "name unknown", "Is the name spelt right? The receiver's IP address works without a name server."},
        {"TCP/IP", "no route", "Is this PC in the receiver's network, and is the cable plugged in?"},
        {"TCP/IP", "", "Is the receiver switched on, is the address right, and is there a firewall in between?"},
        {"RS232", "=none", "That port is named as one where nobody answers: tarn4x ports lists the others."},
        {"RS232", "=tcp://",
         "Is the device server on, in raw TCP mode at that port, and is nobody else connected to it?"},
        {"RS232", "timed out",
         "Is the cable plugged in, and has the receiver the same baud rate (--serial PORT:BAUD)?"},
        {"RS232", "", "Is it the right port (tarn4x ports lists them), and does another program have it open?"},
        {"GPIB", "VISA runtime", ""},  // the reason itself tells what to install
        {"GPIB", "", "Are board and address right, is the cable plugged in, and is the receiver switched on?"},
        {"GUI", "", "The front-panel application has to run on this PC."},
    };
    const auto lower = tarn4x::LowerCase(reason);
    for (const auto& entry : cases) {
        if (entry.Link == link && lower.find(tarn4x::LowerCase(entry.Reason)) != lower.npos) return entry.Advice;
    }
    return {};
}

}  // namespace cli
