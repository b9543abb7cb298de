#include "driver/SerialPorts.h"

#include <mutex>

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

}  // namespace

std::string ListSerialPorts(platform::Framework& framework, platform::Transport& objComm) {
    // A port opens for one at a time: drivers that are created in several threads would hide the ports from each other.
    // Whoever waits goes on handling calls, which the one that looks may depend on.
    static std::recursive_mutex looking;
    std::unique_lock turn(looking, std::try_to_lock);
    while (!turn.owns_lock() && !turn.try_lock()) framework.TheApplication().Delay(0.01F);
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
    return list;
}

}  // namespace tarn4x
