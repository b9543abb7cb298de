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
    CHECK(bench, "", put_IDriverSetup_OnLine(false), "2003 .OnLine: Driver already off-line");
    CHECK(bench, GoingOnLine, put_IDriverSetup_OnLine(true), Done);
    CHECK(bench, "", put_IDriverSetup_OnLine(true), "2002 .OnLine: Driver already on-line");
    EXPECT_EQ(bench.world->TransportName, "Bench 1");
    EXPECT_EQ(bench->get_IDriverSetup_Name(), "Bench 1");
    EXPECT_EQ(bench.world->LastSettings->Item("Port")->ValueList(), "5025=5025,5026=5026");
    EXPECT_EQ(platform::ToText(bench.world->LastSettings->Item("Port")->GetValue()), "5026");
    EXPECT_THAT(bench.world->TimeoutsSet, ElementsAre(5.0F));
    EXPECT_THAT(bench.world->Delays, ElementsAre(1.0F));
}

TEST(GoingOnLine, StaysOffLineWithoutALink) {
    Bench closed("", false), unknown("", false);
    closed.world->Failing = "Connect";
    CHECK(closed, "", put_IDriverSetup_OnLine(true), Done);  // quietly
    EXPECT_THAT(closed.world->Delays, ElementsAre(1.0F));
    unknown.Set("Remote Control", "No.Such");
    CHECK(unknown, "", put_IDriverSetup_OnLine(true), "429 Conduit: ActiveX component can't create object: No.Such");
    EXPECT_FALSE(closed->get_IDriverSetup_OnLine() || unknown->get_IDriverSetup_OnLine());
}

// The retry limit is 0 on the way, even after a link that was lost, so that nothing is repeated.
TEST(GoingOnLine, GoesBackOffLineWhenAnythingFailsBehindTheLink) {
    const std::string refused = "*CLS;*SRE 0;*ESE 0 ! 2015 | SYST:LOC ! 2015";
    for (const auto& [dialogue, failing] : {std::pair(refused, ""), {GoingOnLine + " | SYST:LOC", "Delay"}}) {
        Bench bench;
        bench.world->LinkLost = true;
        bench.world->Failing = failing;
        CHECK(bench, dialogue, put_IDriverSetup_OnLine(true), Done);
        EXPECT_THAT(bench.world->StatesAtClosing, testing::SizeIs(1));
        EXPECT_FALSE(bench->get_IDriverSetup_OnLine());
    }
}

TEST(GoingOnLine, ForgetsWhatTheDriverKnewOfTheInstrument) {
    const std::string echo = "READ:DVBT:IRESPONSE:PEAK? = 1";
    Bench bench(tarnIR_1);
    CHECK(bench, "*IDN? = one", get_Identity(), "one");
    CHECK(bench, echo, get_ImpulseResponseAtten(1), 0);
    CHECK(bench, "SYST:LOC", put_IDriverSetup_OnLine(false), Done);
    CHECK(bench, "", get_Identity(), "one");  // going off-line forgets nothing
    CHECK(bench, GoingOnLine, put_IDriverSetup_OnLine(true), Done);
    CHECK(bench, "*IDN? = other", get_Identity(), "other");
    CHECK(bench, "SENS:DVBT:MEAS? = IR_1 | " + echo, get_ImpulseResponseAtten(1), 0);
}

TEST(GoingOffLine, NeverFailsAndRestoresTheStateOfTheApplication) {
    const struct {
        int Before, WhileClosing, After;
        const char* Failing;
    } cases[] = {{8, 4, 8, ""}, {4, 4, 4, ""}, {3, 3, 3, ""}, {8, 4, 4, "ResumeState"}, {8, 4, 8, "Delay"}};
    for (const auto& c : cases) {
        Bench bench;
        bench.world->SetAppState(c.Before);
        bench.world->Failing = c.Failing;
        CHECK(bench, "SYST:LOC ! 2015", put_IDriverSetup_OnLine(false), Done);
        EXPECT_FALSE(bench->get_IDriverSetup_OnLine());
        EXPECT_THAT(bench.world->StatesAtClosing, ElementsAre(c.WhileClosing));
        EXPECT_EQ(bench.world->AppState(), c.After) << c.Failing;
        EXPECT_THAT(bench.world->Delays, ElementsAre(1.0F));
    }
}

TEST(SerialPorts, AreTriedOneByOneWithoutReports) {
    const std::pair<std::vector<int>, const char*> cases[] = {
        {{1, 3, 16}, "COM1=1,COM3=3,COM16=16"}, {{}, ""}, {{17}, ""}};
    for (const auto& [ports, list] : cases) {
        const auto world = std::make_shared<World>();
        world->SerialPorts = ports;
        EXPECT_EQ(ListSerialPorts(*world, *world->CreateTransport("Conduit.clsComm")), list);
        EXPECT_EQ(world->ReportingDuringProbe, std::vector<bool>(16, false));
        EXPECT_TRUE(world->TheErrorService().ErrorReporting());
    }
}
