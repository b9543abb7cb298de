#pragma once

#include "platform/com/Windows.h"

namespace com {

/// Component category of the classes by which hosts find instrument drivers.
inline constexpr CATID DriverCategory = {0xEF14F7CF, 0x5C1D, 0x4266, {0xA2, 0x91, 0xB7, 0x2B, 0x3B, 0x9C, 0xAD, 0x4A}};

}  // namespace com
