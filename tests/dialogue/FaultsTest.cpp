// What a driver on-line makes of the bad days of its receiver and its link.
#include <thread>

#include "tests/dialogue/Station.h"
#include "tests/host/Peer.h"

namespace {

using tarn4x::clsTarn4x;
using testing::HasSubstr;

/// What reading the level gives until it gives a value, each outcome once: "Get MeasureRfLevel failed, -22".
std::string ReadLevel(clsTarn4x& driver) {
    std::string outcomes, last;
    for (int i = 0; i < 100; ++i) {
        try {
            return outcomes + platform::GeneralNumber(driver.get_MeasureRfLevel());
        } catch (const platform::AutomationError& error) {
            if (error.Description != last) outcomes += (last = error.Description) + ", ";
        }
    }
    return outcomes + "and no value";
}

std::int32_t ErrorOf(const std::function<void()>& operation) {
    try {
        operation();
    } catch (const platform::AutomationError& error) {
        return error.Number;
    }
    return 0;
}

class Faults : public testing::TestWithParam<const char*> {};

INSTANTIATE_TEST_SUITE_P(, Faults, testing::Values("TCP/IP", "GPIB", "GUI"), LinkName);

TEST_P(Faults, ReachTheCallerOrAreOvercome) {
    const std::string failed = "Get MeasureRfLevel failed, -22", overcome = "-22";
    // A bus is silent about a receiver that goes; a connection tells, and the query is tried again.
    const std::string lost = GetParam() == std::string_view("GPIB") ? failed : overcome;
    const struct {
        const char* Fault;
        const std::string& Outcome;
    } cases[] = {
        {"answer -11 | delay 400", failed},
        {"answer -11 | busy 0.5", failed},
        {"deaf", failed},
        {"answer -11 | terminator none", failed},
        {"answer -11 | terminator cr", failed},
        {"answer -11 | truncate 2", failed},
        {"answer -22 | terminator crlf | split 1,2 | gap 1", overcome},
        {"bytes 2D 32 32 00 FF 0A", overcome},
        {"answer -22\\n-11", overcome},
        {"answer --- | times 3", overcome},
        {"close before", lost},
        {"answer -11 | close in", lost},
        {"answer -22 | close after", overcome},
        {"reset before", lost},
        {"answer -11 | reset in", lost},
    };
    for (const auto& row : cases) {
        SCOPED_TRACE(row.Fault);
        Station station(GetParam(), "on READ:RF:LEVEL? | " + std::string(row.Fault) +
                                        "\non READ:RF:LEVEL? | answer -22 | always\n");
        station.GoOnLine(row.Outcome == overcome ? 2.0F : 0.1F);
        EXPECT_EQ(ReadLevel(*station.driver), row.Outcome);
        EXPECT_THAT(ReadLevel(*station.driver), testing::EndsWith("-22"));
    }
}

class Outages : public testing::TestWithParam<const char*> {};

INSTANTIATE_TEST_SUITE_P(, Outages, testing::ValuesIn(EveryLink), LinkName);

TEST_P(Outages, AreBridgedForOneTimeout) {
    Station station(GetParam(), "on READ:RF:LEVEL? | answer -22 | always");
    station.GoOnLine();
    auto& link = *station.framework->Latest;
    const std::function<void()> operations[] = {
        [&] { EXPECT_EQ(link.ReadString("READ:RF:LEVEL?"), "-22"); },
        [&] {
            link.WriteString("SENS:DVBT:INT:COUN 700");
            EXPECT_EQ(link.ReadString("SENS:DVBT:INT:COUN?"), "700");
        },
        [&] { EXPECT_THAT(link.ReadBlock(3, "READ:RF:LEVEL?"), testing::ElementsAre('-', '2', '2')); }};
    constexpr int atOnce = 0, later = 5, never = 0x7FFFFFFF;  // attempts
    for (const auto& operation : std::span(operations).first(GetParam() == std::string_view("GUI") ? 2 : 3)) {
        for (const int attempts : {atOnce, later, never}) {
            int pauses = 0;
            station.framework->OnPause = [&] {
                if (++pauses == attempts) station.SwitchOn();
            };
            station.SwitchOff();
            if (attempts == atOnce) station.SwitchOn();
            link.SetTimeout(attempts == never ? 0.05F : 20.0F);
            auto error = ErrorOf(operation);
            if (error == platform::ObjectError(platform::LinkLost)) error = ErrorOf(operation);  // as the driver does
            EXPECT_EQ(error, attempts == never ? platform::ObjectError(platform::NoConnection) : 0);
            EXPECT_GE(pauses, std::min(attempts, later));
            if (attempts == never) station.SwitchOn();
        }
    }
}

TEST_P(Outages, EndInAnErrorAfterOneTimeoutAndNeverInAValue) {
    Station station(GetParam());
    station.GoOnLine();
    station.SwitchOff();
    station.framework->Latest->SetTimeout(0.05F);
    auto& driver = *station.driver;
    const std::function<void()> operations[] = {
        [&] { driver.get_RF(); }, [&] { driver.put_RF(522e6); }, [&] { driver.get_AlarmStatistics(); },
        [&] { driver.put_IDriverSetup_OnLine(false); }, [&] { driver.put_IDriverSetup_OnLine(true); }};
    int timeouts = 0;
    for (const auto& operation : operations) {
        EXPECT_EQ(ErrorOf(operation) != 0, &operation < std::end(operations) - 2);  // the session swallows it
        EXPECT_EQ(Occurrences("\tNo connection to ", station.framework->TheMessageLog()), ++timeouts);
    }
}

TEST(Fault, OfOneReceiverDoesNotDisturbAnother) {
    for (const char* link : {"TCP/IP", "GPIB"}) {
        Station one(link, "on READ:RF:LEVEL? | deaf\non READ:RF:LEVEL? | answer -22 | always");
        Station other(link, "on READ:RF:LEVEL? | answer -33 | always", {}, one.framework);
        one.GoOnLine(0.05F);
        other.GoOnLine();
        EXPECT_EQ(ReadLevel(*other.driver), "-33");
        EXPECT_EQ(ReadLevel(*one.driver), "Get MeasureRfLevel failed, -22");
        EXPECT_EQ(ReadLevel(*other.driver), "-33");
        one.SwitchOff();
        EXPECT_EQ(ReadLevel(*other.driver), "-33");
    }
}

TEST(Fault, OfAConnectionThatIsClosedAtOnceKeepsTheDriverOffLine) {
    Station station("TCP/IP", "refuse connections");
    station.driver->put_IDriverSetup_OnLine(true);
    EXPECT_FALSE(station.driver->get_IDriverSetup_OnLine());
}

TEST(Driver, SaysWhatHelpsWhenThereIsNoSerialPort) {
    const auto framework = std::make_shared<host::Framework>();
    SetEnvironment("CONDUIT_PORTS", "/nowhere");
    EXPECT_EQ(ErrorOf([&] { clsTarn4x driver(framework); }), 380);
    EXPECT_THAT(framework->TheMessageLog().Entry(1), testing::MatchesRegex(".*No serial port.*plug in.*close.*"));
}

TEST(Driver, TakesAPortNamedNoneForASerialPort) {
    Station station("TCP/IP");
    station.SwitchOff();
    std::filesystem::create_symlink("none", station.Folder / "com16");
    clsTarn4x driver(station.framework);
    EXPECT_EQ(driver.get_IDriverSetup_Settings()->Item("RS232.Comm Port")->ValueList(), "COM16=16");
}

// Going on-line drains the error queue twice.
TEST(ErrorQueue, IsDrainedToItsEnd) {
    Station station("TCP/IP", R"(on SYST:ERR? | skip 2 | answer -113,"Undefined header" | times 50)");
    station.GoOnLine();
    EXPECT_DOUBLE_EQ(station.driver->get_RF(), 474e6);
    EXPECT_EQ(Occurrences("-113,\"Undefined header\"", station.framework->TheMessageLog()), 50);
}

TEST(ErrorQueue, IsLeftWhenItHasNoEndAndTheUserStops) {
    Station station("TCP/IP", R"(on SYST:ERR? | skip 2 | answer -113,"Undefined header" | always)");
    station.GoOnLine();
    auto& log = station.framework->TheMessageLog();
    std::thread user([&] {
        while (log.Count() < 100) std::this_thread::yield();
        station.framework->TheApplication().SetAbortRequested(true);
    });
    EXPECT_NO_THROW(station.driver->get_RF());
    user.join();
    EXPECT_GE(log.Count(), 100);
}

TEST(Command, IsNeverSentTwice) {
    const std::string command = "SENS:FREQ:CENT  522000000", query = "SENS:FREQ:CENT?";
    for (const std::string& fault : {std::string("SYST:ERR?"), command}) {
        SCOPED_TRACE("The connection is lost at " + fault);
        std::vector<std::string> seen;
        {
            int errorQueries = 0;
            Peer peer({[&](Peer::Connection& connection) {
                for (std::string line; !(line = connection.Line()).empty();) {
                    if (line == command || line == query) seen.push_back(line);
                    errorQueries += line == "SYST:ERR?" ? 1 : 0;
                    // The first two belong to going on-line.
                    if (line == fault && (line == command || errorQueries == 3)) return;
                    if (line == "SYST:ERR?") connection.Send("0,\"No error\"\n");
                    if (line == query) connection.Send("522000000\n");
                }
            }});
            Station station("TCP/IP");
            station.Set("TCP/IP.Port", std::to_string(peer.Port));
            station.GoOnLine();
            station.driver->put_RF(522e6);
            EXPECT_DOUBLE_EQ(station.driver->get_RF(), 522e6);
            EXPECT_EQ(peer.Connections, 2);
        }
        EXPECT_THAT(seen, testing::ElementsAre(command, query));
    }
}

}  // namespace
