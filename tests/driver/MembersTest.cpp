#include <bit>

#include "tests/driver/Bench.h"
#include "tests/support/DriverMembers.h"

// Every member, by the table of members.

using namespace tarn4x::test;
using support::Entries;
using support::Member;

using Value = std::optional<std::string>;

/// One use of a member by a driver that is on-line, knows the options and perhaps the measure mode, and got its last
/// answer with the prefix "<".
struct Use {
    const Member& Of;
    Value Written;                    // without one, the member is read or called
    std::vector<std::string> Before;  // dialogues before the member's own
    std::string Own, Result;          // or error
    int KnownMode = -1;
    Value Prefix = {};  // afterwards
    enum { Never, FromTheStart, InTheLastLine } Stop = Never;
    std::optional<bool> ForgetsEchoes = {};  // of the impulse response
    double Argument = Of.Has.Argument;

    bool Reads() const { return !Written && Own.find('?') != Own.npos; }
};

std::string Do(clsTarn4x& driver, const Use& use) {
    const auto& call = support::CallOf(use.Of.Name);
    return Outcome([&] {
        if (!use.Written) return call.Get(driver, use.Argument);
        call.Put(driver, use.Argument, std::stod(*use.Written));
        return std::string(Done);
    });
}

void Check(const Use& use) {
    const auto& [name, has] = std::tie(use.Of.Name, use.Of.Has);
    const std::string echoes = "READ:DVBT:IRESPONSE:PEAK? = 1";
    SCOPED_TRACE(name + (use.Written ? " = " + *use.Written : "") + ": " + use.Own);
    Bench bench(use.KnownMode);
    if (!*has.Interface && name != std::string_view("Identity")) bench.LearnOptions("0");
    if (use.ForgetsEchoes) CHECK(bench, echoes, MeasureTdImpulseResponse(), Done);
    CHECK(bench, "READ:RF:LEVEL? = <1", get_MeasureRfLevel(), 1);
    for (const auto& lines : use.Before) bench.Expect(lines);
    bench.Expect(use.Own);
    bench.world->Abort = use.Stop == Use::FromTheStart;
    if (use.Stop == Use::InTheLastLine) bench.world->AbortAfterSending = bench.world->Sent + bench.world->Lines.size();
    EXPECT_EQ(Do(bench.driver, use), use.Result);
    bench.ExpectEnd();
    EXPECT_EQ(bench->get_Prefix(), use.Prefix.value_or(bench->get_Prefix()));
    EXPECT_EQ(bench.Logged().back().starts_with("1 clsTarn4x."), use.Result.starts_with('+')) << "by the error service";
    if (!use.ForgetsEchoes) return;
    CHECK(bench, "SENS:DVBT:MEAS IR_1", put_MeasureMode(tarnIR_1), Done);
    CHECK(bench, *use.ForgetsEchoes ? echoes : "", get_ImpulseResponseDelay(1), 0);
}

/// The first of the measure modes in which it exists; -1 when it needs none.
int ModeOf(const Member& member) { return member.Has.In.Bits == 0 ? -1 : std::countr_zero(member.Has.In.Bits); }

/// What the lists of a member tell.
std::vector<Use> Uses(const Member& m) {
    const auto& has = m.Has;
    const int mode = ModeOf(m);
    std::vector<Use> uses;
    if (m.Kind == support::Function) {
        for (const auto& [value, text] : Entries(m.Answers)) {
            uses.push_back({m, {}, {}, "", text, mode, text.empty() ? "---" : "<"});
            uses.back().Argument = std::stod(value);
        }
        return uses;
    }
    if (m.Kind == support::Method && !*m.Answers) uses.push_back({m, {}, {has.First.Suits}, m.Query, Done, mode});
    for (const auto& [answer, result] : Entries(*m.Query ? m.Answers : "")) {
        const std::string often = answer.starts_with("11 x ") ? "11 x " : "";
        const auto own = often + m.Query + " = " + answer.substr(often.size());
        uses.push_back({m, {}, {has.First.Suits}, own, Outcome(m, false, answer, result), mode});
    }
    for (const auto& [value, word] : Values(m)) {
        const auto result = Outcome(m, true, value, word);
        const bool sent = result == word;
        const auto own = sent ? Command(m) + word : "";
        uses.push_back({m, value, {has.First.Suits, has.FirstWritten.Suits}, own, sent ? Done : result, mode});
    }
    return uses;
}

