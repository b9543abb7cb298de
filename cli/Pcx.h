#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <vector>

namespace cli {

/// A picture of three bytes a pixel (red, green, blue), line by line from the top.
struct Picture {
    int Width, Height;
    std::vector<std::uint8_t> Pixels;
};

/// The picture in a PCX file: run-length coded or not; 1, 2, 4 or 8 bits a pixel in one plane, 1 bit in up to four, or
/// 8 bits in three. Nothing when the bytes are none or end too early.
std::optional<Picture> DecodePcx(std::span<const std::uint8_t> file);

}  // namespace cli
