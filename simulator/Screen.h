#pragma once

#include <string>

namespace sim {

class Receiver;

/// The longest picture that a block may hold.
inline constexpr size_t kLongestScreen = 32767;

/// What the display of the receiver shows in its measure mode, as a PCX file. Throws ScpiError -310 when it would not
/// fit into a block.
std::string DrawScreen(const Receiver& receiver);

}  // namespace sim
