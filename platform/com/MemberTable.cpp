#include "platform/com/MemberTable.h"

#include <algorithm>
#include <array>

#include "platform/com/Errors.h"
#include "platform/com/PassedArguments.h"
#include "platform/com/Text.h"
#include "platform/com/TypeLibrary.h"
#include "platform/com/Variants.h"

namespace com {
namespace {

constexpr std::size_t MostArguments = 4;

// Members have names of ASCII letters.
std::wstring Lower(std::wstring name) {
    for (wchar_t& c : name) {
        if (c >= L'A' && c <= L'Z') c = static_cast<wchar_t>(c - L'A' + L'a');
    }
    return name;
}

/// The type under which an automation value of the declared type travels; VT_ILLEGAL for what is not plain.
VARTYPE PlainType(ITypeInfo* description, const TYPEDESC& type) {
    switch (type.vt) {
        case VT_I2:
        case VT_I4:
        case VT_R4:
        case VT_R8:
        case VT_BOOL:
        case VT_DATE:
        case VT_BSTR:
            return type.vt;
        case VT_USERDEFINED: {
            ComPtr<ITypeInfo> referred;
            Check(description->GetRefTypeInfo(type.hreftype, referred.put()));
            return AttributesOf(referred).typekind == TKIND_ENUM ? VT_I4 : VT_ILLEGAL;
        }
        default:
            return VT_ILLEGAL;
    }
}

/// The types of what a member hands back through its arguments as an array of bytes or as a Variant, up to the last
/// such argument; VT_EMPTY for the others.
std::vector<VARTYPE> Outputs(const FUNCDESC& function) {
    std::vector<VARTYPE> outputs;
    for (std::size_t index = 0; index < static_cast<std::size_t>(function.cParams); ++index) {
        const auto& parameter = function.lprgelemdescParam[index];
        if (parameter.tdesc.vt != VT_PTR || (parameter.paramdesc.wParamFlags & PARAMFLAG_FOUT) == 0) continue;
        const auto& type = *parameter.tdesc.lptdesc;
        const bool bytes = type.vt == VT_SAFEARRAY && type.lptdesc->vt == VT_UI1;
        if (!bytes && type.vt != VT_VARIANT) continue;
        outputs.resize(index);
        outputs.push_back(bytes ? VT_ARRAY | VT_UI1 : VT_VARIANT);
    }
    return outputs;
}

/// Tells the caller what the member has raised.
HRESULT Raised(HRESULT result, EXCEPINFO* exception) {
    if (!exception) return DISP_E_EXCEPTION;
    exception->scode = result;
    ComPtr<IErrorInfo> information;
    if (GetErrorInfo(0, information.put()) == S_OK) {
        information->GetSource(&exception->bstrSource);
        information->GetDescription(&exception->bstrDescription);
        information->GetHelpFile(&exception->bstrHelpFile);
        information->GetHelpContext(&exception->dwHelpContext);
    }
    return DISP_E_EXCEPTION;
}

}  // namespace

MemberTable::MemberTable(ComPtr<ITypeInfo> description) : description_(std::move(description)) {
    const UINT count = AttributesOf(description_).cFuncs;
    for (UINT index = 0; index < count; ++index) {
        FUNCDESC* function = nullptr;
        Check(description_->GetFuncDesc(index, &function));
        const DISPID identifier = function->memid;
        if (auto member = Plain(description_.get(), *function)) {
            plainMembers_.emplace(Key(identifier, function->invkind), std::move(*member));
        }
        if (auto outputs = Outputs(*function); !outputs.empty()) outputs_.emplace(identifier, std::move(outputs));
        description_->ReleaseFuncDesc(function);
        Bstr name;
        UINT named = 0;
        Check(description_->GetNames(identifier, name.put(), 1, &named));
        identifiers_.emplace(Lower(name.get()), identifier);
    }
}

HRESULT MemberTable::Find(LPOLESTR* names, UINT count, DISPID* identifiers) const {
    if (count == 1 && names[0]) {
        const auto found = identifiers_.find(Lower(names[0]));
        if (found != identifiers_.end()) {
            *identifiers = found->second;
            return S_OK;
        }
    }
    return description_->GetIDsOfNames(names, count, identifiers);
}

HRESULT MemberTable::Invoke(IDispatch* object, DISPID identifier, WORD flags, DISPPARAMS* arguments, VARIANT* result,
                            EXCEPINFO* exception, UINT* badArgument) const {
    if (!arguments) return E_POINTER;
    if (exception) *exception = {};
    constexpr WORD either = DISPATCH_METHOD | DISPATCH_PROPERTYGET;
    if ((flags & either) != 0) flags |= either;
    if (const auto member = FindPlain(identifier, flags, *arguments)) {
        return Call(object, *member, *arguments, result, exception);
    }
    const auto outputs = outputs_.find(identifier);
    PassedArguments passed(*arguments, outputs == outputs_.end() ? std::span<const VARTYPE>() : outputs->second,
                           badArgument);
    const HRESULT called =
        description_->Invoke(object, identifier, flags, passed.Get(), result, exception, badArgument);
    if (SUCCEEDED(called)) passed.HandOver();
    return called;
}

std::optional<MemberTable::PlainMember> MemberTable::Plain(ITypeInfo* description, const FUNCDESC& function) {
    const auto count = static_cast<std::size_t>(function.cParams);
    if (function.callconv != CC_STDCALL || count > MostArguments) return {};
    PlainMember member{static_cast<ULONG_PTR>(function.oVft), {}, function.elemdescFunc.tdesc.vt};
    if (member.result != VT_VOID && member.result != VT_VARIANT) {
        member.result = PlainType(description, function.elemdescFunc.tdesc);
    }
    for (std::size_t index = 0; index < count; ++index) {
        const auto& parameter = function.lprgelemdescParam[index];
        if (parameter.paramdesc.wParamFlags != PARAMFLAG_FIN) return {};
        member.arguments.push_back(PlainType(description, parameter.tdesc));
    }
    const bool plain = member.result != VT_ILLEGAL && std::ranges::count(member.arguments, VT_ILLEGAL) == 0;
    return plain ? std::optional(std::move(member)) : std::nullopt;
}

std::uint64_t MemberTable::Key(DISPID identifier, unsigned kind) {
    return std::uint64_t{kind} << 32 | static_cast<std::uint32_t>(identifier);
}

// Only when each argument comes in its very type: conversions are the type description's.
const MemberTable::PlainMember* MemberTable::FindPlain(DISPID identifier, WORD flags,
                                                       const DISPPARAMS& arguments) const {
    for (const unsigned kind : {INVOKE_PROPERTYGET, INVOKE_FUNC, INVOKE_PROPERTYPUT}) {
        if ((flags & kind) == 0) continue;
        const auto found = plainMembers_.find(Key(identifier, kind));
        if (found == plainMembers_.end()) continue;
        const auto& types = found->second.arguments;
        const bool put = kind == INVOKE_PROPERTYPUT;
        if (arguments.cArgs != types.size() || arguments.cNamedArgs != (put ? 1U : 0U)) return nullptr;
        if (put && arguments.rgdispidNamedArgs[0] != DISPID_PROPERTYPUT) return nullptr;
        for (std::size_t index = 0; index < types.size(); ++index) {
            if (arguments.rgvarg[types.size() - 1 - index].vt != types[index]) return nullptr;
        }
        return &found->second;
    }
    return nullptr;
}

HRESULT MemberTable::Call(IDispatch* object, const PlainMember& member, const DISPPARAMS& arguments, VARIANT* result,
                          EXCEPINFO* exception) {
    std::array<VARTYPE, MostArguments + 1> types;
    std::array<VARIANTARG*, MostArguments + 1> values;
    UINT count = arguments.cArgs;
    for (UINT index = 0; index < count; ++index) {
        types[index] = member.arguments[index];
        values[index] = &arguments.rgvarg[count - 1 - index];
    }
    Variant handed, returned, pointer;
    if (member.result != VT_VOID) {
        pointer.vt = static_cast<VARTYPE>(VT_BYREF | member.result);
        pointer.byref = member.result == VT_VARIANT ? static_cast<void*>(&handed) : &handed.llVal;
        types[count] = pointer.vt;
        values[count++] = &pointer;
    }
    const HRESULT called =
        DispCallFunc(object, member.offset, CC_STDCALL, VT_ERROR, count, types.data(), values.data(), &returned);
    if (FAILED(called)) return called;
    if (member.result != VT_VOID && member.result != VT_VARIANT) handed.vt = member.result;
    if (FAILED(returned.scode)) return Raised(returned.scode, exception);
    if (result) *result = handed.Detach();
    return S_OK;
}

}  // namespace com
