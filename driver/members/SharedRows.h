#pragma once

#include "driver/Rows.h"

namespace tarn4x {

inline constexpr Token SwitchTokens[] = {{tarnOff, "OFF"}, {tarnOff, "0"}, {tarnOn, "ON"}, {tarnOn, "1"}};
inline constexpr Token QamTokens[] = {{tarnQam4, "4"}, {tarnQam16, "16"}, {tarnQam64, "64"}};

}  // namespace tarn4x
