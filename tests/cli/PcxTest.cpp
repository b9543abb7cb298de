#include <gmock/gmock.h>

#include "cli/Pcx.h"

namespace {

using Bytes = std::vector<std::uint8_t>;

struct Layout {
    std::uint8_t RunLengths, BitsPerPixel, Planes, BytesPerLine;
};

/// A file of 3 x 2 pixels. The palette of the header is black, red, green, blue.
Bytes File(const Layout& layout, const Bytes& lines, const Bytes& largePalette = {}) {
    Bytes file(128);
    file[0] = 10;
    file[2] = layout.RunLengths;
    file[3] = layout.BitsPerPixel;
    file[8] = 2;
    file[10] = 1;
    file[19] = file[23] = file[27] = 255;
    file[65] = layout.Planes;
    file[66] = layout.BytesPerLine;
    file.insert(file.end(), lines.begin(), lines.end());
    file.insert(file.end(), largePalette.begin(), largePalette.end());
    return file;
}

/// 12, then 256 colours: black, red, green, blue, black and so on.
Bytes LargePalette() {
    Bytes palette(1 + 256 * 3);
    palette[0] = 12;
    palette[4] = palette[8] = palette[12] = 255;
    return palette;
}

/// "KRG/RRB": black, red, green, and the second line.
std::string Colours(const std::optional<cli::Picture>& picture) {
    if (!picture) return "none";
    std::string colours;
    for (std::size_t at = 0; at < picture->Pixels.size(); at += 3) {
        const auto* pixel = &picture->Pixels[at];
        if (at > 0 && at / 3 % static_cast<std::size_t>(picture->Width) == 0) colours += '/';
        colours += pixel[0] ? 'R' : pixel[1] ? 'G' : pixel[2] ? 'B' : 'K';
    }
    return colours;
}

TEST(Pcx, IsReadInAllItsLayouts) {
    struct Case {
        const char* Name;
        Bytes File;
        const char* Expected;
    };
    const Case cases[] = {
        {"8 bits, run lengths, padded", File({1, 8, 1, 4}, {0, 1, 0xC2, 2, 0xC3, 3, 0}, LargePalette()), "KRG/BBB"},
        {"8 bits, a run over the line's end", File({1, 8, 1, 3}, {0xC5, 1, 0xC3, 2}, LargePalette()), "RRR/GGG"},
        {"8 bits without a palette", File({1, 8, 1, 4}, {0xC8, 1}), "none"},
        {"1 bit", File({0, 1, 1, 1}, {0b01000000, 0b11100000}), "KRK/RRR"},
        {"2 bits", File({0, 2, 1, 1}, {0b00011000, 0b11111100}), "KRG/BBB"},
        {"4 bits", File({0, 4, 1, 2}, {0x01, 0x20, 0x33, 0x30}), "KRG/BBB"},
        {"2 planes", File({0, 1, 2, 1}, {0b01000000, 0b00100000, 0b11100000, 0b11100000}), "KRG/BBB"},
        {"3 planes of 8 bits", File({0, 8, 3, 3}, {0, 9, 0, 0, 0, 9, 0, 0, 0, 0, 0, 0, 0, 0, 0, 9, 9, 9}), "KRG/BBB"},
        {"5 planes", File({0, 1, 5, 1}, Bytes(10)), "none"},
        {"lines shorter than the picture", File({0, 8, 1, 2}, Bytes(4), LargePalette()), "none"},
    };
    for (const auto& [name, file, expected] : cases) EXPECT_EQ(Colours(cli::DecodePcx(file)), expected) << name;
}

TEST(Pcx, ThatEndsEarlyIsNone) {
    const auto file = File({1, 1, 1, 1}, {0xC1, 0b11100000, 0xC1, 0b11100000});
    EXPECT_EQ(Colours(cli::DecodePcx(file)), "RRR/RRR");
    for (std::size_t size = 0; size < file.size(); ++size) {
        EXPECT_EQ(Colours(cli::DecodePcx(std::span(file).first(size))), "none") << size;
    }
}

}  // namespace