/// The first read or call and the first write of every member.
std::vector<Use> Regular() {
    std::vector<Use> regular;
    for (const auto& m : support::DriverMembers) {
        const auto uses = Uses(m);
        const auto write = std::ranges::find_if(uses, [](const auto& use) { return use.Written.has_value(); });
        if (*m.Query) regular.push_back(uses[0]);
        if (write != uses.end()) regular.push_back(*write);
    }
    return regular;
}

TEST(Members, AreAllInTheTable) {
    EXPECT_TRUE(std::ranges::equal(AllMembers(), support::DriverMembers, {}, &MemberRow::Name,
                                   [](const auto& member) { return std::string_view(member.Name); }));
    EXPECT_EQ(FindMember("MEASUREfrequencyOffset")->Help(),
              "Measures the carrier frequency offset in Hz. Needs measure mode NORM.");
    EXPECT_EQ(FindMember("MeasureNothing"), nullptr);
}

TEST(Members, ReadWriteAndFormatEveryWord) {
    for (const auto& m : support::DriverMembers) std::ranges::for_each(Uses(m), Check);
}

TEST(Members, ExistInTheirMeasureModesOnly) {
    for (auto use : Regular()) {
        for (int mode = tarnNORM; ModeOf(use.Of) >= 0 && mode <= tarnCENV; ++mode) {
            use.KnownMode = mode;
            Check(use.Of.Has.In.Have(mode) ? use : Use{use.Of, use.Written, {}, "", WrongMode(use.Of), mode, "---"});
        }
    }
}

TEST(Members, FailAsTheTableTells) {
    for (auto use : Regular()) {
        const auto& m = use.Of;
        const bool written = use.Written.has_value();
        Bench offLine(use.KnownMode);
        CHECK(offLine, "SYST:LOC", put_IDriverSetup_OnLine(false), Done);
        EXPECT_EQ(Do(offLine.driver, use), OffLine(m, written)) << m.Name;
        const auto refusal = Outcome(m, written, "", m.Has.First.Refusal);
        if (!refusal.empty()) Check({m, use.Written, {m.Has.First.Other}, "", refusal});
        // The transfer that fails comes behind answers without a prefix.
        use.Before.insert(use.Before.begin(), TellsMode(std::exchange(use.KnownMode, -1)));
        if (use.Reads() && m.Has.ForgetsPrefix) use.Prefix = "---";
        const auto line = use.Own.substr(0, use.Own.find(" = ")), failed = Failure(m, written);
        for (const auto& [error, tells] :
             {std::pair(" ! 2014", std::string()), {" ! 2011", *m.Has.Interface ? "" : Refused}}) {
            use.Own = line + error;
            use.Result = failed + tells;
            Check(use);
        }
    }
}

TEST(Members, GiveNothingButCommandAllTheSameWhenTheUserHasAskedToStop) {
    for (auto use : Regular()) {
        const auto& has = use.Of.Has;
        const bool reads = use.Reads(), setsCarriers = use.Written && has.In.Bits == support::Carriers.Bits;
        if (has.Stopped == nullptr) continue;
        if (reads) {
            use.Result = has.Stopped;
            if (has.ForgetsPrefix) use.Prefix = "---";
            use.Stop = Use::InTheLastLine;
            Check(use);
        }
        use.Stop = Use::FromTheStart;
        // Nothing is remembered then, so that each comparison of the measure mode asks.
        const auto modes = std::to_string(has.In.Comparisons) + " x " + TellsMode(tarnIR_2);
        use.KnownMode = reads ? -1 : tarnIR_2;
        use.Before = {reads && has.In.Comparisons > 0 ? modes : "", has.First.Other,
                      use.Written ? has.FirstWritten.Suits : ""};
        use.Own = use.Own.substr(0, use.Own.find(" | "));
        if (!has.StopPasses) use.Result = Outcome(use.Of, false, "", has.First.Refusal);
        if (!has.StopPasses || setsCarriers) use.Own.clear();
        if (setsCarriers) use.Before.clear();
        Check(use);
    }
}

TEST(Members, ForgetTheEchoesWhenTheSignalMayBeAnother) {
    for (const auto& m : support::DriverMembers) {
        for (auto use : Uses(m)) {
            const bool indicates = m.Kind == support::Read && m.Has.ChangesSignal;
            if (ModeOf(m) >= 0 || (use.Reads() && !indicates)) continue;
            use.KnownMode = tarnIR_1;
            use.ForgetsEchoes = m.Has.ChangesSignal && use.Result == (use.Reads() ? "1" : Done);
            Check(use);
        }
    }
}
