#include "cli/Destination.h"

#include <algorithm>

#include "cli/Failure.h"
#include "driver/Conversions.h"

namespace cli {

namespace {

bool IsNumber(std::string_view text) {
    return !text.empty() && std::ranges::all_of(text, [](char c) { return c >= '0' && c <= '9'; });
}

[[noreturn]] void Refuse(std::string_view text, const char* usage) {
    throw Misuse('"' + std::string(text) + "\" is no place of a receiver", usage);
}

}  // namespace

Destination Destination::Host(std::string_view text) {
    constexpr auto usage = "Write --host 10.0.0.5, --host tarn-lab:5025 or --host [fe80::1]:5025.";
    auto host = text;
    std::string_view port;
    // More than one colon outside of brackets is an IPv6 address by itself.
    const auto colon = text.rfind(':');
    if (colon != text.npos && (text.find(':') == colon || (colon > 0 && text[colon - 1] == ']'))) {
        host = text.substr(0, colon);
        port = text.substr(colon + 1);
        if (!IsNumber(port)) Refuse(text, usage);
    }
    if (host.empty()) Refuse(text, usage);
    Destination destination{.Link = "TCP/IP", .Settings = {{"TCP/IP.Host", std::string(host)}}};
    if (!port.empty()) destination.Settings.emplace_back("TCP/IP.Port", port);
    return destination;
}

Destination Destination::Serial(std::string_view text) {
    auto port = text;
    std::string_view baud;
    if (const auto colon = text.rfind(':'); colon != text.npos && IsNumber(text.substr(colon + 1))) {
        port = text.substr(0, colon);
        baud = text.substr(colon + 1);
    }
    if (port.empty()) Refuse(text, "Write --serial COM3 or --serial /dev/ttyUSB0:9600.");
    if (tarn4x::LowerCase(port.substr(0, 3)) == "com" && IsNumber(port.substr(3))) port.remove_prefix(3);
    Destination destination{.Link = "RS232", .Settings = {{"RS232.Comm Port", std::string(port)}}};
    if (!baud.empty()) destination.Settings.emplace_back("RS232.Baud Rate", baud);
    return destination;
}

Destination Destination::Gpib(std::string_view text) {
    const auto parts = tarn4x::Split(text, ":");
    if (parts.size() < 2 || parts.size() > 3 || !std::ranges::all_of(parts, IsNumber)) {
        Refuse(text, "Write --gpib 0:6: the board and the primary address.");
    }
    Destination destination{
        .Link = "GPIB",
        .Settings = {{"GPIB.Board", std::string(parts[0])}, {"GPIB.Primary Address", std::string(parts[1])}}};
    if (parts.size() == 3) destination.Settings.emplace_back("GPIB.Secondary Address", parts[2]);
    return destination;
}

Destination Destination::FrontPanel(int port) {
    return {.Link = "GUI", .Settings = {{"GUI.Port", std::to_string(port)}}};
}

Destination Destination::Simulated(unsigned seed) { return {.Link = "TCP/IP", .Seed = seed}; }

}  // namespace cli
