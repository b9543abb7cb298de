#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "core/Enumerations.h"

namespace tarn4x {

/// What a member does, as its failures report it: "<Verb><Name><Ending>" from the source "clsTarn4x.<Source or Name>".
struct Operation {
    std::string_view Verb;
    std::string_view Name;
    std::int32_t Code;
    std::string_view Ending = " failed";
    std::string_view Source = {};
    bool AsksInstrument = true;  ///< whether the instrument's own error goes behind the text

    std::string Text() const { return std::string(Verb).append(Name).append(Ending); }
    std::string SourceText() const { return std::string("clsTarn4x.").append(Source.empty() ? Name : Source); }
};

constexpr Operation GetOf(std::string_view member) { return {"Get ", member, xtarnQueryFailed}; }
constexpr Operation LetOf(std::string_view member) { return {"Let ", member, xtarnCommandFailed}; }
constexpr Operation MethodOf(std::string_view member) { return {"", member, xtarnCommandFailed}; }

}  // namespace tarn4x
