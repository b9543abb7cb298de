#pragma once

#include "platform/com/Windows.h"

namespace com {

/// Creates an object that finds and creates drivers.
HRESULT CreateHost(REFIID iid, void** object);

}  // namespace com
