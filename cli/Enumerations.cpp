#include "cli/Enumerations.h"

#include <algorithm>

namespace cli {

namespace {

#define ENUMERATION(name, help) constexpr NamedValue name##Values[] = {
#define VALUE(name, value, help) {#name, value, help},
#define END(name) \
    }             \
    ;
#include "driver/Enumerations.def"

struct Enumeration {
    std::string_view Name;
    std::span<const NamedValue> Values;
};

constexpr Enumeration Enumerations[] = {
#define ENUMERATION(name, help) {#name, name##Values},
#define VALUE(name, value, help)
#define END(name)
#include "driver/Enumerations.def"
};

}  // namespace

std::span<const NamedValue> ValuesOf(std::string_view enumeration) {
    const auto found = std::ranges::find(Enumerations, enumeration, &Enumeration::Name);
    return found == std::end(Enumerations) ? std::span<const NamedValue>() : found->Values;
}

std::string_view NameOf(std::string_view enumeration, std::int32_t value) {
    const auto values = ValuesOf(enumeration);
    const auto found = std::ranges::find(values, value, &NamedValue::Value);
    return found == values.end() ? std::string_view() : found->Name;
}

}  // namespace cli
