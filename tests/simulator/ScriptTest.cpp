#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "simulator/Script.h"

namespace {

using sim::Script;

TEST(Script, UsesItsRulesUpInOrder) {
    Script script{
        "# a comment\n"
        "\n"
        "on *IDN? | skip 1 | times 2 | answer A\\x0A\\\\B\r\n"
        "on *idn? | answer once\n"
        "on READ:X?  DB | always | silence\n"
        "on any | bytes 23 31 0a | times 1\n"};
    const auto answer = [&](const char* line) { return script.Treat(line).answer.value_or("(usual)"); };
    EXPECT_EQ(answer("*IDN?"), "once");  // the first rule lets one pass
    EXPECT_EQ(answer(" *idn? "), "A\n\\B");
    EXPECT_EQ(answer("*IDN?"), "A\n\\B");
    for (int i = 0; i < 3; ++i) EXPECT_TRUE(script.Treat("READ:X? DB").silence);
    EXPECT_EQ(script.Treat("*IDN?").raw, "#1\n");
    EXPECT_EQ(answer("*IDN?"), "(usual)");
    EXPECT_FALSE(script.Treat("*IDN?").raw);
}

TEST(Script, UnderstandsAllActions) {
    Script script{
        "signal cn 12\nterminator crlf\n"
        "on A | delay 7000 | gap 5 | split 1,2 | truncate 3 | terminator none | busy 1.5 | error -222 | error -113 | "
        "signal qam 16\n"
        "on B | reset in\non C | deaf\n"};
    EXPECT_EQ(script.Terminator(), "\r\n");
    EXPECT_EQ(script.Signal().at(0).name, "cn");
    const sim::Treatment a = script.Treat("A"), b = script.Treat("B");
    EXPECT_EQ(a.delay.count(), 7000);
    EXPECT_EQ(a.gap.count(), 5);
    EXPECT_THAT(a.pieces, testing::ElementsAre(1, 2));
    EXPECT_EQ(a.truncate, 3u);
    EXPECT_EQ(a.terminator, "");
    EXPECT_EQ(a.busy.count(), 1500);
    EXPECT_THAT(a.errors, testing::ElementsAre(-222, -113));
    sim::Signal signal;
    Change(signal, a.signal.at(0));
    EXPECT_EQ(signal.ofdm.constellation, 1);
    EXPECT_TRUE(b.reset && b.close == sim::Close::In);
    EXPECT_TRUE(script.Treat("C").deaf);
}

TEST(Script, NamesTheLineThatItDoesNotUnderstand) {
    for (const char* wrong :
         {"bogus", "on", "on A | fly", "on A | delay soon", "on A | split 0", "on A | close", "on A | bytes 123",
          "on A | answer \\q", "on A | answer x\\", "signal cn high", "signal colour red", "signal qam 32",
          "terminator bell", "on A | times 0", "on A | signal level"}) {
        try {
            Script{std::string{"# first\n"} + wrong};
            FAIL() << wrong;
        } catch (const std::invalid_argument& error) {
            EXPECT_THAT(error.what(), testing::StartsWith("line 2: ")) << wrong;
        }
    }
}

}  // namespace
