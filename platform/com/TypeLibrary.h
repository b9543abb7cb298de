#pragma once

#include "platform/com/ComPtr.h"

namespace com {

/// Description of an interface or class that the type library in this module's resources defines, or that one of its
/// classes takes from an imported library. Raises AutomationError.
ComPtr<ITypeInfo> FindTypeInfo(REFGUID guid);

/// What a description tells about itself. Raises AutomationError.
TYPEATTR AttributesOf(const ComPtr<ITypeInfo>& description);

}  // namespace com
