#include "host/CommLink.h"

#include <algorithm>
#include <string_view>

#include "host/LinkSettings.h"
#include "host/NamedPorts.h"
#include "host/SerialLink.h"
#include "host/SettingsTree.h"
#include "host/SilentLink.h"
#include "host/TcpLink.h"

namespace host {

namespace {

/// A serial device server in raw mode: what is written leaves on its serial line, whose settings are its own.
class DeviceServerLink final : public TcpLink {
  public:
    using TcpLink::TcpLink;
    // Another connection would get what the instrument sends late all the same.
    void Resynchronise(Patience& patience) override { ReadUntilQuiet(*this, patience); }
};

std::string PortName(platform::SettingsNode& settings) {
    auto name = SettingText(settings, "Comm Port");
    const bool isNumber = std::ranges::all_of(name, [](char c) { return c >= '0' && c <= '9'; });
    return isNumber ? "COM" + name : name;
}

/// What a port of that name stands for: itself, unless the user has named it.
std::string TargetOf(const std::string& name) {
    for (const auto& named : NamedPorts()) {
        if (IsSamePort(named.Name, name)) return named.Target;
    }
    return name;
}

std::unique_ptr<ByteLink> DeviceServer(std::string_view address) {
    const auto colon = address.rfind(':');
    if (colon == address.npos || colon == 0) throw OpeningFailure{"it must be tcp://host:port"};
    const auto settings = std::make_shared<SettingsNode>();
    const auto set = [&](const char* name, std::string_view value) {
        settings->AddSetting(name, 0, 0, {})->SetValue(true, true, std::string(value));
    };
    set("Host", address.substr(0, colon));
    set("Port", address.substr(colon + 1));
    return std::make_unique<DeviceServerLink>(settings);
}

}  // namespace

void CommLink::Open(Patience& patience) {
    constexpr std::string_view tcp = "tcp://";
    const auto name = PortName(*settings_);
    if (name == "COM") throw OpeningFailure{"no serial port is chosen in \"Comm Port\""};
    const auto target = TargetOf(name);
    if (target == "none") {
        link_ = std::make_unique<SilentLink>();
    } else if (target.starts_with(tcp)) {
        link_ = DeviceServer(std::string_view(target).substr(tcp.size()));
    } else if (target.find("://") != target.npos) {
        throw OpeningFailure{"it must be a device, tcp://host:port or none"};
    } else {
        link_ = std::make_unique<SerialLink>(settings_, target);
    }
    link_->Open(patience);
}

std::string CommLink::Address() const {
    auto name = PortName(*settings_);
    const auto target = TargetOf(name);
    if (target != name && !target.starts_with('/')) name += '=' + target;
    return name;
}

}  // namespace host
