#include "simulator/Pcx.h"

namespace sim {

namespace {

constexpr uint8_t kPalette[kColours][3] = {{0, 0, 0},     {255, 255, 255}, {96, 96, 96}, {0, 208, 0},
                                           {255, 224, 0}, {240, 32, 32},   {32, 64, 160}};

void Put16(std::string& file, size_t at, int value) {
    file[at] = static_cast<char>(value & 0xFF);
    file[at + 1] = static_cast<char>(value >> 8);
}

}  // namespace

std::string EncodePcx(const Canvas& canvas) {
    constexpr size_t kHeader = 128;
    constexpr int kLongestRun = 63;
    const int bytesPerLine = canvas.Width() + canvas.Width() % 2;
    std::string file(kHeader, '\0');
    file[0] = 10;  // maker
    file[1] = 5;   // version
    file[2] = 1;   // run-length coding
    file[3] = 8;   // bits per pixel
    Put16(file, 8, canvas.Width() - 1);
    Put16(file, 10, canvas.Height() - 1);
    Put16(file, 12, 72);  // dots per inch
    Put16(file, 14, 72);
    file[65] = 1;  // planes
    Put16(file, 66, bytesPerLine);
    Put16(file, 68, 1);  // colour palette
    for (int y = 0; y < canvas.Height(); ++y) {
        const auto pixel = [&](int x) { return x < canvas.Width() ? canvas.At(x, y) : kBlack; };
        for (int x = 0, run; x < bytesPerLine; x += run) {
            run = 1;
            while (run < kLongestRun && x + run < bytesPerLine && pixel(x + run) == pixel(x)) ++run;
            // All colours are below 0xC0, so a single one needs no count.
            if (run > 1) file += static_cast<char>(0xC0 | run);
            file += static_cast<char>(pixel(x));
        }
    }
    file += '\x0C';
    for (int i = 0; i < 256; ++i) {
        for (const int part : {0, 1, 2}) file += i < kColours ? static_cast<char>(kPalette[i][part]) : '\0';
    }
    return file;
}

}  // namespace sim
