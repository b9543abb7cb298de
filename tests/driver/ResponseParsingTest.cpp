#include "driver/ResponseParsing.h"
#include "tests/driver/Bench.h"

using namespace tarn4x::test;

TEST(ParseResponse, StripsQuotesMarkerAndRemark) {
    const struct {
        const char *Answer, *Value, *Prefix, *Postfix;
    } cases[] = {
        {"", "", "---", ""},
        {"\"", "", "---", ""},
        {"\"\"", "", "---", ""},
        {"12.5", "12.5", "", ""},
        {"\"UNDER 3.5\"", "3.5", "UNDER", ""},
        {"UND3.5", "3.5", "UNDER", ""},
        {"UNDE 1", "E 1", "UNDER", ""},
        {"---", "", "---", ""},
        {"under 3.5", "under 3.5", "", ""},
        {"12.5 (averaging)", "12.5", "", "(averaging)"},
        {"12.5 (a) (b) ", "12.5", "", "(a) (b)"},
        {"> 30.2 (est)", "30.2", ">", "(est)"},
        {"\"<12.5\"", "12.5", "<", ""},
        {"\"12.5", "12.5", "", ""},
        {"12.5\"", "12.5", "", ""},
        {"OVER", "", "OVER", ""},
        {"NORF", "", "NORF", ""},
        {"*1", "1", "*", ""},
        {"<>5", ">5", "<", ""},
        {" <5", "<5", "", ""},
        {"(only)", "", "---", "(only)"},
        {"\t7", "\t7", "", ""},
        {"  5  ", "5", "", ""},
    };
    for (const auto& c : cases) {
        ParsedAnswer answer;
        answer.Prefix = answer.Postfix = "old";
        const auto value = answer.ParseResponse(c.Answer);
        EXPECT_THAT((std::vector{value, answer.Prefix, answer.Postfix, answer.Raw}),
                    ElementsAre(c.Value, c.Prefix, c.Postfix, c.Answer));
    }
}

TEST(ParseValuePair, ReadsTwoNumbersOrAtLeastTheFirst) {
    ParsedAnswer answer;
    const auto pair = [&] { return std::pair(answer.mdblPairFirst, answer.mdblPairSecond); };
    EXPECT_TRUE(answer.ParseValuePair("1.5, 2.5"));
    EXPECT_EQ(pair(), std::pair(1.5, 2.5));
    EXPECT_TRUE(answer.ParseValuePair("\"<-1,x,9\""));
    EXPECT_EQ(pair(), std::pair(-1.0, 0.0));
    EXPECT_EQ(answer.Prefix, "<");
    answer.mdblPairSecond = 4.0;
    EXPECT_FALSE(answer.ParseValuePair("3.5"));
    EXPECT_EQ(pair(), std::pair(3.5, 4.0));
    EXPECT_FALSE(answer.ParseValuePair("---"));
    EXPECT_EQ(pair(), std::pair(3.5, 4.0));
}
