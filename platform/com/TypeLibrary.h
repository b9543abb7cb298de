#pragma once

#include "platform/com/ComPtr.h"

namespace com {

/// The type library in this module's resources. Raises AutomationError.
ComPtr<ITypeLib> EmbeddedTypeLibrary();

/// Description of an interface or class that the embedded library defines, or that one of its classes takes from an
/// imported library. Raises AutomationError.
ComPtr<ITypeInfo> FindTypeInfo(REFGUID guid);

/// Dispatch identifiers of names: the one place where names are looked up.
HRESULT FindNames(ITypeInfo* description, LPOLESTR* names, UINT count, DISPID* identifiers);

/// Calls a member by its dispatch identifier. What the member raises is in the exception structure.
HRESULT InvokeMember(ITypeInfo* description, IDispatch* object, DISPID member, WORD flags, DISPPARAMS* arguments,
                     VARIANT* result, EXCEPINFO* exception, UINT* badArgument);

/// A description that is found once in the life of the module, whichever thread asks first.
class SharedTypeInfo {
  public:
    explicit constexpr SharedTypeInfo(const GUID* guid) : guid_(guid) {}
    /// The module's own reference. Raises AutomationError.
    ITypeInfo* Get();

  private:
    const GUID* guid_;
    void* description_ = nullptr;
};

}  // namespace com
