#pragma once

#include <string>

#include "platform/Framework.h"

namespace tarn4x {

/// Value list of the serial ports COM1 to COM16 that can be opened, for example "COM1=1,COM3=3"; empty with none.
/// Opens and closes each in turn. With none, the message log says what helps.
std::string ListSerialPorts(platform::Framework& framework, platform::Transport& objComm);

}  // namespace tarn4x
