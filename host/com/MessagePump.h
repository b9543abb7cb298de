#pragma once

#include <chrono>

namespace host {

/// Waits at most that long for a message of this thread's windows or for a call into its apartment, and handles it.
void PumpMessages(std::chrono::milliseconds time);

}  // namespace host
