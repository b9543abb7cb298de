#include "host/SettingsTree.h"
#include "tests/host/Outcome.h"

namespace {

using host::SettingsNode;
using platform::Value;

constexpr char Remote[] = "GPIB=Conduit.clsGPIB, RS232=Conduit.clsComm, TCP/IP=Conduit.clsEthernet";
constexpr char YesNo[] = "Yes=-1,No=0";

TEST(SettingsValue, ReadsBackTheStoredValue) {
    const struct {
        const char* List;
        Value Written, Read;
        const char* Display;
    } cases[] = {
        {Remote, "GPIB", "Conduit.clsGPIB", "GPIB"},
        {Remote, " RS232 ", "Conduit.clsComm", "RS232"},
        {Remote, "Other.clsLink", "Other.clsLink", "Other.clsLink"},
        {Remote, "tcp/ip", "Conduit.clsEthernet", "TCP/IP"},
        {Remote, "conduit.CLSgpib", "Conduit.clsGPIB", "GPIB"},
        {"@=1,[=2,aZ=3", "Az", "3", "aZ"},
        {"@=1,[=2", "`", "`", "`"},  // no letters of one another
        {"@=1,[=2", "{", "{", "{"},
        {"m=milli,M=mega", "M", "mega", "M"},  // as written before in any case
        {"1=2,2=1", "2", "2", "1"},            // what was read means the same when it is written again
        {YesNo, true, "-1", "Yes"},
        {YesNo, 0, "0", "No"},
        {YesNo, 1, 1, "1"},
        {YesNo, {}, {}, ""},
        {"None=,Some=1", {}, {}, ""},
        {"1200=1200,19200=19200", 19200.0, "19200", "19200"},
        {"TARN-B1=TARN-B1,TARN-B2=TARN-B2", "TARN-B1,TARN-B2", "TARN-B1,TARN-B2", "TARN-B1,TARN-B2"},
        {"plain,other", "other", "other", "other"},
        {"", " as given ", " as given ", " as given "},
        {"", 6, 6, "6"},
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
    root.AddNode(serial, true, true);
    EXPECT_EQ(root.Kind() | root.Style(), 0);
    EXPECT_EQ(root.Item("rs232.baud rate"), baudRate);
    serial->AddSetting("a.b", 1, 4, "");
    EXPECT_EQ(root.Item("RS232.a.b")->Name(), "a.b");
    EXPECT_THAT(root.Item("General")->Children(), testing::IsEmpty());
    EXPECT_THAT(root.Children(), testing::ElementsAre(root.Item("General"), root.Item("Remote Control"), serial));
}

TEST(SettingsTree, RefusesWhatIsMissingAndWhatIsThere) {
    SettingsNode root;
    const auto group = root.AddSetting("RS232", 4, 3, "");
    group->AddSetting("Parity", 1, 2, "");
    group->AddSetting("rs232", 1, 2, "");  // another level
    const auto other = std::make_shared<SettingsNode>("rS232", 4, 3);
    const std::pair<std::function<void()>, const char*> cases[] = {
        {[&] { root.Item("RS232.Baud"); },
         "9 Seamcfg.clsNode: There is no setting \"Baud\" below \"RS232\", which has \"Parity\", \"rs232\""},
        {[&] { root.Item("RS232.Parity.x"); },
         "9 Seamcfg.clsNode: There is no setting \"x\" below \"Parity\", which has none"},
        {[&] { root.Item(""); }, "9 Seamcfg.clsNode: There is no setting \"\" below the root, which has \"RS232\""},
        {[&] { root.AddGroup("RS232", 4, 3); },
         "457 Seamcfg.clsNode: There is already a setting \"RS232\" below the root"},
        {[&] { group->AddSetting("parity", 1, 4, ""); },
         "457 Seamcfg.clsNode: There is already a setting \"parity\" below \"RS232\""},
        {[&] { root.AddNode(other, true, true); },
         "457 Seamcfg.clsNode: There is already a setting \"rS232\" below the root"},
        {[&] { root.AddNode(nullptr, true, true); }, "91 Seamcfg.clsNode: There is no node to add"},
    };
    for (const auto& [call, error] : cases) EXPECT_EQ(Raised(call), error);
}

}  // namespace
