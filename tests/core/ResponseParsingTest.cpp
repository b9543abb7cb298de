#include <gtest/gtest.h>

#include "core/ResponseParsing.h"

namespace tarn4x {
namespace {

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
        EXPECT_EQ(answer.ParseResponse(c.Answer), c.Value) << c.Answer;
        EXPECT_EQ(answer.Prefix, c.Prefix) << c.Answer;
        EXPECT_EQ(answer.Postfix, c.Postfix) << c.Answer;
        EXPECT_EQ(answer.Raw, c.Answer);
    }
}

TEST(ParseValuePair, ReadsTwoNumbersOrAtLeastTheFirst) {
    ParsedAnswer answer;
    EXPECT_TRUE(answer.ParseValuePair("1.5, 2.5"));
    EXPECT_DOUBLE_EQ(answer.mdblPairFirst, 1.5);
    EXPECT_DOUBLE_EQ(answer.mdblPairSecond, 2.5);
    EXPECT_TRUE(answer.ParseValuePair("\"<-1,x,9\""));
    EXPECT_DOUBLE_EQ(answer.mdblPairFirst, -1.0);
    EXPECT_DOUBLE_EQ(answer.mdblPairSecond, 0.0);
    EXPECT_EQ(answer.Prefix, "<");
    answer.mdblPairSecond = 4.0;
    EXPECT_FALSE(answer.ParseValuePair("3.5"));
    EXPECT_DOUBLE_EQ(answer.mdblPairFirst, 3.5);
    EXPECT_DOUBLE_EQ(answer.mdblPairSecond, 4.0);
    EXPECT_FALSE(answer.ParseValuePair("---"));
    EXPECT_DOUBLE_EQ(answer.mdblPairFirst, 3.5);
}

}  // namespace
}  // namespace tarn4x
