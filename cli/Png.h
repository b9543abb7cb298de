#pragma once

#include "cli/Pcx.h"

namespace cli {

/// The picture as a PNG file.
std::vector<std::uint8_t> EncodePng(const Picture& picture);

}  // namespace cli
