#include "tests/driver/Bench.h"
#include "tests/support/DriverMembers.h"

using namespace tarn4x::test;
using support::Entries;

TEST(LeadingNumber, IsTheLongestNumberInFront) {
    for (const auto& [text, number] : Entries(
             "12.5dB -> 12.5 | 1.2E-07 -> 1.2E-7 | 1.2d3 -> 1200 | 1.2D3 -> 1200 |  1 2\t.\n5 E 1 -> 125 | -3.5 -> "
             "-3.5 | "
             "- 3 -> -3 | +7 -> 7 | .5 -> 0.5 | 5. -> 5 | 1.2.3 -> 1.2 | 1,5 -> 1 | 12E -> 12 | 12E+ -> 12 | 12Ex -> "
             "12 | "
             "1\r2 -> 1 | 1e400 -> 1.7976931348623157e308 | -1e400 -> -1.7976931348623157e308 | 1e-400 -> 0 | "
             "1e-99999999999999999999 -> 0 |  -> 0 | "
             "under 3.5 -> 0 | - -> 0 | . -> 0 | E5 -> 0 | --5 -> 0 | 0x10 -> 0 | inf -> 0 | nan -> 0")) {
        EXPECT_DOUBLE_EQ(LeadingNumber(text), std::stod(number)) << text;
    }
}

TEST(GeneralNumber, HasFifteenDigitsAndAPoint) {
    for (const auto& [number, text] : Entries(
             "0 -> 0 | -0.0 -> 0 | 2999999.9 -> 2999999.9 | 10000000009.5 -> 10000000009.5 | 0.30000000000000004 -> "
             "0.3 | "
             "0.33333333333333331 -> 0.333333333333333 | -12 -> -12 | 1e14 -> 100000000000000 | 1.5e20 -> 1.5E+20 | "
             "999999999999999 -> 999999999999999 | 1e15 -> 1E+15 | 1e100 -> 1E+100 | 1e-4 -> 0.0001 | 1e-5 -> 1E-05 | "
             "-1.25e-7 -> -1.25E-07 | 0.00012345678901234567 -> 0.000123456789012346")) {
        EXPECT_EQ(platform::GeneralNumber(std::stod(number)), text);
    }
}
