#include <gmock/gmock.h>

#include <random>

#include "host/Framework.h"
#include "host/Transports.h"
#include "tests/host/Peer.h"
#include "tests/host/Raised.h"

namespace {

using testing::HasSubstr;
using Connection = Peer::Connection;

constexpr float Short = 0.05F;  // seconds, for what is to time out

std::string BlockText(const std::vector<std::uint8_t>& block) { return {block.begin(), block.end()}; }

struct Bench {
    explicit Bench(std::vector<Peer::Session> script, float timeout = 20.0F) : peer(std::move(script)) {
        link->Settings()->Item("Port")->SetValue(true, true, peer.Port);
        link->SetName("My receiver");
        link->SetTimeout(timeout);
        link->Connect(true);
    }
    std::string Query(std::string_view command) { return link->ReadString(command); }
    std::int32_t Failure(std::string_view command) {
        return Raised([&] { Query(command); }).Number - platform::ObjectError(0);
    }
    std::string Block(std::int16_t count) { return BlockText(link->ReadBlock(count, std::nullopt)); }
    std::string Block(std::int16_t count, std::string_view command) {
        return BlockText(link->ReadBlock(count, command));
    }
    std::string Log() {
        std::string entries;
        for (int i = 1; i <= framework.TheMessageLog().Count(); ++i) {
            entries += framework.TheMessageLog().Entry(i) + '\n';
        }
        return entries;
    }

