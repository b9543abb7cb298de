#include "driver/CommandChannel.h"
#include "tests/driver/Bench.h"

using namespace tarn4x::test;

using testing::SizeIs;

const std::string Level = "READ:RF:LEVEL?";

TEST(SendCommand, DrainsLogsAndReads) {
    Bench bench;
    CHECK(bench, Level + " = -50.0", get_MeasureRfLevel(), -50);
    EXPECT_EQ(bench.world->Drains, 1);
    EXPECT_THAT(bench.world->Logged, ElementsAre("6 TARN SYST:ERR?|", "5 TARN SYST:ERR?|0,\"No error\"",
                                                 "6 TARN READ:RF:LEVEL?|", "5 TARN READ:RF:LEVEL?|-50.0"));
}

TEST(SendCommand, WaitsForOneOfTheExpectedAnswers) {
    // "on" is no fragment (case counts); an answer that contains "---" is complete when it holds a fragment.
    const std::string query = "INPUT:DVBT:HIGH:ADJ:CHANNEL:POWER?";
    Bench bench;
    CHECK(bench, query + " = on | " + query + " = ---ON", get_InputAttenHighAdjChanPower(), tarnOn);
    EXPECT_EQ(bench->get_ResponseString(), "---ON");
}

TEST(SendCommand, RepeatsWhatIsNotReadyOrTransientAndRaisesOtherErrors) {
    const std::string again = " | " + Level, failed = GetFailed("MeasureRfLevel"),
                      range = " Send Timed Out | SYST:ERR? = -222,\"Out of range\"",
                      outOfRange = failed + ".  Error : -222,\"Out of range\"";
    const struct {
        std::string Dialogue, Outcome;
        std::size_t Pauses;
        int Drains;
        std::size_t AbortAfterSending = SIZE_MAX;
    } cases[] = {
        {"11 x " + Level + " = --- (wait)", "0", 10, 11},  // then takes what came
        {"2 x " + Level + " = ---", "0", 1, 2, 2},
        {Level + " = 12 ---" + again + " = 7", "7", 1, 2},  // wherever it stands in the answer
        {Level + " ! 2013 busy" + again + " = 7", "7", 1, 2},
        {Level + " ! 2015 lost" + again + " = 7", "7", 1, 2},
        {Level + " ! 13 Type mismatch" + again + " = 7", "7", 1, 2},
        {"11 x " + Level + " ! 2015", "0", 10, 11},           // gives up quietly
        {Level + " ! 2014 Receive timed out", failed, 0, 1},  // the error queue is not asked
        {Level + " ! 2016 failed", failed, 0, 1},
        {Level + " ! 5 y", failed, 0, 1},
        {"5 x SYST:ERR? = -350,\"Queue overflow\"" + again + " = 1", "0", 0, 0, 5},  // a drain that never ends
        {Level + " ! 2010" + range, outOfRange, 0, 1},
        {Level + " ! 2011" + range, outOfRange, 0, 1},
        {Level + " ! 2012" + range, outOfRange, 0, 1},
        {Level + " ! 2013" + range, outOfRange, 0, 1},
        {Level + " ! 2011 | SYST:ERR? ! 2014", failed, 0, 1},
    };
    for (const auto& c : cases) {
        Bench bench;
        bench.world->AbortAfterSending = c.AbortAfterSending;
        CHECK(bench, c.Dialogue, get_MeasureRfLevel(), c.Outcome);
        EXPECT_EQ(bench.world->Delays, std::vector<float>(c.Pauses, 1.0F)) << c.Dialogue;
        EXPECT_EQ(bench.world->Drains, c.Drains) << c.Dialogue;
    }
}

TEST(SendCommand, NeverSendsACommandWithoutAnswerTwice) {
    Bench bench;
    CHECK(bench, "SENS:DVBT:BER:RES ! 2015", MeasureResetBer(), "+2005 .MeasureResetBer: MeasureResetBer failed");
    EXPECT_THAT(bench.world->Delays, IsEmpty());
    EXPECT_EQ(bench.world->Logged.back(), "6 TARN SENS:DVBT:BER:RES|");
}

TEST(ErrorQueue, IsDrainedAgainWhenTheDrainBeforeACommandWasTransient) {
    Bench bench;
    CHECK(bench,
          "SYST:ERR? ! 2013 busy | SYST:ERR? = -113,\"Undefined header\" | SYST:ERR? = 0,\"no error\" | "
          "SYST:ERR? = 0,\"No error\" | SENS:DVBT:BER:RES",  // the case counts
          MeasureResetBer(), Done);
    EXPECT_THAT(bench.world->Delays, ElementsAre(1.0F));
}

TEST(ErrorQueue, IsReadAgainOnlyWhenTheLinkWasLost) {
    // Read again, it is not announced again; an instrument that is not ready makes the whole command start over.
    for (const auto& [error, entries] : {std::pair("2015", 3U), std::pair("2013", 4U)}) {
        Bench bench;
        CHECK(bench, std::string("SYST:ERR? ! ") + error + " | SYST:ERR? = 0,\"No error\" | SENS:DVBT:BER:RES",
              MeasureResetBer(), Done);
        EXPECT_THAT(bench.world->Logged, SizeIs(entries)) << error;
    }
}

