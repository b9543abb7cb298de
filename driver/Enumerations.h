#pragma once

#include <cstdint>

// The enumerations of the driver, as the type library has them: ErrorConstants, TarnMeasureModes, TarnModes and so on.

namespace tarn4x {

#define ENUMERATION(name, help) enum name : std::int32_t {
#define VALUE(name, value, help) name = (value),
#define END(name) \
    }             \
    ;
#include "driver/Enumerations.def"

}  // namespace tarn4x
