#include "host/SerialLink.h"

#include <array>
#include <map>
#include <mutex>

#include "host/LinkSettings.h"

namespace host {

namespace {

/// Silence after which a line counts as quiet; the longest gap within an answer is some characters of 9 ms.
constexpr std::chrono::milliseconds Quiet{200};

/// Who only looks whether a line opens keeps it no longer than that many seconds: held longer, it is in use.
constexpr double LongestLook = 2.0;
constexpr Patience::Milliseconds TurnPause{10};

/// The lines that links of this process have open, each with the time at which it was opened. Never destroyed: a client
/// may let go of its last link while the process ends.
std::mutex turnMutex;
auto& turns = *new std::map<std::string, Patience::Clock::time_point>;

SerialSettings Read(platform::SettingsNode& settings) {
    SerialSettings read{};
    read.BaudRate = SettingNumber(settings, "Baud Rate", 1, 4'000'000);
    read.DataBits = SettingNumber(settings, "Data Bits", 7, 8);
    const auto parity = SettingText(settings, "Parity");
    if (parity != "E" && parity != "N" && parity != "O") {
        throw OpeningFailure{"the setting \"Parity\" is \"" + parity + "\", it must be E, N or O"};
    }
    read.Parity = parity[0];
    read.StopBits = SettingNumber(settings, "Stop Bits", 1, 2);
    const int handshaking = SettingNumber(settings, "Handshaking", 0, 2);
    read.Handshaking = static_cast<decltype(read.Handshaking)>(handshaking);
    return read;
}

}  // namespace

void SerialLink::Open(Patience& patience) {
    const auto settings = host::Read(*settings_);
    const auto path = PathOf(name_);
    TakeTurn(path, patience);
    try {
        OpenLine(path);
        Configure(settings);
    } catch (...) {
        Close();
        throw;
    }
}

void SerialLink::Close() noexcept {
    if (IsOpen()) CloseLine();
    line_ = None;
    if (path_.empty()) return;
    const std::lock_guard lock(turnMutex);
    turns.erase(path_);
    path_.clear();
}

// Threads that look at the same time which lines there are must not hide the lines from each other.
void SerialLink::TakeTurn(const std::string& path, const Patience& patience) {
    for (auto turn = patience.AtMost(LongestLook);; turn.Pause(TurnPause)) {
        const std::lock_guard lock(turnMutex);
        const auto now = Patience::Clock::now();
        const auto [holder, free] = turns.try_emplace(path, now);
        if (free) {
            path_ = path;
            return;
        }
        if (turn.Over() || now - holder->second > std::chrono::duration<double>(LongestLook)) {
            throw OpeningFailure{"port in use by this program"};
        }
    }
}

void ReadUntilQuiet(ByteLink& link, Patience& patience) {
    if (!link.IsOpen()) return;
    std::array<std::uint8_t, 512> waste;
    for (auto heard = Patience::Clock::now(); Patience::Clock::now() - heard < Quiet;) {
        const bool over = patience.Over();
        if (link.Read(waste, patience.Slice()) > 0) {
            heard = Patience::Clock::now();
            if (over) throw LinkFailure{platform::ProtocolBroken, "The instrument does not stop sending"};
        } else if (over) {
            return;
        }
    }
}

}  // namespace host
