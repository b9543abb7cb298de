#include "host/GpibLink.h"

#include <algorithm>
#include <cstdio>

#include "host/LinkSettings.h"

namespace host {

namespace {

/// Longest wait in seconds until an instrument takes the device clear of a new link.
constexpr double OpeningLimit = 5.0;
constexpr int HighestAddress = 30;

}  // namespace

void GpibLink::Open(Patience& patience) {
    SettingNumber(*settings_, "Board", 0, 255);
    SettingNumber(*settings_, "Primary Address", 0, HighestAddress);
    if (!SettingText(*settings_, "Secondary Address").empty()) {
        SettingNumber(*settings_, "Secondary Address", 0, HighestAddress);
    }
    runtime_ = visa::Load();
    try {
        auto status = runtime_.OpenDefaultRM(&manager_);
        const auto resource = Address() + "::INSTR";
        if (status >= 0) status = runtime_.Open(manager_, resource.c_str(), 0, 0, &instrument_);
        if (status >= 0) {
            limit_ = {};
            status = Clear(patience.AtMost(OpeningLimit));
        }
        if (status == visa::TimedOut) throw OpeningFailure{"no reply in time"};
        if (status < 0) throw OpeningFailure{Describe(status)};
    } catch (...) {
        Close();
        throw;
    }
}

void GpibLink::Close() noexcept {
    for (auto* object : {&instrument_, &manager_}) {
        if (*object != None) runtime_.Close(*object);
        *object = None;
    }
}

std::string GpibLink::Address() const {
    const auto secondary = SettingText(*settings_, "Secondary Address");
    return "GPIB" + SettingText(*settings_, "Board") + "::" + SettingText(*settings_, "Primary Address") +
           (secondary.empty() ? "" : "::" + secondary);
}

// What a time-out leaves of a command goes with the next call: END comes with the command's last byte only.
std::size_t GpibLink::Write(std::span<const std::uint8_t> bytes, Milliseconds time) {
    Limit(time);
    inAnswer_ = false;
    std::uint32_t count = 0;
    const auto status = runtime_.Write(instrument_, bytes.data(), static_cast<std::uint32_t>(bytes.size()), &count);
    if (status < 0 && status != visa::TimedOut) throw Failure(status, platform::WriteFailed, "Writing");
    return count;
}

std::size_t GpibLink::Read(std::span<std::uint8_t> bytes, Milliseconds time) {
    if (time.count() == 0 && !inAnswer_) return 0;
    Limit(time);
    std::uint32_t count = 0;
    const auto room = static_cast<std::uint32_t>(bytes.size() - 1);  // for the LF below
    const auto status = runtime_.Read(instrument_, bytes.data(), room, &count);
    if (status < 0 && status != visa::TimedOut) throw Failure(status, platform::ReadFailed, "Reading");
    const bool ended = status == visa::EndReceived;
    inAnswer_ = !ended && (inAnswer_ || count > 0);
    if (ended && count > 0 && bytes[count - 1] != '\n') bytes[count++] = '\n';
    return count;
}

void GpibLink::Resynchronise(Patience& patience) {
    if (!IsOpen()) return;
    if (Clear(patience) < 0) Close();  // opening it again clears the device, or tells why not
}

visa::Status GpibLink::Clear(Patience patience) {
    inAnswer_ = false;
    for (;;) {
        const bool over = patience.Over();
        Limit(patience.Slice());
        const auto status = runtime_.Clear(instrument_);
        if (status != visa::TimedOut || over) return status;
    }
}

// No instrument keeps a time-out of 0. Whether the runtime takes the new limit does not matter: any does.
void GpibLink::Limit(Milliseconds time) {
    time = std::max(time, Milliseconds(1));
    if (time == limit_) return;
    runtime_.SetAttribute(instrument_, visa::TimeoutAttribute, static_cast<visa::AttributeState>(time.count()));
    limit_ = time;
}

std::string GpibLink::Describe(visa::Status status) const {
    char description[visa::DescriptionSize] = "";
    if (manager_ != None) runtime_.StatusDesc(manager_, status, description);
    std::string text(description, std::find(description, std::end(description), '\0'));
    std::ranges::replace_if(
        text, [](char c) { return static_cast<unsigned char>(c) >= 0x80; }, '?');
    char code[16];
    std::snprintf(code, sizeof code, "0x%08X", static_cast<unsigned>(status));
    return text.empty() ? "VISA error " + std::string(code) : text + " (VISA error " + code + ")";
}

LinkFailure GpibLink::Failure(visa::Status status, platform::TransportError code, const char* doing) const {
    const bool lost = status == visa::NoListeners || status == visa::ConnectionLost || status == visa::NoSuchObject;
    return {lost ? platform::LinkLost : code, std::string(doing) + " failed: " + Describe(status)};
}

}  // namespace host
