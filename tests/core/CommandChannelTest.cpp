#include "core/CommandChannel.h"
#include "tests/core/Bench.h"

namespace tarn4x::test {
namespace {

using testing::Each;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

std::vector<Exchange> Times(std::size_t count, const Exchange& exchange) { return {count, exchange}; }

TEST(SendCommand, DrainsLogsAndReads) {
    Bench bench{{{"READ:RF:LEVEL?", "-50.0"}}};
    EXPECT_DOUBLE_EQ(bench.driver.get_MeasureRfLevel(), -50.0);
    EXPECT_EQ(bench.world->Drains, 1);
    EXPECT_THAT(bench.world->Logged, ElementsAre("6 TARN SYST:ERR?|", "5 TARN SYST:ERR?|0,\"No error\"",
                                                 "6 TARN READ:RF:LEVEL?|", "5 TARN READ:RF:LEVEL?|-50.0"));
}

TEST(SendCommand, RepeatsElevenTimesASecondApartAndThenTakesWhatCame) {
    Bench bench{Times(11, {"READ:RF:LEVEL?", "--- (wait)"})};
    EXPECT_DOUBLE_EQ(bench.driver.get_MeasureRfLevel(), 0.0);
    EXPECT_EQ(bench.driver.get_Prefix(), "---");
    EXPECT_EQ(bench.driver.get_Postfix(), "(wait)");
    EXPECT_EQ(bench.world->Drains, 11);
    EXPECT_THAT(bench.world->Delays, testing::AllOf(SizeIs(10), Each(1.0F)));
}

TEST(SendCommand, WaitsForOneOfTheExpectedAnswers) {
    // "on" is no fragment (case counts); an answer that contains "---" is complete when it holds a fragment.
    Bench bench{{{"INPUT:DVBT:HIGH:ADJ:CHANNEL:POWER?", "on"}, {"INPUT:DVBT:HIGH:ADJ:CHANNEL:POWER?", "---ON"}}};
    EXPECT_EQ(bench.driver.get_InputAttenHighAdjChanPower(), tarnOn);
    EXPECT_EQ(bench.driver.get_ResponseString(), "---ON");
}

TEST(SendCommand, EndsQuietlyWhenTheUserAsksToStop) {
    Bench bench{{{"READ:RF:LEVEL?", "---"}, {"READ:RF:LEVEL?", "---"}}};
    bench.world->AbortAfterSending = 2;
    EXPECT_DOUBLE_EQ(bench.driver.get_MeasureRfLevel(), 0.0);
    EXPECT_THAT(bench.world->Delays, SizeIs(1));
}

TEST(SendCommand, TriesTransientErrorsAgain) {
    const AutomationError transient[] = {TransportFailure(2013, "busy"), TransportFailure(2015, "lost"),
                                         AutomationError(13, "Conduit", "Type mismatch")};
    for (const auto& error : transient) {
        Bench bench{{{"READ:RF:LEVEL?", error}, {"READ:RF:LEVEL?", "7"}}};
        EXPECT_DOUBLE_EQ(bench.driver.get_MeasureRfLevel(), 7.0);
        EXPECT_THAT(bench.world->Delays, ElementsAre(1.0F));
    }
}

TEST(SendCommand, GivesUpQuietlyOnAnErrorThatStaysTransient) {
    Bench bench{Times(11, {"READ:RF:LEVEL?", TransportFailure(2015)})};
    EXPECT_DOUBLE_EQ(bench.driver.get_MeasureRfLevel(), 0.0);
    EXPECT_THAT(bench.world->Delays, SizeIs(10));
}

TEST(SendCommand, RaisesWhatIsFinal) {
    const AutomationError final[] = {
        TransportFailure(2014, "Receive timed out"), TransportFailure(2016), {5, "x", "y"}};
    for (const auto& error : final) {
        Bench bench{{{"READ:RF:LEVEL?", error}}};
        EXPECT_RAISES(bench.driver.get_MeasureRfLevel(), 0x800407D4, "clsTarn4x.MeasureRfLevel",
                      "Get MeasureRfLevel failed");
        EXPECT_THAT(bench.world->Delays, IsEmpty());
        EXPECT_EQ(bench.world->Drains, 1) << "the error queue is not asked";
    }
}

TEST(SendCommand, NeverSendsACommandWithoutAnswerTwice) {
    Bench bench{{{"SENS:DVBT:BER:RES", TransportFailure(2015)}}};
    EXPECT_RAISES(bench.driver.MeasureResetBer(), 0x800407D5, "clsTarn4x.MeasureResetBer", "MeasureResetBer failed");
    EXPECT_THAT(bench.world->Delays, IsEmpty());
    EXPECT_EQ(bench.world->Logged.back(), "6 TARN SENS:DVBT:BER:RES|");
}

TEST(SendCommand, DrainsAgainWhenTheDrainBeforeACommandWasTransient) {
    Bench bench;
    bench.world->ScriptedErrorQueue = true;
    bench.Expect({{"SYST:ERR?", TransportFailure(2013, "busy")},
                  {"SYST:ERR?", "-113,\"Undefined header\""},
                  {"SYST:ERR?", "0,\"no error\""},  // the case counts
                  {"SYST:ERR?", "0,\"No error\""},
                  {"SENS:DVBT:BER:RES"}});
    bench.driver.MeasureResetBer();
    EXPECT_THAT(bench.world->Delays, ElementsAre(1.0F));
}

TEST(SendCommand, LeavesADrainThatNeverEndsToTheUser) {
    Bench bench;
    bench.world->ScriptedErrorQueue = true;
    bench.Expect(Times(5, {"SYST:ERR?", "-350,\"Queue overflow\""}));
    bench.Expect({{"READ:RF:LEVEL?", "1"}});
    bench.world->AbortAfterSending = 5;
    EXPECT_DOUBLE_EQ(bench.driver.get_MeasureRfLevel(), 0.0);
}

TEST(ErrorQueue, IsReportedWhenTheInstrumentRefused) {
    for (const int code : {2010, 2011, 2012, 2013}) {
        Bench bench{{{"READ:RF:LEVEL?", TransportFailure(code, "Send Timed Out")}}};
        bench.world->ScriptedErrorQueue = true;
        bench.world->Transcript.emplace_front("SYST:ERR?", "0,\"No error\"");
        bench.Expect({{"SYST:ERR?", "-222,\"Data out of range\""}});
        EXPECT_RAISES(bench.driver.get_MeasureRfLevel(), 0x800407D4, "clsTarn4x.MeasureRfLevel",
                      "Get MeasureRfLevel failed.  Error : -222,\"Data out of range\"");
    }
}

TEST(ErrorQueue, ThatFailsToBeReadLeavesTheShortText) {
    Bench bench{{{"READ:RF:LEVEL?", TransportFailure(2011)}}};
    bench.world->ScriptedErrorQueue = true;
    bench.world->Transcript.emplace_front("SYST:ERR?", "0,\"No error\"");
    bench.Expect({{"SYST:ERR?", TransportFailure(2014)}});
    EXPECT_RAISES(bench.driver.get_MeasureRfLevel(), 0x800407D4, "clsTarn4x.MeasureRfLevel",
                  "Get MeasureRfLevel failed");
}

TEST(ErrorQueue, IsReadAgainOnlyWhenTheLinkWasLost) {
    Bench bench;
    bench.world->ScriptedErrorQueue = true;
    bench.Expect({{"SYST:ERR?", TransportFailure(2015)}, {"SYST:ERR?", "0,\"No error\""}, {"SENS:DVBT:BER:RES"}});
    bench.driver.MeasureResetBer();
    EXPECT_THAT(bench.world->Logged, SizeIs(3)) << "a repetition is not announced again";
}

TEST(ErrorQueue, DoesNotExistOverTheFrontPanel) {
    Bench bench{{{"READ:RF:LEVEL?", "3"}, {"READ:RF:LEVEL?", TransportFailure(2011)}}};
    bench.driver.get_IDriverSetup_Settings()->Item("Remote Control")->SetValue(true, true, std::string("GUI"));
    EXPECT_DOUBLE_EQ(bench.driver.get_MeasureRfLevel(), 3.0);
    EXPECT_RAISES(bench.driver.get_MeasureRfLevel(), 0x800407D4, "clsTarn4x.MeasureRfLevel",
                  "Get MeasureRfLevel failed");
    EXPECT_EQ(bench.world->Drains, 0);
}

TEST(Failure, Number40006PassesThroughAsItIs) {
    AutomationError own(40006, "framework", "stopped");
    own.HelpFile = "help.chm";
    own.HelpContext = 7;
    Bench bench{{{"READ:RF:LEVEL?", own}}};
    const auto raised = Raised([&] { bench.driver.get_MeasureRfLevel(); });
    EXPECT_EQ(raised.Number, 40006);
    EXPECT_EQ(raised.Source, "framework");
    EXPECT_EQ(raised.Description, "stopped");
    EXPECT_EQ(raised.HelpFile, "help.chm");
    EXPECT_EQ(raised.HelpContext, 7);
}

TEST(Failure, GoesThroughTheErrorService) {
    Bench bench{{}, false};
    EXPECT_RAISES(bench.driver.get_MeasureRfLevel(), 0x800407D4, "clsTarn4x.MeasureRfLevel",
                  "Get MeasureRfLevel failed");
    EXPECT_EQ(bench.world->Raised, 1);
}

TEST(Log, IsQuietWhenSwitchedOffAndNeverBreaksATransfer) {
    Bench bench{{{"READ:RF:LEVEL?", "1"}, {"READ:RF:LEVEL?", "2"}}};
    bench.world->LogFails = true;
    EXPECT_DOUBLE_EQ(bench.driver.get_MeasureRfLevel(), 1.0);
    bench.world->LogFails = false;
    bench.driver.get_IDriverSetup_Settings()->Item("Log Messages")->SetValue(true, true, std::string("No"));
    EXPECT_DOUBLE_EQ(bench.driver.get_MeasureRfLevel(), 2.0);
    EXPECT_THAT(bench.world->Logged, IsEmpty());
}

/// The channel by itself, for the procedures that no member uses in every way.
struct ChannelBench {
    explicit ChannelBench(std::vector<Exchange> transcript) {
        world->ScriptedErrorQueue = true;
        world->Transcript.assign(transcript.begin(), transcript.end());
        settings.AddSetting("Remote Control", 1, 2, "")->SetValue(true, true, std::string("Conduit.clsEthernet"));
        settings.AddSetting("Log Messages", 1, 2, "")->SetValue(true, true, std::string("-1"));
        channel.emplace(*world, settings);
        channel->SetTransport(std::make_shared<FakeTransport>(world, "Conduit.clsEthernet"));
        channel->RetryLimit = 2;
    }
    ~ChannelBench() { EXPECT_THAT(world->Transcript, IsEmpty()); }

