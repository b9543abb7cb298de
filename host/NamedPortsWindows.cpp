#define WIN32_LEAN_AND_MEAN
#define NOMINMAX
#include <windows.h>

#include "host/NamedPorts.h"

namespace host {

std::vector<NamedPort> NamedPorts() {
    std::vector<NamedPort> ports;
    HKEY key = nullptr;
    if (RegOpenKeyExA(HKEY_CURRENT_USER, "Software\\Conduit\\Ports", 0, KEY_READ, &key) != ERROR_SUCCESS) return ports;
    for (DWORD i = 0;; ++i) {
        char name[256], target[1024];
        DWORD length = sizeof name, size = sizeof target, type = 0;
        const auto error = RegEnumValueA(key, i, name, &length, nullptr, &type, reinterpret_cast<BYTE*>(target), &size);
        if (error == ERROR_NO_MORE_ITEMS) break;
        if (error != ERROR_SUCCESS || type != REG_SZ) continue;
        const std::string text(target, size);
        ports.push_back({name, text.substr(0, text.find('\0'))});
    }
    RegCloseKey(key);
    return ports;
}

}  // namespace host
