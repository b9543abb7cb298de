#include "statistics/clsStatistics.h"
#include "tests/core/Bench.h"

namespace tarn4x::test {
namespace {

constexpr auto Query = "READ:DVBT:ALAR:STAT?";
constexpr auto Report = "1:30:00,0:0:1,-,0:1:0,-,1:0:0,-,24:0:0,-,x:5,-,90,-,1,2,5,3";

std::string With(std::size_t field, const std::string& text, std::size_t fields = 16) {
    std::string report;
    for (std::size_t i = 0; i < fields; ++i) {
        report += (i == 0 ? "" : ",") + (i == field ? text : i > 12 ? std::to_string(i) : std::string("1:0:0"));
    }
    return report;
}

TEST(Statistics, DecodesItsReport) {
    Bench bench{{{Query, std::string("\"") + Report + '"'}}};
    const auto statistics = bench.driver.get_AlarmStatistics();
    EXPECT_EQ(statistics->get_Statistics(), Report);
    EXPECT_DOUBLE_EQ(statistics->get_MonitoringTime(), 0.0625);
    EXPECT_DOUBLE_EQ(statistics->get_Level(), 1.0 / 86400.0);
    EXPECT_DOUBLE_EQ(statistics->get_Synchronisation(), 1.0 / 1440.0);
    EXPECT_DOUBLE_EQ(statistics->get_ModErrorRatio(), 1.0 / 24.0);
    EXPECT_DOUBLE_EQ(statistics->get_BerBeforeVit(), 1.0);
    EXPECT_DOUBLE_EQ(statistics->get_BerBeforeRs(), 5.0 / 1440.0);
    EXPECT_DOUBLE_EQ(statistics->get_BerAfterRs(), 0.0);
    EXPECT_DOUBLE_EQ(statistics->get_MpegDataErrorTime(), 3.75);
    EXPECT_DOUBLE_EQ(statistics->get_CorrCntBeforeVit(), 1.0);
    EXPECT_DOUBLE_EQ(statistics->get_CorrCntBeforeRs(), 2.0);
    EXPECT_DOUBLE_EQ(statistics->get_MpegDataErrorCntAfterRs(), 5.0);
    EXPECT_EQ(bench.world->Drains, 1);
}

TEST(Statistics, DecodesDurations) {
    const struct {
        const char* Text;
        double Hours;
    } cases[] = {{"1:30:00", 1.5}, {"90", 90},       {"x:5", 5.0 / 60},
                 {"---", 0},       {"25:00:00", 25}, {"0:90:90", 1.525},
                 {"2.5", 2},       {"3.5", 4},       {"1:2:3:4", 1 + 2.0 / 60 + 3.0 / 3600},
                 {":5", 5.0 / 60}};
    for (const auto& c : cases) {
        clsStatistics statistics(std::make_shared<FakeFramework>());
        statistics.put_Statistics(With(0, c.Text));
        EXPECT_DOUBLE_EQ(statistics.get_MonitoringTime(), c.Hours / 24.0) << c.Text;
    }
}

TEST(Statistics, RaisesAtTheFirstBadFieldAndKeepsWhatCameBefore) {
    const struct {
        std::string Report;
        int Number;
    } cases[] = {{With(1, ""), 9},      {With(1, "40000"), 6}, {With(14, "x"), 13},
                 {With(99, "", 15), 9}, {With(99, "", 11), 9}, {"", 9},
                 {With(15, ""), 13},    {With(15, "--- "), 13}};
    for (const auto& c : cases) {
        clsStatistics statistics(std::make_shared<FakeFramework>());
        EXPECT_EQ(Raised([&] { statistics.put_Statistics(c.Report); }).Number, c.Number) << c.Report;
        EXPECT_EQ(statistics.get_Statistics(), c.Report);
        EXPECT_DOUBLE_EQ(statistics.get_MonitoringTime(), c.Report.empty() ? 0.0 : 1.0 / 24.0);
    }
    clsStatistics statistics(std::make_shared<FakeFramework>());
    statistics.put_Statistics(With(14, "7"));
    statistics.put_Statistics(With(14, "---"));
    EXPECT_DOUBLE_EQ(statistics.get_CorrCntBeforeRs(), 7.0) << "the count of the earlier report";
    EXPECT_EQ(Raised([&] { statistics.put_Statistics(With(99, "", 15)); }).Number, 9);
    EXPECT_DOUBLE_EQ(statistics.get_CorrCntBeforeRs(), 14.0);
}

TEST(AlarmStatistics, ReportsFailuresAndReturnsANewObjectEachTime) {
    Bench bench{{{Query, With(99, "", 15)}, {Query, TransportFailure(2012)}, {Query, Report}, {Query, Report}}};
    EXPECT_RAISES(bench.driver.get_AlarmStatistics(), 0x800407D4, "clsTarn4x.AlarmStatistics",
                  "Get AlarmStatistics failed");
    EXPECT_RAISES(bench.driver.get_AlarmStatistics(), 0x800407D4, "clsTarn4x.AlarmStatistics",
                  "Get AlarmStatistics failed.  Error : 0,\"No error\"");
    const auto first = bench.driver.get_AlarmStatistics();
    EXPECT_NE(first, bench.driver.get_AlarmStatistics());
}

TEST(AlarmRegisterClear, WaitsForTheInstrument) {
    Bench bench{{{"CONF:DVBT:ALAR:RES"}, {"CONF:DVBT:ALAR:RES", TransportFailure(2014)}}};
    bench.driver.AlarmRegisterClear();
    EXPECT_THAT(bench.world->Delays, testing::ElementsAre(3.0F));
    EXPECT_RAISES(bench.driver.AlarmRegisterClear(), 0x800407D5, "clsTarn4x.AlarmRegisterClear",
                  "AlarmRegisterClear method failed");
}

}  // namespace
}  // namespace tarn4x::test
