#include <windows.h>

#include <string_view>

#include "cli/SerialPorts.h"

namespace cli {

// Windows names its serial ports COM1, COM2 and so on, among the other devices of DOS.
std::vector<host::NamedPort> SystemPorts() {
    std::vector<host::NamedPort> ports;
    std::vector<char> names(1 << 20);
    if (QueryDosDeviceA(nullptr, names.data(), static_cast<DWORD>(names.size())) == 0) return ports;
    for (const char* name = names.data(); *name; name += std::string_view(name).size() + 1) {
        const std::string_view text(name);
        if (!text.starts_with("COM") || text.size() < 4 || text.find_first_not_of("0123456789", 3) != text.npos)
            continue;
        char device[MAX_PATH] = "";
        if (QueryDosDeviceA(name, device, sizeof device) == 0) continue;  // unplugged meanwhile
        ports.push_back({name, device});
    }
    return ports;
}

}  // namespace cli
