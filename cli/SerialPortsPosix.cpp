#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>

#include "cli/SerialPorts.h"

namespace cli {

namespace {

namespace fs = std::filesystem;

/// The devices of the system. A port that is only prepared for, without a chip behind it, has type 0.
void AddDevices(std::vector<SerialPort>& ports) {
    std::error_code none;
    for (const auto& entry : fs::directory_iterator("/sys/class/tty", none)) {
        if (!fs::exists(entry.path() / "device", none)) continue;
        int type = -1;
        std::ifstream(entry.path() / "type") >> type;
        const auto device = "/dev/" + entry.path().filename().string();
        if (type != 0 && fs::exists(device, none)) ports.push_back({device, device});
    }
}

/// Ports of a name, in the folder that the environment variable tells.
void AddNamed(std::vector<SerialPort>& ports) {
    const char* folder = std::getenv("CONDUIT_PORTS");
    if (!folder) return;
    std::error_code none;
    for (const auto& entry : fs::directory_iterator(folder, none)) {
        const auto device = fs::is_symlink(entry, none) ? fs::read_symlink(entry, none) : entry.path();
        ports.push_back({entry.path().filename().string(), device.string()});
    }
}

}  // namespace

std::vector<SerialPort> AllSerialPorts() {
    std::vector<SerialPort> ports;
    AddDevices(ports);
    AddNamed(ports);
    std::ranges::sort(ports, {}, &SerialPort::Name);
    return ports;
}

}  // namespace cli
