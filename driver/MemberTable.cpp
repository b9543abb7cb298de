#include "driver/MemberTable.h"

#include <algorithm>
#include <array>

#include "driver/Conversions.h"

namespace tarn4x {

namespace {

constexpr MemberRow Rows[] = {
#define UNIT(unit) unit
#define MODES(...) AllowedModes(__VA_ARGS__)
#define ARGUMENT(type, name) name As type
#define REFERENCE(type, name) name As type
#define TEXT_OF(...) #__VA_ARGS__
#define LISTED(...) TEXT_OF(__VA_ARGS__)
#define PROPERTY(allows, arguments, identifier, name, type, unit, modes, text, ...) \
    {static_cast<std::int32_t>(identifier),                                         \
     #name,                                                                         \
     Access::allows,                                                                \
     LISTED arguments,                                                              \
     #type,                                                                         \
     "" unit,                                                                       \
     {modes},                                                                       \
     text,                                                                          \
     "" __VA_ARGS__},
#define READ(...) PROPERTY(Read, (), __VA_ARGS__)
#define READ_WITH(...) PROPERTY(Read, __VA_ARGS__)
#define CONTROL(...) PROPERTY(ReadAndWrite, (), __VA_ARGS__)
#define CONTROL_WITH(...) PROPERTY(ReadAndWrite, __VA_ARGS__)
#define METHOD(...) METHOD_WITH((), __VA_ARGS__)
#define METHOD_WITH(arguments, identifier, name, modes, text) \
    {identifier, #name, Access::Method, LISTED arguments, "", "", {modes}, text, ""},
#define FUNCTION(identifier, name, argument, type, text) \
    {identifier, #name, Access::Function, "udtValue As " #argument, #type, "", {}, text, ""},
#include "driver/Members.def"
#undef PROPERTY
#undef LISTED
#undef TEXT_OF
};

}  // namespace

std::string MemberRow::Help() const {
    std::string help(Text);
    if (!Unit.empty()) help.append(" in ").append(Unit);
    help.append(TextBehindUnit);
    if (Modes.Restricted()) help.append(" Needs measure mode ").append(Modes.Names).append(".");
    return help;
}

const MemberRow& RowOf(Members member) { return Rows[static_cast<std::size_t>(member)]; }

std::span<const MemberRow> AllMembers() { return Rows; }

const MemberRow* FindMember(std::string_view name) {
    const auto sought = LowerCase(name);
    const auto found = std::ranges::find_if(Rows, [&](const auto& row) { return LowerCase(row.Name) == sought; });
    return found == std::end(Rows) ? nullptr : found;
}

}  // namespace tarn4x
