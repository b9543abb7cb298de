#include "tests/host/Link.h"

namespace {

constexpr char Ethernet[] = "Conduit.clsEthernet", Comm[] = "Conduit.clsComm", Gpib[] = "Conduit.clsGPIB",
               Panel[] = "Conduit.clsGUI";

TEST(Framework, CreatesTheTransportsWithTheirSettings) {
    const std::pair<const char*, const char*> cases[] = {
        {Ethernet, "TCP/IP 4 3 : Host 1 4 = 127.0.0.1, Port 1 4 = 5025, Connect Timeout 1 4 = 5, "},
        {Comm,
         "RS232 4 3 : Comm Port 1 4 = , Baud Rate 1 2 = 19200, Data Bits 1 2 = 8, Parity 1 2 = NO, Stop Bits 1 2 = 1, "
         "Handshaking 1 2 = NO, "},
        {Gpib, "GPIB 4 3 : Board 1 4 = 0, Primary Address 1 4 = , Secondary Address 1 4 = , "},
        {Panel, "GUI 4 3 : Port 1 4 = 5026, "},
    };
    host::Framework framework;
    for (const auto& [progId, expected] : cases) {
        std::string settings;
        const auto show = [&](platform::SettingsNode& node, const std::string& between) {
            const auto& setting = dynamic_cast<host::SettingsNode&>(node);
            settings += node.Name() + ' ' + std::to_string(setting.Kind()) + ' ' + std::to_string(setting.Style()) +
                        between + setting.DisplayValue();
        };
        const auto group = framework.CreateTransport(progId)->Settings();
        show(*group, " : ");
        for (const auto& setting : group->Children()) {
            show(*setting, " = ");
            settings += ", ";
        }
        EXPECT_EQ(settings, expected);
    }
    EXPECT_EQ(Raised([&] { framework.CreateTransport("Conduit.clsTelepathy"); }),
              "429 Conduit: ActiveX component can't create object: Conduit.clsTelepathy");
}

TEST(Framework, SaysWhyATransportCannotConnect) {
    const std::string closed = std::to_string(support::Peer().Port), number = ", it must be a number from ",
                      cure = ". Install the " + std::to_string(8 * sizeof(void*)) + "-bit VISA runtime";
    const struct {
        const char* ProgId;
        std::string Setting, Value, Reason;
    } cases[] = {
        {Ethernet, "Port", closed, "127.0.0.1:" + closed + ": connection refused"},
        {Ethernet, "Port", "80x", "127.0.0.1:80x: the setting \"Port\" is \"80x\"" + number + "1 to 65535"},
        {Ethernet, "Port", "0", "127.0.0.1:0: the setting \"Port\" is \"0\"" + number + "1 to 65535"},
        {Ethernet, "Port", "65536", "127.0.0.1:65536: the setting \"Port\" is \"65536\"" + number + "1 to 65535"},
        {Ethernet, "Connect Timeout", "-1", "\"Connect Timeout\" is \"-1\"" + number + "0 to 3600"},
        {Ethernet, "Host", "no such host.invalid", "no such host.invalid:5025: name unknown"},
        {Gpib, "Secondary Address", "", "GPIB0::1: No listeners (VISA error 0xBFFF005F)"},
        {Gpib, "Board", "x", "GPIBx::1::0: the setting \"Board\" is \"x\"" + number + "0 to 255"},
        {Gpib, "Primary Address", "", "\"Primary Address\" is \"\"" + number + "0 to 30"},
        {Gpib, "Secondary Address", "31", "\"Secondary Address\" is \"31\"" + number + "0 to 30"},
        {Gpib, "", "no-such-runtime", "GPIB needs a VISA runtime, and no-such-runtime cannot be loaded: "},
        {Gpib, "", "no-such-runtime", cure},
#ifdef _WIN32
        {Gpib, "", "kernel32.dll", "kernel32.dll is no VISA runtime, it has no viOpenDefaultRM" + cure},
#else
        {Gpib, "", "libc.so.6", "libc.so.6 is no VISA runtime, it has no viOpenDefaultRM" + cure},
        {Comm, "Comm Port", "/dev/null", "/dev/null: it is no serial line"},
        {Comm, "Comm Port", "COM256", "COM256: no such port"},
        {Comm, "Comm Port", "257", "COM257: no such port"},
        {Comm, "Comm Port", "-", "-: no such port"},
#endif
        {Comm, "Comm Port", "", "no serial port is chosen in \"Comm Port\""},
        {Comm, "Comm Port", "tcp://127.0.0.1:" + closed, "tcp://127.0.0.1:" + closed + ": connection refused"},
        {Comm, "Comm Port", "tcp://:1", "tcp://:1: it must be tcp://host:port"},
        {Comm, "Comm Port", "udp://x:1", "udp://x:1: it must be a device, tcp://host:port or none"},
        {Comm, "Data Bits", "9", "\"Data Bits\" is \"9\"" + number + "7 to 8"},
        {Comm, "Parity", "MARK", "the setting \"Parity\" is \"MARK\", it must be E, N or O"},
        {Comm, "Handshaking", "3", "\"Handshaking\" is \"3\"" + number + "0 to 2"},
    };
    for (const auto& row : cases) {
        host::Framework framework;
        const auto transport = framework.CreateTransport(row.ProgId);
        if (row.ProgId == Gpib) PutOnGpib(31, *transport->Settings());  // nobody is there
        if (row.ProgId == Comm) transport->Settings()->Item("Comm Port")->SetValue(true, true, 1);
        if (row.Setting.empty()) SetEnvironment("CONDUIT_VISA", row.Value);
        if (!row.Setting.empty()) transport->Settings()->Item(row.Setting)->SetValue(true, true, row.Value);
        const auto error = Raised([&] { transport->Connect(true); });
        EXPECT_THAT(error, testing::StartsWith(std::string("2017 ") + row.ProgId + ": No connection to "));
        EXPECT_THAT(error, testing::HasSubstr(row.Reason));
        EXPECT_FALSE(transport->IsConnected());
    }
}

TEST(Framework, ServesItsTransports) {
    const support::Peer peer;
    host::Framework framework;
    const auto panel = framework.CreateTransport(Panel);
    panel->Settings()->Item("Port")->SetValue(true, true, peer.Port);
    panel->Connect(true);
    framework.TheApplication().SetAbortRequested(true);
    EXPECT_EQ(panel->ReadString({}), "");
    EXPECT_EQ(Raised([&] { panel->WriteBlock(1, {}, {}); }),
              "2010 Conduit.clsGUI: The front panel's link carries no blocks: nothing was written");
    framework.TheErrorService().SetErrorReporting(false);
    EXPECT_EQ(Raised([&] { panel->ReadBlock(1, {}); }),
              "2011 Conduit.clsGUI: The front panel's link carries no blocks: nothing was read");
    EXPECT_EQ(framework.TheMessageLog().Count(), 1);
}

}  // namespace
