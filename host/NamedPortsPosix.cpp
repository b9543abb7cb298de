#include <cstdlib>
#include <filesystem>
#include <fstream>

#include "host/NamedPorts.h"

namespace host {

namespace fs = std::filesystem;

std::vector<NamedPort> NamedPorts() {
    const char* variable = std::getenv("CONDUIT_PORTS");
    if (!variable) return {};
    const fs::path place(variable);
    std::vector<NamedPort> ports;
    std::error_code none;
    for (const auto& entry : fs::directory_iterator(place, none)) {
        auto target = fs::is_symlink(entry, none) ? fs::read_symlink(entry, none).string() : entry.path().string();
        const bool isDevice = target != "none" && target.find("://") == target.npos;
        ports.push_back({entry.path().filename().string(), isDevice ? (place / target).string() : target});
    }
    std::ifstream file(fs::is_regular_file(place, none) ? place : fs::path());
    for (std::string line; std::getline(file, line);) {
        std::erase_if(line, [](char c) { return c == ' ' || c == '\t' || c == '\r'; });
        const auto equals = line.find('=');
        if (equals != line.npos && line[0] != '#') ports.push_back({line.substr(0, equals), line.substr(equals + 1)});
    }
    return ports;
}

}  // namespace host
