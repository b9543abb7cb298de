#pragma once

#include <string>
#include <string_view>
#include <unordered_map>

#include "platform/com/ComPtr.h"

namespace com {

/// The type library in this module's resources. Raises AutomationError.
ComPtr<ITypeLib> EmbeddedTypeLibrary();

/// Description of an interface or class that the embedded library defines, or that one of its classes takes from an
/// imported library. Raises AutomationError.
ComPtr<ITypeInfo> FindTypeInfo(REFGUID guid);

/// Calls a member by its dispatch identifier. What the member raises is in the exception structure.
HRESULT InvokeMember(ITypeInfo* description, IDispatch* object, DISPID member, WORD flags, DISPPARAMS* arguments,
                     VARIANT* result, EXCEPINFO* exception, UINT* badArgument);

/// Dispatch identifiers of an interface's members by name, in any letter case. A look-up costs the same for every
/// member; the type description itself would search member by member.
class NameTable {
  public:
    explicit NameTable(ITypeInfo* description);
    /// Names of arguments may follow that of the member.
    HRESULT Find(LPOLESTR* names, UINT count, DISPID* identifiers) const;

  private:
    // Without regard to letter case; members have names of ASCII letters.
    struct Hash {
        using is_transparent = void;
        std::size_t operator()(std::wstring_view name) const;
    };
    struct Equal {
        using is_transparent = void;
        bool operator()(std::wstring_view one, std::wstring_view other) const;
    };

    ComPtr<ITypeInfo> description_;
    std::unordered_map<std::wstring, DISPID, Hash, Equal> identifiers_;
};

/// A description that is found once in the life of the module, whichever thread asks first.
class SharedTypeInfo {
  public:
    explicit constexpr SharedTypeInfo(const GUID* guid) : guid_(guid) {}
    /// The module's own reference. Raises AutomationError.
    ITypeInfo* Get();
    /// The module's own table. Raises AutomationError.
    const NameTable& Names();
    /// Lets go of all that the module has found. Only for a module that nobody uses any more.
    static void ReleaseAll();

  private:
    void Remember();

    const GUID* guid_;
    SharedTypeInfo* next_ = nullptr;
    void* description_ = nullptr;
    void* names_ = nullptr;
};

}  // namespace com
