#pragma once

#include <vector>

#include "host/NamedPorts.h"

namespace cli {

/// The serial ports that the system knows of, with their devices. None is opened.
std::vector<host::NamedPort> SystemPorts();

}  // namespace cli
