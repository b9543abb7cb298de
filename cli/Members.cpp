#include "cli/Members.h"

#include <algorithm>
#include <utility>

#include "cli/Enumerations.h"
#include "cli/Failure.h"
#include "cli/Nearest.h"
#include "driver/clsTarn4x.h"
#include "driver/members/clsStatistics.h"

namespace cli {

namespace {

using tarn4x::Access;
using tarn4x::clsTarn4x;
using tarn4x::MemberRow;
using Numbers = std::span<const double>;
using Function = Value (*)(clsTarn4x& driver, Numbers arguments);

// ---- How a member is called ----

template <class T>
constexpr bool IsNumeric = std::is_arithmetic_v<T> || std::is_enum_v<T>;

template <class Result>
Value ToValue(const Result& result) {
    if constexpr (std::is_same_v<Result, bool> || std::is_same_v<Result, std::string>) {
        return result;
    } else {
        return static_cast<double>(result);
    }
}

/// Calls a member that takes numbers and gives a number, a text or nothing.
template <auto Member, class Result, class... Parameters>
struct Caller {
    static constexpr bool Fits = (IsNumeric<Parameters> && ...) &&
                                 (IsNumeric<Result> || std::is_void_v<Result> || std::is_same_v<Result, std::string>);

    static Value Invoke(clsTarn4x& driver, Numbers arguments) {
        return Invoke(driver, arguments, std::index_sequence_for<Parameters...>());
    }
    template <std::size_t... Positions>
    static Value Invoke(clsTarn4x& driver, [[maybe_unused]] Numbers arguments, std::index_sequence<Positions...>) {
        if constexpr (std::is_void_v<Result>) {
            (driver.*Member)(static_cast<Parameters>(arguments[Positions])...);
            return {};
        } else {
            return ToValue((driver.*Member)(static_cast<Parameters>(arguments[Positions])...));
        }
    }
};

template <auto Member, class Result, class... Parameters>
auto CallerOf(Result (clsTarn4x::*)(Parameters...)) -> Caller<Member, Result, Parameters...>;
template <auto Member, class Result>
auto CallerOf(Result (clsTarn4x::*)() const) -> Caller<Member, Result>;

/// How to call that member; null when its arguments or its result are more than numbers and texts.
template <auto Member>
constexpr Function FunctionOf() {
    using Calling = decltype(CallerOf<Member>(Member));
    if constexpr (Calling::Fits) {
        return [](clsTarn4x& driver, Numbers arguments) { return Calling::Invoke(driver, arguments); };
    } else {
        return nullptr;
    }
}

struct Calls {
    Function Get;  ///< reads a property, calls a method or a function
    Function Put = nullptr;
};

constexpr Calls AllCalls[] = {
#define READ(identifier, name, ...) {FunctionOf<&clsTarn4x::get_##name>()},
#define READ_WITH(arguments, ...) READ(__VA_ARGS__)
#define CONTROL(identifier, name, ...) {FunctionOf<&clsTarn4x::get_##name>(), FunctionOf<&clsTarn4x::put_##name>()},
#define CONTROL_WITH(arguments, ...) CONTROL(__VA_ARGS__)
#define METHOD(identifier, name, ...) {FunctionOf<&clsTarn4x::name>()},
#define METHOD_WITH(arguments, ...) METHOD(__VA_ARGS__)
#define FUNCTION(identifier, name, ...) {FunctionOf<&clsTarn4x::name>()},
#include "driver/Members.def"
};

const Calls& CallsOf(const MemberRow& member) { return AllCalls[&member - tarn4x::AllMembers().data()]; }

// ---- Names ----

const MemberRow& Row(tarn4x::Members member) { return tarn4x::RowOf(member); }

bool SameName(std::string_view one, std::string_view other) {
    return tarn4x::LowerCase(one) == tarn4x::LowerCase(other);
}

const MemberRow& MemberNamed(std::string_view name) {
    if (const auto* member = tarn4x::FindMember(name)) return *member;
    std::vector<std::string_view> names{"ImpulseResponse"};
    for (const auto& member : tarn4x::AllMembers()) names.push_back(member.Name);
    const auto nearest = Nearest(name, names);
    throw Misuse("There is no member \"" + std::string(name) + '"',
                 nearest.empty() ? "tarn4x members lists them all." : "Did you mean " + nearest + "?");
}

/// Everything that an argument can be.
std::vector<double> AllValuesOf(const Parameter& parameter) {
    std::vector<double> all;
    for (const auto& value : ValuesOf(parameter.Type)) all.push_back(value.Value);
    constexpr int echoes = 25;
    for (int n = 1; all.size() < echoes && parameter.Name == "intNumber"; ++n) all.push_back(n);
    return all;
}

Request WithArguments(const MemberRow& member, std::vector<double> arguments) {
    std::string name(member.Name);
    const auto parameters = ParametersOf(member);
    for (std::size_t i = 0; i < arguments.size(); ++i) {
        name.append(i == 0 ? "(" : ",").append(ShowValue(arguments[i], parameters[i].Type));
    }
    if (!arguments.empty()) name += ')';
    return {.Name = std::move(name), .Member = &member, .Arguments = std::move(arguments)};
}

std::vector<Request> PartsOfStatistics(std::string_view part) {
    std::vector<Request> requests;
    const auto& member = Row(tarn4x::Members::AlarmStatistics);
    std::vector<std::string_view> names;
    for (const auto& row : AllStatistics()) {
        names.push_back(row.Name);
        if (!part.empty() && !SameName(part, row.Name)) continue;
        requests.push_back({.Name = "AlarmStatistics." + std::string(row.Name), .Member = &member, .Part = &row});
    }
    if (!requests.empty()) return requests;
    const auto nearest = Nearest(part, names);
    throw Misuse("The alarm statistics have no \"" + std::string(part) + '"',
                 nearest.empty() ? "tarn4x get AlarmStatistics lists them all." : "Did you mean " + nearest + "?");
}

std::vector<Request> Echoes() {
    std::vector<Request> requests;
    const auto& delay = Row(tarn4x::Members::ImpulseResponseDelay);
    for (const auto number : AllValuesOf(ParametersOf(delay).front())) {
        requests.push_back(WithArguments(Row(tarn4x::Members::ImpulseResponseAtten), {number}));
        requests.push_back(WithArguments(delay, {number}));
    }
    return requests;
}

}  // namespace

std::vector<Parameter> ParametersOf(const MemberRow& member) {
    std::vector<Parameter> parameters;
    for (const auto piece : tarn4x::Split(member.Arguments)) {
        const auto words = tarn4x::Split(tarn4x::Trim(piece), " As ");
        parameters.push_back({words[0], words[1]});
    }
    return parameters;
}

std::span<const StatisticsRow> AllStatistics() {
    using Statistics = tarn4x::clsStatistics;
    constexpr auto TypeOf = [](std::string_view type) { return type == "Date" ? "Duration" : type; };
    static const StatisticsRow rows[] = {
#define NO_UNIT
#define UNIT(unit)
#define ANY_MODE
#define ROW(name, type, help) \
    {#name, TypeOf(#type), help, [](const Statistics& statistics) { return ToValue(statistics.get_##name()); }},
#define READ(identifier, name, type, unit, modes, help) ROW(name, type, help)
#define CONTROL(identifier, name, type, unit, modes, help) ROW(name, type, "The report as the instrument gives it")
#include "driver/StatisticsMembers.def"
#undef ROW
    };
    return rows;
}

bool Request::IsEcho() const {
    return Member == &Row(tarn4x::Members::ImpulseResponseAtten) ||
           Member == &Row(tarn4x::Members::ImpulseResponseDelay);
}

std::string_view Request::Unit() const { return Part ? std::string_view() : Member->Unit; }

const tarn4x::AllowedModes& Request::Modes() const {
    return IsEcho() ? Row(tarn4x::Members::MeasureTdImpulseResponse).Modes : Member->Modes;
}

std::vector<Request> RequestsFor(std::string_view word) {
    const auto open = word.find('(');
    const auto name = tarn4x::Trim(word.substr(0, open));
    if (SameName(name, "ImpulseResponse")) return Echoes();
    const auto dot = std::min(name.find('.'), name.size());
    const auto& member = MemberNamed(name.substr(0, dot));
    if (&member == &Row(tarn4x::Members::AlarmStatistics)) {
        return PartsOfStatistics(name.substr(std::min(dot + 1, name.size())));
    }
    if (!CallsOf(member).Get) {
        throw Misuse(std::string(member.Name) + " gives a picture", "tarn4x screenshot FILE.png saves it.");
    }
    const auto parameters = ParametersOf(member);
    if (open == word.npos && parameters.size() == 1) {
        std::vector<Request> requests;
        for (const auto value : AllValuesOf(parameters[0])) requests.push_back(WithArguments(member, {value}));
        return requests;
    }

    auto list = open == word.npos ? std::string_view() : word.substr(open + 1);
    const bool closed = list.ends_with(')');
    if (closed) list.remove_suffix(1);
    const auto texts = tarn4x::Split(list);
    if (dot < name.size() || closed != (open != word.npos) || texts.size() != parameters.size()) {
        std::string usage;
        for (const auto& parameter : parameters) usage.append(usage.empty() ? "(" : ", ").append(parameter.Name);
        throw Misuse("The arguments of \"" + std::string(word) + "\" are wrong",
                     "Write it as " + std::string(member.Name) + usage + (usage.empty() ? "." : ")."));
    }
    std::vector<double> arguments;
    for (std::size_t i = 0; i < texts.size(); ++i) {
        const auto what = std::string(parameters[i].Name).append(" of ").append(member.Name);
        arguments.push_back(ParseNumber(tarn4x::Trim(texts[i]), parameters[i].Type, what));
    }
    return {WithArguments(member, std::move(arguments))};
}

Value GetOrCall(clsTarn4x& driver, const Request& request) {
    return CallsOf(*request.Member).Get(driver, request.Arguments);
}

void Put(clsTarn4x& driver, const Request& request, double value) {
    auto arguments = request.Arguments;
    arguments.push_back(value);
    CallsOf(*request.Member).Put(driver, arguments);
}

}  // namespace cli
