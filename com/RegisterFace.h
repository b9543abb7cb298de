#pragma once

#include "platform/com/Windows.h"

namespace com {

/// Creates the object that tells a host which driver class this component provides.
HRESULT CreateRegister(REFIID iid, void** object);

}  // namespace com
