#pragma once

#include "platform/com/Windows.h"

namespace com {

/// The process's one application object, message log and error service.
HRESULT GetApplication(REFIID iid, void** object);
HRESULT GetMessageLog(REFIID iid, void** object);
HRESULT GetErrorService(REFIID iid, void** object);

}  // namespace com
