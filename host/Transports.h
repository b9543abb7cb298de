#pragma once

#include <chrono>
#include <functional>
#include <memory>
#include <string_view>

#include "platform/Framework.h"

namespace host {

/// What a transport asks of its surroundings. Functions left empty answer False or do nothing.
struct TransportServices {
    /// Asked about every 50 ms while an operation waits. It may run the message loop: a call of the same transport
    /// from there is refused.
    std::function<bool()> AbortRequested = {};
    /// Takes one entry: kind, source, text, data.
    std::function<void(std::int16_t, std::string_view, std::string_view, std::string_view)> Log = {};
    /// Waits at most that long; a program with windows or apartments handles their messages and calls. Left empty, the
    /// thread sleeps.
    std::function<void(std::chrono::milliseconds)> Wait = {};
    /// False: failures do not become log entries (someone is only trying which ports there are).
    std::function<bool()> ErrorReporting = {};
};

/// Creates the transport of that ProgID ("Conduit.clsEthernet", "Conduit.clsComm", "Conduit.clsGPIB",
/// "Conduit.clsGUI"). Its settings become a group below the fresh node. Raises 429 for any other ProgID.
std::shared_ptr<platform::Transport> CreateTransport(std::string_view progId, platform::SettingsNode& freshNode,
                                                     TransportServices services);

}  // namespace host
