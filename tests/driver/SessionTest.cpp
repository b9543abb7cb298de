#include "driver/SerialPorts.h"
#include "tests/driver/Bench.h"

using namespace tarn4x::test;

const std::string GoingOnLine = "*CLS;*SRE 0;*ESE 0 | SYST:REM";

TEST(GoingOnLine, OpensTheLinkAndPreparesTheInstrument) {
    Bench bench("", false);
    bench.Set("Remote Control", "TCP/IP");
    bench.Setting("TCP/IP.Port").SetValueList("5025=5025,5026=5026");
    bench.Set("TCP/IP.Port", "5026");
    bench->put_IDriverSetup_Name("Bench 1");
    CHECK(bench, GoingOnLine, put_IDriverSetup_OnLine(true), Done);
    EXPECT_EQ(bench.world->TransportName, "Bench 1");
    EXPECT_EQ(bench->get_IDriverSetup_Name(), "Bench 1");
    EXPECT_EQ(bench.world->LastSettings->Item("Port")->ValueList(), "5025=5025,5026=5026");
    EXPECT_EQ(platform::ToText(bench.world->LastSettings->Item("Port")->GetValue()), "5026");
    EXPECT_THAT(bench.world->TimeoutsSet, ElementsAre(5.0F));
    EXPECT_THAT(bench.world->Delays, ElementsAre(1.0F));
    EXPECT_EQ(bench.world->Drains, 2);
    EXPECT_TRUE(bench->get_IDriverSetup_OnLine());
}

TEST(GoingOnLine, StaysOffLineQuietlyWhenTheLinkCannotBeOpened) {
    Bench bench("", false);
    bench.world->ConnectFails = true;
    CHECK(bench, "", put_IDriverSetup_OnLine(true), Done);
    EXPECT_FALSE(bench->get_IDriverSetup_OnLine());
    EXPECT_EQ(bench.world->Drains, 0);
    EXPECT_THAT(bench.world->Delays, ElementsAre(1.0F));
}

TEST(GoingOnLine, RaisesWhatCreationRaises) {
    Bench bench("", false);
    bench.Set("Remote Control", bench.world->MissingProgId = "No.Such");
    CHECK(bench, "", put_IDriverSetup_OnLine(true), "429 COM: ActiveX component can't create object");
    EXPECT_FALSE(bench->get_IDriverSetup_OnLine());
}

TEST(GoingOnLine, GoesBackOffLineWhenTheInstrumentRefuses) {
    // The first command fails once and is not repeated (the retry limit is 0 on the way); recovery sends SYST:LOC.
    Bench bench("", false);
    CHECK(bench, "*CLS;*SRE 0;*ESE 0 ! 2015 | SYST:LOC ! 2015", put_IDriverSetup_OnLine(true), Done);
    EXPECT_FALSE(bench->get_IDriverSetup_OnLine());
    EXPECT_THAT(bench.world->Connects, ElementsAre(true, false));
    EXPECT_EQ(bench.world->States, "suspend ");
    EXPECT_THAT(bench.world->Delays, ElementsAre(1.0F));
}

TEST(GoingOnLine, ForgetsWhatTheDriverKnewOfTheInstrument) {
    Bench bench(tarnPAR);
    CHECK(bench, "SYST:LOC", put_IDriverSetup_OnLine(false), Done);
    CHECK(bench, "", get_MeasureMode(), tarnPAR);  // the caches survive going off-line
    CHECK(bench, GoingOnLine, put_IDriverSetup_OnLine(true), Done);
    CHECK(bench, "SENS:DVBT:MEAS? = HIST", get_MeasureMode(), tarnHIST);
}

TEST(GoingOffLine, NeverFailsAndRestoresTheStateOfTheApplication) {
    for (const auto& [state, states] : {std::pair(8, "suspend resume "), std::pair(3, "suspend ")}) {
        Bench bench;
        bench.world->State = state;
        CHECK(bench, "SYST:LOC ! 2014", put_IDriverSetup_OnLine(false), Done);
        EXPECT_FALSE(bench->get_IDriverSetup_OnLine());
        EXPECT_EQ(bench.world->States, states);
        EXPECT_THAT(bench.world->Delays, ElementsAre(1.0F));
    }
}

TEST(SerialPorts, AreTriedOneByOneWithoutReports) {
    const std::pair<std::vector<int>, const char*> cases[] = {
        {{1, 3, 16}, "COM1=1,COM3=3,COM16=16"}, {{}, ""}, {{17}, ""}};
    for (const auto& [ports, list] : cases) {
        const auto world = std::make_shared<FakeFramework>();
        world->SerialPorts = ports;
        EXPECT_EQ(ListSerialPorts(*world, *world->CreateTransport("Conduit.clsComm")), list);
        EXPECT_EQ(world->ReportingDuringProbe, std::vector<bool>(16, false));
        EXPECT_TRUE(world->Reporting);
    }
}

TEST(Reset, RestoresTheTimeoutAndForgetsTheMeasureMode) {
    Bench bench(tarnPAR);
    bench.world->Timeout = 6.0F;
    CHECK(bench, "SYST:RES", Reset(), Done);
    CHECK(bench, "SENS:DVBT:MEAS? = NORM", get_MeasureMode(), tarnNORM);
    CHECK(bench, "SYST:RES ! 2011", Reset(), "+2005 .Reset: Reset failed.  Error : 0,\"No error\"");
    EXPECT_THAT(bench.world->TimeoutsSet, ElementsAre(100.0F, 6.0F, 100.0F, 6.0F));
    EXPECT_THAT(bench.world->Delays, ElementsAre(15.0F));
}
