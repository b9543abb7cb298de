#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "platform/com/ComPtr.h"

namespace com {

/// The members of a dual interface by name and by dispatch identifier. Late-bound calls cost the same for every member,
/// where the type description would search member by member.
class MemberTable {
  public:
    explicit MemberTable(ComPtr<ITypeInfo> description);

    ComPtr<ITypeInfo> Description() const { return description_; }

    /// In any letter case. Names of arguments may follow that of the member.
    HRESULT Find(LPOLESTR* names, UINT count, DISPID* identifiers) const;

    /// Calls a member. What it raises is in the exception structure.
    HRESULT Invoke(IDispatch* object, DISPID identifier, WORD flags, DISPPARAMS* arguments, VARIANT* result,
                   EXCEPINFO* exception, UINT* badArgument) const;

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

    /// A member whose arguments and result are numbers, truth values, dates or texts, handed in or back by value; the
    /// result may be a Variant.
    struct PlainMember {
        ULONG_PTR offset;  // in the function table
        std::vector<VARTYPE> arguments;
        VARTYPE result;  // VT_VOID for none
    };

    static std::optional<PlainMember> Plain(ITypeInfo* description, const FUNCDESC& function);
    static std::uint64_t Key(DISPID identifier, unsigned kind);
    const PlainMember* FindPlain(DISPID identifier, WORD flags, const DISPPARAMS& arguments) const;
    static HRESULT Call(IDispatch* object, const PlainMember& member, const DISPPARAMS& arguments, VARIANT* result,
                        EXCEPINFO* exception);

    ComPtr<ITypeInfo> description_;
    std::unordered_map<std::wstring, DISPID, Hash, Equal> identifiers_;
    std::unordered_map<std::uint64_t, PlainMember> plainMembers_;
};

}  // namespace com
