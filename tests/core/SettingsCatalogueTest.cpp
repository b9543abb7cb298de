#include "core/SettingsCatalogue.h"
#include "core/modParameterUtilities.h"
#include "tests/core/Bench.h"

namespace tarn4x::test {
namespace {

TEST(SettingsCatalogue, HasItsSettingsInOrderWithDefaultsAndLists) {
    const auto world = std::make_shared<FakeFramework>();
    world->SerialPorts = {2, 4};
    const auto root = BuildSettingsCatalogue(*world);
    const struct {
        const char* Name;
        int Kind, Style;
        const char *Value, *List;
        bool Fixed;
    } settings[] = {
        {"General", 4, 3, "", "", false},
        {"Type", 1, 4, "TARN", "", true},
        {"Manufacturer", 1, 4, "VANTERRA", "", true},
        {"Model Number", 1, 4, "TARN", "", true},
        {"Serial Number", 1, 4, "", "", false},
        {"Options", 3, 2, "", "TARN-B1=TARN-B1,TARN-B2=TARN-B2,TARN-B3=TARN-B3", false},
        {"Remote Control", 1, 2, "Conduit.clsGPIB",
         "GPIB=Conduit.clsGPIB, RS232=Conduit.clsComm, TCP/IP=Conduit.clsEthernet, GUI=Conduit.clsGUI", false},
        {"Log Messages", 1, 2, "-1", "Yes=-1,No=0", false},
    };
    const auto children = root->Children();
    std::size_t at = 0;
    for (const auto& expected : settings) {
        const auto node = std::static_pointer_cast<FakeNode>(children.at(at++));
        EXPECT_EQ(node->Name(), expected.Name);
        EXPECT_EQ(node->Kind, expected.Kind) << expected.Name;
        EXPECT_EQ(node->Style, expected.Style) << expected.Name;
        EXPECT_EQ(platform::ToText(node->GetValue()), expected.Value) << expected.Name;
        EXPECT_EQ(node->ValueList(), expected.List) << expected.Name;
        EXPECT_EQ(node->Fixed, expected.Fixed) << expected.Name;
    }
    for (const char* subtree : {"GPIB", "RS232", "TCP/IP", "GUI"}) EXPECT_EQ(children.at(at++)->Name(), subtree);
    EXPECT_EQ(children.size(), at);

    const auto text = [&](const char* path) { return platform::ToText(root->Item(path)->GetValue()); };
    const auto list = [&](const char* path) { return root->Item(path)->ValueList(); };
    EXPECT_EQ(text("GPIB.Primary Address"), "6");
    EXPECT_EQ(list("RS232.Comm Port"), "COM2=2,COM4=4");
    EXPECT_EQ(text("RS232.Comm Port"), "2");  // the first port, by its display text
    EXPECT_EQ(list("RS232.Baud Rate"), "1200=1200,2400=2400,4800=4800,9600=9600,19200=19200");
    EXPECT_EQ(text("RS232.Baud Rate"), "19200");
    EXPECT_EQ(list("RS232.Data Bits"), "7=7,8=8");
    EXPECT_EQ(list("RS232.Parity"), "EVEN=E,NO=N,ODD=O");
    EXPECT_EQ(list("RS232.Stop Bits"), "1=1,2=2");
    EXPECT_EQ(list("RS232.Handshaking"), "NO=0,XON/XOFF=1,HARDWARE=2");
}

TEST(SettingsCatalogue, CannotBeBuiltWithoutASerialPortOrATransport) {
    const auto world = std::make_shared<FakeFramework>();
    world->SerialPorts.clear();
    EXPECT_RAISES(clsTarn4x(world), 380, "modParameterUtilities.GetDisplayValue",
                  "Invalid Property Value (intIndex = 0)");
    world->SerialPorts = {1};
    for (const char* progId : {"Conduit.clsGPIB", "Conduit.clsComm", "Conduit.clsEthernet", "Conduit.clsGUI"}) {
        world->MissingProgId = progId;
        EXPECT_RAISES(clsTarn4x(world), 429, "COM", "ActiveX component can't create object");
    }
}

TEST(GetDisplayValue, TakesTheLeftPartAsItStands) {
    FakeFramework world;
    using modParameterUtilities::GetDisplayValue;
    EXPECT_EQ(GetDisplayValue("1200=1200,2400=2400", 1, world), "2400");
    EXPECT_EQ(GetDisplayValue("GPIB=Conduit.clsGPIB, RS232=Conduit.clsComm", 1, world), " RS232");
    EXPECT_EQ(GetDisplayValue("plain", 0, world), "plain");
    EXPECT_EQ(GetDisplayValue("a=b=c,,", 2, world), "");
    for (const auto& [index, text] : {std::pair(2, "Invalid Property Value (intIndex = 2)"),
                                      std::pair(-1, "Invalid Property Value (intIndex = -1)")}) {
        EXPECT_RAISES(GetDisplayValue("1200=1200,2400=2400", static_cast<std::int16_t>(index), world), 380,
                      "modParameterUtilities.GetDisplayValue", text);
    }
}

}  // namespace
}  // namespace tarn4x::test
