#pragma once

#include <string>
#include <vector>

namespace cli {

/// A serial port as --serial takes it.
struct SerialPort {
    std::string Name;
    std::string Device;  ///< what it is a name for
};

/// The serial ports that the system knows of, and those that have been given a name. None is opened.
std::vector<SerialPort> AllSerialPorts();

}  // namespace cli
