#include <gmock/gmock.h>

#include "host/SettingsTree.h"
#include "tests/host/Raised.h"

namespace {

using host::SettingsNode;
using platform::Value;
using testing::HasSubstr;

constexpr char Remote[] = "GPIB=Conduit.clsGPIB, RS232=Conduit.clsComm, TCP/IP=Conduit.clsEthernet";
constexpr char YesNo[] = "Yes=-1,No=0";

TEST(SettingsValue, ReadsBackTheStoredValue) {
    const struct {
        const char* List;
        Value Written, Read;
        const char* Display;
    } cases[] = {
        {Remote, "GPIB", "Conduit.clsGPIB", "GPIB"},
        {Remote, "TCP/IP", "Conduit.clsEthernet", "TCP/IP"},
        {Remote, " RS232 ", "Conduit.clsComm", "RS232"},
        {Remote, "Conduit.clsComm", "Conduit.clsComm", "RS232"},
        {Remote, "Other.clsLink", "Other.clsLink", "Other.clsLink"},
        {Remote, "tcp/ip", "Conduit.clsEthernet", "TCP/IP"},
        {Remote, "conduit.CLSgpib", "Conduit.clsGPIB", "GPIB"},
        {"m=milli,M=mega", "M", "mega", "M"},  // as written before in any case
        {YesNo, "Yes", "-1", "Yes"},
        {YesNo, true, "-1", "Yes"},
        {YesNo, false, "0", "No"},
        {YesNo, 0, "0", "No"},
        {YesNo, 1, 1, "1"},
        {"1200=1200,19200=19200", 19200.0, "19200", "19200"},
        {"TARN-B1=TARN-B1,TARN-B2=TARN-B2", "TARN-B1,TARN-B2", "TARN-B1,TARN-B2", "TARN-B1,TARN-B2"},
        {"plain,other", "other", "other", "other"},
        {"1=2,2=1", "2", "2", "1"},  // what was read means the same when it is written again
        {"", " as given ", " as given ", " as given "},
        {"", 6, 6, "6"},
        {YesNo, {}, {}, ""},
    };
    for (const auto& row : cases) {
        SettingsNode node("Setting", 1, 2, row.List);
        node.SetValue(true, true, row.Written);
        EXPECT_EQ(node.GetValue(), row.Read) << platform::ToText(row.Written);
        EXPECT_EQ(node.DisplayValue(), row.Display) << platform::ToText(row.Written);
        EXPECT_EQ(node.ValueList(), row.List);
    }
}

TEST(SettingsValue, FollowsAListThatIsFilledLater) {
    SettingsNode port("Comm Port", 1, 2);
    port.SetValue(true, true, "COM3");
    EXPECT_EQ(port.GetValue(), Value("COM3"));
    port.SetValueList("COM1=1,COM3=3");
    EXPECT_EQ(port.GetValue(), Value("3"));
    port.SetValueList("COM1=1");
    EXPECT_EQ(port.GetValue(), Value("3"));
}

TEST(SettingsTree, FindsNodesByNameAndPath) {
    SettingsNode root;
    root.AddGroup("General", 4, 3);
    root.AddSetting("Remote Control", 1, 2, Remote);
    const auto serial = std::make_shared<SettingsNode>("RS232", 4, 3);
    const auto baudRate = serial->AddSetting("Baud Rate", 1, 2, "");
    serial->AddSetting("a.b", 1, 4, "");
    root.AddNode(serial, true, true);

    EXPECT_EQ(root.Item("RS232"), serial);
    EXPECT_EQ(root.Item("RS232.Baud Rate"), baudRate);
    EXPECT_EQ(root.Item("rs232.baud rate"), baudRate);
    EXPECT_EQ(root.Item("RS232.a.b")->Name(), "a.b");
    EXPECT_EQ(root.Item("Remote Control")->Name(), "Remote Control");  // not swallowed by the group before it
    EXPECT_TRUE(root.Item("General")->Children().empty());

    std::vector<std::string> names;
    for (const auto& child : root.Children()) names.push_back(child->Name());
    EXPECT_THAT(names, testing::ElementsAre("General", "Remote Control", "RS232"));
}

TEST(SettingsTree, NamesWhatIsMissing) {
    SettingsNode root;
    const auto serial = root.AddSetting("RS232", 4, 3, "");
    serial->AddSetting("Parity", 1, 2, "");
    for (const char* path : {"RS232.Baudrate", "Baudrate", "RS232.Parity.x", "", "."}) {
        EXPECT_EQ(Raised([&] { root.Item(path); }).Number, 9) << path;
    }
    const auto error = Raised([&] { root.Item("RS232.Baudrate"); });
    EXPECT_EQ(error.Description, "There is no setting \"Baudrate\" below \"RS232\", which has \"Parity\"");
}

TEST(SettingsTree, RefusesANameTwiceAmongSiblings) {
    SettingsNode root;
    root.AddGroup("General", 4, 3);
    const auto other = std::make_shared<SettingsNode>("GENERAL", 4, 3);
    EXPECT_EQ(Raised([&] { root.AddGroup("General", 4, 3); }).Number, 457);
    EXPECT_EQ(Raised([&] { root.AddSetting("general", 1, 4, ""); }).Number, 457);
    EXPECT_EQ(Raised([&] { root.AddNode(other, true, true); }).Number, 457);
    EXPECT_EQ(Raised([&] { root.AddNode(nullptr, true, true); }).Number, 91);
    EXPECT_EQ(root.Children().size(), 1U);
    other->AddSetting("General", 1, 4, "");  // another level
}

TEST(SettingsTree, OutlivesTheRootItWasGraftedInto) {
    std::shared_ptr<platform::SettingsNode> setting;
    {
        SettingsNode root;
        root.AddSetting("Group", 4, 3, "");
        setting = root.Item("Group")->AddSetting("Inner", 1, 4, "");
    }
    setting->SetValue(true, true, 5);
    EXPECT_EQ(setting->GetValue(), Value(5));
    const auto& node = dynamic_cast<SettingsNode&>(*setting);
    setting->SetFixed(true);
    EXPECT_TRUE(node.Fixed());
    EXPECT_EQ(node.Kind(), 1);
    EXPECT_EQ(node.Style(), 4);
}

}  // namespace
