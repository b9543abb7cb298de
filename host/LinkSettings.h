#pragma once

#include <charconv>
#include <string>

#include "host/ByteLink.h"
#include "platform/SettingsNode.h"

namespace host {

inline std::string SettingText(platform::SettingsNode& settings, const char* name) {
    return platform::ToText(settings.Item(name)->GetValue());
}

/// The number that a link's setting holds. Throws OpeningFailure when it holds none, or one outside the range.
template <class Number>
Number SettingNumber(platform::SettingsNode& settings, const char* name, Number least, Number most) {
    const auto text = SettingText(settings, name);
    Number number{};
    const auto end = text.data() + text.size();
    const auto [parsed, error] = std::from_chars(text.data(), end, number);
    if (error == std::errc() && parsed == end && number >= least && number <= most) return number;
    throw OpeningFailure{"the setting \"" + std::string(name) + "\" is \"" + text + "\", it must be a number from " +
                         platform::GeneralNumber(least) + " to " + platform::GeneralNumber(most)};
}

}  // namespace host
