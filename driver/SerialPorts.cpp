#include "driver/SerialPorts.h"

#include "driver/Failure.h"

namespace tarn4x {

namespace {

constexpr int LastPort = 16;

/// Opens or closes a port without a word to the user when that fails.
void ConnectQuietly(platform::ErrorService& errors, platform::Transport& transport, bool connect) {
    const bool reporting = errors.ErrorReporting();
    errors.SetErrorReporting(false);
    try {
        transport.Connect(connect);
    } catch (const platform::AutomationError&) {  // IsConnected tells
    }
    errors.SetErrorReporting(reporting);
}

/// The error that ends the creation of a driver then speaks of an index.
void TellWhatHelps(platform::MessageLog& log) {
    constexpr std::int16_t failure = 1;
    log.Log(failure, "TARN", "No serial port can be opened, COM1 to COM16: the driver cannot be created without one",
            "What helps, even if the receiver is reached another way: plug in a USB serial adapter, switch the port of "
            "the board on, install a virtual serial port, or close the program that holds the port open");
}

}  // namespace

std::string ListSerialPorts(platform::Framework& framework, platform::Transport& objComm) {
    std::string list;
    const auto port = objComm.Settings()->Item("Comm Port");
    for (int n = 1; n <= LastPort; ++n) {
        const auto number = std::to_string(n);
        const auto entry = std::string("COM").append(number).append("=").append(number);
        port->SetValueList(entry);
        port->SetValue(true, true, n);
        ConnectQuietly(framework.TheErrorService(), objComm, true);
        if (!objComm.IsConnected()) continue;
        ConnectQuietly(framework.TheErrorService(), objComm, false);
        if (!list.empty()) list += ',';
        list += entry;
    }
    if (list.empty()) IgnoringErrors([&] { TellWhatHelps(framework.TheMessageLog()); });
    return list;
}

}  // namespace tarn4x
