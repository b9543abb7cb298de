#include "core/SerialPorts.h"
#include "tests/core/Bench.h"

namespace tarn4x::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

void Select(Bench& bench, const char* port) {
    bench.driver.get_IDriverSetup_Settings()->Item("Remote Control")->SetValue(true, true, std::string(port));
}

TEST(GoingOnLine, OpensTheLinkAndPreparesTheInstrument) {
    Bench bench{{"*CLS;*SRE 0;*ESE 0", "SYST:REM"}, false};
    Select(bench, "TCP/IP");
    const auto subtree = bench.driver.get_IDriverSetup_Settings()->Item("TCP/IP");
    subtree->Item("Port")->SetValueList("5025=5025,5026=5026");
    subtree->Item("Port")->SetValue(true, true, std::string("5026"));
    bench.driver.put_IDriverSetup_Name("Bench 1");
    bench.driver.put_IDriverSetup_OnLine(true);
    EXPECT_TRUE(bench.driver.get_IDriverSetup_OnLine());
    EXPECT_EQ(bench.world->TransportName, "Bench 1");
    EXPECT_EQ(bench.driver.get_IDriverSetup_Name(), "Bench 1");
    EXPECT_EQ(bench.world->LastSettings->Item("Port")->ValueList(), "5025=5025,5026=5026");
    EXPECT_EQ(platform::ToText(bench.world->LastSettings->Item("Port")->GetValue()), "5026");
    EXPECT_THAT(bench.world->TimeoutsSet, ElementsAre(5.0F));
    EXPECT_THAT(bench.world->Delays, ElementsAre(1.0F));
    EXPECT_EQ(bench.world->Drains, 2);

    EXPECT_RAISES(bench.driver.put_IDriverSetup_OnLine(true), 2002, "clsTarn4x.OnLine", "Driver already on-line");
    EXPECT_TRUE(bench.driver.get_IDriverSetup_OnLine());
}

TEST(GoingOnLine, StaysOffLineQuietlyWhenTheLinkCannotBeOpened) {
    Bench bench{{}, false};
    Select(bench, "TCP/IP");
    bench.world->ConnectFails = true;
    bench.driver.put_IDriverSetup_OnLine(true);
    EXPECT_FALSE(bench.driver.get_IDriverSetup_OnLine());
    EXPECT_THAT(bench.world->Sent, IsEmpty());
    EXPECT_THAT(bench.world->Delays, ElementsAre(1.0F));
}

TEST(GoingOnLine, RaisesWhatCreationRaises) {
    Bench bench{{}, false};
    bench.driver.get_IDriverSetup_Settings()->Item("Remote Control")->SetValue(true, true, std::string("No.Such"));
    bench.world->MissingProgId = "No.Such";
    EXPECT_RAISES(bench.driver.put_IDriverSetup_OnLine(true), 429, "COM", "ActiveX component can't create object");
    EXPECT_FALSE(bench.driver.get_IDriverSetup_OnLine());
}

TEST(GoingOnLine, GoesBackOffLineWhenTheInstrumentRefuses) {
    // The first command fails once and is not repeated (the retry limit is 0 on the way); recovery sends SYST:LOC.
    Bench bench{{{"*CLS;*SRE 0;*ESE 0", TransportFailure(2015)}, {"SYST:LOC", TransportFailure(2015)}}, false};
    Select(bench, "TCP/IP");
    bench.driver.put_IDriverSetup_OnLine(true);
    EXPECT_FALSE(bench.driver.get_IDriverSetup_OnLine());
    EXPECT_THAT(bench.world->Connects, ElementsAre(true, false));
    EXPECT_EQ(bench.world->States, "suspend ");
    EXPECT_THAT(bench.world->Delays, ElementsAre(1.0F));
}

TEST(GoingOnLine, ForgetsWhatTheDriverKnewOfTheInstrument) {
    Bench bench;
    bench.KnowMode(tarnPAR);
    bench.Expect({"SYST:LOC", "*CLS;*SRE 0;*ESE 0", "SYST:REM", {"SENS:DVBT:MEAS?", "HIST"}});
    bench.driver.put_IDriverSetup_OnLine(false);
    EXPECT_EQ(bench.driver.get_MeasureMode(), tarnPAR) << "the caches survive going off-line";
    bench.driver.put_IDriverSetup_OnLine(true);
    EXPECT_EQ(bench.driver.get_MeasureMode(), tarnHIST);
}

TEST(GoingOffLine, NeverFailsAndRestoresTheStateOfTheApplication) {
    for (const auto& [state, states] : {std::pair(8, "suspend resume "), std::pair(3, "suspend ")}) {
        Bench bench{{{"SYST:LOC", TransportFailure(2014)}}};
        bench.world->State = state;
        bench.driver.put_IDriverSetup_OnLine(false);
        EXPECT_FALSE(bench.driver.get_IDriverSetup_OnLine());
        EXPECT_EQ(bench.world->States, states);
        EXPECT_THAT(bench.world->Delays, ElementsAre(1.0F));
        EXPECT_RAISES(bench.driver.put_IDriverSetup_OnLine(false), 2003, "clsTarn4x.OnLine", "Driver already off-line");
    }
}

TEST(SerialPorts, AreTriedOneByOneWithoutReports) {
    const struct {
        std::vector<int> Ports;
        const char* List;
    } cases[] = {{{1, 3, 16}, "COM1=1,COM3=3,COM16=16"}, {{}, ""}, {{17}, ""}};
    for (const auto& c : cases) {
        const auto world = std::make_shared<FakeFramework>();
        world->SerialPorts = c.Ports;
        EXPECT_EQ(ListSerialPorts(*world, *world->CreateTransport("Conduit.clsComm")), c.List);
        EXPECT_THAT(world->ReportingDuringProbe, testing::AllOf(testing::SizeIs(16), testing::Each(false)));
        EXPECT_TRUE(world->Reporting);
    }
}

TEST(Reset, RestoresTheTimeoutAndForgetsTheMeasureMode) {
    Bench bench;
    bench.KnowMode(tarnPAR);
    bench.world->Timeout = 6.0F;
    bench.world->TimeoutsSet.clear();
    bench.Expect({"SYST:RES", {"SENS:DVBT:MEAS?", "NORM"}});
    bench.driver.Reset();
    EXPECT_THAT(bench.world->TimeoutsSet, ElementsAre(100.0F, 6.0F));
    EXPECT_THAT(bench.world->Delays, ElementsAre(15.0F));
    EXPECT_EQ(bench.driver.get_MeasureMode(), tarnNORM);
}

TEST(Reset, RestoresTheTimeoutAlsoWhenItFails) {
    Bench bench{{{"SYST:RES", TransportFailure(2011)}}};
    EXPECT_RAISES(bench.driver.Reset(), 0x800407D5, "clsTarn4x.Reset", "Reset failed.  Error : 0,\"No error\"");
    EXPECT_THAT(bench.world->TimeoutsSet, ElementsAre(100.0F, 5.0F));
    Bench offLine{{}, false};
    EXPECT_RAISES(offLine.driver.Reset(), 0x800407D5, "clsTarn4x.Reset", "Reset failed");
}

}  // namespace
}  // namespace tarn4x::test
