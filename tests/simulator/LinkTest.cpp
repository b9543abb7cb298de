#include <boost/asio/ip/tcp.hpp>

#include "simulator/Simulator.h"
#include "tests/simulator/Bench.h"

namespace {

using boost::asio::ip::tcp;

/// What a partner receives who sends that and says no more, and why the link ended unless it was closed.
std::string Exchange(uint16_t port, const std::string& bytes, const char* address = "127.0.0.1") {
    tcp::iostream link{address, std::to_string(port)};
    link.expires_after(std::chrono::seconds{20});
    link << bytes << std::flush;
    boost::system::error_code ignored;
    link.socket().shutdown(tcp::socket::shutdown_send, ignored);
    const std::string answers{std::istreambuf_iterator<char>{link}, {}};
    return link.error() == boost::asio::error::eof ? answers : answers + link.error().message();
}

TEST(Link, IsThereForSeveralAtATime) {
    sim::Simulator simulator{{.configuration = {.settle = {}}}};
    const auto port = simulator.Listen(), panel = simulator.Listen(0, sim::Face::FrontPanel, "127.0.0.2");
    simulator.Start();
    const tcp::iostream other{"127.0.0.1", std::to_string(port)};
    EXPECT_EQ(Exchange(port, "*OPC?\r\nREAD:DVBT:BER:ARS?\n"), "1\n<5.0E-8 (2/10)\n");  // on every system
    EXPECT_EQ(Exchange(port, std::string(200'000, ' ') + "*OPC?\nSYST:ERR?\n"), "-363,\"Input buffer overrun\"\n");
    EXPECT_EQ(Exchange(panel, "SYST:ERR?;:READ:BUFF:PCX?;BOGUS;:READ:SCR:BUFF?\n", "127.0.0.2"), "0\n");
    EXPECT_EQ(simulator.Answer("SYST:ERR?"), "0,\"No error\"");  // the front panel has no part in it
}

TEST(Link, PlaysFaults) {
    const std::string next = "0,\"No error\";OK\n";
    const std::pair<std::string, std::string> cases[] = {
        {"delay 20 | answer xyz | split 1,2 | gap 1 | terminator crlf", "xyz\r\n" + next},  // and is not overtaken
        {"silence | busy 0.02 | error -310 | signal present off", "-310,\"System error\";NORF\n"},
        {"answer middle | close in", "mid"},
#ifndef _WIN32  // Wine takes many a reset for an orderly end
        {"reset before", "Connection reset by peer"},
#endif
    };
    for (const auto& [actions, answers] : cases) {
        sim::Simulator simulator{{.script = sim::Script{"on *OPC? | " + actions}}};
        const auto port = simulator.Listen();
        simulator.Start();
        EXPECT_EQ(Exchange(port, "*OPC?\nSYST:ERR?;:READ:SIGN:RF?\n"), answers) << actions;
    }
}

}  // namespace
