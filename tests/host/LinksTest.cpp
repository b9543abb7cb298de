// What holds over every link: GPIB goes through the VISA runtime of the tests.
#include <random>

#include "tests/host/Bench.h"

namespace {

using testing::HasSubstr;
using namespace std::string_literals;
using Connection = Peer::Connection;

class Links : public testing::TestWithParam<const char*> {};

INSTANTIATE_TEST_SUITE_P(, Links, testing::Values(Ethernet, Gpib), [](const auto& link) { return link.param + 11; });

TEST_P(Links, TakesAnswersHoweverTheyArrive) {
    const struct {
        std::string Sent;
        std::string Answer;
    } cases[] = {
        {"12.5\n", "12.5"},
        {"12.5\r\n", "12.5"},
        {"\n", ""},
        {"\r\n", ""},
        {"a\rb\n", "a\rb"},
        {"\r\r\n", "\r"},
        {"\xB5s \xFF\n", "\xC2\xB5s \xC3\xBF"},
        {"<1.0E-8 #\t\x7F\n", "<1.0E-8 #\t\x7F"},
        {"a\0b\n"s, "a\0b"s},
    };
    std::size_t next = 0, split = 0;
    Bench bench(GetParam(), {[&](Connection& connection) {
                    while (!connection.Line().empty()) {
                        const std::string_view bytes = cases[next].Sent;
                        connection.Send(bytes.substr(0, split));
                        if (split > 0) std::this_thread::sleep_for(std::chrono::milliseconds(2));
                        connection.Send(bytes.substr(split));
                    }
                }});
    for (next = 0; next < std::size(cases); ++next) {
        for (split = 0; split < cases[next].Sent.size(); ++split) {
            EXPECT_EQ(bench.Query("Q"), cases[next].Answer) << next << " split at " << split;
        }
    }
    EXPECT_EQ(bench.peer.Connections, 1);
}

TEST_P(Links, SendsCommandsAsLatin1WithALineEnd) {
    std::vector<std::string> lines;
    {
        Bench bench(GetParam(), {[&](Connection& connection) {
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

TEST_P(Links, ReportsAFailureAndIsInStepAgain) {
    enum Then { Waits, Closes };
    const struct {
        const char* Name;
        const char* Sent;
        Then End;
        int Code;              // 0: the answer counts
        const char* Received;  // as the message log tells it
        std::int16_t Block = 0;
    } cases[] = {
        {"swallows everything", "", Waits, 2014, "nothing"},
        {"no line end", "12\x01", Waits, 2014, R"("12\x01")"},
        {"garbage", "\xFF#\\\x7F", Waits, 2014, R"("\xFF#\\\x7F")"},
        {"short block", "abc\n", Waits, 2014, R"("abc\n")", 100},
        {"closes before", "", Closes, 2015, "nothing"},
        {"closes in", "12", Closes, 2015, R"("12")"},
        {"closes in a block", "abc", Closes, 2015, R"("abc")", 4},
        {"closes after", "A 1\n", Closes, 0, ""},
    };
    for (const auto& row : cases) {
        SCOPED_TRACE(row.Name);
        Bench bench(GetParam(),
                    {[&](Connection& connection) {
                         connection.Line();
                         connection.Send(row.Sent);
                         if (row.End == Waits) connection.Line();
                     },
                     Answering(Tagged)},
                    row.Code == 0 || (row.Code == 2015 && GetParam() == Ethernet) ? Long : Short);
        const auto ask = [&] { return row.Block ? bench.Block(row.Block, "Q 1") : bench.Query("Q 1"); };
        if (row.Code == 0) {
            EXPECT_EQ(ask(), "A 1");
            while (bench.peer.Ended == 0) std::this_thread::yield();  // the link has to see it
        } else {
            const auto error = Raised(ask);
            // A bus is silent about an instrument that goes.
            EXPECT_EQ(error.Number, platform::ObjectError(GetParam() == Gpib ? 2014 : row.Code));
            EXPECT_EQ(error.Source, GetParam());
            EXPECT_THAT(bench.Log(), testing::StartsWith(
                                         "1\tMy receiver\t" + error.Description + '\t' + bench.Address() +
                                         R"(: sent "Q 1\n", expected )" +
                                         (row.Block ? std::to_string(row.Block) + " bytes" : "an answer ending in LF") +
                                         ", received " + row.Received + ", waited "));
        }
        EXPECT_TRUE(bench.link->IsConnected());
        if (row.Code != 0) {  // the answer was given up
            EXPECT_EQ(Raised([&] { bench.link->ReadString(std::nullopt); }).Number, platform::ObjectError(2011));
            EXPECT_EQ(Raised([&] { bench.Block(1); }).Number, platform::ObjectError(2011));
        }
        bench.link->SetTimeout(Long);
        EXPECT_EQ(bench.Query("Q 2"), "A 2");
        EXPECT_EQ(bench.peer.Connections, 2);
    }
}

TEST_P(Links, NeverTakesAStaleAnswerWhateverTheDelay) {
    std::mt19937 random(1);
    std::uniform_int_distribution<int> microseconds(0, 3000);
    Bench bench(GetParam(), {Answering([&](auto& command) {
                    std::this_thread::sleep_for(std::chrono::microseconds(microseconds(random)));
                    return Tagged(command);
                })},
                0.0015F);
    // Wine's server can end itself when the time of a wait runs out as bytes arrive, which is what this is about.
    const int delays = RunsOnWine() ? 20 : 1000;
    int answers = 0;
    for (int i = 0; i < delays; ++i) {
        const auto tag = std::to_string(i);
        try {
            EXPECT_EQ(bench.Query("Q " + tag), "A " + tag);
            ++answers;
        } catch (const platform::AutomationError& error) {
            EXPECT_THAT(error.Number, testing::AnyOf(platform::ObjectError(2013), platform::ObjectError(2014),
                                                     platform::ObjectError(2015)));
        }
    }
    if (delays < 1000) return;
    EXPECT_GT(answers, 0);
    EXPECT_LT(answers, delays);
}

TEST_P(Links, IsNotHeldUpByAPeerThatDrips) {
    Bench bench(GetParam(),
                {[](Connection& connection) {
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
    bench.link->SetTimeout(Long);
    EXPECT_EQ(bench.Query("Q 2"), "A 2");
}

TEST_P(Links, RefusesAnAnswerWithoutEnd) {
    Bench bench(GetParam(), {[](Connection& connection) {
                                 connection.Line();
                                 connection.Send(std::string((1 << 20) + 1, 'x'));
                                 connection.Line();
                             },
                             Answering(Tagged)});
    EXPECT_EQ(bench.Failure("Q 1"), platform::ProtocolBroken);
    EXPECT_EQ(bench.Query("Q 2"), "A 2");
}

TEST_P(Links, ReadsBlocksPiecewiseWhateverTheyHold) {
    const std::string block = "#15\n\n##\r";
    Bench bench(GetParam(),
                {Answering([&](auto& command) { return command == "B" ? block + "\n" : Tagged(command); })});
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

TEST_P(Links, EndsAWaitQuietlyWhenTheUserStops) {
    for (const bool block : {false, true}) {
        host::Framework* framework = nullptr;
        Bench bench(GetParam(),
                    {[&](Connection& connection) {
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
        // A peer that answers at once is heard even now.
        EXPECT_THAT(bench.Query("Q 2"), testing::AnyOf("A 2", ""));
        bench.framework.TheApplication().SetAbortRequested(false);
        EXPECT_EQ(bench.Query("Q 3"), "A 3");
        EXPECT_EQ(bench.Log().find("timed out"), std::string::npos);
    }
}

TEST_P(Links, TimesOutWhenThePeerTakesNothing) {
    std::atomic<bool> done = false;
    Bench bench(GetParam(),
                {[&](Connection& connection) {
                     while (!done && !connection.Ending()) std::this_thread::sleep_for(std::chrono::milliseconds(1));
                 },
                 Answering(Tagged)},
                0.2F);
    const std::vector<std::uint8_t> data(30000, 'x');
    for (int i = 0; i < 10'000 && !done; ++i) {  // until the buffers on the way are full
        try {
            bench.link->WriteBlock(30000, data, std::nullopt);
        } catch (const platform::AutomationError& error) {
            EXPECT_EQ(error.Number, platform::ObjectError(2013));
            EXPECT_EQ(error.Description, "Send timed out");
            EXPECT_THAT(bench.Log(), HasSubstr("\tSend timed out\t" + bench.Address() + ": sent \"xxx"));
            done = true;
        }
    }
    EXPECT_TRUE(done);
    done = true;
    bench.link->SetTimeout(Long);
    EXPECT_EQ(bench.Query("Q 1"), "A 1");
}

}  // namespace
