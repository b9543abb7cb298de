#include "driver/modParameterUtilities.h"

#include "driver/Conversions.h"
#include "driver/Failure.h"

namespace tarn4x::modParameterUtilities {

std::string GetDisplayValue(std::string_view strValueList, std::int16_t intIndex, platform::ErrorService& errors) {
    const auto entries = Split(strValueList);
    if (intIndex < 0 || static_cast<std::size_t>(intIndex) >= entries.size()) {
        RaiseThrough(errors, {platform::InvalidPropertyValue, "modParameterUtilities.GetDisplayValue",
                              "Invalid Property Value (intIndex = " + std::to_string(intIndex) + ")"});
    }
    const auto entry = entries[static_cast<std::size_t>(intIndex)];
    return std::string(entry.substr(0, entry.find('=')));
}

}  // namespace tarn4x::modParameterUtilities
