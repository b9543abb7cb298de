// What a driver on-line makes of the bad days of its receiver and its link.
#include "tests/dialogue/Station.h"

namespace {

using tarn4x::clsTarn4x;

/// What reading the level gives until it gives a value, each outcome once: "Get MeasureRfLevel failed, -22".
std::string ReadLevel(clsTarn4x& driver) {
    std::string outcomes;
    for (int i = 0; i < 100; ++i) {
        try {
            return outcomes + platform::GeneralNumber(driver.get_MeasureRfLevel());
        } catch (const platform::AutomationError& error) {
            if (!outcomes.ends_with(error.Description + ", ")) outcomes += error.Description + ", ";
        }
    }
    return outcomes + "and no value";
}

class Faults : public testing::TestWithParam<Link> {};

INSTANTIATE_TEST_SUITE_P(, Faults, testing::ValuesIn(EveryLink), LinkName);

TEST_P(Faults, ReachTheCallerOrAreOvercome) {
    const std::string failed = "Get MeasureRfLevel failed, -22", overcome = "-22";
    // A connection tells that the receiver goes, and the query is tried again; a bus and a serial line are silent.
    const std::string lost = GetParam().Tells ? overcome : failed;
    const std::pair<std::string, std::string> cases[] = {
        {"answer -11 | delay 900", GetParam().TellsLate ? failed : ""},
        {"answer -11 | terminator none", failed},
        {"close before", lost},
        {"answer -11 | close in", lost},
        {"answer -22 | close after", overcome},
        {"answer -11 | reset in", lost},
    };
    for (const auto& [fault, outcome] : cases) {
        SCOPED_TRACE(fault);
        if (outcome.empty()) continue;
        Station station(GetParam(), "on READ:RF:LEVEL? | " + fault + "\non READ:RF:LEVEL? | answer -22 | always\n");
        station.GoOnLine(outcome == overcome ? 2.0F : GetParam().Brief);
        EXPECT_EQ(ReadLevel(*station.driver), outcome);
        EXPECT_THAT(ReadLevel(*station.driver), testing::EndsWith("-22"));
    }
}

TEST_P(Faults, OfAnOutageAreBridgedForOneTimeout) {
    Station station(GetParam(), "on READ:RF:LEVEL? | answer -22 | always");
    station.GoOnLine();
    station.SwitchOff();
    station.framework->Latest->SetTimeout(0.05F);
    EXPECT_THROW(station.driver->get_RF(), platform::AutomationError);
    EXPECT_THROW(station.driver->put_RF(522e6), platform::AutomationError);
    EXPECT_THROW(station.driver->get_AlarmStatistics(), platform::AutomationError);
    EXPECT_EQ(station.Logged("1\tReceiver\tNo connection to "), 3) << "each tries for one time-out";
    station.framework->Latest->SetTimeout(20.0F);
    for (const int attempts : {5, 0}) {
        int pauses = 0;
        station.framework->OnPause = [&] {
            if (++pauses == attempts) station.SwitchOn();
        };
        EXPECT_EQ(ReadLevel(*station.driver), "-22");
        EXPECT_GE(pauses, attempts);
        station.SwitchOff();
        station.SwitchOn();
    }
}

TEST_P(Faults, OfOneReceiverDoNotDisturbAnother) {
    Station one(GetParam(),
                "on READ:RF:LEVEL? | answer -11 | terminator none\non READ:RF:LEVEL? | answer -22 | always");
    one.GoOnLine(GetParam().Brief);
    Station other(GetParam(), "on READ:RF:LEVEL? | answer -33 | always", {}, one.framework);
    other.GoOnLine();
    EXPECT_EQ(ReadLevel(*one.driver), "Get MeasureRfLevel failed, -22");
    EXPECT_EQ(ReadLevel(*other.driver), "-33");
    one.SwitchOff();
    EXPECT_EQ(ReadLevel(*other.driver), "-33");
}

TEST(Driver, SaysWhatHelpsWhenThereIsNoSerialPort) {
    const auto framework = std::make_shared<host::Framework>();
    SetEnvironment("CONDUIT_PORTS", "/nowhere");
    EXPECT_THROW(clsTarn4x{framework}, platform::AutomationError);
    EXPECT_THAT(framework->TheMessageLog().Entry(1), testing::MatchesRegex(".*No serial port.*plug in.*close.*"));
}

TEST(Driver, TakesAPortNamedNoneForASerialPort) {
    Station station(EveryLink[0]);
    station.SwitchOff();
    std::filesystem::create_symlink("none", station.Folder / "com16");
    clsTarn4x driver(station.framework);
    EXPECT_EQ(driver.get_IDriverSetup_Settings()->Item("RS232.Comm Port")->ValueList(), "COM16=16");
}

}  // namespace