TEST(ErrorQueue, DoesNotExistOverTheFrontPanel) {
    Bench bench;
    bench.Set("Remote Control", "GUI");
    CHECK(bench, Level + " = 3", get_MeasureRfLevel(), 3);
    CHECK(bench, Level + " ! 2011", get_MeasureRfLevel(), GetFailed("MeasureRfLevel"));
    EXPECT_EQ(bench.world->Drains, 0);
}

TEST(Failure, Number40006PassesThroughAsItIs) {
    AutomationError own(40006, "framework", "stopped");
    own.HelpFile = "help.chm";
    own.HelpContext = 7;
    Bench bench;
    bench.world->Dialogue = {{Level, "", own}};
    try {
        bench->get_MeasureRfLevel();
        ADD_FAILURE() << "nothing was raised";
    } catch (const AutomationError& error) {
        EXPECT_EQ(Text(error), "40006 framework: stopped");
        EXPECT_EQ(error.HelpFile, "help.chm");
        EXPECT_EQ(error.HelpContext, 7);
    }
}

TEST(Failure, GoesThroughTheErrorService) {
    Bench bench("", false);
    CHECK(bench, "", get_MeasureRfLevel(), GetFailed("MeasureRfLevel"));
    EXPECT_EQ(bench.world->Raised, 1);
}

TEST(Log, IsQuietWhenSwitchedOffAndNeverBreaksATransfer) {
    Bench bench;
    bench.world->LogFails = true;
    CHECK(bench, Level + " = 1", get_MeasureRfLevel(), 1);
    bench.world->LogFails = false;
    bench.Set("Log Messages", "No");
    CHECK(bench, Level + " = 2", get_MeasureRfLevel(), 2);
    EXPECT_THAT(bench.world->Logged, IsEmpty());
}

/// The channel by itself, for the procedures that no member uses in every way.
struct OneTransfer : testing::Test {
    OneTransfer() {
        settings.AddSetting("Remote Control", 1, 2, "")->SetValue(true, true, std::string("Conduit.clsEthernet"));
        settings.AddSetting("Log Messages", 1, 2, "")->SetValue(true, true, std::string("-1"));
        channel.emplace(*world, settings);
        channel->SetTransport(std::make_shared<FakeTransport>(world, "Conduit.clsEthernet"));
        channel->RetryLimit = 2;
    }
    ~OneTransfer() override { EXPECT_EQ(world->Dialogue.size(), 0U); }

    std::shared_ptr<FakeFramework> world = std::make_shared<FakeFramework>();
    FakeNode settings;
    std::optional<CommandChannel> channel;
};

TEST_F(OneTransfer, RepeatsOnlyTheTransferThatFailed) {
    world->Dialogue = Dialogue("A? ! 2013 | A? ! 2015 | A? = x");
    EXPECT_EQ(channel->QueryString("A?"), "x");
    EXPECT_EQ(world->Drains, 1);
    EXPECT_THAT(world->Delays, ElementsAre(1.0F, 1.0F));
    EXPECT_THAT(world->Logged, SizeIs(4));
}

TEST_F(OneTransfer, RaisesWhenTheLimitIsReachedOrTheErrorIsFinal) {
    world->Dialogue = Dialogue("3 x A ! 2015 lost | B ! 2013 Send Timed Out");
    EXPECT_OUTCOME(channel->WriteCommand("A"), "+2015 Conduit: lost");
    EXPECT_OUTCOME(channel->WriteCommand("B"), "+2013 Conduit: Send Timed Out");
    EXPECT_THAT(world->Delays, SizeIs(2));
}

TEST_F(OneTransfer, IsEmptyWhenTheUserAsksToStop) {
    world->Dialogue = Dialogue("A? ! 2014");
    world->AbortAfterSending = 1;
    EXPECT_EQ(channel->QueryString("A?"), "");
    channel->SetTransport(nullptr);
    channel->WriteCommand("B");  // off-line, and quiet
}

TEST_F(OneTransfer, CarriesBlocks) {
    world->Block.assign(1024, 7);
    EXPECT_THAT(channel->QueryBinary(1000, "SCREEN?"), SizeIs(1000));
    EXPECT_THAT(channel->QueryBinary(24), SizeIs(24));
    EXPECT_THAT(world->BlockReads, ElementsAre("1000 SCREEN?", "24"));
    EXPECT_THAT(world->Logged, ElementsAre("6 TARN SYST:ERR?|", "5 TARN SYST:ERR?|0,\"No error\"", "6 TARN SCREEN?|",
                                           "5 TARN SCREEN?|1000 bytes", "5 TARN |24 bytes"));
    world->Dialogue = Dialogue("block 2 ok DATA  | block 3 abc none");
    const std::vector<std::uint8_t> ok{'o', 'k'}, abc{'a', 'b', 'c'};
    channel->WriteBinary(2, ok, "DATA ");
    channel->WriteBinary(3, abc);
    EXPECT_EQ(world->Drains, 3);
    EXPECT_EQ(world->Logged.back(), "6 TARN |");
}
