#include "driver/SettingsCatalogue.h"
#include "driver/modParameterUtilities.h"
#include "tests/driver/Bench.h"

using namespace tarn4x::test;

TEST(SettingsCatalogue, HasItsSettingsInOrderWithDefaultsAndLists) {
    const auto world = std::make_shared<FakeFramework>();
    world->SerialPorts = {2, 4};
    const auto root = BuildSettingsCatalogue(*world);
    const auto text = [](platform::SettingsNode& node) { return platform::ToText(node.GetValue()); };
    std::vector<std::string> settings;
    for (const auto& child : root->Children()) {
        auto& node = static_cast<FakeNode&>(*child);
        if (node.Kind == 0) {
            settings.push_back(node.Name());  // the subtree of a transport
        } else {
            settings.push_back(node.Name() + '|' + std::to_string(node.Kind) + '|' + std::to_string(node.Style) + '|' +
                               text(node) + '|' + node.ValueList() + (node.Fixed ? "|fixed" : ""));
        }
    }
    EXPECT_THAT(settings, ElementsAre("General|4|3||", "Type|1|4|TARN||fixed", "Manufacturer|1|4|VANTERRA||fixed",
                                      "Model Number|1|4|TARN||fixed", "Serial Number|1|4||",
                                      "Options|3|2||TARN-B1=TARN-B1,TARN-B2=TARN-B2,TARN-B3=TARN-B3",
                                      "Remote Control|1|2|Conduit.clsGPIB|GPIB=Conduit.clsGPIB, RS232=Conduit.clsComm, "
                                      "TCP/IP=Conduit.clsEthernet, GUI=Conduit.clsGUI",
                                      "Log Messages|1|2|-1|Yes=-1,No=0", "GPIB", "RS232", "TCP/IP", "GUI"));
    const struct {
        const char* Path;
        platform::Value Value;
        const char* List;
    } transports[] = {
        {"GPIB.Primary Address", std::int16_t{6}, ""},
        {"RS232.Comm Port", "2", "COM2=2,COM4=4"},  // the first port, by its display text
        {"RS232.Baud Rate", "19200", "1200=1200,2400=2400,4800=4800,9600=9600,19200=19200"},
        {"RS232.Data Bits", {}, "7=7,8=8"},
        {"RS232.Parity", {}, "EVEN=E,NO=N,ODD=O"},
        {"RS232.Stop Bits", {}, "1=1,2=2"},
        {"RS232.Handshaking", {}, "NO=0,XON/XOFF=1,HARDWARE=2"},
    };
    for (const auto& t : transports) {
        EXPECT_EQ(root->Item(t.Path)->GetValue(), t.Value) << t.Path;
        EXPECT_EQ(root->Item(t.Path)->ValueList(), t.List) << t.Path;
    }
}

TEST(SettingsCatalogue, CannotBeBuiltWithoutASerialPortOrATransport) {
    const auto world = std::make_shared<FakeFramework>();
    world->SerialPorts.clear();
    EXPECT_OUTCOME(clsTarn4x(world).get_Prefix(),
                   "380 modParameterUtilities.GetDisplayValue: Invalid Property Value (intIndex = 0)");
    world->SerialPorts = {1};
    for (const char* progId : {"Conduit.clsGPIB", "Conduit.clsComm", "Conduit.clsEthernet", "Conduit.clsGUI"}) {
        world->MissingProgId = progId;
        EXPECT_OUTCOME(clsTarn4x(world).get_Prefix(), "429 COM: ActiveX component can't create object");
    }
}

TEST(GetDisplayValue, TakesTheLeftPartAsItStands) {
    using modParameterUtilities::GetDisplayValue;
    const std::string refused = "380 modParameterUtilities.GetDisplayValue: Invalid Property Value (intIndex = ";
    FakeFramework world;
    EXPECT_OUTCOME(GetDisplayValue("1200=1200,2400=2400", 1, world), "2400");
    EXPECT_OUTCOME(GetDisplayValue("GPIB=Conduit.clsGPIB, RS232=Conduit.clsComm", 1, world), " RS232");
    EXPECT_OUTCOME(GetDisplayValue("plain", 0, world), "plain");
    EXPECT_OUTCOME(GetDisplayValue("a=b=c,,", 2, world), "");
    EXPECT_OUTCOME(GetDisplayValue("1200=1200,2400=2400", 2, world), refused + "2)");
    EXPECT_OUTCOME(GetDisplayValue("1200=1200,2400=2400", -1, world), refused + "-1)");
}
