#include "driver/SettingsCatalogue.h"
#include "driver/modParameterUtilities.h"
#include "tests/driver/Bench.h"

using namespace tarn4x::test;

TEST(SettingsCatalogue, HasItsSettingsInOrderWithDefaultsAndLists) {
    const auto world = std::make_shared<World>();
    world->SerialPorts = {2, 4};
    std::vector<std::string> told;
    const auto tell = [&](platform::SettingsNode& node, const std::string& more) {
        told.push_back(node.Name() + '|' + platform::ToText(node.GetValue()) + '|' + node.ValueList() + '|' + more);
    };
    for (const auto& child : BuildSettingsCatalogue(*world)->Children()) {
        const auto& node = static_cast<const host::SettingsNode&>(*child);
        tell(*child, std::to_string(node.Kind()) + std::to_string(node.Style()) + (node.Fixed() ? " fixed" : ""));
        for (const auto& setting : child->Children()) tell(*setting, "");
    }
    std::erase_if(told, [](const auto& setting) { return setting.ends_with("|||"); });  // the transport's own
    EXPECT_THAT(told, ElementsAre("General|||43", "Type|TARN||14 fixed", "Manufacturer|VANTERRA||14 fixed",
                                  "Model Number|TARN||14 fixed", "Serial Number|||14",
                                  "Options||TARN-B1=TARN-B1,TARN-B2=TARN-B2,TARN-B3=TARN-B3|32",
                                  "Remote Control|Conduit.clsGPIB|GPIB=Conduit.clsGPIB, RS232=Conduit.clsComm, "
                                  "TCP/IP=Conduit.clsEthernet, GUI=Conduit.clsGUI|12",
                                  "Log Messages|-1|Yes=-1,No=0|12", "GPIB|||43", "Primary Address|6||", "RS232|||43",
                                  "Comm Port|2|COM2=2,COM4=4|",
                                  "Baud Rate|19200|1200=1200,2400=2400,4800=4800,9600=9600,19200=19200|",
                                  "Data Bits||7=7,8=8|", "Parity||EVEN=E,NO=N,ODD=O|", "Stop Bits||1=1,2=2|",
                                  "Handshaking||NO=0,XON/XOFF=1,HARDWARE=2|", "TCP/IP|||43", "GUI|||43"));
}

TEST(SettingsCatalogue, CannotBeBuiltWithoutASerialPortOrATransport) {
    const auto world = std::make_shared<World>();
    for (const char* progId : {"Conduit.clsGPIB", "Conduit.clsComm", "Conduit.clsEthernet", "Conduit.clsGUI"}) {
        world->Failing = progId;
        EXPECT_OUTCOME(clsTarn4x(world).get_Prefix(), "5 framework: " + world->Failing + " fails");
    }
    world->SerialPorts.clear();
    world->Failing.clear();
    EXPECT_OUTCOME(clsTarn4x(world).get_Prefix(),
                   "380 modParameterUtilities.GetDisplayValue: Invalid Property Value (intIndex = 0)");
}

TEST(GetDisplayValue, TakesTheLeftPartAsItStands) {
    const auto entry = [](std::int16_t index) {
        World world;
        return modParameterUtilities::GetDisplayValue("a=b=c, RS232=1,plain", index, world.TheErrorService());
    };
    EXPECT_EQ(entry(0) + entry(1) + entry(2), "a RS232plain");
    EXPECT_OUTCOME(entry(3), "380 modParameterUtilities.GetDisplayValue: Invalid Property Value (intIndex = 3)");
    EXPECT_OUTCOME(entry(-1), "380 modParameterUtilities.GetDisplayValue: Invalid Property Value (intIndex = -1)");
}
