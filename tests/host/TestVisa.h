#pragma once

#include <cstdlib>
#include <string>

#include "platform/SettingsNode.h"

/// Sets an environment variable of this process.
inline void SetEnvironment(const char* name, const std::string& value) {
#ifdef _WIN32
    _putenv_s(name, value.c_str());
#else
    ::setenv(name, value.c_str(), 1);
#endif
}

/// Puts what listens on that port onto the bus of the tests' VISA runtime, at an address of its own, and chooses that
/// runtime and address.
inline void PutOnGpib(int port, platform::SettingsNode& gpib) {
    static std::string peers;
    static int address = 0;
    address = address % 30 + 1;
    gpib.Item("Primary Address")->SetValue(true, true, address);
    peers = "GPIB0::" + std::to_string(address) + "::INSTR=" + std::to_string(port) + ' ' + peers;
    SetEnvironment("VISA_PEERS", peers);
    SetEnvironment("CONDUIT_VISA", TEST_VISA);
}
