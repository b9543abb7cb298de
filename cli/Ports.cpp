#include <algorithm>

#include "cli/Commands.h"
#include "cli/SerialPorts.h"

namespace cli {

namespace {

/// The ports that --serial takes: a name that the user gave takes the place of the system's.
std::vector<host::NamedPort> AllPorts() {
    auto ports = host::NamedPorts();
    for (auto& port : SystemPorts()) {
        const auto isPort = [&](const auto& named) { return host::IsSamePort(named.Name, port.Name); };
        if (std::ranges::none_of(ports, isPort)) ports.push_back(port);
    }
    std::ranges::sort(ports, {}, [](const auto& port) { return std::pair(port.Name.size(), port.Name); });
    return ports;
}

}  // namespace

Outcome ListPorts(Context& context) {
    Outcome outcome;
    std::vector<std::vector<std::string>> rows;
    for (const auto& [name, target] : AllPorts()) {
        outcome.Results.push_back({{"port", name}, {"device", target}});
        rows.push_back({name, target == name ? "" : target});
    }
    if (context.Out.IsJson()) return outcome;
    for (const auto& line : InColumns(rows)) context.Out.Line(line);
    if (rows.empty()) context.Out.Line("This computer has no serial port.");
    return outcome;
}

}  // namespace cli
