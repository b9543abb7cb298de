#include <algorithm>
#include <bit>

#include "tests/com/Bench.h"
#include "tests/support/DriverMembers.h"

// Every member of the driver through the function table and by name, as the table of members tells.

namespace {

using support::Member;

/// One entry of the driver's function table.
struct Slot {
    const Member& Of;
    bool Written;
    std::size_t Number;  // in the table; seven of IUnknown and IDispatch come first
};

std::vector<Slot> Slots() {
    std::vector<Slot> slots;
    for (const auto& member : support::DriverMembers) {
        if (member.Kind == support::Control) slots.push_back({member, true, 7 + slots.size()});
        slots.push_back({member, false, 7 + slots.size()});
    }
    return slots;
}

VARTYPE TypeOf(std::string_view name) {
    static const std::map<std::string_view, VARTYPE> types = {
        {"Double", VT_R8},   {"Boolean", VT_BOOL},    {"Date", VT_DATE}, {"Integer", VT_I2},
        {"String", VT_BSTR}, {"Variant", VT_VARIANT}, {"", VT_EMPTY},    {"_clsStatistics&", VT_DISPATCH}};
    const auto type = types.find(name.substr(0, name.find('(')));
    return type == types.end() ? VARTYPE{VT_I4} : type->second;  // Long and enumerations
}

/// Variables of the caller whose references some members take.
struct Variables {
    short Number = 1;
    SAFEARRAY* Bytes = nullptr;
};

/// The arguments of a call; `value` is what is written, or the argument of a function, `numbers` the type in which
/// numbers are passed, VT_EMPTY for their own.
std::vector<Arg> Arguments(const Slot& slot, double value, VARTYPE numbers, Variables& variables) {
    const std::string_view type = slot.Of.Type;
    std::vector<Arg> arguments;
    const auto add = [&](VARTYPE own, double given) {
        com::Variant converted;
        EXPECT_EQ(VariantChangeType(&converted, Arg(given).Get(), 0, numbers == VT_EMPTY ? own : numbers), S_OK);
        arguments.emplace_back(converted);
    };
    if (type.ends_with("Integer&)")) arguments.emplace_back(Typed(VT_BYREF | VT_I2, &variables.Number));
    if (type.find("(udt") != type.npos) add(VT_I4, slot.Of.Kind == support::Function ? value : slot.Of.Has.Argument);
    if (type.ends_with("Byte()&)")) arguments.emplace_back(Typed(VT_BYREF | VT_ARRAY | VT_UI1, &variables.Bytes));
    if (type.starts_with("(intStart")) add(VT_I2, 10);
    if (type.starts_with("(intStart")) add(VT_I2, 1704);
    if (slot.Written) add(TypeOf(type), value);
    return arguments;
}

constexpr LONGLONG Poison = 0x5555555555555555;

/// What the call through the function table comes to. A failing call leaves numbers and Booleans as they were; what a
/// caller would free is empty.
std::string ThroughTable(_clsTarn4x* driver, const Slot& slot, std::vector<Arg> arguments, com::Variant& result) {
    const VARTYPE type = slot.Written ? VARTYPE{VT_EMPTY} : TypeOf(slot.Of.Type);
    if (type != VT_EMPTY) {
        result.vt = type == VT_VARIANT ? VARTYPE{VT_EMPTY} : type;
        result.llVal = Poison;
        void* const output = type == VT_VARIANT ? static_cast<void*>(&result) : &result.byref;
        arguments.emplace_back(Typed(static_cast<VARTYPE>(VT_BYREF | type), output));
    }
    std::vector<VARTYPE> types;
    std::vector<VARIANT*> values;
    for (auto& argument : arguments) {
        types.push_back(argument.vt);
        values.push_back(&argument);
    }
    const auto call = [&] {
        com::Variant called;
        EXPECT_EQ(DispCallFunc(driver, slot.Number * sizeof(void*), CC_STDCALL, VT_ERROR,
                               static_cast<UINT>(types.size()), types.data(), values.data(), &called),
                  S_OK);
        return called.scode;
    };
    for (auto& argument : arguments) {  // a reference is missing
        if (!V_ISBYREF(&argument)) continue;
        void* const reference = std::exchange(argument.byref, nullptr);
        EXPECT_TRUE(Told(call()).starts_with("80004003")) << slot.Of.Name;
        argument.byref = reference;
    }
    const auto outcome = Told(call(), &__uuidof(_clsTarn4x));
    if (outcome.empty()) return type == VT_EMPTY ? "" : Text(result);
    const bool freed = type == VT_BSTR || type == VT_DISPATCH;
    EXPECT_TRUE(type == VT_EMPTY || (freed ? result.byref == nullptr : result.llVal == Poison)) << slot.Of.Name;
    result.vt = VT_EMPTY;
    return outcome;
}

std::string ByName(_clsTarn4x* driver, const Slot& slot, std::vector<Arg> arguments, com::Variant& result) {
    Script script(driver);
    const auto name = com::Wide(slot.Of.Name);
    const auto outcome = slot.Written ? script.Put(name.c_str(), arguments) : script.Get(name.c_str(), arguments);
    result = std::move(script.Result);
    return outcome;
}

void Walk(decltype(ByName) call, VARTYPE numbers) {
    std::optional<Bench> made;
    for (const auto& slot : Slots()) {
        const auto& m = slot.Of;
        const auto& has = m.Has;
        if (m.Kind == support::Piece) continue;
        SCOPED_TRACE(m.Name + std::string(slot.Written ? " =" : ""));
        const auto entries = slot.Written ? support::Values(m) : support::Entries(m.Answers);
        const auto [in, out] = entries.empty() ? std::pair<std::string, std::string>() : entries[0];
        const bool function = m.Kind == support::Function;
        const double value = slot.Written || function ? std::stod(in) : 0.0;
        if (!made || *has.Interface) made.emplace();  // what it knows of the instrument's identity, it keeps
        Bench& bench = *made;
        com::Variant result;
        Variables variables;
        const auto expect = [&](const std::string& outcome) {
            result = {};
            com::Border(IID_IDispatch, [] { throw platform::AutomationError(1, "somebody", "left behind"); });
            const auto arguments = Arguments(slot, value, numbers, variables);
            EXPECT_EQ(call(bench.driver.get(), slot, arguments, result), outcome);
            EXPECT_EQ(Told(S_OK), "") << "left behind";
        };
        const auto setMode = [&](int mode) {
            const auto chosen = static_cast<TarnMeasureModes>(mode);
            EXPECT_EQ(has.In.Bits == 0 ? S_OK : bench.driver->put_MeasureMode(chosen), S_OK);
        };

        for (const bool onLine : {false, true}) bench.OnLine(onLine);  // the driver forgets what it has read
        setMode(std::countr_zero(has.In.Bits));
        bench.OnLine(false);
        if (!function) expect(support::OffLine(m, slot.Written));

        bench.OnLine(true);
        setMode(tarnIR_2);
        if (has.In.Bits != 0) expect(support::WrongMode(m));
        setMode(std::countr_zero(has.In.Bits));
        bench.link.Answers(has.First.Other);
        if (*has.First.Refusal) expect(support::Outcome(m, slot.Written, "", has.First.Refusal));
        for (const auto& before : {has.First.Suits, has.FirstWritten.Suits}) bench.link.Answers(before);
        if (!slot.Written) bench.link.Answers(m.Query + std::string(" = ") + in);
        const bool object = TypeOf(m.Type) == VT_DISPATCH;
        expect(slot.Written ? "" : object ? "object" : support::Outcome(m, false, in, out));
        EXPECT_EQ(result.vt, slot.Written ? VARTYPE{VT_EMPTY} : TypeOf(m.Type));
        const auto command = slot.Written ? support::Command(m) + out : m.Kind == support::Method ? m.Query : "";
        EXPECT_TRUE(command.empty() || std::ranges::count(bench.link.Lines, command) != 0) << command;
    }
}

TEST(Members, WorkAndFailThroughTheFunctionTable) { Walk(ThroughTable, VT_EMPTY); }
TEST(Members, WorkAndFailByName) { Walk(ByName, VT_EMPTY); }
TEST(Members, TakeNumbersOfOtherTypes) { Walk(ByName, VT_R8); }

}  // namespace
