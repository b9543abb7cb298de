#include "tests/driver/Bench.h"

using namespace tarn4x::test;

/// What takes the instrument long.
const struct {
    std::string Command;
    void (*Send)(clsTarn4x&);
    float Timeout, Pause;
    std::string Failure;
    bool GivesTimeoutBack = false;  // although the command has failed
} Changes[] = {
    {"SYST:RES", [](clsTarn4x& d) { d.Reset(); }, 100.0F, 15.0F, "+2005 .Reset: Reset failed", true},
    {"SYST:MODE DVBT", [](clsTarn4x& d) { d.put_Mode(tarnDVBT); }, 10.0F, 10.0F, "+2005 .Mode: Let Mode failed"},
    {"SENS:DVBT:MEAS PAR", [](clsTarn4x& d) { d.put_MeasureMode(tarnPAR); }, 100.0F, 3.0F,
     "+2005 .MeasureMode: Let MeasureMode failed"}};

TEST(Modes, TakeTheirTime) {
    for (const auto& change : Changes) {
        Bench good(change.Command), bad(change.Command + " ! 2014");
        EXPECT_OUTCOME(change.Send(good.driver), Done);
        EXPECT_THAT(good.world->TimeoutsSet, ElementsAre(change.Timeout, 5.0F)) << change.Command;
        EXPECT_THAT(good.world->Delays, ElementsAre(change.Pause)) << change.Command;
        EXPECT_OUTCOME(change.Send(bad.driver), change.Failure);
        EXPECT_EQ(bad.world->Timeout, change.GivesTimeoutBack ? 5.0F : change.Timeout) << change.Command;
        EXPECT_THAT(bad.world->Delays, IsEmpty()) << change.Command;
    }
}

// The other transport has a time-out of its own.
TEST(Modes, MeetADriverThatGoesOffLineOrOnLineAgainWhileTheyWait) {
    for (const auto& change : Changes) {
        for (int i = 0; i < 4; ++i) {
            const bool sent = i / 2 == 1, again = i % 2 == 1;
            Bench bench(sent ? change.Command : "SYST:ERR? ! 2015");  // which is asked again a second later
            bench.Expect(again ? "SYST:LOC | *CLS;*SRE 0;*ESE 0 | SYST:REM" : "SYST:LOC");
            if (again && !sent) bench.Expect(change.Command);
            bench.world->AtDelay = [&] {
                bench->put_IDriverSetup_OnLine(false);
                if (again) bench->put_IDriverSetup_OnLine(true);
            };
            EXPECT_OUTCOME(change.Send(bench.driver), sent || again ? Done : change.Failure);
            std::vector<float> timeouts{change.Timeout};
            if (sent) timeouts.push_back(5.0F);
            if (again) timeouts.push_back(5.0F);
            EXPECT_EQ(bench.world->TimeoutsSet, timeouts) << change.Command << i;
        }
    }
}

TEST(Modes, AreForgottenWithWhatElseTheDriverKnows) {
    Bench bench(tarnPAR);
    CHECK(bench, "*IDN? = one", get_Identity(), "one");
    CHECK(bench, "SYST:RES", Reset(), Done);
    CHECK(bench, "SENS:DVBT:MEAS? = PAR", get_MeasureMode(), tarnPAR);
    CHECK(bench, "SYST:MODE DVBT ! 2014", put_Mode(tarnDVBT), Changes[1].Failure);
    CHECK(bench, "SENS:DVBT:MEAS? = HIST", get_MeasureMode(), tarnHIST);
    CHECK(bench, "*IDN? = other", get_Identity(), "other");
}

TEST(MeasureMode, IsRememberedOnceItIsKnown) {
    Bench bench, undefined;
    CHECK(bench, "SENS:DVBT:MEAS IR_2", put_MeasureMode(tarnIR_2), Done);
    CHECK(bench, "SENS:DVBT:MEAS PAR ! 2014", put_MeasureMode(tarnPAR), Changes[2].Failure);
    CHECK(bench, "READ:RF:LEVEL? = <1", get_MeasureRfLevel(), 1);
    CHECK(bench, "", get_MeasureMode(), tarnIR_2);
    EXPECT_EQ(bench->get_Prefix(), "---");
    CHECK(undefined, "SENS:DVBT:MEAS? = 10 dB", get_MeasureOfdmMerRmsDb(),  // as MeasureMode raised it
          "+380 .MeasureMode: Device reported an unrecognised measurement mode (10 dB)");
    CHECK(undefined, "SENS:DVBT:MEAS? = 0", get_MeasureMode(), tarnUndefined);
    CHECK(undefined, "", get_MeasureMode(), tarnUndefined);
    CHECK(undefined, "", get_MeasureFrequencyOffset(),
          "+2016 .MeasureFrequencyOffset: Wrong measurement mode selected");
}
