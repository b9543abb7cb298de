#include <cmath>

#include "tests/driver/Bench.h"

using namespace tarn4x::test;

TEST(Mode, OnlySelectsDvbT) {
    Bench bench;
    CHECK(bench, "SYST:MODE DVBT", put_Mode(tarnDVBT), Done);
    EXPECT_THAT(bench.world->TimeoutsSet, ElementsAre(10.0F, 5.0F));
    EXPECT_THAT(bench.world->Delays, ElementsAre(10.0F));
    for (const auto& [mode, text] : Words("0=0 | 16=16 | -5=-5 | 1=NYQI | 4=QAM | 12=M83C | 14=ATSC | 15=NTSC")) {
        CHECK(bench, "", put_Mode(TarnModes(mode)), "+380 .Mode: Invalid property value (Mode = " + text + ")");
    }
}

TEST(Mode, IsAskedEveryTime) {
    Bench bench;
    CHECK(bench, "SYST:MODE? = \"J83B\"", get_Mode(), tarnJ83B);
    CHECK(bench, "SYST:MODE? = DVBT", get_Mode(), tarnDVBT);
    CHECK(bench, "SYST:MODE? = xDVBT", get_Mode(), "+380 .Mode: Device reported an unrecognised mode (xDVBT)");
}

TEST(MeasureMode, IsServedFromTheCacheAfterTheFirstRead) {
    Bench bench, undefined;
    CHECK(bench, "SENS:DVBT:MEAS? = IR_2", get_MeasureMode(), tarnIR_2);
    CHECK(bench, "", get_MeasureMode(), tarnIR_2);
    EXPECT_EQ(bench->get_Prefix(), "---");
    CHECK(undefined, "SENS:DVBT:MEAS? = 10 dB", get_MeasureMode(),
          "+380 .MeasureMode: Device reported an unrecognised measurement mode (10 dB)");
    CHECK(undefined, "SENS:DVBT:MEAS? = 0", get_MeasureMode(), tarnUndefined);
    CHECK(undefined, "", get_MeasureMode(), tarnUndefined);
}

TEST(MeasureMode, IsWrittenWithALongTimeoutAndRemembered) {
    for (const auto& [mode, token] : Words("0=NORM | 3=MPCT | 9=SP_1 | 14=IR_1 | 19=CENV")) {
        Bench bench;
        CHECK(bench, "SENS:DVBT:MEAS " + token, put_MeasureMode(TarnMeasureModes(mode)), Done);
        EXPECT_THAT(bench.world->TimeoutsSet, ElementsAre(100.0F, 5.0F));
        EXPECT_THAT(bench.world->Delays, ElementsAre(3.0F));
        CHECK(bench, "", get_MeasureMode(), mode);
    }
    Bench bench;
    for (const int mode : {-1, 20}) {
        CHECK(bench, "", put_MeasureMode(TarnMeasureModes(mode)),
              "+380 .MeasureMode: Invalid property value (MeasureMode = " + Text(mode) + ")");
    }
}

TEST(Modes, LeaveTheTimeoutRaisedWhenTheyFail) {
    Bench bench;
    CHECK(bench, "SENS:DVBT:MEAS PAR ! 2014", put_MeasureMode(tarnPAR), LetFailed("MeasureMode"));
    EXPECT_FLOAT_EQ(bench.world->Timeout, 100.0F);
    CHECK(bench, "SENS:DVBT:MEAS? = HIST", get_MeasureMode(), tarnHIST);  // the cache was left alone
    CHECK(bench, "SYST:MODE DVBT ! 2014", put_Mode(tarnDVBT), LetFailed("Mode"));
    EXPECT_FLOAT_EQ(bench.world->Timeout, 10.0F);
    CHECK(bench, "SENS:DVBT:MEAS? = PAR", get_MeasureMode(), tarnPAR);  // forgotten with the standard
    EXPECT_THAT(bench.world->Delays, IsEmpty());
}

TEST(RF, IsWrittenInTenthsOfAHertzBehindTwoBlanks) {
    const std::string invalid = "+380 .RF: Invalid property value (RF = ";
    Bench bench;
    CHECK(bench, "SENS:FREQ:CENT  474000000", put_RF(474000000.0), Done);
    CHECK(bench, "SENS:FREQ:CENT  474000000.3", put_RF(474000000.25), Done);
    CHECK(bench, "SENS:FREQ:CENT  3000000", put_RF(3000000.0), Done);
    CHECK(bench, "SENS:FREQ:CENT  10000000009", put_RF(10000000009.0), Done);
    CHECK(bench, "", put_RF(2999999.9), invalid + "2999999.9 Hz)");
    CHECK(bench, "", put_RF(10000000009.5), invalid + "10000000009.5 Hz)");
    CHECK(bench, "", put_RF(-1e20), invalid + "-1E+20 Hz)");
    CHECK(bench, "", put_RF(std::nan("")), invalid + "nan Hz)");
    EXPECT_THAT(bench.world->Delays, IsEmpty());
    CHECK(bench, "SENS:FREQ:CENT? = --- | SENS:FREQ:CENT? = 474000000.3", get_RF(), 474000000.3);
    CHECK(bench, "SENS:FREQ:CENT? = none", get_RF(), 0);
}

TEST(Modes, AreZeroWhenTheUserHasAskedToStop) {
    Bench bench;
    bench.world->Abort = true;
    CHECK(bench, "SYST:MODE? = DVBT", get_Mode(), 0);
    CHECK(bench, "SENS:DVBT:MEAS? = PAR", get_MeasureMode(), tarnNORM);
    CHECK(bench, "SENS:FREQ:CENT? = 1", get_RF(), 0);
    bench.world->Abort = false;
    CHECK(bench, "SENS:DVBT:MEAS? = PAR", get_MeasureMode(), tarnPAR);  // nothing was cached
}
