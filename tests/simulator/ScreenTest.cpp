#include <gtest/gtest.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>

#include "simulator/Canvas.h"
#include "simulator/Pcx.h"

namespace {

TEST(Screen, IsReadByAnotherProgramDotForDot) {
    constexpr int rgb[sim::kColours] = {0x000000, 0xFFFFFF, 0x606060, 0x00D000, 0xFFE000, 0xF02020, 0x2040A0};
    sim::Canvas canvas{131, 9};  // odd, and longer than two runs
    std::string expected = "P6\n131 9\n255\n";
    for (int i = 0; i < 131 * 9; ++i) {
        const int x = i % 131, y = i / 131, colour = y == 0 ? 3 : x / (9 * y - 8) % 7;
        canvas.Dot(x, y, static_cast<sim::Colour>(colour));
        for (const int shift : {16, 8, 0}) expected += static_cast<char>(rgb[colour] >> shift);
    }
    const std::string file = testing::TempDir() + "tarn4x-screen-" + std::to_string(::getpid());
    std::ofstream{file + ".pcx", std::ios::binary} << sim::EncodePcx(canvas);
    std::ofstream{file + ".ppm", std::ios::binary} << expected;
    EXPECT_EQ(std::system(("pcxtoppm " + file + ".pcx | cmp - " + file + ".ppm").c_str()), 0) << "of package netpbm";
    for (const char* part : {".pcx", ".ppm"}) std::filesystem::remove(file + part);
}

}  // namespace
