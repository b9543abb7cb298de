#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "core/Conversions.h"
#include "core/Dates.h"
#include "platform/AutomationError.h"
#include "platform/Value.h"

namespace tarn4x {
namespace {

TEST(LeadingNumber, TakesTheLongestNumberInFront) {
    const struct {
        const char* Text;
        double Number;
    } cases[] = {
        {"", 0.0},
        {"12.5dB", 12.5},
        {"1.2E-07", 0.00000012},
        {"1.2d3", 1200.0},
        {" 1 2\t.\n5 E 1", 125.0},
        {"-3.5", -3.5},
        {"- 3", -3.0},
        {"+7", 7.0},
        {".5", 0.5},
        {"5.", 5.0},
        {"1.2.3", 1.2},
        {"1,5", 1.0},
        {"under 3.5", 0.0},
        {"-", 0.0},
        {".", 0.0},
        {"E5", 0.0},
        {"12E", 12.0},
        {"12E+", 12.0},
        {"12Ex", 12.0},
        {"1\r2", 1.0},
        {"--5", 0.0},
        {"1e400", std::numeric_limits<double>::max()},
        {"-1e400", -std::numeric_limits<double>::max()},
        {"1e-400", 0.0},
        {"0x10", 0.0},
        {"inf", 0.0},
        {"nan", 0.0},
    };
    for (const auto& c : cases) EXPECT_DOUBLE_EQ(LeadingNumber(c.Text), c.Number) << c.Text;
}

TEST(GeneralNumber, HasFifteenDigitsAndAPoint) {
    const struct {
        double Number;
        const char* Text;
    } cases[] = {
        {0.0, "0"},
        {-0.0, "0"},
        {2999999.9, "2999999.9"},
        {10000000009.5, "10000000009.5"},
        {56.01, "56.01"},
        {0.1 + 0.2, "0.3"},
        {1.0 / 3.0, "0.333333333333333"},
        {1e14, "100000000000000"},
        {999999999999999.0, "999999999999999"},
        {1e15, "1E+15"},
        {1.5e20, "1.5E+20"},
        {0.0001, "0.0001"},
        {0.00001, "1E-05"},
        {-1.25e-7, "-1.25E-07"},
        {-12.0, "-12"},
        {0.00012345678901234567, "0.000123456789012346"},
        {1e100, "1E+100"},
    };
    for (const auto& c : cases) EXPECT_EQ(platform::GeneralNumber(c.Number), c.Text);
    EXPECT_EQ(SignedNumber(474000000.3), " 474000000.3");
    EXPECT_EQ(SignedNumber(-1.0), "-1");
}

TEST(RoundDecimals, RoundsTheDecimalTextHalfAwayFromZero) {
    const struct {
        double Number;
        int Decimals;
        double Rounded;
    } cases[] = {
        {1.005, 2, 1.01},
        {-1.005, 2, -1.01},
        {474000000.25, 1, 474000000.3},
        {0.05, 1, 0.1},
        {0.04, 1, 0.0},
        {0.005, 2, 0.01},
        {0.004, 2, 0.0},
        {266.0, 2, 266.0},
        {99.95, 1, 100.0},
        {1e15, 1, 1e15},
        {-448.0, 2, -448.0},
        {1e-20, 2, 0.0},
        {134.499, 2, 134.5},
        {3000000.0, 1, 3000000.0},
    };
    for (const auto& c : cases) EXPECT_DOUBLE_EQ(RoundDecimals(c.Number, c.Decimals), c.Rounded) << c.Number;
}

TEST(Integers, RoundHalvesToEvenAndOverflow) {
    EXPECT_EQ(ToInteger(2.5), 2);
    EXPECT_EQ(ToInteger(3.5), 4);
    EXPECT_EQ(ToInteger(-2.5), -2);
    EXPECT_EQ(ToInteger(32767.4), 32767);
    EXPECT_EQ(ToLong(2147483647.4), 2147483647);
    EXPECT_EQ(ToInteger(std::string_view(" 12 ")), 12);
    for (const double outside : {32767.5, -32768.6, 1e300, std::nan("")}) {
        EXPECT_THROW(ToInteger(outside), platform::AutomationError) << outside;
    }
    EXPECT_THROW(ToLong(2147483648.0), platform::AutomationError);
    for (const char* text : {"", "5 dB", "x", "1,5", "+-5", "inf"}) {
        EXPECT_THROW(ToInteger(std::string_view(text)), platform::AutomationError) << text;
    }
}

TEST(Booleans, AreNumbersOrWords) {
    for (const char* text : {"1", "-1", "0.5", "True", "TRUE", " true "}) EXPECT_TRUE(ToBoolean(text)) << text;
    for (const char* text : {"0", "0.0", "-0", "False", "fAlSe"}) EXPECT_FALSE(ToBoolean(text)) << text;
    for (const char* text : {"", "yes", "1x", "Tru"}) {
        try {
            ToBoolean(text);
            ADD_FAILURE() << text;
        } catch (const platform::AutomationError& error) {
            EXPECT_EQ(error.Number, 13);
        }
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
        EXPECT_EQ(day.Year, d.Year);
        EXPECT_EQ(day.Month, d.Month);
        EXPECT_EQ(day.Day, d.Day);
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
        EXPECT_EQ(time.Hour, c.Hour) << c.Days;
        EXPECT_EQ(time.Minute, c.Minute) << c.Days;
        EXPECT_EQ(time.Second, c.Second) << c.Days;
    }
    EXPECT_EQ(DayOf(46095.9999999).Day, 15);
}

}  // namespace
}  // namespace tarn4x
