#pragma once

#include "platform/com/ComPtr.h"
#include "platform/com/MemberTable.h"

namespace com {

/// The type library in this module's resources. Raises AutomationError.
ComPtr<ITypeLib> EmbeddedTypeLibrary();

/// Description of an interface or class that the embedded library defines, or that one of its classes takes from an
/// imported library. Raises AutomationError.
ComPtr<ITypeInfo> FindTypeInfo(REFGUID guid);

/// A description that is found once in the life of the module, whichever thread asks first.
class SharedTypeInfo {
  public:
    explicit constexpr SharedTypeInfo(const GUID* guid) : guid_(guid) {}
    /// The module's own reference. Raises AutomationError.
    ITypeInfo* Get();
    /// The module's own table. Raises AutomationError.
    const MemberTable& Members();
    /// Lets go of all that the module has found. Only for a module that nobody uses any more.
    static void ReleaseAll();

  private:
    void Remember();

    const GUID* guid_;
    SharedTypeInfo* next_ = nullptr;
    void* description_ = nullptr;
    void* members_ = nullptr;
};

}  // namespace com
