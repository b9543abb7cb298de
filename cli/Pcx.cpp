#include "cli/Pcx.h"

#include <algorithm>
#include <array>

namespace cli {

namespace {

using Bytes = std::span<const std::uint8_t>;
using Colour = std::array<std::uint8_t, 3>;

constexpr std::size_t HeaderSize = 128, LargePalette = std::size_t{256} * 3;
constexpr std::uint8_t PaletteMark = 12;

/// What the header tells; fields stand at fixed places, numbers of 16 bits with the low byte first.
struct Header {
    explicit Header(Bytes file)
        : Maker(file[0]),
          RunLengths(file[2] == 1),
          BitsPerPixel(file[3]),
          Width(Number(file, 8) - Number(file, 4) + 1),
          Height(Number(file, 10) - Number(file, 6) + 1),
          Planes(file[65]),
          BytesPerLine(static_cast<std::size_t>(Number(file, 66))) {}

    static int Number(Bytes file, std::size_t at) { return file[at] | file[at + 1] << 8; }

    bool IsUsable() const {
        constexpr std::uint8_t pcx = 10;
        const int bits = BitsPerPixel;
        const bool known = (Planes == 1 && (bits == 1 || bits == 2 || bits == 4 || bits == 8)) ||
                           (bits == 1 && Planes <= 4 && Planes > 1) || (bits == 8 && Planes == 3);
        return Maker == pcx && known && Width > 0 && Height > 0 &&
               BytesPerLine * 8 >= static_cast<std::size_t>(Width) * BitsPerPixel;
    }

    std::uint8_t Maker;
    bool RunLengths;
    std::uint8_t BitsPerPixel;
    int Width, Height;
    std::uint8_t Planes;
    std::size_t BytesPerLine;
};

/// The bytes of one line, all planes one after the other; false when the data ends before.
bool ReadLine(Bytes& data, bool runLengths, std::vector<std::uint8_t>& line) {
    for (std::size_t at = 0; at < line.size();) {
        if (data.empty()) return false;
        auto byte = data[0];
        std::size_t count = 1;
        data = data.subspan(1);
        if (runLengths && byte >= 0xC0) {
            if (data.empty()) return false;
            count = byte & 0x3FU;
            byte = data[0];
            data = data.subspan(1);
        }
        count = std::min(count, line.size() - at);
        std::fill_n(line.begin() + static_cast<std::ptrdiff_t>(at), count, byte);
        at += count;
    }
    return true;
}

/// The number of a pixel's colour: its bits in the first plane, or a bit of each plane.
std::size_t Index(const Header& header, const std::vector<std::uint8_t>& line, std::size_t x) {
    const auto firstBit = x * header.BitsPerPixel;
    std::size_t index = 0;
    for (std::size_t plane = 0; plane < header.Planes; ++plane) {
        const auto byte = line[plane * header.BytesPerLine + firstBit / 8];
        const auto bits = byte >> (8 - header.BitsPerPixel - firstBit % 8) & ((1 << header.BitsPerPixel) - 1);
        index |= static_cast<std::size_t>(bits) << plane;
    }
    return index;
}

std::vector<Colour> Palette(const Header& header, Bytes file) {
    Bytes colours = file.subspan(16, std::size_t{16} * 3);
    if (header.BitsPerPixel == 8) {
        if (file.size() < HeaderSize + 1 + LargePalette || file[file.size() - LargePalette - 1] != PaletteMark)
            return {};
        colours = file.last(LargePalette);
    }
    std::vector<Colour> palette;
    for (std::size_t at = 0; at < colours.size(); at += 3) {
        palette.push_back({colours[at], colours[at + 1], colours[at + 2]});
    }
    return palette;
}

}  // namespace

std::optional<Picture> DecodePcx(Bytes file) {
    if (file.size() < HeaderSize) return {};
    const Header header(file);
    if (!header.IsUsable()) return {};
    const bool direct = header.Planes == 3 && header.BitsPerPixel == 8;
    const auto palette = direct ? std::vector<Colour>() : Palette(header, file);
    if (!direct && palette.empty()) return {};

    Picture picture{header.Width, header.Height, {}};
    std::vector<std::uint8_t> line(header.BytesPerLine * header.Planes);
    auto data = file.subspan(HeaderSize);
    for (int y = 0; y < header.Height; ++y) {
        if (!ReadLine(data, header.RunLengths, line)) return {};
        for (std::size_t x = 0; x < static_cast<std::size_t>(header.Width); ++x) {
            const auto colour = direct
                                    ? Colour{line[x], line[header.BytesPerLine + x], line[2 * header.BytesPerLine + x]}
                                    : palette[Index(header, line, x)];
            picture.Pixels.insert(picture.Pixels.end(), colour.begin(), colour.end());
        }
    }
    return picture;
}

}  // namespace cli
