#pragma once

#include <array>
#include <cstdint>

namespace sim {

/// The five columns of a character, the lowest bit at the top. Small letters look like capitals; a character that the
/// font does not have is blank.
std::array<uint8_t, 5> Glyph(char c);

}  // namespace sim
