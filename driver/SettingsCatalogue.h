#pragma once

#include <memory>

#include "platform/Framework.h"

namespace tarn4x {

/// Builds the driver's settings with their defaults: what the instrument is, how to reach it (the subtree of each
/// transport included) and whether messages are logged. Opens and closes each serial port once, to list them. Raises
/// whatever a transport or a node raises, and 380 when the computer has no serial port.
std::shared_ptr<platform::SettingsNode> BuildSettingsCatalogue(platform::Framework& framework);

}  // namespace tarn4x
