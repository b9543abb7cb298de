#include "host/TcpLink.h"
#include "tests/host/Link.h"

namespace {

using support::Peer;
using testing::StartsWith;

/// A connection to a port of this PC.
struct Tcp : Link<host::TcpLink> {
    explicit Tcp(int port) : Link("Conduit.clsEthernet") { Set("Port", port); }
};

TEST(TcpLink, ConnectsByNameAndByEitherAddress) {
    for (const std::string host : {"localhost", "127.0.0.1", "::1", "[::1]"}) {
        std::optional<Peer> peer;
        try {
            peer.emplace(host.find(':') == host.npos ? AF_INET : AF_INET6);
        } catch (const std::runtime_error&) {
            continue;  // a machine without IPv6
        }
        Tcp link(peer->Port);
        link.Set("Host", host);
        EXPECT_EQ(link.Open(), "");
        EXPECT_EQ(link.Bytes.Address(), (host == "::1" ? "[::1]" : host) + ':' + std::to_string(peer->Port));
        peer->Accept().Send("hello");
        EXPECT_EQ(link.Read(), "hello");
    }
}

TEST(TcpLink, TellsWhyItCannotConnect) {
    const int closed = Peer().Port;
    const std::string number = ", it must be a number from ";
    const struct {
        const char* Setting;
        platform::Value Value;
        std::string Reason;
    } cases[] = {
        {"Port", closed, "connection refused"},
        {"Port", "80x", "the setting \"Port\" is \"80x\"" + number + "1 to 65535"},
        {"Port", 0, "the setting \"Port\" is \"0\"" + number + "1 to 65535"},
        {"Port", 65536, "the setting \"Port\" is \"65536\"" + number + "1 to 65535"},
        {"Connect Timeout", -1, "the setting \"Connect Timeout\" is \"-1\"" + number + "0 to 3600"},
        {"Host", "no such host.invalid", "name unknown"},
    };
    for (const auto& row : cases) {
        Tcp link(closed);
        link.Set(row.Setting, row.Value);
        EXPECT_EQ(link.Open(), row.Reason);
        EXPECT_FALSE(link.Bytes.IsOpen());
    }
}

TEST(TcpLink, GivesUpADeadAddress) {
    const Peer busy;
    std::vector<std::unique_ptr<Tcp>> links;
    for (std::string reason; reason != "no reply in time";) {  // until no more fit into the peer's queue
        auto& link = *links.emplace_back(std::make_unique<Tcp>(busy.Port));
        link.Set("Connect Timeout", 0.2);
        ASSERT_LT(links.size(), 50U);
        reason = link.Open();
    }
    links.back()->Services.AbortRequested = [] { return true; };
    EXPECT_THROW(links.back()->Open(), host::Aborted);
    EXPECT_FALSE(links.back()->Bytes.IsOpen());
}

TEST(TcpLink, MovesWhatGoesAndTellsWhenThePeerIsGone) {
    for (const bool breaksOff : {false, true}) {
        Peer peer;
        Tcp link(peer.Port);
        EXPECT_EQ(link.Open(), "");
        {
            auto other = peer.Accept();
            for (const auto time : {0ms, 1ms}) EXPECT_EQ(link.Read(time), "");
            EXPECT_EQ(link.Write("Q 1\n"), "4");
            EXPECT_EQ(other.Line(), "Q 1");
            other.Send("A 1\n");
            EXPECT_EQ(link.Read(20s, 3), "A 1");
            EXPECT_EQ(link.Read(0ms), "\n");
            if (breaksOff) other.BreakOff();
        }
        EXPECT_THAT(link.Read(), StartsWith(breaksOff ? "2015 Reading failed: " : "2015 The instrument closed"));
        EXPECT_THAT(link.Write("Q 2\n"), StartsWith(breaksOff ? "2015 Writing failed: " : "4"));
    }
}

TEST(TcpLink, WritesNothingWhenThePeerTakesNothing) {
    Peer peer;
    Tcp link(peer.Port);
    EXPECT_EQ(link.Open(), "");
    const auto other = peer.Accept();
    while (link.Write(std::string(1 << 20, 'x'), 0ms) != "0") continue;  // until the buffers on the way are full
    EXPECT_EQ(link.Write("x", 1ms), "0");
}

}  // namespace
