// The driver with the stand-alone framework and its real links, against the simulated receiver.
#include <map>

#include "tests/dialogue/Station.h"
#include "tests/support/DriverCalls.h"
#include "tests/support/DriverMembers.h"

namespace {

using namespace tarn4x;
using support::CallOf;

class Dialogue : public testing::TestWithParam<Link> {};

INSTANTIATE_TEST_SUITE_P(, Dialogue, testing::ValuesIn(EveryLink), LinkName);

/// Uses each member in a measure mode of each kind, with the receiver in the state that the member needs.
void ForEach(clsTarn4x& driver, const std::function<void(const support::Member&, int mode)>& use) {
    for (const auto mode : {tarnNORM, tarnPAR, tarnSP_1, tarnCCDF, tarnAPH, tarnAGD, tarnIR_1}) {
        driver.put_InputPort(tarnReceiver);
        for (const auto& member : support::DriverMembers) {
            const auto& has = member.Has;
            if (has.In.Bits == 0 ? mode != tarnNORM : !has.In.Have(mode)) continue;
            driver.put_MeasureMode(mode);
            if (has.First.Value != 0) CallOf(has.First.Member).Put(driver, 0, has.First.Value);
            use(member, mode);
        }
    }
}

/// Everything that can be read and does not change with the time.
std::map<std::string, std::string> Survey(clsTarn4x& driver) {
    const auto changing = testing::AnyOf("SetupTime"s, "AlarmStatistics"s, "ScreenShot"s);
    std::map<std::string, std::string> values;
    ForEach(driver, [&](const auto& member, int mode) {
        if (member.Kind != support::Read && member.Kind != support::Control) return;
        if (testing::Matches(changing)(member.Name)) return;
        values[member.Name + std::to_string(mode)] = CallOf(member.Name).Get(driver, member.Has.Argument);
    });
    for (std::int16_t echo = 1; echo <= 25; ++echo) {
        values["Echo" + std::to_string(echo)] =
            support::Text(driver.get_ImpulseResponseAtten(echo)) + support::Text(driver.get_ImpulseResponseDelay(echo));
    }
    return values;
}

const std::vector<std::string> SeedSeven{"--seed", "7", "--options", "TARN-B11,TARN-B12,TARN-B13"};

TEST_P(Dialogue, SurveysTheReceiverWithTheSameValuesOverEveryLink) {
    static const auto expected = [] {
        Station station(EveryLink[0], {}, SeedSeven);
        station.GoOnLine();
        return Survey(*station.driver);
    }();
    Station station(GetParam(), {}, SeedSeven);
    station.GoOnLine();
    auto& driver = *station.driver;
    EXPECT_EQ(Survey(driver), expected);
    EXPECT_THAT(expected.at("InstalledHardware0"), testing::HasSubstr("TARN-B12"));
    EXPECT_GE(driver.get_AlarmStatistics()->get_MonitoringTime(), 0.0);
    if (GetParam().Blocks) {
        std::vector<std::uint8_t> screen;
        EXPECT_TRUE(driver.get_ScreenShot(static_cast<TarnScreenShotModes>(tarnCapture + tarnTransfer), screen));
        EXPECT_GT(screen.size(), 128U);
        EXPECT_EQ(screen.at(0), 0x0A) << "a PCX file";
    }
    driver.put_IDriverSetup_OnLine(false);
    EXPECT_FALSE(driver.get_IDriverSetup_OnLine());
    EXPECT_EQ(station.Logged("1\tReceiver\t"), 0) << "no failure of the link";
    // Each query is an entry, and its answer is another.
    EXPECT_EQ(station.Logged("\tSYST:ERR?\t"), 2 * station.Logged("\tSYST:ERR?\t0,\"No error\""));
}

TEST_P(Dialogue, ReadsBackWhatItWrites) {
    Station station(GetParam(), {}, SeedSeven);
    station.GoOnLine();
    ForEach(*station.driver, [&](const auto& member, int) {
        if (member.Kind != support::Control) return;
        const auto call = CallOf(member.Name);
        auto values = support::Entries(member.Answers, true);
        if (values.empty()) values = {support::Entries(member.Values).at(0)};
        for (const auto& [value, command] : values) {
            call.Put(*station.driver, member.Has.Argument, std::stod(value));
            EXPECT_EQ(call.Get(*station.driver, member.Has.Argument), value) << member.Name;
        }
    });
    // Each query is an entry, and its answer is another.
    EXPECT_EQ(station.Logged("\tSYST:ERR?\t"), 2 * station.Logged("\tSYST:ERR?\t0,\"No error\""));
}

TEST(Trace, OfASurveyGivesItsValuesAgain) {
    Station recorded(EveryLink[0], {}, SeedSeven);
    const auto trace = (recorded.Folder / "trace").string();
    recorded.framework->TheMessageLog().SetFileName(trace);
    recorded.GoOnLine();
    const auto values = Survey(*recorded.driver);
    std::vector<std::string> arguments{"--seed", "8"};
    for (const bool replayed : {false, true}) {
        if (replayed) arguments.insert(arguments.end(), {"--replay", trace});
        Station station(EveryLink[0], {}, arguments);
        station.GoOnLine();
        EXPECT_EQ(Survey(*station.driver) == values, replayed);
    }
}

}  // namespace
