#include "host/Transports.h"

#include "host/CommLink.h"
#include "host/FrontPanelTransport.h"
#include "host/GpibLink.h"
#include "host/TcpLink.h"

namespace host {

namespace {

using SettingsGroup = std::shared_ptr<platform::SettingsNode>;

// Codes of settings nodes: a group, a setting with free entry, a setting with a choice.
constexpr std::int32_t GroupKind = 4, GroupStyle = 3, SingleValue = 1, FreeEntry = 4, Choice = 2;

struct Setting {
    const char* Name;
    platform::Value Default;
    const char* ValueList = "";
};

SettingsGroup Group(platform::SettingsNode& freshNode, const char* name, std::initializer_list<Setting> settings) {
    freshNode.AddGroup(name, GroupKind, GroupStyle);
    auto group = freshNode.Item(name);
    for (const auto& setting : settings) {
        const auto node =
            group->AddSetting(setting.Name, SingleValue, *setting.ValueList ? Choice : FreeEntry, setting.ValueList);
        if (!std::holds_alternative<std::monostate>(setting.Default)) node->SetValue(true, true, setting.Default);
    }
    return group;
}

}  // namespace

std::shared_ptr<platform::Transport> CreateTransport(std::string_view progId, platform::SettingsNode& freshNode,
                                                     TransportServices services) {
    const auto transport = [&](SettingsGroup settings, std::unique_ptr<ByteLink> link) {
        return std::make_shared<InstrumentTransport>(progId, std::move(link), std::move(settings), std::move(services));
    };
    if (progId == "Conduit.clsEthernet") {
        const auto settings =
            Group(freshNode, "TCP/IP", {{"Host", "127.0.0.1"}, {"Port", 5025}, {"Connect Timeout", 5}});
        return transport(settings, std::make_unique<TcpLink>(settings));
    }
    if (progId == "Conduit.clsComm") {
        const auto settings = Group(freshNode, "RS232",
                                    {{"Comm Port", {}},
                                     {"Baud Rate", "19200", "1200=1200,2400=2400,4800=4800,9600=9600,19200=19200"},
                                     {"Data Bits", "8", "7=7,8=8"},
                                     {"Parity", "N", "EVEN=E,NO=N,ODD=O"},
                                     {"Stop Bits", "1", "1=1,2=2"},
                                     {"Handshaking", "0", "NO=0,XON/XOFF=1,HARDWARE=2"}});
        return transport(settings, std::make_unique<CommLink>(settings));
    }
    if (progId == "Conduit.clsGPIB") {
        const auto settings =
            Group(freshNode, "GPIB", {{"Board", 0}, {"Primary Address", {}}, {"Secondary Address", {}}});
        return transport(settings, std::make_unique<GpibLink>(settings));
    }
    if (progId == "Conduit.clsGUI") {
        const auto settings = Group(freshNode, "GUI", {{"Port", 5026}});
        return std::make_shared<FrontPanelTransport>(progId, std::make_unique<TcpLink>(settings), settings,
                                                     std::move(services));
    }
    throw platform::AutomationError(429, "Conduit", "ActiveX component can't create object: " + std::string(progId));
}

}  // namespace host
