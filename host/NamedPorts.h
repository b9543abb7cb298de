#pragma once

#include <algorithm>
#include <string>
#include <string_view>
#include <vector>

namespace host {

/// A serial port that the user has given a name, beside the computer's own.
struct NamedPort {
    std::string Name;    ///< "COM9"
    std::string Target;  ///< a device, "tcp://host:port" (a serial device server), or "none": nobody answers
};

/// The named ports as they stand now: on Windows the values of HKEY_CURRENT_USER\Software\Conduit\Ports. Elsewhere the
/// environment variable CONDUIT_PORTS tells a file of lines "COM9=tcp://10.0.0.5:4001", or a folder whose files are
/// devices and whose symbolic links lead to targets; the folder stands in place of the computer's own ports.
std::vector<NamedPort> NamedPorts();

/// Whether two names are those of one port; letter case does not matter.
inline bool IsSamePort(std::string_view one, std::string_view other) {
    const auto lower = [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c + 'a' - 'A') : c; };
    return std::ranges::equal(one, other, {}, lower, lower);
}

}  // namespace host
