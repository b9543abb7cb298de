#pragma once

#include <optional>
#include <string>
#include <vector>

#include "platform/com/Server.h"

namespace com {

/// One entry among the classes of the machine or of a user.
struct RegistrationRow {
    std::wstring key;
    std::wstring name = {};                 ///< empty: the key's default value
    std::optional<std::wstring> data = {};  ///< none: only the key
    bool shared = false;                    ///< the other bitness needs the same entry in the same place
    bool claim = false;                     ///< who changes this value owns the rows after it too
};

/// Everything that registers a server in that file: classes, type library with its interfaces, component categories.
/// Raises AutomationError when the file has no type library.
std::vector<RegistrationRow> RegistrationRows(const Server& server, const std::wstring& file);

enum class Scope { Machine, User };

/// Registers the server that is in this module, for all users or for this one. A failure leaves the registry as it was.
/// A server that gives way fails with SELFREG_E_CLASS when one of its ProgIDs leads to another existing file, unless
/// forced.
HRESULT Register(const Server& server, Scope scope, bool force);

/// Removes what Register wrote and what still leads to this file; succeeds when there is nothing. What the other
/// bitness needs stays while that one is registered.
HRESULT Unregister(const Server& server, Scope scope);

/// The same as the words after regsvr32's option /i tell, separated by commas: "user" for this user only, "force" to
/// take over someone else's ProgIDs. Other words give E_INVALIDARG.
HRESULT Install(const Server& server, bool install, const wchar_t* words);

/// True when this process was started with the option /i:force. regsvr32 calls DllRegisterServer before DllInstall and
/// gives up when it fails, so that the word would never arrive.
bool ForceOnCommandLine();

}  // namespace com
