#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "platform/Framework.h"

namespace tarn4x::modParameterUtilities {

/// Display text of an entry of a value list, counted from 0, with the blanks around it. Raises 380 (plain) outside.
std::string GetDisplayValue(std::string_view strValueList, std::int16_t intIndex, platform::ErrorService& errors);

}  // namespace tarn4x::modParameterUtilities
