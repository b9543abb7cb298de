#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace cli {

/// What a user can do about an error of the driver, one line; empty when nothing is known. `member` is the one that was
/// asked for, `modes` and `presentMode` tell in which measure modes it exists and in which one the receiver is.
std::string AdviceOn(std::int32_t number, std::string_view member, std::string_view modes,
                     std::string_view presentMode);

/// What to check when there is no connection over that link ("TCP/IP", "RS232", "GPIB" or "GUI"), and why.
std::string AdviceOnConnection(std::string_view link, std::string_view reason);

}  // namespace cli
