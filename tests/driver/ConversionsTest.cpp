#include <cmath>
#include <limits>

#include "driver/Dates.h"
#include "tests/driver/Bench.h"

using namespace tarn4x::test;

TEST(LeadingNumber, TakesTheLongestNumberInFront) {
    constexpr double largest = std::numeric_limits<double>::max();
    // clang-format off
    const std::pair<const char*, double> cases[] = {
        {"12.5dB", 12.5}, {"1.2E-07", 0.00000012}, {"1.2d3", 1200}, {"1.2D3", 1200}, {" 1 2\t.\n5 E 1", 125},
        {"-3.5", -3.5}, {"- 3", -3}, {"+7", 7}, {".5", 0.5}, {"5.", 5}, {"1.2.3", 1.2}, {"1,5", 1}, {"12E", 12},
        {"12E+", 12}, {"12Ex", 12}, {"1\r2", 1}, {"1e400", largest}, {"-1e400", -largest}, {"1e-400", 0},
        {"", 0}, {"under 3.5", 0}, {"-", 0}, {".", 0}, {"E5", 0}, {"--5", 0}, {"0x10", 0}, {"inf", 0}, {"nan", 0}};
    // clang-format on
    for (const auto& [text, number] : cases) EXPECT_DOUBLE_EQ(LeadingNumber(text), number) << text;
}

TEST(GeneralNumber, HasFifteenDigitsAndAPoint) {
    // clang-format off
    const std::pair<double, const char*> cases[] = {
        {0.0, "0"}, {-0.0, "0"}, {2999999.9, "2999999.9"}, {10000000009.5, "10000000009.5"}, {56.01, "56.01"},
        {0.1 + 0.2, "0.3"}, {1.0 / 3.0, "0.333333333333333"}, {-12.0, "-12"}, {1e14, "100000000000000"},
        {999999999999999.0, "999999999999999"}, {1e15, "1E+15"}, {1.5e20, "1.5E+20"}, {1e100, "1E+100"},
        {0.0001, "0.0001"}, {0.00001, "1E-05"}, {-1.25e-7, "-1.25E-07"},
        {0.00012345678901234567, "0.000123456789012346"}};
    // clang-format on
    for (const auto& [number, text] : cases) EXPECT_EQ(platform::GeneralNumber(number), text);
    EXPECT_EQ(SignedNumber(474000000.3), " 474000000.3");
    EXPECT_EQ(SignedNumber(-1.0), "-1");
}

TEST(RoundDecimals, RoundsTheDecimalTextHalfAwayFromZero) {
    const struct {
        int Decimals;
        double Number, Rounded;
    } cases[] = {{2, 1.005, 1.01},  {2, -1.005, -1.01},  {2, 0.005, 0.01},
                 {2, 0.004, 0.0},   {2, 266.0, 266.0},   {2, 1e-20, 0.0},
                 {2, -448.0, -448}, {2, 134.499, 134.5}, {1, 474000000.25, 474000000.3},
                 {1, 0.05, 0.1},    {1, 0.04, 0.0},      {1, 99.95, 100.0},
                 {1, 1e15, 1e15},   {1, 3e6, 3e6}};
    for (const auto& c : cases) EXPECT_DOUBLE_EQ(RoundDecimals(c.Number, c.Decimals), c.Rounded) << c.Number;
}

TEST(Integers, RoundHalvesToEvenAndOverflow) {
    for (const auto& [number, rounded] :
         {std::pair(2.5, 2), std::pair(3.5, 4), std::pair(-2.5, -2), std::pair(32767.4, 32767)}) {
        EXPECT_EQ(ToInteger(number), rounded);
    }
    EXPECT_EQ(ToLong(2147483647.4), 2147483647);
    EXPECT_EQ(ToInteger(std::string_view(" 12 ")), 12);
    for (const double outside : {32767.5, -32768.6, 1e300, std::nan("")}) {
        EXPECT_OUTCOME(ToInteger(outside), "6 XTarn4x: Overflow") << outside;
    }
    EXPECT_OUTCOME(ToLong(2147483648.0), "6 XTarn4x: Overflow");
    for (const std::string_view text : {"", "5 dB", "x", "1,5", "+-5", "inf"}) {
        EXPECT_OUTCOME(ToInteger(text), "13 XTarn4x: Type mismatch") << text;
    }
}

TEST(Booleans, AreNumbersOrWords) {
    for (const char* text : {"1", "-1", "0.5", "True", "TRUE", " true "}) EXPECT_TRUE(ToBoolean(text)) << text;
    for (const char* text : {"0", "0.0", "-0", "False", "fAlSe"}) EXPECT_FALSE(ToBoolean(text)) << text;
    for (const char* text : {"", "yes", "1x", "Tru"}) {
        EXPECT_OUTCOME(ToBoolean(text), "13 XTarn4x: Type mismatch") << text;
    }
}

TEST(Dates, CountDaysFromTheEndOf1899) {
    const struct {
        int Year, Month, Day;
        Date Days;
    } days[] = {{1899, 12, 30, 0}, {1900, 1, 1, 2}, {1970, 1, 1, 25569}, {2026, 3, 15, 46096}, {1899, 12, 29, -1}};
    for (const auto& d : days) {
        EXPECT_DOUBLE_EQ(DateFromDay(d.Year, d.Month, d.Day), d.Days) << d.Year;
        const auto day = DayOf(d.Days);
        EXPECT_THAT((std::vector{day.Year, day.Month, day.Day}), ElementsAre(d.Year, d.Month, d.Day));
    }
    EXPECT_DOUBLE_EQ(DateFromDay(26, 3, 15), 46096.0);  // two digits
    EXPECT_DOUBLE_EQ(DateFromDay(29, 1, 1), DateFromDay(2029, 1, 1));
    EXPECT_DOUBLE_EQ(DateFromDay(30, 1, 1), DateFromDay(1930, 1, 1));
    EXPECT_DOUBLE_EQ(DateFromDay(2026, 14, 1), DateFromDay(2027, 2, 1));  // carries
    EXPECT_DOUBLE_EQ(DateFromDay(2026, 3, 0), DateFromDay(2026, 2, 28));
    EXPECT_DOUBLE_EQ(DateFromTime(25, 0, 0), 25.0 / 24.0);
    EXPECT_DOUBLE_EQ(DateFromTime(0, 90, 0), 0.0625);
}

TEST(Dates, GiveTheTimeOfDayToTheNearestSecond) {
    const struct {
        Date Days;
        int Hour, Minute, Second;
    } cases[] = {{0.0, 0, 0, 0},
                 {0.378553240740741, 9, 5, 7},
                 {46096.75, 18, 0, 0},
                 {-1.25, 6, 0, 0},       // a negative date's time still runs forwards
                 {0.9999999, 0, 0, 0}};  // rounds into the next day
    for (const auto& c : cases) {
        const auto time = TimeOf(c.Days);
        EXPECT_THAT((std::vector{time.Hour, time.Minute, time.Second}), ElementsAre(c.Hour, c.Minute, c.Second));
    }
    EXPECT_EQ(DayOf(46095.9999999).Day, 15);
}
