#include "driver/SettingsCatalogue.h"

#include <string_view>

#include "driver/SerialPorts.h"
#include "driver/modParameterUtilities.h"

namespace tarn4x {

namespace {

using platform::Value;

struct Codes {
    std::int32_t Kind;
    std::int32_t Style;
};
constexpr Codes Group{4, 3}, FreeText{1, 4}, SingleChoice{1, 2}, MultipleChoice{3, 2};

struct Setting {
    std::string_view Name;
    Codes Created;
    std::string_view ValueList;
    std::string_view Default;
    bool Fixed;
};

// The blanks behind the commas belong to the list: hosts show and match the texts as they stand.
constexpr Setting Settings[] = {
    {"Type", FreeText, "", "TARN", true},
    {"Manufacturer", FreeText, "", "VANTERRA", true},
    {"Model Number", FreeText, "", "TARN", true},
    {"Serial Number", FreeText, "", "", false},
    {"Options", MultipleChoice, "TARN-B1=TARN-B1,TARN-B2=TARN-B2,TARN-B3=TARN-B3", "", false},
    {"Remote Control", SingleChoice,
     "GPIB=Conduit.clsGPIB, RS232=Conduit.clsComm, TCP/IP=Conduit.clsEthernet, GUI=Conduit.clsGUI", "GPIB", false},
    {"Log Messages", SingleChoice, "Yes=-1,No=0", "Yes", false},
};

struct SerialSetting {
    std::string_view Name;
    std::string_view ValueList;
    std::string_view Default;  ///< empty: left to the transport
};

constexpr SerialSetting SerialSettings[] = {
    {"Baud Rate", "1200=1200,2400=2400,4800=4800,9600=9600,19200=19200", "19200"},
    {"Data Bits", "7=7,8=8", ""},
    {"Parity", "EVEN=E,NO=N,ODD=O", ""},
    {"Stop Bits", "1=1,2=2", ""},
    {"Handshaking", "NO=0,XON/XOFF=1,HARDWARE=2", ""},
};

void SetValue(platform::SettingsNode& node, const Value& value) { node.SetValue(true, true, value); }

void PrepareSerialSettings(platform::Framework& framework, platform::Transport& transport,
                           platform::SettingsNode& subtree) {
    const auto port = subtree.Item("Comm Port");
    port->SetValueList(ListSerialPorts(framework, transport));
    SetValue(*port, modParameterUtilities::GetDisplayValue(port->ValueList(), 0, framework.TheErrorService()));
    for (const auto& setting : SerialSettings) {
        const auto node = subtree.Item(setting.Name);
        node->SetValueList(setting.ValueList);
        if (!setting.Default.empty()) SetValue(*node, std::string(setting.Default));
    }
}

}  // namespace

std::shared_ptr<platform::SettingsNode> BuildSettingsCatalogue(platform::Framework& framework) {
    auto root = framework.CreateNode();
    root->AddGroup("General", Group.Kind, Group.Style);
    for (const auto& setting : Settings) {
        const auto node =
            root->AddSetting(setting.Name, setting.Created.Kind, setting.Created.Style, setting.ValueList);
        if (!setting.Default.empty()) SetValue(*node, std::string(setting.Default));
        if (setting.Fixed) node->SetFixed(true);
    }
    for (const auto progId : {"Conduit.clsGPIB", "Conduit.clsComm", "Conduit.clsEthernet", "Conduit.clsGUI"}) {
        const auto transport = framework.CreateTransport(progId);
        const auto subtree = transport->Settings();
        if (progId == std::string_view("Conduit.clsGPIB")) SetValue(*subtree->Item("Primary Address"), std::int16_t{6});
        if (progId == std::string_view("Conduit.clsComm")) PrepareSerialSettings(framework, *transport, *subtree);
        root->AddNode(subtree, true, true);
    }
    return root;
}

}  // namespace tarn4x
