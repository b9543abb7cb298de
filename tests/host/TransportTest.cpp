// The dialogue over a link whose other end is the test. What arrives does so in pieces, between "|".
#include "host/InstrumentTransport.h"
#include "host/MessageLog.h"
#include "tests/host/Outcome.h"

namespace {

using namespace std::string_literals;
using namespace std::chrono_literals;

struct ScriptedLink : host::ByteLink {
    void Open(host::Patience& patience) override {
        ++Openings;
        while (OpensLate && !patience.Over()) std::this_thread::sleep_for(patience.Slice());
        if (Refusals > 0 && Refusals-- > 0) throw host::OpeningFailure{"switched off"};
        Opened = true;
    }
    void Close() noexcept override { Opened = false; }
    bool IsOpen() const override { return Opened; }
    std::string Address() const override { return "here"; }
    std::size_t Write(std::span<const std::uint8_t> bytes, Milliseconds) override {
        bytes = bytes.first(std::min<std::size_t>(bytes.size(), 3));
        Sent.append(bytes.begin(), bytes.end());
        if (Sent.ends_with('\n')) Arriving += std::exchange(Answer, {});
        return bytes.size();
    }
    bool Flush(Milliseconds) override { return Unflushed-- <= 0; }
    std::size_t Read(std::span<std::uint8_t> bytes, Milliseconds time) override {
        LongestWait = std::max(LongestWait, time);
        const auto piece = Arriving.substr(0, std::min(Arriving.find('|'), bytes.size()));
        Arriving.erase(0, piece.size());
        if (Arriving.starts_with('|')) Arriving.erase(0, 1);
        if (piece == "<lost>") throw host::LinkFailure{platform::LinkLost, "gone"};
        if (piece == "<stop>") return Stopped = true, 0;
        std::ranges::copy(piece, bytes.begin());
        return piece.size();
    }
    void Resynchronise(host::Patience&) override {
        ++Resynchronised;
        Arriving.clear();
    }

    std::string Arriving, Answer, Sent;  // the answer arrives when the next line has been sent
    int Unflushed = 0, Refusals = 0, Openings = 0, Resynchronised = 0;
    bool Opened = false, OpensLate = false, Stopped = false;
    Milliseconds LongestWait{};
};

constexpr float Long = 20.0F;

/// A transport on such a link.
struct Bench {
    Bench() {
        transport.SetName("My receiver");
        transport.SetTimeout(Long);
        transport.Connect(true);
    }
    /// Reads a block of that many bytes, or -1: a line.
    std::string Read(std::int16_t block = -1, std::optional<std::string_view> command = {}) {
        return Outcome([&] {
            if (block < 0) return transport.ReadString(command);
            const auto bytes = transport.ReadBlock(block, command);
            return std::string(bytes.begin(), bytes.end());
        });
    }
    std::string Query(const std::string& answer, std::int16_t block = -1, std::string_view command = "Q") {
        link.Answer = answer;
        return Read(block, command);
    }
    /// The new entries of the log, without the time that a failure took.
    std::string Log() {
        std::string entries;
        for (int i = 1; i <= log.Count(); ++i) entries += log.Entry(i).substr(0, log.Entry(i).find(", waited ")) + '\n';
        log.Clear();
        return entries;
    }

