#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace cli {

/// Where the receiver is, as settings of the driver.
struct Destination {
    std::string Link;  ///< value of "Remote Control": "TCP/IP"
    std::vector<std::pair<std::string, std::string>> Settings = {};
    std::optional<unsigned> Seed = {};  ///< of a receiver inside the program

    // Each throws Failure when the text is no such place.

    /// "10.0.0.5", "tarn-lab:5025", "[fe80::1]:5025"
    static Destination Host(std::string_view text);
    /// "COM3", "/dev/ttyUSB0:9600"
    static Destination Serial(std::string_view text);
    /// "0:6", with a secondary address "0:6:1"
    static Destination Gpib(std::string_view text);
    static Destination FrontPanel(int port);
    static Destination Simulated(unsigned seed);
};

}  // namespace cli
