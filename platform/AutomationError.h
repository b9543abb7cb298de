#pragma once

#include <cstdint>
#include <exception>
#include <optional>
#include <string>
#include <utility>

namespace platform {

/// Offset of the numbers that an automation object raises as its own.
inline constexpr std::uint32_t ObjectErrorBase = 0x80040000U;

/// Number of an automation object's own error: the offset plus a small code.
constexpr std::int32_t ObjectError(std::int32_t code) {
    return static_cast<std::int32_t>(ObjectErrorBase + static_cast<std::uint32_t>(code));
}

/// Numbers that the run time of automation hosts has used for decades.
enum RuntimeError : std::int32_t {
    InvalidProcedureCall = 5,
    Overflow = 6,
    SubscriptOutOfRange = 9,
    TypeMismatch = 13,
    PathFileAccessError = 75,
    ObjectVariableNotSet = 91,
    InvalidPropertyValue = 380,
    KeyAlreadyUsed = 457,
};

/// An automation error: what a host finds in its error object. Numbers 1 to 65535 are plain; numbers with the top bit
/// set are result codes and travel as they are.
class AutomationError : public std::exception {
  public:
    AutomationError(std::int32_t number, std::string source, std::string description)
        : Number(number), Source(std::move(source)), Description(std::move(description)) {}

    const char* what() const noexcept override { return Description.c_str(); }

    std::int32_t Number;
    std::string Source;
    std::string Description;
    std::string HelpFile;
    std::optional<std::int32_t> HelpContext;
};

}  // namespace platform
