#include "host/Transports.h"
#include "tests/host/Bench.h"

namespace {

using testing::HasSubstr;
using Connection = Peer::Connection;

TEST(TcpLink, IsGivenUpWhenItIsLostAgainAndAgain) {
    Bench bench(Ethernet, {[](Connection&) {}});
    for (int i = 0; i < 12; ++i) EXPECT_EQ(bench.Failure("Q"), i % 6 < 5 ? 2015 : 2017) << i;
    EXPECT_LE(bench.peer.Connections, 13);
    Bench other(Ethernet, {[](Connection& connection) {
                    if (const auto line = connection.Line(); line != "Q 1") connection.Send(Tagged(line));
                }});
    for (int i = 0; i < 12; ++i) {
        EXPECT_EQ(other.Failure("Q 1"), i % 6 < 5 ? 2015 : 2017) << i;
        EXPECT_EQ(other.Query("Q 2"), "A 2");  // says nothing about the other
    }
}

TEST(TcpLink, RefusesACallFromWithinAnother) {
    Peer peer({Answering(Tagged)});
    std::shared_ptr<platform::Transport> link;
    std::int32_t inner = 0;
    host::Framework framework;
    link = host::CreateTransport("Conduit.clsEthernet", *framework.CreateNode(), {.AbortRequested = [&] {
                                     try {
                                         link->Connect(false);
                                     } catch (const platform::AutomationError& error) {
                                         inner = error.Number;
                                     }
                                     return true;
                                 }});
    link->Settings()->Item("Port")->SetValue(true, true, peer.Port);
    link->Connect(true);
    EXPECT_EQ(link->ReadString(std::nullopt), "");
    EXPECT_EQ(inner, platform::ObjectError(2017));
    link.reset();
}

TEST(TcpLink, ConnectsByNameAndByEitherAddress) {
    const struct {
        const char* Host;
        int Family;
    } cases[] = {{"localhost", AF_INET}, {"127.0.0.1", AF_INET}, {"::1", AF_INET6}, {"[::1]", AF_INET6}};
    for (const auto& row : cases) {
        std::optional<Peer> peer;
        try {
            peer.emplace(std::vector<Peer::Session>{Answering(Tagged)}, row.Family);
        } catch (const std::runtime_error&) {
            continue;  // a machine without IPv6
        }
        host::Framework framework;
        const auto link = framework.CreateTransport("Conduit.clsEthernet");
        link->Settings()->Item("Host")->SetValue(true, true, row.Host);
        link->Settings()->Item("Port")->SetValue(true, true, std::to_string(peer->Port));
        link->Connect(true);
        EXPECT_EQ(link->ReadString("Q 1"), "A 1") << row.Host;
        link->Connect(false);
        EXPECT_FALSE(link->IsConnected());
        EXPECT_EQ(Raised([&] { link->WriteString("Q 2"); }).Number, platform::ObjectError(2017));
    }
}

TEST(TcpLink, TellsWhyItCannotConnect) {
    int closedPort = 0;
    {
        const Peer gone({Answering(Tagged)});
        closedPort = gone.Port;
    }
    const struct {
        const char* Setting;
        platform::Value Value;
        std::string Text;
    } cases[] = {
        {"Port", closedPort, "No connection to 127.0.0.1:" + std::to_string(closedPort) + ": connection refused"},
        {"Port", "abc", "\"abc\", it must be a number from 1 to 65535"},
        {"Port", 65536, "must be a number"},
        {"Connect Timeout", "soon", "\"Connect Timeout\""},
        {"Host", "no such host.invalid", "No connection to no such host.invalid:5025: name unknown"},
    };
    for (const auto& row : cases) {
        host::Framework framework;
        const auto link = framework.CreateTransport("Conduit.clsEthernet");
        link->Settings()->Item(row.Setting)->SetValue(true, true, row.Value);
        const auto error = Raised([&] { link->Connect(true); });
        EXPECT_EQ(error.Number, platform::ObjectError(2017));
        EXPECT_THAT(error.Description, HasSubstr(row.Text));
        EXPECT_FALSE(link->IsConnected());
        EXPECT_EQ(framework.TheMessageLog().Count(), 1);
    }
}

TEST(TcpLink, GivesUpADeadAddress) {
    const Peer busy({[](Connection& connection) { connection.Line(); }});
    host::Framework framework;
    std::vector<std::shared_ptr<platform::Transport>> links;  // until no more fit into the peer's queue
    while (links.size() < 50) {
        const auto& link = links.emplace_back(framework.CreateTransport(Ethernet));
        link->Settings()->Item("Port")->SetValue(true, true, busy.Port);
        link->Settings()->Item("Connect Timeout")->SetValue(true, true, 0.2);
        try {
            link->Connect(true);
        } catch (const platform::AutomationError& error) {
            EXPECT_EQ(error.Number, platform::ObjectError(2017));
            EXPECT_THAT(error.Description, HasSubstr("no reply in time"));
            return;
        }
    }
    FAIL() << "every connection was taken";
}

TEST(FrontPanel, CarriesTextOnly) {
    Bench bench(FrontPanel, {Answering(Tagged)});
    EXPECT_EQ(bench.Query("Q 1"), "A 1");
    const std::uint8_t data[] = {1};
    const auto read = Raised([&] { bench.Block(1, "B"); });
    const auto written = Raised([&] { bench.link->WriteBlock(1, data, "B"); });
    EXPECT_EQ(read.Number, platform::ObjectError(2011));
    EXPECT_EQ(written.Number, platform::ObjectError(2010));
    EXPECT_EQ(read.Source, FrontPanel);
    EXPECT_EQ(bench.Log(), "1\tMy receiver\t" + read.Description + '\t' + bench.Address() + "\n1\tMy receiver\t" +
                               written.Description + '\t' + bench.Address() + '\n');
    EXPECT_EQ(bench.Query("Q 2"), "A 2");
    EXPECT_EQ(bench.peer.Connections, 1);
}

TEST(TcpLink, RefusesATimeoutThatIsNone) {
    host::Framework framework;
    const auto link = framework.CreateTransport("Conduit.clsEthernet");
    for (const float bad : {-1.0F, std::numeric_limits<float>::quiet_NaN()}) {
        EXPECT_EQ(Raised([&] { link->SetTimeout(bad); }).Number, 5);
    }
    link->SetTimeout(12.0F);
    EXPECT_EQ(link->Timeout(), 12.0F);
}

}  // namespace
