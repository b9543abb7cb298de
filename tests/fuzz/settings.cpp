// Value lists and names of settings: the first line of the input is a value list, the others are names and values.
#include <algorithm>

#include "driver/Conversions.h"
#include "driver/modParameterUtilities.h"
#include "host/ErrorService.h"
#include "host/MessageLog.h"
#include "host/SettingsTree.h"
#include "tests/fuzz/Fuzz.h"

namespace {

using tarn4x::Split;
using tarn4x::Trim;

constexpr std::int16_t Most = 16;  // entries and lines that are tried, each against all

void CheckValueList(std::string_view list, const std::vector<std::string_view>& values) {
    static host::MessageLog log;
    static host::ErrorService errors(log);
    errors.SetErrorReporting(false);
    host::SettingsNode node("Setting", 1, 2, list);
    const auto entries = Split(list);
    const auto count = static_cast<std::int16_t>(entries.size());
    const auto display = [&](std::int16_t index) {
        return tarn4x::modParameterUtilities::GetDisplayValue(list, index, errors);
    };
    for (const std::int16_t outside : std::initializer_list<std::int16_t>{-32768, -1, count, 32767}) {
        REQUIRE(fuzz::Raised([&] { display(outside); }) == 380);
    }
    const auto isStored = [&](const platform::Value& value) {
        return std::ranges::any_of(entries, [&](std::string_view entry) {
            return platform::ToText(value) == Trim(entry.substr(entry.find('=') + 1));  // npos + 1: the whole entry
        });
    };
    const auto set = [&](std::string_view value) {
        node.SetValue(true, true, std::string(value));
        const auto stored = node.GetValue();
        const auto shown = node.DisplayValue();
        node.SetValue(true, true, stored);
        REQUIRE(node.GetValue() == stored && node.DisplayValue() == shown);
        node.SetValueList(list);
        REQUIRE(node.GetValue() == stored && node.DisplayValue() == shown);
        return stored;
    };
    for (std::int16_t i = 0; i < std::min(count, Most); ++i) REQUIRE(isStored(set(display(i))));
    for (const auto value : values) {
        const auto stored = set(value);
        REQUIRE(isStored(stored) || stored == platform::Value(std::string(value)));
    }
}

void CheckNames(const std::vector<std::string_view>& names) {
    host::SettingsNode root;
    std::size_t added = 0;
    for (const auto name : names) {
        const auto raised = fuzz::Raised([&] { root.AddSetting(name, 1, 4, "")->AddSetting("x", 1, 4, ""); });
        REQUIRE(fuzz::IsOneOf(raised, {0, 457}));
        if (raised == 0) ++added;
        REQUIRE(tarn4x::LowerCase(root.Item(name)->Name()) == tarn4x::LowerCase(name));
        if (name.find('.') == name.npos) {
            const auto path = tarn4x::LowerCase(name) + ".x";
            const auto found = tarn4x::LowerCase(root.Item(path)->Name());
            REQUIRE(found == "x" || found == path);
        }
    }
    REQUIRE(root.Children().size() == added);
    for (const auto name : names) {
        REQUIRE(fuzz::IsOneOf(fuzz::Raised([&] { root.Item(std::string(name) + ".y"); }), {0, 9}));
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const auto text = fuzz::Text(data, size);
    const auto end = text.find('\n');
    const auto rest = end == text.npos ? std::string_view{} : text.substr(end + 1);
    auto lines = Split(rest, "\n");
    lines.resize(std::min<std::size_t>(lines.size(), Most));
    CheckValueList(text.substr(0, end), lines);
    CheckNames(lines);
    return 0;
}
