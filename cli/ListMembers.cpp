#include <algorithm>

#include "cli/Commands.h"
#include "cli/Enumerations.h"

namespace cli {

namespace {

using tarn4x::Access;
using tarn4x::MemberRow;

const char* Name(Access access) {
    switch (access) {
        case Access::Read:
            return "read";
        case Access::ReadAndWrite:
            return "read, write";
        case Access::Method:
            return "method";
        case Access::Function:
            return "function";
    }
    return "";
}

/// "*" stands for any characters, "?" for one.
bool Fits(std::string_view text, std::string_view pattern) {
    if (pattern.empty()) return text.empty();
    if (pattern[0] == '*') return Fits(text, pattern.substr(1)) || (!text.empty() && Fits(text.substr(1), pattern));
    return !text.empty() && (pattern[0] == '?' || pattern[0] == text[0]) && Fits(text.substr(1), pattern.substr(1));
}

std::vector<const MemberRow*> Matching(const std::string& pattern) {
    // A pattern without wildcards is looked for everywhere in the name, but a whole name is that member alone.
    if (const auto* member = tarn4x::FindMember(pattern)) return {member};
    const bool wild = pattern.find_first_of("*?") != pattern.npos;
    const auto lower = tarn4x::LowerCase(wild ? pattern : '*' + pattern + '*');
    std::vector<const MemberRow*> found;
    for (const auto& member : tarn4x::AllMembers()) {
        if (Fits(tarn4x::LowerCase(member.Name), lower)) found.push_back(&member);
    }
    if (found.empty()) RequestsFor(pattern);  // tells which names come near
    return found;
}

/// The values that a member, or its argument, can have.
std::span<const NamedValue> ValuesFor(const MemberRow& member) {
    const auto values = ValuesOf(member.Type);
    const auto parameters = ParametersOf(member);
    return values.empty() && !parameters.empty() ? ValuesOf(parameters[0].Type) : values;
}

Json ToJson(const MemberRow& member) {
    Json json = {{"member", member.Name}, {"access", Name(member.Allows)}};
    for (const auto& [name, type] : ParametersOf(member)) json["arguments"].push_back({{"name", name}, {"type", type}});
    if (!member.Type.empty()) json["type"] = member.Type;
    if (!member.Unit.empty()) json["unit"] = member.Unit;
    for (const auto& mode : ValuesOf("TarnMeasureModes")) {
        if (member.Modes.Contain(static_cast<tarn4x::TarnMeasureModes>(mode.Value))) json["modes"].push_back(mode.Name);
    }
    for (const auto& value : ValuesFor(member)) {
        json["values"].push_back({{"name", value.Name}, {"number", value.Value}, {"help", value.Help}});
    }
    json["help"] = member.Help();
    return json;
}

void Describe(Output& out, const MemberRow& member) {
    auto name = std::string(member.Name);
    if (!member.Arguments.empty()) name.append("(").append(member.Arguments).append(")");
    out.Line(name);
    std::vector<std::vector<std::string>> rows{{"  access", Name(member.Allows)}};
    const auto row = [&](const char* what, std::string_view text) {
        if (!text.empty()) rows.push_back({what, std::string(text)});
    };
    row("  type", member.Type);
    row("  unit", member.Unit);
    row("  modes", member.Modes.Names);
    row("  help", member.Help());
    for (const auto& line : InColumns(rows)) out.Line(line);
    rows.clear();
    for (const auto& value : ValuesFor(member)) {
        rows.push_back({"    " + std::string(value.Name), std::to_string(value.Value), std::string(value.Help)});
    }
    for (const auto& line : InColumns(rows)) out.Line(line);
}

void List(Output& out, std::span<const MemberRow* const> members) {
    std::vector<std::vector<std::string>> rows{{"member", "access", "type", "unit", "modes"}};
    for (const auto* member : members) {
        rows.push_back({std::string(member->Name), Name(member->Allows), std::string(member->Type),
                        std::string(member->Unit), std::string(member->Modes.Names)});
    }
    for (const auto& line : InColumns(rows)) out.Line(line);
}

}  // namespace

Outcome ListMembers(Context& context, const std::string& pattern) {
    constexpr std::size_t fewEnoughToDescribe = 3;
    const auto members = Matching(pattern);
    Outcome outcome;
    if (context.Out.IsJson()) {
        for (const auto* member : members) outcome.Results.push_back(ToJson(*member));
    } else if (members.size() > fewEnoughToDescribe) {
        List(context.Out, members);
    } else {
        for (const auto* member : members) Describe(context.Out, *member);
    }
    return outcome;
}

}  // namespace cli
