#pragma once

#include <optional>
#include <string>
#include <vector>

#include "platform/com/Server.h"

namespace com {

/// One entry below HKEY_CLASSES_ROOT.
struct RegistrationRow {
    std::wstring key;
    std::wstring name;                 ///< empty: the key's default value
    std::optional<std::wstring> data;  ///< none: only the key
    bool shared = false;               ///< the other bitness needs the same entry in the same place
};

/// Everything that registers a server in that file: classes, type library with its interfaces, component categories.
/// Raises AutomationError when the file has no type library.
std::vector<RegistrationRow> RegistrationRows(const Server& server, const std::wstring& file);

/// Registers the server that is in this module; without the right to, it leaves nothing behind.
HRESULT Register(const Server& server);

/// Removes what Register wrote, unless another file has taken the registration over since. What the other bitness
/// needs stays while that one is registered.
HRESULT Unregister(const Server& server);

}  // namespace com
