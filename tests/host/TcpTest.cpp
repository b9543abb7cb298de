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

TEST(TcpLink, GivesUpADeadAddress) {
    const Peer busy;
    std::deque<Tcp> links;
    for (std::string reason; reason != "no reply in time";) {  // until no more fit into the peer's queue
        ASSERT_LT(links.size(), 50U);
        links.emplace_back(busy.Port).Set("Connect Timeout", 0.2);
        reason = links.back().Open();
    }
    links.back().Set("Connect Timeout", 20);
    links.back().Services.AbortRequested = [] { return true; };
    EXPECT_THROW(links.back().Open(), host::Aborted);
    EXPECT_FALSE(links.back().Bytes.IsOpen());
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
            // Until the buffers are full: while bytes are under way, room may come again in the meantime.
            while (breaksOff && link.Write(std::string(1 << 20, 'x'), 1ms) != "0") continue;
        }  // with bytes that it has not taken, the peer breaks the connection off
        EXPECT_THAT(link.Read(), StartsWith(breaksOff ? "2015 " : "2015 The instrument closed"));
        EXPECT_THAT(link.Write("Q 2\n"), StartsWith(breaksOff ? "2015 Writing failed: " : "4"));
    }
}

}  // namespace
