#include "tests/core/Bench.h"

namespace tarn4x::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

using Bytes = std::vector<std::uint8_t>;

constexpr auto Transfer = tarnTransfer;
constexpr auto WithHeader = static_cast<TarnScreenShotModes>(tarnTransfer + tarnIncludeHeader);
constexpr auto CaptureAndTransfer = static_cast<TarnScreenShotModes>(tarnCapture + tarnTransfer);

void SetBlock(Bench& bench, const std::string& text) { bench.world->Block.assign(text.begin(), text.end()); }

TEST(ScreenShot, CapturesAndTransfers) {
    Bench bench{{{"READ:SCREEN:BUFFER?", "0"}, {"READ:SCREEN:BUFFER?", "1"}, {"READ:SCREEN:BUFFER?", "\"0\""}}};
    Bytes buffer{9};
    EXPECT_TRUE(bench.driver.get_ScreenShot(static_cast<TarnScreenShotModes>(0), buffer));
    EXPECT_TRUE(bench.driver.get_ScreenShot(tarnCapture, buffer));
    EXPECT_FALSE(bench.driver.get_ScreenShot(CaptureAndTransfer, buffer));
    EXPECT_EQ(buffer, Bytes{9});
    SetBlock(bench, "#15\n#\n\n\0");
    bench.world->Block.push_back(0);
    EXPECT_TRUE(bench.driver.get_ScreenShot(CaptureAndTransfer, buffer));
    EXPECT_EQ(buffer, (Bytes{'\n', '#', '\n', '\n', 0}));
    EXPECT_THAT(bench.world->BlockReads, ElementsAre("1 READ:BUFFER:PCX?", "1", "1", "5"));
    EXPECT_THAT(bench.world->TimeoutsSet, ElementsAre(60.0F, 5.0F));
    SetBlock(bench, "#15abcde");
    EXPECT_TRUE(bench.driver.get_ScreenShot(WithHeader, buffer));
    EXPECT_EQ(buffer, (Bytes{'#', '1', '5', 'a', 'b', 'c', 'd', 'e'}));
}

TEST(ScreenShot, RefusesABadHeaderAndLeavesTheTimeoutRaised) {
    for (const char* block : {"x15abcde", "#0", "#x", "#15"}) {
        Bench bench;
        SetBlock(bench, block);
        Bytes buffer;
        const auto raised = Raised([&] { bench.driver.get_ScreenShot(Transfer, buffer); });
        const bool headerRead = block == std::string("#15");
        EXPECT_EQ(raised.Number, headerRead ? 0 : static_cast<std::int32_t>(0x800407D4)) << block;
        EXPECT_FLOAT_EQ(bench.world->Timeout, headerRead ? 5.0F : 60.0F) << block;
        if (headerRead) continue;  // from the length on, what fails is passed over
        EXPECT_EQ(raised.Source, "clsTarn4x.ScreenShot");
        EXPECT_EQ(raised.Description, "Get ScreenShot failed");
    }
    Bench bench;
    SetBlock(bench, "#500000");
    Bytes buffer;
    EXPECT_RAISES(bench.driver.get_ScreenShot(Transfer, buffer), 0x800407D4, "clsTarn4x.ScreenShot",
                  "Get ScreenShot failed");
}

TEST(ScreenShot, CountsTheLengthInSixteenBits) {
    const struct {
        const char* Digits;
        int Length;
    } cases[] = {{"540000", 4000}, {"532767", 32767}, {"532768", 32760}, {"599999", 10008}, {"41x34", 1034}};
    for (const auto& c : cases) {
        Bench bench;
        SetBlock(bench, std::string("#") + c.Digits);
        bench.world->Block.resize(bench.world->Block.size() + 40000, 'p');
        Bytes buffer;
        EXPECT_TRUE(bench.driver.get_ScreenShot(Transfer, buffer));
        EXPECT_THAT(buffer, SizeIs(c.Length)) << c.Digits;
    }
}

TEST(ScreenShot, PassesOverAFailedRead) {
    Bench bench;
    SetBlock(bench, "#210abc");
    Bytes buffer{1};
    EXPECT_TRUE(bench.driver.get_ScreenShot(Transfer, buffer));
    EXPECT_EQ(buffer, Bytes{1});
    EXPECT_FLOAT_EQ(bench.world->Timeout, 5.0F);
    SetBlock(bench, "#12a");
    EXPECT_TRUE(bench.driver.get_ScreenShot(WithHeader, buffer));
    EXPECT_EQ(buffer, (Bytes{'#', '1', '2', 0, 0}));
}

TEST(ScreenShot, SetsTheTimeoutOfTheSelectedLink) {
    const struct {
        const char *Port, *Baud;
        float Seconds;
    } cases[] = {{"GPIB", "", 9.0F},       {"RS232", "1200", 60.0F}, {"RS232", "2400", 34.0F},
                 {"RS232", "4800", 22.0F}, {"RS232", "9600", 15.0F}, {"RS232", "19200", 12.0F},
                 {"RS232", "300", 5.0F},   {"TCP/IP", "", 60.0F}};
    for (const auto& c : cases) {
        Bench bench;
        const auto settings = bench.driver.get_IDriverSetup_Settings();
        settings->Item("Remote Control")->SetValue(true, true, std::string(c.Port));
        if (*c.Baud != 0) settings->Item("RS232.Baud Rate")->SetValue(true, true, std::string(c.Baud));
        SetBlock(bench, "#0");
        Bytes buffer;
        Raised([&] { bench.driver.get_ScreenShot(Transfer, buffer); });
        EXPECT_FLOAT_EQ(bench.world->Timeout, c.Seconds) << c.Port << c.Baud;
    }
    Bench bench{{{"READ:SCREEN:BUFFER?", "0"}}};
    bench.driver.get_IDriverSetup_Settings()->Item("Remote Control")->SetValue(true, true, std::string("GUI"));
    Bytes buffer;
    EXPECT_TRUE(bench.driver.get_ScreenShot(tarnCapture, buffer));
    EXPECT_RAISES(bench.driver.get_ScreenShot(Transfer, buffer), 0x800407E8, "clsTarn4x.ScreenShot",
                  "Remote Control Port does not support operation");
    EXPECT_THAT(bench.world->TimeoutsSet, IsEmpty());
}

TEST(ScreenShot, ReportsWhatFailsBeforeTheLength) {
    Bench bench{{{"READ:SCREEN:BUFFER?", TransportFailure(2010)}}};
    Bytes buffer;
    EXPECT_RAISES(bench.driver.get_ScreenShot(tarnCapture, buffer), 0x800407D4, "clsTarn4x.ScreenShot",
                  "Get ScreenShot failed.  Error : 0,\"No error\"");
    EXPECT_RAISES(bench.driver.get_ScreenShot(Transfer, buffer), 0x800407D4, "clsTarn4x.ScreenShot",
                  "Get ScreenShot failed");
}

}  // namespace
}  // namespace tarn4x::test
