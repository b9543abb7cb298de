#include "driver/ResponseParsing.h"
#include "tests/driver/Bench.h"
#include "tests/support/DriverMembers.h"

using namespace tarn4x::test;

TEST(ParseResponse, StripsQuotesMarkerAndRemark) {
    // An answer gives value/prefix/postfix.
    for (
        const auto& [text, pieces] : support::Entries(
            R"( -> /---/ | " -> /---/ | "" -> /---/ | --- -> /---/ | (only) -> /---/(only) | 12.5 -> 12.5// | "1 -> 1// | )"
            R"(1" -> 1// |   5   -> 5// | "UNDER 3.5" -> 3.5/UNDER/ | UND3.5 -> 3.5/UNDER/ | UNDE 1 -> E 1/UNDER/ | )"
            R"(under 3.5 -> under 3.5// | OVER -> /OVER/ | NORF -> /NORF/ | *1 -> 1/*/ | "<12.5" -> 12.5/</ | <>5 -> >5/</ | )"
            R"( <5 -> <5// | > 30.2 (est) -> 30.2/>/(est) | 12.5 (averaging) -> 12.5//(averaging) | 1 (a) (b)  -> 1//(a) (b))")) {
        ParsedAnswer answer;
        answer.Prefix = answer.Postfix = "old";
        const auto value = answer.ParseResponse(text);
        EXPECT_EQ(value + '/' + answer.Prefix + '/' + answer.Postfix, pieces) << text;
        EXPECT_EQ(answer.Raw, text);
    }
}
