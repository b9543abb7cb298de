#include "tests/core/Bench.h"

namespace tarn4x::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

TEST(Mode, OnlySelectsDvbT) {
    Bench bench{{"SYST:MODE DVBT"}};
    bench.driver.put_Mode(tarnDVBT);
    EXPECT_THAT(bench.world->TimeoutsSet, ElementsAre(10.0F, 5.0F));
    EXPECT_THAT(bench.world->Delays, ElementsAre(10.0F));
    const struct {
        int Value;
        const char* Text;
    } refused[] = {{0, "0"}, {16, "16"}, {-5, "-5"}, {1, "NYQI"}, {4, "QAM"}, {12, "M83C"}, {14, "ATSC"}, {15, "NTSC"}};
    for (const auto& r : refused) {
        EXPECT_RAISES(bench.driver.put_Mode(static_cast<TarnModes>(r.Value)), 0x8004017C, "clsTarn4x.Mode",
                      std::string("Invalid property value (Mode = ") + r.Text + ")");
    }
}

TEST(Mode, IsAskedEveryTime) {
    Bench bench{{{"SYST:MODE?", "\"J83B\""}, {"SYST:MODE?", "DVBT"}, {"SYST:MODE?", "xDVBT"}}};
    EXPECT_EQ(bench.driver.get_Mode(), tarnJ83B);
    EXPECT_EQ(bench.driver.get_Mode(), tarnDVBT);
    EXPECT_RAISES(bench.driver.get_Mode(), 0x8004017C, "clsTarn4x.Mode",
                  "Device reported an unrecognised mode (xDVBT)");
}

TEST(MeasureMode, IsServedFromTheCacheAfterTheFirstRead) {
    Bench bench{{{"SENS:DVBT:MEAS?", "IR_2"}}};
    EXPECT_EQ(bench.driver.get_MeasureMode(), tarnIR_2);
    EXPECT_EQ(bench.driver.get_MeasureMode(), tarnIR_2);
    EXPECT_EQ(bench.driver.get_Prefix(), "---");
}

TEST(MeasureMode, RefusesAnAnswerItDoesNotKnow) {
    Bench bench{{{"SENS:DVBT:MEAS?", "10 dB"}, {"SENS:DVBT:MEAS?", "0"}}};
    EXPECT_RAISES(bench.driver.get_MeasureMode(), 0x8004017C, "clsTarn4x.MeasureMode",
                  "Device reported an unrecognised measurement mode (10 dB)");
    EXPECT_EQ(bench.driver.get_MeasureMode(), tarnUndefined);
    EXPECT_EQ(bench.driver.get_MeasureMode(), tarnUndefined) << "cached as well";
}

TEST(MeasureMode, IsWrittenWithALongTimeoutAndRemembered) {
    const struct {
        TarnMeasureModes Mode;
        const char* Token;
    } cases[] = {{tarnNORM, "NORM"}, {tarnMPCT, "MPCT"}, {tarnSP_1, "SP_1"}, {tarnIR_1, "IR_1"}, {tarnCENV, "CENV"}};
    for (const auto& c : cases) {
        Bench bench{{std::string("SENS:DVBT:MEAS ") + c.Token}};
        bench.driver.put_MeasureMode(c.Mode);
        EXPECT_THAT(bench.world->TimeoutsSet, ElementsAre(100.0F, 5.0F));
        EXPECT_THAT(bench.world->Delays, ElementsAre(3.0F));
        EXPECT_EQ(bench.driver.get_MeasureMode(), c.Mode);
    }
    Bench bench;
    for (const int value : {-1, 20}) {
        EXPECT_RAISES(bench.driver.put_MeasureMode(static_cast<TarnMeasureModes>(value)), 0x8004017C,
                      "clsTarn4x.MeasureMode", "Invalid property value (MeasureMode = " + std::to_string(value) + ")");
    }
}

TEST(Modes, LeaveTheTimeoutRaisedWhenTheyFail) {
    Bench bench{{{"SENS:DVBT:MEAS PAR", TransportFailure(2014)},
                 {"SENS:DVBT:MEAS?", "HIST"},
                 {"SYST:MODE DVBT", TransportFailure(2014)},
                 {"SENS:DVBT:MEAS?", "PAR"}}};
    EXPECT_RAISES(bench.driver.put_MeasureMode(tarnPAR), 0x800407D5, "clsTarn4x.MeasureMode", "Let MeasureMode failed");
    EXPECT_FLOAT_EQ(bench.world->Timeout, 100.0F);
    EXPECT_EQ(bench.driver.get_MeasureMode(), tarnHIST) << "a failed write leaves the cache alone";
    EXPECT_RAISES(bench.driver.put_Mode(tarnDVBT), 0x800407D5, "clsTarn4x.Mode", "Let Mode failed");
    EXPECT_FLOAT_EQ(bench.world->Timeout, 10.0F);
    EXPECT_EQ(bench.driver.get_MeasureMode(), tarnPAR) << "a change of standard forgets the measure mode";
    EXPECT_THAT(bench.world->Delays, IsEmpty());
}

TEST(RF, IsWrittenInTenthsOfAHertzBehindTwoBlanks) {
    const struct {
        double Hz;
        const char* Command;
    } cases[] = {{474000000.0, "SENS:FREQ:CENT  474000000"},
                 {474000000.25, "SENS:FREQ:CENT  474000000.3"},
                 {3000000.0, "SENS:FREQ:CENT  3000000"},
                 {10000000009.0, "SENS:FREQ:CENT  10000000009"}};
    for (const auto& c : cases) {
        Bench bench{{c.Command}};
        bench.driver.put_RF(c.Hz);
        EXPECT_THAT(bench.world->Delays, IsEmpty());
    }
    Bench bench;
    for (const auto& [hz, text] :
         {std::pair(2999999.9, "2999999.9"), std::pair(10000000009.5, "10000000009.5"), std::pair(-1e20, "-1E+20")}) {
        EXPECT_RAISES(bench.driver.put_RF(hz), 0x8004017C, "clsTarn4x.RF",
                      std::string("Invalid property value (RF = ") + text + " Hz)");
    }
    EXPECT_NE(Raised([&] { bench.driver.put_RF(std::nan("")); }).Number, 0);
}

TEST(RF, IsReadInHertz) {
    Bench bench{{{"SENS:FREQ:CENT?", "---"}, {"SENS:FREQ:CENT?", "474000000.3"}, {"SENS:FREQ:CENT?", "none"}}};
    EXPECT_DOUBLE_EQ(bench.driver.get_RF(), 474000000.3);
    EXPECT_DOUBLE_EQ(bench.driver.get_RF(), 0.0);
}

TEST(Modes, AreZeroWhenTheUserHasAskedToStop) {
    Bench bench{{{"SYST:MODE?", "DVBT"}, {"SENS:DVBT:MEAS?", "PAR"}, {"SENS:FREQ:CENT?", "1"}}};
    bench.world->Abort = true;
    EXPECT_EQ(bench.driver.get_Mode(), 0);
    EXPECT_EQ(bench.driver.get_MeasureMode(), tarnNORM);
    EXPECT_DOUBLE_EQ(bench.driver.get_RF(), 0.0);
    bench.world->Abort = false;
    bench.Expect({{"SENS:DVBT:MEAS?", "PAR"}});
    EXPECT_EQ(bench.driver.get_MeasureMode(), tarnPAR) << "nothing was cached";
}

}  // namespace
}  // namespace tarn4x::test
