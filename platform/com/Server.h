#pragma once

#include <span>
#include <string>

#include "platform/com/Windows.h"

namespace com {

enum class Threading {
    Apartment,  ///< an object is used in the apartment that created it
    Both,       ///< an object is safe for all threads
};

/// A class that clients can create.
struct ClassEntry {
    const CLSID* clsid;
    const char* progId;
    const char* name;  ///< shown by object browsers
    Threading threading;
    HRESULT (*create)(REFIID iid, void** object);
    std::span<const CATID* const> categories = {};  ///< component categories that the class belongs to
};

/// A component category that a server introduces.
struct Category {
    const CATID* catid;
    const char* description;
};

/// What one DLL serves. The type library with that identity is in its resources.
struct Server {
    const GUID* library;
    std::span<const ClassEntry> classes;
    std::span<const Category> categories = {};
    bool givesWay = false;  ///< other products serve the same ProgIDs, which registering must not take from them
};

/// The server that a DLL's entry points serve; each DLL defines it.
const Server& TheServer();

/// The module that this code was linked into.
HMODULE ThisModule();
std::wstring FileName(HMODULE module);
/// The name of the component that this code was linked into, as its file has it: "Conduit".
std::string ComponentName();

/// Counts the objects that clients hold and the locks on class factories.
void CountObject();
void DiscountObject();
bool InUse();

/// Class factory of a server's class. It refuses aggregation. A module that has created an object stays in the process.
HRESULT GetClassObject(const Server& server, REFCLSID clsid, REFIID iid, void** factory);

}  // namespace com
