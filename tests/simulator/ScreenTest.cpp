#include <gtest/gtest.h>
#include <unistd.h>

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <map>

#include "simulator/Canvas.h"
#include "simulator/Pcx.h"
#include "tests/simulator/Bench.h"

namespace {

// The colours of all pixels, as netpbm's pcxtoppm sees them.
struct Decoded {
    int width = 0, height = 0;
    std::string rgb;

    int At(int x, int y) const {
        const auto byte = [&](int i) {
            return static_cast<int>(static_cast<unsigned char>(rgb[static_cast<size_t>(3 * (y * width + x) + i)]));
        };
        return byte(0) << 16 | byte(1) << 8 | byte(2);
    }
    std::map<int, int> Colours() const {
        std::map<int, int> counts;
        for (int y = 0; y < height; ++y) {
            for (int x = 0; x < width; ++x) ++counts[At(x, y)];
        }
        return counts;
    }
};

Decoded Decode(const std::string& pcx) {
    const std::string path = testing::TempDir() + "screen-" + std::to_string(::getpid()) + ".pcx";
    std::ofstream{path, std::ios::binary} << pcx;
    Decoded picture;
    std::FILE* decoder = ::popen(("pcxtoppm '" + path + "'").c_str(), "r");
    int depth = 0;
    if (std::fscanf(decoder, "P6 %d %d %d", &picture.width, &picture.height, &depth) == 3 &&
        std::fgetc(decoder) != EOF) {
        picture.rgb.resize(static_cast<size_t>(3 * picture.width * picture.height));
        EXPECT_EQ(std::fread(picture.rgb.data(), 1, picture.rgb.size(), decoder), picture.rgb.size());
    }
    EXPECT_EQ(::pclose(decoder), 0) << "pcxtoppm of the package netpbm has to understand the picture";
    std::filesystem::remove(path);
    return picture;
}

TEST(Pcx, IsReadByAnotherProgramDotForDot) {
    constexpr int kRgb[sim::kColours] = {0x000000, 0xFFFFFF, 0x606060, 0x00D000, 0xFFE000, 0xF02020, 0x2040A0};
    sim::Canvas canvas{131, 9};  // odd, and longer than two runs
    for (int y = 0; y < 9; ++y) {
        for (int x = 0; x < 131; ++x) {
            canvas.Dot(x, y, static_cast<sim::Colour>(y == 0 ? 3 : y == 1 ? x % 7 : (x / (9 * y)) % 7));
        }
    }
    const Decoded picture = Decode(sim::EncodePcx(canvas));
    ASSERT_EQ(picture.width, 131);
    ASSERT_EQ(picture.height, 9);
    for (int y = 0; y < 9; ++y) {
        for (int x = 0; x < 131; ++x) ASSERT_EQ(picture.At(x, y), kRgb[canvas.At(x, y)]) << x << "," << y;
    }
}

TEST(Screen, FitsIntoABlockInEveryMode) {
    for (const std::string cn : {"60", "12", "0"}) {
        Bench bench;
        bench.Signal("cn " + cn);
        for (const std::string_view mode : sim::Split(kMeasureModes, ' ')) {
            ASSERT_EQ(bench.Ask("SENS:DVBT:MEAS " + std::string{mode} + ";:READ:SCREEN:BUFFER?"), "0") << mode;
            const std::string block = bench.Ask("READ:BUFFER:PCX?");
            const size_t digits = static_cast<size_t>(block[1] - '0');
            ASSERT_EQ(block[0], '#');
            const size_t length = std::stoul(block.substr(2, digits));
            EXPECT_EQ(block.size(), 2 + digits + length) << mode;
            EXPECT_LE(length, 32767u) << mode;
        }
    }
}

TEST(Screen, ShowsWhatIsMeasured) {
    const auto capture = [](Bench& bench, const std::string& mode) {
        bench.Ask("SENS:DVBT:MEAS " + mode + ";:READ:SCREEN:BUFFER?");
        return Decode(bench.receiver.capturedScreen);
    };
    constexpr int kGreen = 0x00D000;
    Bench bench;
    // The points of a good constellation stand closer together: fewer different pixels than those of a noisy one.
    bench.Signal("cn 60");
    const int tight = capture(bench, "CDI").Colours()[kGreen];
    bench.Signal("cn 20");
    const int wide = capture(bench, "CDI").Colours()[kGreen];
    EXPECT_GT(tight, 64);
    EXPECT_GT(2 * wide, 3 * tight);

    const Decoded impulse = capture(bench, "IR_1");
    EXPECT_GT(impulse.Colours()[kGreen], 300);
    EXPECT_EQ(impulse.width, 320);
    bench.Signal("present off");
    EXPECT_EQ(capture(bench, "IR_1").Colours()[kGreen], 0);
}

TEST(Screen, IsAnEmptyBlockBeforeTheFirstCapture) { EXPECT_EQ(Bench{}.Ask("READ:BUFFER:PCX?"), "#10"); }

}  // namespace
