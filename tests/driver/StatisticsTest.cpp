#include "driver/members/clsStatistics.h"
#include "tests/driver/Bench.h"

using namespace tarn4x::test;

const std::string Query = "READ:DVBT:ALAR:STAT?",
                  Report = "1:30:00,0:0:1,-,0:1:0,-,1:0:0,-,24:0:0,-,x:5,-,90,-,1,2,5,3";

std::string With(std::size_t field, const std::string& text, std::size_t fields = 16) {
    std::string report;
    for (std::size_t i = 0; i < fields; ++i) {
        report += (i == 0 ? "" : ",") + (i == field ? text : i > 12 ? std::to_string(i) : std::string("1:0:0"));
    }
    return report;
}

TEST(Statistics, DecodesItsReport) {
    Bench bench(Query + " = \"" + Report + '"');
    const auto statistics = bench->get_AlarmStatistics();
    EXPECT_EQ(statistics->get_Statistics(), Report);
    const double durations[] = {statistics->get_MonitoringTime(),  statistics->get_Level(),
                                statistics->get_Synchronisation(), statistics->get_ModErrorRatio(),
                                statistics->get_BerBeforeVit(),    statistics->get_BerBeforeRs(),
                                statistics->get_BerAfterRs(),      statistics->get_MpegDataErrorTime()};
    EXPECT_THAT(durations, testing::Pointwise(testing::DoubleEq(), {0.0625, 1.0 / 86400.0, 1.0 / 1440.0, 1.0 / 24.0,
                                                                    1.0, 5.0 / 1440.0, 0.0, 3.75}));
    EXPECT_DOUBLE_EQ(statistics->get_CorrCntBeforeVit(), 1.0);
    EXPECT_DOUBLE_EQ(statistics->get_CorrCntBeforeRs(), 2.0);
    EXPECT_DOUBLE_EQ(statistics->get_MpegDataErrorCntAfterRs(), 5.0);
    EXPECT_EQ(bench.world->Drains, 1);
}

TEST(Statistics, DecodesDurations) {
    const std::pair<const char*, double> hours[] = {
        {"1:30:00", 1.5}, {"90", 90},       {"x:5", 5.0 / 60},
        {"---", 0},       {"25:00:00", 25}, {"0:90:90", 1.525},
        {"2.5", 2},       {"3.5", 4},       {"1:2:3:4", 1 + 2.0 / 60 + 3.0 / 3600},
        {":5", 5.0 / 60}};
    clsStatistics statistics(std::make_shared<FakeFramework>());
    for (const auto& [text, expected] : hours) {
        statistics.put_Statistics(With(0, text));
        EXPECT_DOUBLE_EQ(statistics.get_MonitoringTime(), expected / 24.0) << text;
    }
}

TEST(Statistics, RaisesAtTheFirstBadFieldAndKeepsWhatCameBefore) {
    const std::string subscript = "9 XTarn4x: Subscript out of range", mismatch = "13 XTarn4x: Type mismatch";
    const std::pair<std::string, std::string> cases[] = {
        {With(1, ""), subscript},      {With(1, "40000"), "6 XTarn4x: Overflow"},
        {With(14, "x"), mismatch},     {With(99, "", 15), subscript},
        {With(99, "", 11), subscript}, {"", subscript},
        {With(15, ""), mismatch},      {With(15, "--- "), mismatch}};
    for (const auto& [report, outcome] : cases) {
        clsStatistics statistics(std::make_shared<FakeFramework>());
        EXPECT_OUTCOME(statistics.put_Statistics(report), outcome) << report;
        EXPECT_EQ(statistics.get_Statistics(), report);
        EXPECT_DOUBLE_EQ(statistics.get_MonitoringTime(), report.empty() ? 0.0 : 1.0 / 24.0);
    }
    clsStatistics statistics(std::make_shared<FakeFramework>());
    statistics.put_Statistics(With(14, "7"));
    statistics.put_Statistics(With(14, "---"));
    EXPECT_DOUBLE_EQ(statistics.get_CorrCntBeforeRs(), 7.0) << "the count of the earlier report";
    EXPECT_OUTCOME(statistics.put_Statistics(With(99, "", 15)), subscript);
    EXPECT_DOUBLE_EQ(statistics.get_CorrCntBeforeRs(), 14.0);
}

TEST(AlarmStatistics, ReportsFailuresAndReturnsANewObjectEachTime) {
    Bench bench;
    CHECK(bench, Query + " = " + With(99, "", 15), get_AlarmStatistics() != nullptr, GetFailed("AlarmStatistics"));
    bench.Expect("2 x " + Query + " = " + Report);
    const auto first = bench->get_AlarmStatistics();
    EXPECT_NE(first, bench->get_AlarmStatistics());
}

TEST(AlarmRegisterClear, WaitsForTheInstrument) {
    Bench bench;
    CHECK(bench, "CONF:DVBT:ALAR:RES", AlarmRegisterClear(), Done);
    EXPECT_THAT(bench.world->Delays, ElementsAre(3.0F));
}
