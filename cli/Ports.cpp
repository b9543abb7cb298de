#include "cli/Commands.h"
#include "cli/SerialPorts.h"

namespace cli {

Outcome ListPorts(Context& context) {
    Outcome outcome;
    std::vector<std::vector<std::string>> rows;
    for (const auto& [name, device] : AllSerialPorts()) {
        outcome.Results.push_back({{"port", name}, {"device", device}});
        rows.push_back({name, device == name ? "" : device});
    }
    if (context.Out.IsJson()) return outcome;
    for (const auto& line : InColumns(rows)) context.Out.Line(line);
    if (rows.empty()) context.Out.Line("This computer has no serial port.");
    return outcome;
}

}  // namespace cli
