#pragma once

#include "platform/com/Windows.h"

namespace com {

/// Creates the root of a settings tree.
HRESULT CreateNode(REFIID iid, void** object);

}  // namespace com
