#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "simulator/Replay.h"
#include "tests/simulator/Trace.h"

namespace {

using sim::Replay;
using sim::Treatment;
using testing::AllOf;
using testing::ElementsAreArray;
using testing::HasSubstr;
using testing::StartsWith;

// The answer, "(silence)", or "(usual)" where the instrument is left to answer.
std::string Ask(Replay& replay, const std::string& line) {
    Treatment treatment;
    replay.Apply(line, false, treatment);
    EXPECT_EQ(treatment.delay.count(), 0);
    return treatment.silence ? "(silence)" : treatment.answer.value_or("(usual)");
}

TEST(Replay, GivesWhatTheTraceHolds) {
    struct Case {
        const char* what;
        std::string trace;
        const char* line;
        std::vector<std::string> answers;
    };
    const Case cases[] = {
        {"in order, the last one repeats", Trace("A?|A?=1|B?|B?=x|A?|A?=2"), "A?", {"1", "2", "2"}},
        {"error queue", Trace("SYST:ERR?|SYST:ERR?=-222,\"x\""), "SYST:ERR?", {"-222,\"x\"", "0,\"No error\""}},
        {"error queue that was never read", Trace("A?|A?=1"), "SYST:ERR?", {"0,\"No error\""}},
        {"letter case and blanks", Trace("Sens:X?  Db|Sens:X?  Db=1"), " SENS:x? DB", {"1"}},
        {"no answer before the next line", Trace("A?|B?|B?=0|A?|A?=2"), "A?", {"(silence)", "2", "2"}},
        {"no answer at the end", Trace("A?|A?=1|A?"), "A?", {"1", "(silence)", "(silence)"}},
        {"a command", Trace("SENS:X  1|A?|A?=1"), "SENS:X  1", {"(silence)", "(silence)"}},
        {"two drivers", Trace("A?|B?|A?=1|B?=2"), "A?", {"1", "1"}},
        {"a trace that begins with an answer", Trace("A?=1|A?|A?=2"), "A?", {"1", "2"}},
        {"a block", Trace("P?|P?=1024 bytes|=1024 bytes|P?|P?=x bytes"), "P?", {"(usual)", "x bytes"}},
        {"the rest of a block", Trace("A?|A?=1|=1024 bytes"), "", {"(usual)"}},
        {"not in the trace", Trace("A?|A?=1"), "C?", {"(usual)"}},
        {"another source", Trace("A?|A?=1") + Trace("B?|B?=2", "DUT"), "B?", {"(usual)"}},
        {"other kinds", Trace("A?|A?=1") + "2025-01-31T12:34:56.789Z\t\t1\tTARN\tB?\t\\q\n", "B?", {"(usual)"}},
        {"an empty answer", Trace("A?|A?="), "A?", {""}},
        {"escapes", Trace("A?|A?=\\t\\n\\r\\\\\\x01\\x7F"), "A?", {"\t\n\r\\\x01\x7F"}},
        {"UTF-8", Trace("\xC2\xB5?|\xC2\xB5?=\xC2\x80\xC3\xBF"), "\xB5?", {"\x80\xFF"}},
        {"line ends of another system", "2025-01-31T12:34:56.789Z\t\t5\tTARN\tA?\t1\r\n", "A?", {"1"}},
        {"a cut answer", Trace("A?|A?=1|A?") + "2025-01-31T12:34:56.789Z\t1.5\t5\tTARN\tA?\t2", "A?", {"1", "1"}},
        {"the only answer is cut", Trace("A?|A?=1|B?") + "2025-01", "B?", {"(usual)"}},
        {"a cut line behind an answer", Trace("A?|A?=1") + "2025-01", "A?", {"1"}},
    };
    for (const Case& c : cases) {
        Replay replay;
        replay.Add(c.trace);
        std::vector<std::string> answers;
        for (size_t i = 0; i < c.answers.size(); ++i) answers.push_back(Ask(replay, c.line));
        EXPECT_THAT(answers, ElementsAreArray(c.answers)) << c.what;
    }
}

TEST(Replay, GoesOnInTheNextTrace) {
    Replay replay;
    EXPECT_EQ(Ask(replay, "SYST:ERR?"), "(usual)");  // there is nothing to replay yet
    replay.Add(Trace("A?|A?=1|A?"));
    replay.Add(Trace("A?=2"));
    EXPECT_EQ(Ask(replay, "A?"), "1");
    EXPECT_EQ(Ask(replay, "A?"), "2");
}

TEST(Replay, LeavesTheScriptItsSay) {
    Replay replay;
    replay.Add(Trace("A?|A?=1|A?|A?|A?=3|A?|A?=4"));
    const auto apply = [&](Treatment treatment) {
        replay.Apply("A?", true, treatment);
        return treatment;
    };
    const Treatment unscripted = apply({});
    EXPECT_EQ(unscripted.answer, "1");
    EXPECT_EQ(unscripted.delay.count(), 12);
    Treatment rule;
    rule.answer = "scripted";
    const Treatment answered = apply(rule);
    EXPECT_EQ(answered.answer, "scripted");
    EXPECT_FALSE(answered.silence);
    rule = {};
    rule.delay = std::chrono::milliseconds{7000};
    const Treatment delayed = apply(rule);
    EXPECT_EQ(delayed.answer, "3");
    EXPECT_EQ(delayed.delay.count(), 7000);
    rule = {};
    rule.raw = "#";
    EXPECT_FALSE(apply(rule).answer);
}

TEST(Replay, NamesTheLineThatIsNoneOfATrace) {
    const std::string time = "2025-01-31T12:34:56.789Z\t";
    const std::pair<std::string, const char*> cases[] = {
        {"\n", "fields separated by tabs: 1, not 6"},
        {time + "6\tTARN\tA?\t\n", "tabs: 5, not 6"},
        {time + "\t6\tTARN\tA?\t\t\n", "tabs: 7, not 6"},
        {"2025-01-31 12:34:56.789Z\t\t6\tTARN\tA?\t\n", "not a time: '2025-01-31 12:34:56.789Z'"},
        {"2025-01-31T12:34:56Z\t\t6\tTARN\tA?\t\n", "not a time: '2025-01-31T12:34:56Z'"},
        {time + "soon\t5\tTARN\tA?\t\n", "not a duration in milliseconds: 'soon'"},
        {time + "-1\t5\tTARN\tA?\t\n", "not a duration in milliseconds: '-1'"},
        {time + "nan\t5\tTARN\tA?\t\n", "not a duration in milliseconds: 'nan'"},
        {time + "\tsix\tTARN\tA?\t\n", "not the kind of an entry: 'six'"},
        {time + "1\t\tTARN\tA?\t\n", "not the kind of an entry: ''"},
        {Trace("A?=\\q"), "unknown sequence \\q"},
        {Trace("A?=\\x1"), "unknown sequence \\x"},
        {Trace("A?=\xE2\x82\xAC"), "a character outside Latin-1 in '\\xE2\\x82\\xAC'"},
        {Trace("A?=\xC2"), "a character outside Latin-1 in '\\xC2'"},
    };
    for (const auto& [line, message] : cases) {
        try {
            Replay{}.Add(Trace("A?|A?=1") + line + Trace("B?"));
            FAIL() << line;
        } catch (const std::invalid_argument& error) {
            EXPECT_THAT(error.what(), AllOf(StartsWith("line 3: "), HasSubstr(message)));
        }
    }
}

}  // namespace
