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

/// Chooses the tests' VISA runtime, and in it the address of what listens on that port.
inline void PutOnGpib(int port, platform::SettingsNode& gpib) {
    SetEnvironment("CONDUIT_VISA", TEST_VISA);
    gpib.Item("Board")->SetValue(true, true, port / (31 * 31));
    gpib.Item("Primary Address")->SetValue(true, true, port / 31 % 31);
    gpib.Item("Secondary Address")->SetValue(true, true, port % 31);
}
