#pragma once

#include <string>

#include "simulator/Canvas.h"

namespace sim {

/// A PCX file, version 5: one plane of 8 bits, run-length coded, with a palette of 256 colours at its end.
std::string EncodePcx(const Canvas& canvas);

}  // namespace sim
