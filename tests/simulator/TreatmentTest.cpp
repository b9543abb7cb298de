#include <gmock/gmock.h>

#include <regex>

#include "simulator/Simulator.h"
#include "simulator/Text.h"

namespace {

TEST(Script, UsesItsRulesUpInOrder) {
    sim::Script script{
        "# a comment\n\non *IDN? | skip 1 | times 2 | answer A\\x0A\\\\B\r\non *idn? | answer once\n"
        "on READ:X?  DB | always | answer ever\non any | answer any\n"};
    std::string answers;
    for (const char* line : {"*IDN?", " *idn? ", "*IDN?", "READ:X? DB", "read:x?  db", "*IDN?", "*IDN?"}) {
        answers += script.Treat(line).answer.value_or("(usual)") + ' ';
    }
    EXPECT_EQ(answers, "once A\n\\B A\n\\B ever ever any (usual) ");
}

TEST(Script, NamesTheLineThatItDoesNotUnderstand) {
    for (const std::string wrong :
         {"bogus", "on", "on A | fly", "on A | delay soon", "on A | split 0", "on A | close", "on A | bytes 123",
          "on A | answer \\q", "on A | answer x\\", "signal cn high", "signal colour red", "signal qam 32",
          "terminator bell", "on A | times 0", "on A | signal level"}) {
        const auto read = [&] { sim::Script{"# first\n" + wrong}; };
        EXPECT_THAT(read, testing::ThrowsMessage<std::invalid_argument>(testing::StartsWith("line 2: "))) << wrong;
    }
}

/// A trace from short notation: "6 A?|5 A? 1" is the query A? and its answer 1.
std::string Trace(const std::string& entries) {
    return std::regex_replace(entries, std::regex{R"((\d) ([^ |]*) ?([^|]*)\|?)"},
                              "2025-01-31T12:34:56.789Z\t\t$1\tTARN\t$2\t$3\n");
}

// *OPC? has the answer 1 otherwise, and the script has the first say about *TST?.
TEST(Replay, GivesWhatTheTraceHolds) {
    const std::tuple<std::string, std::string, std::string> cases[] = {
        {Trace("6 *OPC?|5 *OPC? a|6 *TST?|5 *TST? x|6 *OPC?|5 *OPC? b"), " *opc?", "a|b|b"},
        {Trace("6 *TST?|5 *TST? x|6 *TST?|5 *TST? y"), "*TST?", "scripted|y"},
        {Trace("6 SYST:ERR?|5 SYST:ERR? -222,\"x\""), "SYST:ERR?", "-222,\"x\"|0,\"No error\""},
        {Trace("6 *OPC?|6 *TST?|5 *TST? x|6 *OPC?|5 *OPC? b"), "*OPC?", "(none)|b"},
        {Trace("6 *OPC?|6 *TST?|5 *OPC? a|5 *TST? x"), "*OPC?", "a"},  // two drivers
        {Trace("5 *OPC? a|6 *OPC?|5 *OPC? b"), "*OPC?", "a|b"},
        {Trace("6 *OPC?|5 *OPC? 1024 bytes|5  7 bytes"), "*OPC?", "1"},
        {Trace("6 *OPC?|5 *OPC? a|6 *OPC?") + "2025-01", "*OPC?", "a|a"},
    };
    for (const auto& [trace, line, answers] : cases) {
        sim::Options options{.script = sim::Script{"on *TST? | answer scripted"}};
        options.replay.Add(trace);
        sim::Simulator simulator{std::move(options)};
        for (const std::string_view answer : sim::Split(answers, '|')) {
            EXPECT_EQ(simulator.Answer(line).value_or("(none)"), answer) << trace;
        }
    }
}

}  // namespace
