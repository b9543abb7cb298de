#include "driver/Recipes.h"

namespace tarn4x {

namespace {

constexpr Token FftTexts[] = {{tarn2k, "2K"}, {tarn8k, "8K"}};
// The apostrophes keep spreadsheets from taking a fraction for a date.
constexpr Token GuardTexts[] = {{tarn1_4, "'1/4'"}, {tarn1_8, "'1/8'"}, {tarn1_16, "'1/16'"}, {tarn1_32, "'1/32'"}};
constexpr Token QamTexts[] = {{tarnQam4, "4QAM"}, {tarnQam16, "16QAM"}, {tarnQam64, "64QAM"}};
constexpr Token AlphaTexts[] = {
    {tarn1NH, "non-hierarchical"}, {tarn1H, "alpha = 1"}, {tarn2H, "alpha = 2"}, {tarn4H, "alpha = 4"}};
constexpr Token RateTexts[] = {
    {tarn1_2, "'1/2'"}, {tarn2_3, "'2/3'"}, {tarn3_4, "'3/4'"}, {tarn5_6, "'5/6'"}, {tarn7_8, "'7/8'"}};

}  // namespace

/// The text of a value; for any other, an empty text and the prefix "---".
std::string clsTarn4x::Format(std::span<const Token> texts, std::int32_t value) {
    const auto text = TokenOf(texts, value);
    if (text.empty()) ForgetPrefix();
    return std::string(text);
}

// A member is one line.
// clang-format off
std::string clsTarn4x::FormatFftMode(TarnStatusFftModes udtValue) { return Format(FftTexts, udtValue); }
std::string clsTarn4x::FormatGuardInterval(TarnStatusGuardIntervals udtValue) { return Format(GuardTexts, udtValue); }
std::string clsTarn4x::FormatOrderOfQam(TarnStatusOrderOfQams udtValue) { return Format(QamTexts, udtValue); }
std::string clsTarn4x::FormatAlpha(TarnStatusAlphas udtValue) { return Format(AlphaTexts, udtValue); }
std::string clsTarn4x::FormatCodeRate(TarnStatusCodeRates udtValue) { return Format(RateTexts, udtValue); }
// clang-format on

double clsTarn4x::ValueCodeRate(TarnStatusCodeRates udtValue) {
    switch (udtValue) {
        case tarn1_2:
            return 1.0 / 2.0;
        case tarn2_3:
            return 2.0 / 3.0;
        case tarn3_4:
            return 3.0 / 4.0;
        case tarn5_6:
            return 5.0 / 6.0;
        case tarn7_8:
            return 7.0 / 8.0;
        default:
            return 0.0;
    }
}

}  // namespace tarn4x
