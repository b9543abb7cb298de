#include "driver/members/clsStatistics.h"
#include "tests/driver/Bench.h"

using namespace tarn4x::test;

const std::string Times = "1:0:0,90,-,x:5,-,0:90:90,-,25:00:00,-,2.5,-,3.5,-,";

TEST(Statistics, AreDurationsAndCounts) {
    clsStatistics statistics(std::make_shared<World>());
    const auto values = [&] {
        std::vector values{statistics.get_MonitoringTime(),    statistics.get_Level(),
                           statistics.get_Synchronisation(),   statistics.get_ModErrorRatio(),
                           statistics.get_BerBeforeVit(),      statistics.get_BerBeforeRs(),
                           statistics.get_MpegDataErrorTime(), statistics.get_BerAfterRs()};
        for (double& value : values) value *= 1440;  // minutes
        values.insert(values.end(), {statistics.get_CorrCntBeforeVit(), statistics.get_CorrCntBeforeRs(),
                                     statistics.get_MpegDataErrorCntAfterRs()});
        return values;
    };
    using testing::DoubleEq, testing::Pointwise;
    EXPECT_THAT(values(), testing::Each(0.0));
    statistics.put_Statistics(Times + "1,2.5,3");
    EXPECT_THAT(values(), Pointwise(DoubleEq(), {60.0, 5400.0, 5.0, 91.5, 1500.0, 120.0, 240.0, 0.0, 1.0, 2.5, 3.0}));
    statistics.put_Statistics("1:2:3:4,---,-,:5,-,0,-,0,-,0,-,0,-,---,---,4");
    EXPECT_THAT(values(), Pointwise(DoubleEq(), {62.05, 0.0, 5.0, 0.0, 0.0, 0.0, 0.0, 0.0, 1.0, 2.5, 4.0}));
}

TEST(Statistics, RaiseAtTheFirstBadFieldAndKeepWhatCameBefore) {
    const std::string subscript = "9 XTarn4x: Subscript out of range", mismatch = "13 XTarn4x: Type mismatch",
                      overflow = "6 XTarn4x: Overflow";
    const std::pair<std::string, std::string> cases[] = {
        {"1:0:0,", subscript},       {"1:0:0,40000", overflow},      {"1:0:0,0:0:0", subscript},
        {Times + "1E400", overflow}, {Times + "1,x", mismatch},      {Times + "1,2", subscript},
        {Times + "1,2,", mismatch},  {Times + "1,2,--- ", mismatch}, {"", subscript}};
    for (const auto& [report, outcome] : cases) {
        clsStatistics statistics(std::make_shared<World>());
        EXPECT_OUTCOME(statistics.put_Statistics(report), outcome) << report;
        EXPECT_EQ(statistics.get_Statistics(), report);
        EXPECT_DOUBLE_EQ(statistics.get_MonitoringTime(), report.empty() ? 0.0 : 1.0 / 24.0);
    }
}

TEST(AlarmStatistics, AreANewObjectEachTime) {
    Bench bench("2 x READ:DVBT:ALAR:STAT? = " + Times + "1,2,3");
    EXPECT_NE(bench->get_AlarmStatistics(), bench->get_AlarmStatistics());
    CHECK(bench, "CONF:DVBT:ALAR:RES", AlarmRegisterClear(), Done);
    EXPECT_THAT(bench.world->Delays, ElementsAre(3.0F));
}