    std::shared_ptr<FakeFramework> world = std::make_shared<FakeFramework>();
    FakeNode settings;
    std::optional<CommandChannel> channel;
};

const Exchange Empty{"SYST:ERR?", "0,\"No error\""};

TEST(OneTransfer, RepeatsOnlyTheTransferThatFailed) {
    ChannelBench bench{{Empty, {"A?", TransportFailure(2013)}, {"A?", TransportFailure(2015)}, {"A?", "x"}}};
    EXPECT_EQ(bench.channel->QueryString("A?"), "x");
    EXPECT_THAT(bench.world->Delays, ElementsAre(1.0F, 1.0F));
    EXPECT_THAT(bench.world->Logged, SizeIs(4));
}

TEST(OneTransfer, RaisesWhenTheLimitIsReachedOrTheErrorIsFinal) {
    const auto lost = TransportFailure(2015);
    ChannelBench bench{
        {Empty, {"A", lost}, {"A", lost}, {"A", lost}, Empty, {"B", TransportFailure(2013, "Send Timed Out")}}};
    EXPECT_EQ(Raised([&] { bench.channel->WriteCommand("A"); }).Number, lost.Number);
    EXPECT_EQ(Raised([&] { bench.channel->WriteCommand("B"); }).Description, "Send Timed Out");
    EXPECT_THAT(bench.world->Delays, SizeIs(2));
}

TEST(OneTransfer, IsEmptyWhenTheUserAsksToStop) {
    ChannelBench bench{{Empty, {"A?", TransportFailure(2014)}}};
    bench.world->AbortAfterSending = 2;
    EXPECT_EQ(bench.channel->QueryString("A?"), "");
    bench.channel->SetTransport(nullptr);
    bench.channel->WriteCommand("B");  // off-line, and quiet
}

TEST(OneTransfer, CarriesBlocks) {
    ChannelBench bench{{Empty, Empty, {"block 2 ok DATA "}, Empty, {"block 3 abc none"}}};
    bench.world->Block.assign(1024, 7);
    EXPECT_THAT(bench.channel->QueryBinary(1000, "SCREEN?"), SizeIs(1000));
    EXPECT_THAT(bench.channel->QueryBinary(24), SizeIs(24));
    EXPECT_THAT(bench.world->BlockReads, ElementsAre("1000 SCREEN?", "24"));
    EXPECT_THAT(bench.world->Logged, ElementsAre("6 TARN SYST:ERR?|", "5 TARN SYST:ERR?|0,\"No error\"",
                                                 "6 TARN SCREEN?|", "5 TARN SCREEN?|1000 bytes", "5 TARN |24 bytes"));
    const std::vector<std::uint8_t> ok{'o', 'k'}, abc{'a', 'b', 'c'};
    bench.channel->WriteBinary(2, ok, "DATA ");
    bench.channel->WriteBinary(3, abc);
    EXPECT_EQ(bench.world->Logged.back(), "6 TARN |");
}

}  // namespace
}  // namespace tarn4x::test
