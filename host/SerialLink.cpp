#include "host/SerialLink.h"

#include <array>

#include "host/LinkSettings.h"

namespace host {

namespace {

/// Silence after which a line counts as quiet; the longest gap within an answer is some characters of 9 ms.
constexpr std::chrono::milliseconds Quiet{200};

SerialSettings Read(platform::SettingsNode& settings) {
    SerialSettings read{};
    read.Port = SettingText(settings, "Comm Port");
    if (read.Port.starts_with("COM")) read.Port.erase(0, 3);
    if (read.Port.empty()) throw LinkFailure{platform::LinkLost, "No serial port is chosen in \"Comm Port\""};
    read.BaudRate = SettingNumber(settings, "Baud Rate", 1, 4'000'000);
    read.DataBits = SettingNumber(settings, "Data Bits", 7, 8);
    const auto parity = SettingText(settings, "Parity");
    if (parity != "E" && parity != "N" && parity != "O") {
        throw LinkFailure{platform::LinkLost, "The setting \"Parity\" is \"" + parity + "\", it must be E, N or O"};
    }
    read.Parity = parity[0];
    read.StopBits = SettingNumber(settings, "Stop Bits", 1, 2);
    const int handshaking = SettingNumber(settings, "Handshaking", 0, 2);
    read.Handshaking = static_cast<decltype(read.Handshaking)>(handshaking);
    return read;
}

}  // namespace

void SerialLink::Open(Patience&) {
    const auto settings = host::Read(*settings_);
    OpenLine(settings);
    try {
        Configure(settings);
    } catch (...) {
        Close();
        throw;
    }
}

std::string SerialLink::Address() const {
    const auto port = SettingText(*settings_, "Comm Port");
    return port.starts_with('/') || port.starts_with("COM") ? port : "COM" + port;
}

void SerialLink::Resynchronise(Patience& patience) {
    if (!IsOpen()) return;
    std::array<std::uint8_t, 512> waste;
    for (auto heard = Patience::Clock::now(); Patience::Clock::now() - heard < Quiet;) {
        const bool over = patience.Over();
        if (Read(waste, patience.Slice()) > 0) {
            heard = Patience::Clock::now();
            if (over) throw LinkFailure{platform::ProtocolBroken, "The instrument does not stop sending"};
        } else if (over) {
            return;
        }
    }
}

}  // namespace host
