#include "tests/driver/Bench.h"

using namespace tarn4x::test;

TEST(ValueFormatting, KnowsItsTexts) {
    Bench bench("", false);
    EXPECT_EQ(bench->FormatFftMode(tarn2k), "2K");
    const double rates[] = {1.0 / 2, 2.0 / 3, 3.0 / 4, 5.0 / 6, 7.0 / 8, 0.0};
    for (int i = -1; i < 6; ++i) {
        EXPECT_DOUBLE_EQ(bench->ValueCodeRate(TarnStatusCodeRates(i)), i < 0 ? 0.0 : rates[i]);
    }
    EXPECT_EQ(bench->get_Prefix(), "") << "neither touches the prefix";

#define FORMAT(name, type) [](clsTarn4x& d, int v) { return d.Format##name(static_cast<type>(v)); }
    const struct {
        std::string (*Format)(clsTarn4x&, int);
        const char* Texts;
    } cases[] = {
        {FORMAT(FftMode, TarnStatusFftModes), "0=2K | 1=8K | 2= | -1="},
        {FORMAT(GuardInterval, TarnStatusGuardIntervals), "4='1/4' | 8='1/8' | 16='1/16' | 32='1/32' | -1= | 5="},
        {FORMAT(OrderOfQam, TarnStatusOrderOfQams), "4=4QAM | 16=16QAM | 64=64QAM | 32="},
        {FORMAT(Alpha, TarnStatusAlphas), "0=non-hierarchical | 1=alpha = 1 | 2=alpha = 2 | 3=alpha = 4 | 4="},
        {FORMAT(CodeRate, TarnStatusCodeRates), "0='1/2' | 1='2/3' | 2='3/4' | 3='5/6' | 4='7/8' | 5="},
    };
    for (const auto& c : cases) {
        for (const auto& [value, text] : Words(c.Texts)) EXPECT_EQ(c.Format(bench.driver, value), text);
        EXPECT_EQ(bench->get_Prefix(), "---");
    }
}
