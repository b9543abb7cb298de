#include "tests/driver/Bench.h"

using namespace tarn4x::test;
using namespace std::string_literals;

const std::string Failed = GetFailed("ScreenShot");

/// What reads a screen into a buffer that holds one byte before.
struct ScreenBench : Bench {
    explicit ScreenBench(std::string block = "") { world->Block = std::move(block); }
    bool Read(int mode) { return driver.get_ScreenShot(TarnScreenShotModes(mode), buffer); }
    std::string Bytes() const { return {buffer.begin(), buffer.end()}; }
    ScreenBench* operator->() { return this; }

    std::vector<std::uint8_t> buffer{'-'};
};

TEST(ScreenShot, CapturesAndTransfers) {
    ScreenBench bench("#15\n#\n\n\0#15abcde"s);
    CHECK(bench, "READ:SCREEN:BUFFER? = 1", Read(tarnCapture + tarnTransfer), false);
    CHECK(bench, "", Read(0), true);
    EXPECT_EQ(bench.driver.get_Prefix() + bench.Bytes(), "----");
    CHECK(bench, "READ:SCREEN:BUFFER? = \"0\"", Read(tarnCapture + tarnTransfer), true);
    EXPECT_EQ(bench.Bytes(), "\n#\n\n\0"s);
    EXPECT_THAT(bench.world->BlockReads, ElementsAre("1 READ:BUFFER:PCX?", "1", "1", "5"));
    EXPECT_THAT(bench.world->TimeoutsSet, ElementsAre(60.0F, 5.0F));
    CHECK(bench, "", Read(tarnTransfer + tarnIncludeHeader), true);
    EXPECT_EQ(bench.Bytes(), "#15abcde");
    bench.world->Abort = true;
    CHECK(bench, "READ:SCREEN:BUFFER? = <0", Read(tarnCapture + tarnTransfer), false);
    EXPECT_EQ(bench.driver.get_ResponseString(), "<0") << "parsed before the stop request is seen";
}

TEST(ScreenShot, RefusesABadHeader) {
    for (const char* block : {"", "x15abcde", "#0", "#:0000000001a", "#500000"}) {
        ScreenBench bench(block);
        CHECK(bench, "", Read(tarnTransfer), Failed);
        EXPECT_EQ(bench.Bytes(), "-") << block;
        EXPECT_THAT(bench.world->TimeoutsSet, ElementsAre(60.0F)) << "left raised";
    }
}

TEST(ScreenShot, PassesOverWhatFailsBehindTheHeaderAndWhatOverflowsSixteenBits) {
    const std::string image(40000, 'p');
    const std::pair<std::string, std::string> cases[] = {{"#15", "-"},
                                                         {"#210abc", "-"},
                                                         {"#9000000001a", "a"},
                                                         {"#540000" + image, image.substr(0, 4000)},
                                                         {"#532767" + image, image.substr(0, 32767)},
                                                         {"#532768" + image, image.substr(0, 32760)},
                                                         {"#599999" + image, image.substr(0, 10008)},
                                                         {"#41x34" + image, image.substr(0, 1034)}};
    for (const auto& [block, bytes] : cases) {
        ScreenBench bench(block);
        CHECK(bench, "", Read(tarnTransfer), true);
        EXPECT_EQ(bench.Bytes(), bytes) << block.substr(0, 12);
        EXPECT_THAT(bench.world->TimeoutsSet, ElementsAre(60.0F, 5.0F));
    }
    ScreenBench bench("#12a");
    CHECK(bench, "", Read(tarnTransfer + tarnIncludeHeader), true);
    EXPECT_EQ(bench.Bytes(), "#12\0\0"s);
}

TEST(ScreenShot, SetsTheTimeoutOfTheSelectedLink) {
    const std::pair<std::string, std::vector<float>> bauds[] = {
        {"1200", {60.0F}}, {"2400", {34.0F}}, {"4800", {22.0F}}, {"9600", {15.0F}}, {"19200", {12.0F}}, {"300", {}}};
    for (const auto& [baud, timeouts] : bauds) {
        ScreenBench bench("#0");
        bench.Set("Remote Control", "RS232");
        bench.Set("RS232.Baud Rate", baud);
        CHECK(bench, "", Read(tarnTransfer), Failed);
        EXPECT_EQ(bench.world->TimeoutsSet, timeouts) << baud;
    }
    ScreenBench bench("#0");
    bench.Set("Remote Control", "GUI");
    CHECK(bench, "READ:SCREEN:BUFFER? = 0", Read(tarnCapture), true);
    CHECK(bench, "", Read(tarnTransfer), "+2024 .ScreenShot: Remote Control Port does not support operation");
    bench.Set("Remote Control", "GPIB");
    CHECK(bench, "", Read(tarnTransfer), Failed);
    EXPECT_THAT(bench.world->TimeoutsSet, ElementsAre(9.0F));
}
