#pragma once

#include <cstdint>
#include <span>
#include <string_view>

namespace cli {

/// A value of one of the driver's enumerations.
struct NamedValue {
    std::string_view Name;
    std::int32_t Value;
    std::string_view Help;

    /// Without the "tarn" in front, as users write it: "PAR".
    std::string_view ShortName() const { return Name.substr(Name.starts_with("tarn") ? 4 : 0); }
};

/// The values of that enumeration; none when there is no enumeration of that name.
std::span<const NamedValue> ValuesOf(std::string_view enumeration);
/// Empty when the enumeration has no such value.
std::string_view NameOf(std::string_view enumeration, std::int32_t value);

}  // namespace cli
