#pragma once

#include "platform/com/Windows.h"

namespace host {
class ErrorService;
}

namespace com {

host::ErrorService& TheErrorService();

/// The process's one application object, message log and error service.
HRESULT GetApplication(REFIID iid, void** object);
HRESULT GetMessageLog(REFIID iid, void** object);
HRESULT GetErrorService(REFIID iid, void** object);

}  // namespace com
