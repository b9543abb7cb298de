#pragma once

#include <cstdint>
#include <optional>
#include <string>
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

    /// Calls a member, whichever of the flags for methods and for reading properties the caller gives. What it raises
    /// is in the exception structure.
    HRESULT Invoke(IDispatch* object, DISPID identifier, WORD flags, DISPPARAMS* arguments, VARIANT* result,
                   EXCEPINFO* exception, UINT* badArgument) const;

  private:
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
    std::unordered_map<std::wstring, DISPID> identifiers_;  // by names in lower case
    std::unordered_map<std::uint64_t, PlainMember> plainMembers_;
    std::unordered_map<DISPID, std::vector<VARTYPE>> outputs_;  // as PassedArguments takes them, where there are any
};

}  // namespace com