    Peer peer;
    host::Framework framework;
    std::shared_ptr<platform::Transport> link = framework.CreateTransport("Conduit.clsEthernet");
};

TEST(TcpLink, TakesAnswersHoweverTheyArrive) {
    const struct {
        const char* Sent;
        const char* Answer;
    } cases[] = {
        {"12.5\n", "12.5"},
        {"12.5\r\n", "12.5"},
        {"\n", ""},
        {"\r\n", ""},
        {"a\rb\n", "a\rb"},
        {"\r\r\n", "\r"},
        {"\xB5s \xFF\n", "\xC2\xB5s \xC3\xBF"},
        {"<1.0E-8 #\t\x7F\n", "<1.0E-8 #\t\x7F"},
    };
    std::size_t next = 0, split = 0;
    Bench bench({[&](Connection& connection) {
        while (!connection.Line().empty()) {
            const std::string_view bytes = cases[next].Sent;
            connection.Send(bytes.substr(0, split));
            if (split > 0) std::this_thread::sleep_for(std::chrono::milliseconds(2));
            connection.Send(bytes.substr(split));
        }
    }});
    for (next = 0; next < std::size(cases); ++next) {
        for (split = 0; split < std::strlen(cases[next].Sent); ++split) {
            EXPECT_EQ(bench.Query("Q"), cases[next].Answer) << next << " split at " << split;
        }
    }
    EXPECT_EQ(bench.peer.Connections, 1);
}

TEST(TcpLink, PassesNulBytesThrough) {
    const std::string bytes("a\0b\n", 4);
    Bench bench({Answering([&](auto&) { return bytes; })});
    EXPECT_EQ(bench.Query("Q"), std::string("a\0b", 3));
}

TEST(TcpLink, SendsCommandsAsLatin1WithALineEnd) {
    std::vector<std::string> lines;
    {
        Bench bench({[&](Connection& connection) {
            for (std::string line; !(line = connection.Line()).empty();) {
                lines.push_back(line);
                if (line.ends_with('?')) connection.Send("ok\n");
            }
        }});
        bench.link->WriteString("SET \xC2\xB5\xC3\xBF");
        for (const char* bad : {"\xE2\x82\xAC", "\xC4\x80", "\xC2", "\xC3x", "\xB5"}) {
            EXPECT_EQ(Raised([&] { bench.link->WriteString(bad); }).Number, 5);
            EXPECT_EQ(Raised([&] { bench.Block(1, bad); }).Number, 5);
        }
        const std::uint8_t data[] = {'1', 0xFF, '\n'};
        bench.link->WriteBlock(3, data, "DATA #");
        EXPECT_EQ(Raised([&] { bench.link->WriteBlock(4, data, std::nullopt); }).Number, 5);
        std::string answer = "---";
        bench.link->SendReceive("Q?", &answer);
        EXPECT_EQ(answer, "ok");
        bench.link->WriteString("R?");
        EXPECT_EQ(bench.link->ReadString(std::nullopt), "ok");
    }
    EXPECT_THAT(lines, testing::ElementsAre("SET \xB5\xFF", "DATA #1\xFF", "Q?", "R?"));
}

TEST(TcpLink, DiscardsASecondAnswerInOneSegment) {
    Bench bench({Answering([](auto& command) { return Tagged(command) + (command == "Q 1" ? "stale\nrest" : ""); })});
    EXPECT_EQ(bench.Query("Q 1"), "A 1");
    EXPECT_EQ(bench.Query("Q 2"), "A 2");
    EXPECT_THAT(bench.Log(), HasSubstr("received \"stale\\nrest\""));
    EXPECT_EQ(bench.peer.Connections, 1);
}

TEST(TcpLink, NeverTakesALateAnswerForAnother) {
    std::atomic<bool> timedOut = false, late = false;
    Bench bench({[&](Connection& connection) {
                     const auto command = connection.Line();
                     while (!timedOut && !connection.Ending()) std::this_thread::yield();
                     connection.Send(Tagged(command));
                     late = true;
                     connection.Line();
                 },
                 Answering(Tagged)},
                Short);
    EXPECT_EQ(bench.Failure("Q 1"), platform::ReceiveTimedOut);
    timedOut = true;
    while (!late) std::this_thread::yield();
    EXPECT_EQ(Raised([&] { bench.link->ReadString(std::nullopt); }).Number, platform::ObjectError(2015));
    EXPECT_EQ(Raised([&] { bench.Block(1); }).Number, platform::ObjectError(2015));
    bench.link->SetTimeout(20.0F);
    EXPECT_EQ(bench.Query("Q 2"), "A 2");
}

TEST(TcpLink, NeverTakesAStaleAnswerWhateverTheDelay) {
    std::mt19937 random(1);
    std::uniform_int_distribution<int> milliseconds(0, 12);
    Bench bench({Answering([&](auto& command) {
                    std::this_thread::sleep_for(std::chrono::milliseconds(milliseconds(random)));
                    return Tagged(command);
                })},
                0.006F);
    int answers = 0;
    for (int i = 0; i < 300; ++i) {
        const auto tag = std::to_string(i);
        try {
            EXPECT_EQ(bench.Query("Q " + tag), "A " + tag);
            ++answers;
        } catch (const platform::AutomationError& error) {
            EXPECT_THAT(error.Number, testing::AnyOf(platform::ObjectError(2014), platform::ObjectError(2015)));
        }
    }
    RecordProperty("answers", answers);
}

TEST(TcpLink, ReportsASilentPeer) {
    Bench bench({[](Connection& connection) {
                    connection.Line();
                    connection.Send("12\x01");
                    connection.Line();
                }},
                Short);
    const auto error = Raised([&] { bench.Query("READ:X?"); });
    EXPECT_EQ(error.Number, platform::ObjectError(2014));
    EXPECT_EQ(error.Source, "Conduit.clsEthernet");
    EXPECT_EQ(error.Description, "Receive timed out");
    ASSERT_EQ(bench.framework.TheMessageLog().Count(), 1);
    EXPECT_THAT(bench.Log(),
                HasSubstr("1\tMy receiver\tReceive timed out\t127.0.0.1:" + std::to_string(bench.peer.Port) +
                          ": sent \"READ:X?\\n\", expected an answer ending in LF, "
                          "received \"12\\x01\", waited 0."));
}

TEST(TcpLink, IsNotHeldUpByAPeerThatDrips) {
    Bench bench({[](Connection& connection) {
                     connection.Line();
                     while (!connection.Ending()) {  // until the client gives up
                         connection.Send("x");
                         std::this_thread::sleep_for(std::chrono::milliseconds(1));
                         if (host::sockets::WaitReadable(connection.Socket(), {})) return;
                     }
                 },
                 Answering(Tagged)},
                Short);
    EXPECT_EQ(bench.Failure("Q 1"), platform::ReceiveTimedOut);
    bench.link->SetTimeout(20.0F);
    EXPECT_EQ(bench.Query("Q 2"), "A 2");
}

TEST(TcpLink, RefusesAnAnswerWithoutEnd) {
    Bench bench({[](Connection& connection) {
                     connection.Line();
                     connection.Send(std::string((1 << 20) + 1, 'x'));
                     connection.Line();
                 },
                 Answering(Tagged)});
    EXPECT_EQ(bench.Failure("Q 1"), platform::ProtocolBroken);
    EXPECT_EQ(bench.Query("Q 2"), "A 2");
}

TEST(TcpLink, ReportsAPeerThatClosesAndOpensTheLinkAgain) {
    const struct {
        const char* Name;
        const char* Sent;
        int Result;  // 0: the answer counts
    } cases[] = {{"before", "", 2015}, {"in", "12", 2015}, {"after", "A 1\n", 0}};
    for (const auto& row : cases) {
        Bench bench({[&](Connection& connection) {
                         connection.Line();
                         connection.Send(row.Sent);
                     },
                     Answering(Tagged)});
        if (row.Result) {
            EXPECT_EQ(bench.Failure("Q 1"), row.Result) << row.Name;
        } else {
            EXPECT_EQ(bench.Query("Q 1"), "A 1") << row.Name;
        }
        EXPECT_TRUE(bench.link->IsConnected());
        EXPECT_EQ(bench.Query("Q 2"), "A 2") << row.Name;
        EXPECT_EQ(bench.peer.Connections, 2) << row.Name;
    }
}

TEST(TcpLink, FailsOnceForEachAttemptWhenThePeerAlwaysCloses) {
    Bench bench({[](Connection&) {}});
    for (int i = 0; i < 3; ++i) EXPECT_EQ(bench.Failure("Q"), platform::LinkLost);
    EXPECT_LE(bench.peer.Connections, 4);
}

TEST(TcpLink, ReadsBlocksPiecewiseWhateverTheyHold) {
    const std::string block = "#15\n\n##\r";
    Bench bench({Answering([&](auto& command) { return command == "B" ? block + "\n" : Tagged(command); })});
    EXPECT_EQ(bench.Block(1, "B"), "#");
    EXPECT_EQ(bench.Block(2), "15");
    EXPECT_EQ(bench.Block(0), "");
    EXPECT_EQ(bench.Block(5), "\n\n##\r");
    EXPECT_EQ(bench.Query("Q 1"), "A 1");  // not the line end of the block
    EXPECT_EQ(bench.Block(8, "B"), block);
    EXPECT_EQ(bench.link->ReadString(std::nullopt), "");  // the line end, asked for
    EXPECT_EQ(Raised([&] { bench.Block(-1); }).Number, 5);
    EXPECT_EQ(bench.Block(8, "B"), block);
    EXPECT_EQ(bench.Block(8, "B"), block);  // with a line end to come between the two
    EXPECT_EQ(bench.peer.Connections, 1);
    EXPECT_EQ(bench.framework.TheMessageLog().Count(), 0) << bench.Log();
}

TEST(TcpLink, SkipsALineEndThatFollowsItsBlockLate) {
    Bench bench({[](Connection& connection) {
        connection.Line();
        connection.Send("abc");
        const auto command = connection.Line();
        connection.Send("\r\n" + Tagged(command));
        connection.Line();
    }});
    EXPECT_EQ(bench.Block(3, "B"), "abc");
    EXPECT_EQ(bench.Query("Q 1"), "A 1");
}

TEST(TcpLink, DropsTheRestOfABlockThatWasNotReadToItsEnd) {
    Bench bench({[](Connection& connection) {
                     connection.Line();
                     connection.Send("#510000");
                     connection.Send(std::string(5000, '\n'));
                     connection.Line();
                 },
                 Answering(Tagged)});
    EXPECT_EQ(bench.Block(7, "B"), "#510000");
    EXPECT_EQ(bench.Block(100), std::string(100, '\n'));
    EXPECT_EQ(bench.Block(100), std::string(100, '\n'));
    EXPECT_EQ(bench.Query("Q 1"), "A 1");
}

TEST(TcpLink, ReportsABlockShorterThanAsked) {
    Bench bench({[](Connection& connection) {
                     connection.Line();
                     connection.Send("abc\n");
                     connection.Line();
                 },
                 Answering(Tagged)},
                Short);
    EXPECT_EQ(Raised([&] { bench.Block(100, "B"); }).Number, platform::ObjectError(2014));
    EXPECT_THAT(bench.Log(), HasSubstr("expected 100 bytes, received \"abc\\n\""));
    bench.link->SetTimeout(20.0F);
    EXPECT_EQ(bench.Query("Q 1"), "A 1");
}

TEST(TcpLink, EndsAWaitQuietlyWhenTheUserStops) {
    for (const bool block : {false, true}) {
        host::Framework* framework = nullptr;
        Bench bench({[&](Connection& connection) {
                         connection.Line();
                         connection.Send("A");
                         framework->TheApplication().SetAbortRequested(true);
                         connection.Line();
                     },
                     Answering(Tagged)},
                    1000.0F);
        framework = &bench.framework;
        if (block) {
            EXPECT_EQ(bench.Block(100, "B"), "");
        } else {
            EXPECT_EQ(bench.Query("Q 1"), "");
        }
        EXPECT_EQ(bench.Query("Q 2"), "A 2");  // a peer that answers at once is heard even now
        bench.framework.TheApplication().SetAbortRequested(false);
        EXPECT_EQ(bench.Query("Q 3"), "A 3");
        EXPECT_EQ(bench.Log().find("timed out"), std::string::npos);
    }
}

TEST(TcpLink, TimesOutWhenThePeerTakesNothing) {
    std::atomic<bool> done = false;
    Bench bench({[&](Connection& connection) {
                    while (!done && !connection.Ending()) std::this_thread::sleep_for(std::chrono::milliseconds(1));
                }},
                0.2F);
    const std::vector<std::uint8_t> data(30000, 'x');
    for (int i = 0; i < 10'000; ++i) {  // until the buffers on the way are full
        try {
            bench.link->WriteBlock(30000, data, std::nullopt);
        } catch (const platform::AutomationError& error) {
            EXPECT_EQ(error.Number, platform::ObjectError(2013));
            EXPECT_EQ(error.Description, "Send timed out");
            done = true;
            break;
        }
    }
    EXPECT_TRUE(done);
    done = true;
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
    EXPECT_EQ(inner, platform::ObjectError(2013));
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
        EXPECT_EQ(Raised([&] { link->WriteString("Q 2"); }).Number, platform::ObjectError(2015));
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
        {"Port", closedPort, "127.0.0.1:" + std::to_string(closedPort)},
        {"Port", "abc", "\"abc\", it must be a number from 1 to 65535"},
        {"Port", 65536, "must be a number"},
        {"Connect Timeout", "soon", "\"Connect Timeout\""},
        {"Host", "no such host.invalid", "no such host.invalid"},
    };
    for (const auto& row : cases) {
        host::Framework framework;
        const auto link = framework.CreateTransport("Conduit.clsEthernet");
        link->Settings()->Item(row.Setting)->SetValue(true, true, row.Value);
        const auto error = Raised([&] { link->Connect(true); });
        EXPECT_EQ(error.Number, platform::ObjectError(2015));
        EXPECT_THAT(error.Description, HasSubstr(row.Text));
        EXPECT_FALSE(link->IsConnected());
        EXPECT_EQ(framework.TheMessageLog().Count(), 1);
    }
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
