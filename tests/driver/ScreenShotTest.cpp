#include "tests/driver/Bench.h"

using namespace tarn4x::test;
using namespace std::string_literals;

constexpr auto Transfer = tarnTransfer;
constexpr auto WithHeader = TarnScreenShotModes(tarnTransfer + tarnIncludeHeader);
constexpr auto CaptureAndTransfer = TarnScreenShotModes(tarnCapture + tarnTransfer);
const std::string Failed = GetFailed("ScreenShot");

/// What reads a screen into a buffer that holds one byte before.
struct ScreenBench : Bench {
    explicit ScreenBench(std::string block = "") { world->Block = std::move(block); }
    bool Read(TarnScreenShotModes mode) { return driver.get_ScreenShot(mode, buffer); }
    std::string Bytes() const { return {buffer.begin(), buffer.end()}; }
    ScreenBench* operator->() { return this; }

    std::vector<std::uint8_t> buffer{'-'};
};

TEST(ScreenShot, CapturesAndTransfers) {
    ScreenBench bench("#15\n#\n\n\0#15abcde"s);
    CHECK(bench, "", Read(TarnScreenShotModes(0)), true);
    CHECK(bench, "READ:SCREEN:BUFFER? = 0", Read(tarnCapture), true);
    CHECK(bench, "READ:SCREEN:BUFFER? = 1", Read(CaptureAndTransfer), false);
    CHECK(bench, "READ:SCREEN:BUFFER? = 00", Read(CaptureAndTransfer), false);
    EXPECT_EQ(bench.Bytes(), "-");
    CHECK(bench, "READ:SCREEN:BUFFER? = \"0\"", Read(CaptureAndTransfer), true);
    EXPECT_EQ(bench.Bytes(), "\n#\n\n\0"s);
    EXPECT_THAT(bench.world->BlockReads, ElementsAre("1 READ:BUFFER:PCX?", "1", "1", "5"));
    EXPECT_THAT(bench.world->TimeoutsSet, ElementsAre(60.0F, 5.0F));
    CHECK(bench, "", Read(WithHeader), true);
    EXPECT_EQ(bench.Bytes(), "#15abcde");
}

TEST(ScreenShot, RefusesABadHeaderAndPassesOverWhatFailsBehindIt) {
    const struct {
        std::string Block;
        TarnScreenShotModes Mode;
        std::string Outcome;
        std::string Bytes;
    } cases[] = {
        {"", Transfer, Failed, "-"},     {"x15abcde", Transfer, Failed, "-"},   {"#0", Transfer, Failed, "-"},
        {"#x", Transfer, Failed, "-"},   {"#500000", Transfer, Failed, "-"},    {"#15", Transfer, "1", "-"},
        {"#210abc", Transfer, "1", "-"}, {"#12a", WithHeader, "1", "#12\0\0"s},
    };
    for (const auto& c : cases) {
        ScreenBench bench(c.Block);
        CHECK(bench, "", Read(c.Mode), c.Outcome);
        EXPECT_EQ(bench.Bytes(), c.Bytes) << c.Block;
        EXPECT_FLOAT_EQ(bench.world->Timeout, c.Outcome == Failed ? 60.0F : 5.0F) << "left raised by a refusal";
    }
    ScreenBench bench;
    CHECK(bench, "READ:SCREEN:BUFFER? ! 2010", Read(tarnCapture), Failed + Refused);
}

TEST(ScreenShot, CountsTheLengthInSixteenBits) {
    const std::pair<const char*, std::size_t> cases[] = {
        {"540000", 4000}, {"532767", 32767}, {"532768", 32760}, {"599999", 10008}, {"41x34", 1034}};
    for (const auto& [digits, length] : cases) {
        ScreenBench bench(std::string("#") + digits + std::string(40000, 'p'));
        CHECK(bench, "", Read(Transfer), true);
        EXPECT_EQ(bench.buffer.size(), length) << digits;
    }
}

TEST(ScreenShot, SetsTheTimeoutOfTheSelectedLink) {
    const struct {
        const char *Port, *Baud;
        float Seconds;
    } cases[] = {{"GPIB", "19200", 9.0F},  {"RS232", "1200", 60.0F},  {"RS232", "2400", 34.0F},
                 {"RS232", "4800", 22.0F}, {"RS232", "9600", 15.0F},  {"RS232", "19200", 12.0F},
                 {"RS232", "300", 5.0F},   {"TCP/IP", "19200", 60.0F}};
    for (const auto& c : cases) {
        ScreenBench bench("#0");
        bench.Set("Remote Control", c.Port);
        bench.Set("RS232.Baud Rate", c.Baud);
        CHECK(bench, "", Read(Transfer), Failed);
        EXPECT_FLOAT_EQ(bench.world->Timeout, c.Seconds) << c.Port << c.Baud;
    }
    ScreenBench bench;
    bench.Set("Remote Control", "GUI");
    CHECK(bench, "READ:SCREEN:BUFFER? = 0", Read(tarnCapture), true);
    CHECK(bench, "", Read(Transfer), "+2024 .ScreenShot: Remote Control Port does not support operation");
    EXPECT_THAT(bench.world->TimeoutsSet, IsEmpty());
}
