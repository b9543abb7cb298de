#pragma once

#include "platform/com/Windows.h"

namespace com {

/// Creates the driver object that clients see: _clsTarn4x, IDriverIdentify and IDriverSetup over one tarn4x::clsTarn4x.
/// Raises what building the settings raises.
HRESULT CreateDriver(REFIID iid, void** object);

}  // namespace com