    std::unique_ptr<ScriptedLink> owned = std::make_unique<ScriptedLink>();
    ScriptedLink& link = *owned;
    host::MessageLog log;
    bool reporting = true;
    std::vector<std::chrono::milliseconds> pauses;
    std::function<bool()> asked = [this] { return link.Stopped; };
    host::InstrumentTransport transport{"wire",
                                        std::move(owned),
                                        nullptr,
                                        {.AbortRequested = [this] { return asked(); },
                                         .Log = [this](auto... entry) { log.Log(entry...); },
                                         .Wait = [this](auto time) { pauses.push_back(time); },
                                         .ErrorReporting = [this] { return reporting; }}};
};

const std::string OpenedAgain = "1\tMy receiver\tThe link was opened again\there\n";
const std::string SwitchedOff = "2017 wire: No connection to here: switched off";

TEST(Transport, TakesAnswersHoweverTheyArrive) {
    const std::pair<std::string, std::string> cases[] = {{"12.5\n", "12.5"},
                                                         {"12.5\r\n", "12.5"},
                                                         {"\n", ""},
                                                         {"\r\n", ""},
                                                         {"a\rb\n", "a\rb"},
                                                         {"\r\r\n", "\r"},
                                                         {"\xB5s \xFF\x7F\x80\n", "\xC2\xB5s \xC3\xBF\x7F\xC2\x80"},
                                                         {"\x80\n", "\xC2\x80"},
                                                         {"a\0b\n"s, "a\0b"s},
                                                         {std::string(1 << 20, 'x') + '\n', std::string(1 << 20, 'x')}};
    Bench bench;
    for (const auto& [sent, answer] : cases) {
        for (std::size_t split = 0; split < std::min<std::size_t>(sent.size(), 9); ++split) {
            EXPECT_EQ(bench.Query(sent.substr(0, split) + "||" + sent.substr(split)), answer) << split;
        }
    }
    EXPECT_EQ(bench.link.Openings, 1);
    EXPECT_EQ(bench.Log(), "");
}

TEST(Transport, SendsCommandsInLatin1WithALineEnd) {
    Bench bench;
    bench.link.Unflushed = 2;
    bench.transport.WriteString("SET \xC2\xB5\xC3\xBF");
    for (const std::string bad : {"a\xE2\x82\xAC", "\xC4\x80", "a\xC2", "\xC3x", "\xC3\xC3", "\xB5"}) {
        EXPECT_EQ(bench.Read(-1, bad), "5 wire: The command holds a character that instruments do not know: " + bad);
    }
    const std::uint8_t data[] = {'1', 0xFF, '\n'};
    bench.transport.WriteBlock(3, data, "DATA #");
    bench.transport.WriteBlock(2, data, std::nullopt);
    std::string answer = "---";
    bench.link.Answer = "ok\n";
    bench.transport.SendReceive("Q?", &answer);
    EXPECT_EQ(answer, "ok");
    EXPECT_EQ(bench.link.Sent, "SET \xB5\xFF\nDATA #1\xFF\n1\xFFQ?\n");
}

TEST(Transport, RefusesWhatMakesNoSense) {
    Bench bench;
    auto& wire = bench.transport;
    const std::uint8_t data[] = {1, 2, 3};
    EXPECT_EQ(Raised([&] { wire.WriteBlock(4, data, {}); }), "5 wire: 4 bytes cannot be written, the data has 3");
    EXPECT_EQ(Raised([&] { wire.WriteBlock(-1, data, {}); }), "5 wire: -1 bytes cannot be written, the data has 3");
    EXPECT_EQ(Raised([&] { wire.ReadBlock(-1, {}); }), "5 wire: A block of -1 bytes cannot be read");
    for (const float bad : {-1.0F, std::nanf("")}) {
        EXPECT_EQ(Raised([&] { wire.SetTimeout(bad); }), "5 wire: A time-out may not be negative");
    }
    EXPECT_EQ(wire.Timeout(), Long);
}

TEST(Transport, ReportsAFailureAndIsInStepAgain) {
    const auto sent = "sent \"Q\\n\", expected an answer ending in LF, received "s;
    const std::string late = "2014 wire: Receive timed out", notSent = "2013 wire: Send timed out";
    const struct {
        std::string Answer, Outcome, Told;
        std::int16_t Block = -1;
    } cases[] = {
        {"", notSent, sent + "nothing"},
        {"", late, sent + "nothing"},
        {"12\x01|\n", late, sent + R"("12\x01")"},  // bytes that drip in buy no time
        {"\xFF#\\\x7F\r\t", late, sent + R"("\xFF#\\\x7F\r\t")"},
        {"abc\n", late, R"(sent "Q\n", expected 100 bytes, received "abc\n")", 100},
        {"<lost>", "2015 wire: gone", sent + "nothing"},
        {"abc|<lost>", "2015 wire: gone", R"(sent "Q\n", expected 4 bytes, received "abc")", 4},
        {std::string((1 << 20) + 1, 'x'), "2012 wire: The answer has no end within 1 MiB",
         sent + '"' + std::string(200, 'x') + "\"... (1048577 bytes)"},
    };
    for (const auto& row : cases) {
        SCOPED_TRACE(row.Told);
        const bool timesOut = row.Outcome.ends_with("timed out");
        Bench bench;
        if (timesOut) bench.transport.SetTimeout(0.0F);  // one look for whatever it waits for
        bench.link.Unflushed = row.Outcome == notSent ? 1 : 0;
        EXPECT_EQ(bench.Query(row.Answer, row.Block), row.Outcome);
        EXPECT_EQ(bench.Log(), "1\tMy receiver\t" + row.Outcome.substr(11) + "\there: " + row.Told + '\n');
        EXPECT_TRUE(bench.transport.IsConnected());
        EXPECT_EQ(bench.link.Opened, timesOut);
        bench.link.Arriving = "late\n";
        EXPECT_EQ(bench.Read(row.Block), "2011 wire: The answer was given up, send the query again");
        EXPECT_THAT(bench.Log(), testing::HasSubstr("\there: sent nothing, expected "));
        EXPECT_EQ(bench.Query("A 2\n"), "A 2");
        EXPECT_EQ(bench.link.Resynchronised, 1);
        EXPECT_EQ(bench.Log(), OpenedAgain);
    }
}

TEST(Transport, ReadsBlocksPiecewiseWhateverTheyHold) {
    Bench bench;
    EXPECT_EQ(bench.Query("#15|\n\n##\r|\n", 1), "#");
    EXPECT_EQ(bench.Read(2), "15");
    EXPECT_EQ(bench.Read(0), "");
    EXPECT_EQ(bench.Read(5), "\n\n##\r");
    EXPECT_EQ(bench.Read(), "");  // the line end, asked for
    EXPECT_EQ(bench.Query("abc", 3), "abc");
    EXPECT_EQ(bench.Query("\n|def\n", 3), "def");  // with a line end to come between the two
    bench.transport.Connect(true);
    EXPECT_EQ(bench.Query("abc", 3), "abc");
    EXPECT_EQ(bench.Log(), "") << "nothing is left over from the last connection";
    bench.transport.WriteString("SET");
    bench.link.Arriving = "x";
    EXPECT_EQ(bench.Query("\n"), "") << "a line end that came with other bytes is no longer expected";
}

TEST(Transport, TakesNothingLeftOverForAnAnswer) {
    const char* const discards = "1\tMy receiver\tBytes that nobody had asked for were discarded\there: received ";
    const struct {
        std::string Block, Meanwhile, Next, Discarded = {};  // "Block" begins with the block, if there is one
        int Resynchronised = 0;
    } cases[] = {
        {"abc\n", "", "A\n"},
        {"abc\r\n", "", "A\n"},
        {"abc", "|\r|\n", "A\n"},
        {"abc", "", "\nA\n"},
        {"abc", "", "|\r|\nA\n"},
        {"abc", "", "A\n"},
        {"abc\r|x", "", "A\n", "\"\\rx\"", 1},
        {"abc\n|x", "", "A\n", "\"x\"", 1},
        {"", "un|asked\n", "A\n", "\"unasked\\n\""},
        {"", std::string((1 << 20) + 1, '7'), "A\n", '"' + std::string(200, '7') + "\"... (1048577 bytes)", 1}};
    for (const auto& row : cases) {
        SCOPED_TRACE(row.Block + row.Meanwhile.substr(0, 9) + row.Next);
        Bench bench;
        EXPECT_EQ(row.Block.empty() ? "abc" : bench.Query(row.Block, 3), "abc");
        bench.link.Arriving += row.Meanwhile;
        EXPECT_EQ(bench.Query(row.Next), "A");
        EXPECT_EQ(bench.Log(), row.Discarded.empty() ? "" : discards + row.Discarded + '\n');
        EXPECT_EQ(bench.link.Resynchronised, row.Resynchronised);
    }
}

TEST(Transport, EndsAWaitQuietlyWhenTheUserStops) {
    for (const std::int16_t block : {std::int16_t{-1}, std::int16_t{100}}) {
        Bench bench;
        EXPECT_EQ(bench.Query("A|<stop>", block), "");
        EXPECT_THAT(bench.link.LongestWait, testing::AllOf(testing::Gt(0ms), testing::Le(50ms)));
        bench.link.Stopped = false;
        EXPECT_EQ(bench.Query("A 2\n"), "A 2");
        EXPECT_EQ(bench.link.Resynchronised, 1);
        EXPECT_EQ(bench.Log(), "");
    }
}

TEST(Transport, BridgesAnOutageForOneTimeout) {
    Bench bench;
    EXPECT_EQ(bench.Query("abc", 3), "abc");
    bench.link.Opened = false;
    bench.link.Refusals = 3;
    EXPECT_EQ(bench.Query("\n"), "") << "the block's line end went with the old connection";
    EXPECT_EQ(bench.link.Openings, 5);
    EXPECT_THAT(bench.pauses, testing::SizeIs(3));
    EXPECT_THAT(bench.pauses, testing::Each(testing::AllOf(testing::Gt(0ms), testing::Le(50ms))));
    bench.link.Arriving = "<lost>";
    bench.link.OpensLate = true;
    bench.transport.SetTimeout(1.0F);
    EXPECT_EQ(bench.Query("2||.5\n"), "2.5") << "the query has a time of its own";
    EXPECT_EQ(bench.Log(), OpenedAgain + OpenedAgain);
    bench.transport.SetTimeout(0.0F);
    bench.link.Opened = false;
    bench.link.Refusals = 1;
    EXPECT_EQ(bench.Query(""), SwitchedOff);
}

TEST(Transport, IsGivenUpWhenItIsLostAgainAndAgainOnOneCommand) {
    const std::string lost = "2015 wire: gone";
    const auto givenUp = "2017 wire: No connection to here: lost 6 times in succession, last: gone";
    Bench bench;
    for (int i = 0; i < 12; ++i) {
        EXPECT_EQ(bench.Query("<lost>"), i % 6 < 5 ? lost : givenUp);
        EXPECT_EQ(bench.Query("A\n", -1, "Q 2"), "A");  // says nothing about the other
    }
    for (int i = 0; i < 12; ++i) EXPECT_EQ(bench.Query(i % 5 < 4 ? "<lost>" : "A\n"), i % 5 < 4 ? lost : "A");
    for (int i = 0; i < 12; ++i) {
        if (i % 5 == 0) bench.transport.Connect(true);
        EXPECT_EQ(bench.Query("<lost>"), lost) << "the user has begun anew";
    }
}

TEST(Transport, RefusesACallFromWithinAnother) {
    Bench bench;
    std::string inner;
    bench.asked = [&] {
        inner = Raised([&] { bench.transport.Connect(false); });
        return true;
    };
    EXPECT_EQ(bench.Read(), "");
    EXPECT_EQ(inner, "2017 wire: No connection to here: another call is using it");
    EXPECT_EQ(bench.Log(), "1\tMy receiver\tNo connection to here: another call is using it\there\n");
}

TEST(Transport, NeedsAConnection) {
    Bench bench;
    bench.transport.Connect(false);
    EXPECT_FALSE(bench.link.Opened);
    for (const auto& outcome : {bench.Query("A\n"), bench.Read()}) {
        EXPECT_EQ(outcome, "2017 wire: No connection to here: it has not been opened");
    }
    bench.Log();
    bench.transport.SetName("");
    for (const bool reporting : {true, false}) {  // someone only tries
        bench.reporting = reporting;
        bench.link.Refusals = 1;
        EXPECT_EQ(Raised([&] { bench.transport.Connect(true); }), SwitchedOff);
        EXPECT_FALSE(bench.transport.IsConnected());
        EXPECT_EQ(bench.Log().substr(0, 7), reporting ? "1\twire\t" : "");
    }
}

}  // namespace
