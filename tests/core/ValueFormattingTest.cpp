#include "tests/core/Bench.h"

namespace tarn4x::test {
namespace {

TEST(ValueFormatting, KnowsItsTexts) {
    Bench bench{{}, false};
    auto& driver = bench.driver;
    using Format = std::string (*)(clsTarn4x&, int);
    const Format fft = [](clsTarn4x& d, int v) { return d.FormatFftMode(static_cast<TarnStatusFftModes>(v)); };
    const Format guard = [](clsTarn4x& d, int v) {
        return d.FormatGuardInterval(static_cast<TarnStatusGuardIntervals>(v));
    };
    const Format qam = [](clsTarn4x& d, int v) { return d.FormatOrderOfQam(static_cast<TarnStatusOrderOfQams>(v)); };
    const Format alpha = [](clsTarn4x& d, int v) { return d.FormatAlpha(static_cast<TarnStatusAlphas>(v)); };
    const Format rate = [](clsTarn4x& d, int v) { return d.FormatCodeRate(static_cast<TarnStatusCodeRates>(v)); };
    const struct {
        Format Function;
        int Value;
        const char* Text;
    } cases[] = {{fft, 0, "2K"},
                 {fft, 1, "8K"},
                 {fft, 2, ""},
                 {fft, -1, ""},
                 {guard, 4, "'1/4'"},
                 {guard, 8, "'1/8'"},
                 {guard, 16, "'1/16'"},
                 {guard, 32, "'1/32'"},
                 {guard, -1, ""},
                 {guard, 5, ""},
                 {qam, 4, "4QAM"},
                 {qam, 16, "16QAM"},
                 {qam, 64, "64QAM"},
                 {qam, 32, ""},
                 {alpha, 0, "non-hierarchical"},
                 {alpha, 1, "alpha = 1"},
                 {alpha, 2, "alpha = 2"},
                 {alpha, 3, "alpha = 4"},
                 {alpha, 4, ""},
                 {rate, 0, "'1/2'"},
                 {rate, 1, "'2/3'"},
                 {rate, 2, "'3/4'"},
                 {rate, 3, "'5/6'"},
                 {rate, 4, "'7/8'"},
                 {rate, 5, ""}};
    for (const auto& c : cases) EXPECT_EQ(c.Function(driver, c.Value), c.Text) << c.Value;
    EXPECT_EQ(driver.get_Prefix(), "---");

    Bench fresh{{}, false};
    EXPECT_EQ(fresh.driver.FormatFftMode(tarn2k), "2K");
    EXPECT_DOUBLE_EQ(fresh.driver.ValueCodeRate(tarnCrUnknown), 0.0);
    EXPECT_EQ(fresh.driver.get_Prefix(), "") << "neither touches the prefix";
    const double rates[] = {1.0 / 2, 2.0 / 3, 3.0 / 4, 5.0 / 6, 7.0 / 8, 0.0};
    for (int i = 0; i < 6; ++i) {
        EXPECT_DOUBLE_EQ(fresh.driver.ValueCodeRate(static_cast<TarnStatusCodeRates>(i)), rates[i]);
    }
}

}  // namespace
}  // namespace tarn4x::test
