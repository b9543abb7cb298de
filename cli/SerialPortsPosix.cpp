#include <filesystem>
#include <fstream>

#include "cli/SerialPorts.h"

namespace cli {

namespace fs = std::filesystem;

// A port that is only prepared for, without a chip behind it, has type 0.
std::vector<host::NamedPort> SystemPorts() {
    std::vector<host::NamedPort> ports;
    std::error_code none;
    for (const auto& entry : fs::directory_iterator("/sys/class/tty", none)) {
        if (!fs::exists(entry.path() / "device", none)) continue;
        int type = -1;
        std::ifstream(entry.path() / "type") >> type;
        const auto device = "/dev/" + entry.path().filename().string();
        if (type != 0 && fs::exists(device, none)) ports.push_back({device, device});
    }
    return ports;
}

}  // namespace cli
