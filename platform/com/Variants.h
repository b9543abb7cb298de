#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "platform/Value.h"
#include "platform/com/Windows.h"

namespace com {

/// Owns the contents of an automation value.
class Variant : public VARIANT {
  public:
    Variant() { VariantInit(this); }
    /// Takes over the contents.
    explicit Variant(const VARIANT& contents) : VARIANT(contents) {}
    Variant(Variant&& other) noexcept : VARIANT(other.Detach()) {}
    Variant& operator=(Variant&& other) noexcept {
        VariantClear(this);
        static_cast<VARIANT&>(*this) = other.Detach();
        return *this;
    }
    Variant(const Variant&) = delete;
    Variant& operator=(const Variant&) = delete;
    ~Variant() { VariantClear(this); }

    /// Hands the contents over to the caller.
    VARIANT Detach() {
        const VARIANT contents = *this;
        VariantInit(this);
        return contents;
    }
};

/// What references to Variants lead to: a value, or a reference to a value of one type. Raises E_POINTER when one of
/// them is null.
VARIANT& Followed(VARIANT& value);
const VARIANT& Followed(const VARIANT& value);

/// True for the automation value "parameter not found", which stands for an argument that was left out.
bool ParameterNotFound(const VARIANT& argument);
/// True for an optional input that was left out or holds nothing.
bool Missing(const VARIANT& argument);
/// The argument that stands for one that is not given.
VARIANT MissingArgument();

/// The value, through references and default values of objects. Raises 13 when it is none (arrays, Null), 91 for
/// Nothing.
platform::Value FromVariant(const VARIANT& value);
/// The value as text, as FromVariant. Raises the same errors.
std::string TextOf(const VARIANT& value);
/// The text of an optional argument.
std::optional<std::string> OptionalText(const VARIANT& argument);
/// A number given as an optional argument. Raises 13 when it is none.
std::optional<std::int32_t> OptionalNumber(const VARIANT& argument);
VARIANT ToVariant(const platform::Value& value);
/// Writes into a caller's variable: one of a fixed type keeps its type. Raises 13 or 6 when the value does not fit.
void Assign(VARIANT& variable, const platform::Value& value);

/// A one-dimensional array of bytes as the caller's own. Raises std::bad_alloc.
SAFEARRAY* ToByteArray(std::span<const std::uint8_t> bytes);
VARIANT ToVariant(std::span<const std::uint8_t> bytes);
/// The elements of a one-dimensional array; elements of other types than Byte are converted. Raises 13 when it is no
/// such array, 6 when an element is no byte.
std::vector<std::uint8_t> BytesOf(const VARIANT& array);

}  // namespace com
