#include "simulator/CommandRows.h"
#include "simulator/Commands.h"
#include "simulator/Receiver.h"
#include "simulator/Screen.h"
#include "simulator/Text.h"

// Identity, session, clock and screen.
namespace sim {

namespace {

using std::chrono::days;
using std::chrono::floor;
using std::chrono::seconds;

void SetTime(Receiver& receiver, const Arguments& arguments) {
    arguments.Expect(3);
    const auto time = std::chrono::hours{arguments.Whole(0, 0, 23)} + std::chrono::minutes{arguments.Whole(1, 0, 59)} +
                      seconds{arguments.Whole(2, 0, 59)};
    receiver.SetNow(floor<days>(receiver.Now()) + time);
}

std::string Time(Receiver& receiver) {
    const std::chrono::hh_mm_ss time{floor<seconds>(receiver.Now() - floor<days>(receiver.Now()))};
    return Print("%d,%d,%d", static_cast<int>(time.hours().count()), static_cast<int>(time.minutes().count()),
                 static_cast<int>(time.seconds().count()));
}

// The year may have two digits: 80 to 99 are of the last century.
void SetDate(Receiver& receiver, const Arguments& arguments) {
    arguments.Expect(3);
    int year = arguments.Whole(0, 0, 2079);
    if (year < 80) {
        year += 2000;
    } else if (year < 100) {
        year += 1900;
    }
    const std::chrono::year_month_day date{std::chrono::year{year},
                                           std::chrono::month{static_cast<unsigned>(arguments.Whole(1, 1, 12))},
                                           std::chrono::day{static_cast<unsigned>(arguments.Whole(2, 1, 31))}};
    if (!date.ok() || year < 1980) throw ScpiError{-222};
    receiver.SetNow(std::chrono::sys_days{date} + (receiver.Now() - floor<days>(receiver.Now())));
}

std::string Date(Receiver& receiver) {
    const std::chrono::year_month_day date{floor<days>(receiver.Now())};
    return Print("%d,%u,%u", static_cast<int>(date.year()), static_cast<unsigned>(date.month()),
                 static_cast<unsigned>(date.day()));
}

std::string Identity(Receiver& receiver) {
    const Configuration& c = receiver.configuration;
    return c.manufacturer + "," + c.model + "," + c.serialNumber + "," + c.firmware;
}

std::string InstalledOptionList(Receiver& receiver) {
    const std::string list = receiver.configuration.options.List();
    return list.empty() ? "0" : list;
}

std::string CaptureScreen(Receiver& receiver) {
    receiver.capturedScreen = DrawScreen(receiver);
    return "0";
}

// IEEE 488.2, 8.7.9: "#", the number of length digits, the length, the bytes.
std::string ScreenBlock(Receiver& receiver) {
    const std::string length = std::to_string(receiver.capturedScreen.size());
    return "#" + std::to_string(length.size()) + length + receiver.capturedScreen;
}

}  // namespace

std::vector<Command> SystemCommands() {
    return {
        Answer("*IDN", Identity),
        Answer("*OPT", InstalledOptionList),
        Action("*CLS", [](Receiver& receiver) { receiver.errors.Clear(); }),
        Action("*RST", [](Receiver& receiver) { receiver.Reset(); }),
        Whole("*SRE", &Settings::statusEnable, 0, 255),
        Whole("*ESE", &Settings::eventEnable, 0, 255),
        {"*OPC", [](Receiver&, const Arguments& arguments) { arguments.Expect(0); },
         [](Receiver&, const Arguments& arguments) {
             arguments.Expect(0);
             return std::string{"1"};
         }},
        Action("*WAI", [](Receiver&) {}),
        Answer("*STB", [](Receiver& receiver) { return std::string{receiver.errors.Empty() ? "0" : "4"}; }),
        Answer("*TST", [](Receiver&) { return std::string{"0"}; }),

        Answer("SYSTem:ERRor", [](Receiver& receiver) { return receiver.errors.Pop(); }),
        Answer("SYSTem:ERRor:NEXT", [](Receiver& receiver) { return receiver.errors.Pop(); }),
        Action("SYSTem:REMote", [](Receiver&) {}),
        Action("SYSTem:LOCal", [](Receiver&) {}),
        Action("SYSTem:RESet", [](Receiver& receiver) { receiver.Reset(); }),
        Choice("SYSTem:MODE", &Settings::operatingMode,
               {"NYQI", "NYQM", "NYQN", "QAM", "QAMA", "J83A", "J83B", "J83C", "MPEG", "M83A", "M83B", "M83C", "DVBT",
                "ATSC", "NTSC"},
               Effect::Restart),
        {"SYSTem:TIME", SetTime, Answer("", Time).query},
        {"SYSTem:DATE", SetDate, Answer("", Date).query},
        Answer("SYSTem:SERVice:GET:BOARd:INFO",
               [](Receiver& receiver) { return receiver.configuration.options.Boards(); }),
        Answer("READ:INFO:DATA",
               [](Receiver& receiver) { return std::to_string(receiver.configuration.options.Mask()); }),

        Answer("READ:SCReen:BUFFer", CaptureScreen),
        Answer("READ:BUFFer:PCX", ScreenBlock),
    };
}

}  // namespace sim
