#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "driver/MemberTable.h"

namespace tarn4x {

/// What a member does, as its failures report it: "<Verb><Name><Ending>" from the source "clsTarn4x.<Interface><Name>".
struct Operation {
    std::string_view Verb;
    std::string_view Name;
    std::int32_t Code;
    std::string_view Ending = " failed";
    std::string_view Interface = {};  ///< "IDriverIdentify_" for the members of that interface
    bool AsksInstrument = true;       ///< whether the instrument's own error goes behind the text

    std::string Text() const { return std::string(Verb).append(Name).append(Ending); }
    std::string Source() const { return std::string("clsTarn4x.").append(Interface).append(Name); }
};

/// The operation of a member, or under the name that its failures have instead.
inline Operation GetOf(Members member, std::string_view failsAs = {}) {
    return {"Get ", failsAs.empty() ? NameOf(member) : failsAs, xtarnQueryFailed};
}
inline Operation LetOf(Members member, std::string_view failsAs = {}) {
    return {"Let ", failsAs.empty() ? NameOf(member) : failsAs, xtarnCommandFailed};
}
inline Operation MethodOf(Members member) { return {"", NameOf(member), xtarnCommandFailed}; }

}  // namespace tarn4x
