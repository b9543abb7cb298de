#include "driver/CommandChannel.h"
#include "tests/driver/Bench.h"

using namespace tarn4x::test;

TEST(CommandChannel, RepeatsWhatIsNotReadyOrTransientAndRaisesOtherErrors) {
    // What asks with an answer, what commands, and what makes one transfer.
    constexpr auto asks = "MeasureRfLevel", commands = "MeasureResetBer", transfers = "Identity";
    const std::string level = "READ:RF:LEVEL?", again = " | " + level, reset = "SENS:DVBT:BER:RES", queue = "SYST:ERR?",
                      empty = queue + " = 0,\"No error\"", sent = empty + " | " + reset,
                      failed = GetFailed("MeasureRfLevel"), idFailed = GetFailed("Identity"),
                      range = " Send Timed Out | SYST:ERR? = -222,\"Out of range\"",
                      outOfRange = failed + ".  Error : -222,\"Out of range\"";
    const struct {
        const char* Member;
        std::string Dialogue, Outcome;
        std::size_t Pauses, Entries;  // of the log: two of each drain, command, answer, error
        std::size_t AbortAfterSending = SIZE_MAX;
    } cases[] = {
        {asks, "11 x " + level + " = --- (wait)", "0", 10, 44},  // then takes what came
        {asks, "2 x " + level + " = ---", "0", 1, 8, 2},
        {asks, level + " = 12 ---" + again + " = 7", "7", 1, 8},  // wherever it stands in the answer
        {asks, level + " ! 2013 busy" + again + " = 7", "7", 1, 7},
        {asks, level + " ! 2015 lost" + again + " = 7", "7", 1, 7},
        {asks, level + " ! 13 Type mismatch" + again + " = 7", "7", 1, 7},
        {asks, "11 x " + level + " ! 2015", "0", 10, 33},  // gives up quietly
        {asks, level + " ! 2009 failed", failed, 0, 4},
        {asks, level + " ! 2010" + range, outOfRange, 0, 6},
        {asks, level + " ! 2013" + range, outOfRange, 0, 6},
        {asks, level + " ! 2011 | " + queue + " ! 2014", failed, 0, 5},
        {asks, level + " ! 40006 stopped", "40006 Conduit: 40006 stopped, help.chm", 0, 4},     // as it is
        {asks, "5 x " + queue + " = -350,\"Queue overflow\"" + again + " = 1", "0", 0, 12, 5},  // has no end
        {asks, queue + " ! 2013 | " + empty + again + " = 1", "1", 1, 5},
        // A command is not sent twice. The queue is announced again unless the link was lost.
        {commands, reset + " ! 2015", "+2005 .MeasureResetBer: MeasureResetBer failed", 0, 4},
        {commands, queue + " = -113 | " + queue + " = 0,\"no error\" | " + sent, Done, 0, 7},  // the case counts
        {commands, queue + " ! 2015 | " + sent, Done, 1, 3},
        {commands, queue + " ! 2013 | " + sent, Done, 1, 4},
        {commands, queue + " ! 13 | " + sent, Done, 1, 4},
        {commands, "11 x " + queue + " ! 2013", Done, 10, 11},  // gives up quietly
        // Of one transfer only what failed is repeated.
        {transfers, "*IDN? ! 2013 | *IDN? ! 2015 | *IDN? = x", "x", 2, 4},
        {transfers, queue + " ! 2013 | " + empty + " | *IDN? = x", "x", 1, 5},
        {transfers, "11 x *IDN? ! 2015 lost", idFailed, 10, 4},
        {transfers, "*IDN? ! 2013 Send Timed Out", idFailed + Refused, 0, 6},
        {transfers, "*IDN? ! 2014", "", 0, 3, 1},
    };
    for (const auto& c : cases) {
        Bench bench(c.Dialogue);
        bench.world->AbortAfterSending = c.AbortAfterSending;
        EXPECT_OUTCOME(support::CallOf(c.Member).Get(bench.driver, 0), c.Outcome) << c.Dialogue;
        bench.ExpectEnd();
        EXPECT_EQ(bench.world->Delays, std::vector<float>(c.Pauses, 1.0F)) << c.Dialogue;
        EXPECT_THAT(bench.Logged(), testing::SizeIs(c.Entries)) << c.Dialogue;
    }
}

TEST(CommandChannel, KnowsNoErrorQueueOverTheFrontPanel) {
    Bench bench;
    bench.Set("Remote Control", "GUI");
    CHECK(bench, "READ:RF:LEVEL? = <3", get_MeasureRfLevel(), 3);
    CHECK(bench, "READ:RF:LEVEL? ! 2011", get_MeasureRfLevel(), GetFailed("MeasureRfLevel"));
    EXPECT_THAT(bench.Logged(), testing::SizeIs(2 + 2)) << "no drains";
    static_cast<Node&>(bench.Setting("Remote Control")).Refuses = true;  // as an instrument does
    CHECK(bench, "", get_MeasureRfLevel(), GetFailed("MeasureRfLevel"));
}

TEST(CommandChannel, IsQuietOffLineWhenTheUserHasAskedToStop) {
    Bench bench("", false);
    bench.world->Abort = true;
    CHECK(bench, "", get_Identity(), "");
}

TEST(CommandChannel, LogsEveryTransferUnlessSwitchedOff) {
    Bench bench;
    bench.Set("Log Messages", "No");
    CHECK(bench, "SENS:DVBT:BER:RES", MeasureResetBer(), Done);
    bench.Set("Log Messages", "perhaps");  // silences nothing
    CHECK(bench, "READ:RF:LEVEL? = -50.0", get_MeasureRfLevel(), -50);
    EXPECT_THAT(bench.Logged(), ElementsAre("6 TARN SYST:ERR? ", "5 TARN SYST:ERR? 0,\"No error\"",
                                            "6 TARN READ:RF:LEVEL? ", "5 TARN READ:RF:LEVEL? -50.0"));
    bench.world->Failing = "Log";  // which breaks nothing
    CHECK(bench, "READ:RF:LEVEL? = 3", get_MeasureRfLevel(), 3);
}

TEST(CommandChannel, CarriesBlocks) {
    Bench bench("block 2 ok DATA  | block 3 abc none");
    CommandChannel channel{*bench.world, *bench->get_IDriverSetup_Settings()};
    channel.SetTransport(bench.world->CreateTransport("Conduit.clsEthernet"));
    bench.world->Block.assign(1024, 7);
    EXPECT_THAT(channel.QueryBinary(1000, "SCREEN?"), testing::SizeIs(1000));
    EXPECT_THAT(channel.QueryBinary(24), testing::SizeIs(24));
    EXPECT_THAT(bench.world->BlockReads, ElementsAre("1000 SCREEN?", "24"));
    EXPECT_THAT(bench.Logged(), ElementsAre("6 TARN SYST:ERR? ", "5 TARN SYST:ERR? 0,\"No error\"", "6 TARN SCREEN? ",
                                            "5 TARN SCREEN? 1000 bytes", "5 TARN  24 bytes"));
    const std::vector<std::uint8_t> ok{'o', 'k'}, abc{'a', 'b', 'c'};
    channel.WriteBinary(2, ok, "DATA ");
    channel.WriteBinary(3, abc);
    EXPECT_EQ(bench.Logged().back(), "6 TARN  ");
}
