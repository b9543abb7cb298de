#include "platform/com/TypeLibrary.h"

#include <algorithm>
#include <memory>

#include "platform/com/Errors.h"
#include "platform/com/Server.h"
#include "platform/com/Text.h"

namespace com {
namespace {

// Calls use(attributes) and gives the attributes back.
template <class Use>
auto WithAttributes(ITypeInfo* description, Use&& use) {
    TYPEATTR* attributes = nullptr;
    Check(description->GetTypeAttr(&attributes));
    const auto result = use(*attributes);
    description->ReleaseTypeAttr(attributes);
    return result;
}

// Members have names of ASCII letters.
std::wstring LowerCase(const wchar_t* text) {
    std::wstring lower(text);
    for (wchar_t& c : lower) {
        if (c >= L'A' && c <= L'Z') c = static_cast<wchar_t>(c - L'A' + L'a');
    }
    return lower;
}

ComPtr<ITypeInfo> ImplementedInterface(ITypeInfo* coclass, REFGUID guid) {
    const UINT count = WithAttributes(coclass, [](const TYPEATTR& attributes) { return attributes.cImplTypes; });
    for (UINT index = 0; index < count; ++index) {
        HREFTYPE reference = 0;
        ComPtr<ITypeInfo> description;
        if (FAILED(coclass->GetRefTypeOfImplType(index, &reference)) ||
            FAILED(coclass->GetRefTypeInfo(reference, description.put()))) {
            continue;
        }
        if (WithAttributes(description.get(), [&](const TYPEATTR& attributes) { return attributes.guid == guid; })) {
            return description;
        }
    }
    return {};
}

}  // namespace

ComPtr<ITypeLib> EmbeddedTypeLibrary() {
    ComPtr<ITypeLib> library;
    Check(LoadTypeLibEx(FileName(ThisModule()).c_str(), REGKIND_NONE, library.put()));
    return library;
}

ComPtr<ITypeInfo> FindTypeInfo(REFGUID guid) {
    const auto library = EmbeddedTypeLibrary();
    ComPtr<ITypeInfo> description;
    if (SUCCEEDED(library->GetTypeInfoOfGuid(guid, description.put()))) return description;
    const UINT count = library->GetTypeInfoCount();
    for (UINT index = 0; index < count; ++index) {
        TYPEKIND kind{};
        if (FAILED(library->GetTypeInfoType(index, &kind)) || kind != TKIND_COCLASS) continue;
        ComPtr<ITypeInfo> coclass;
        Check(library->GetTypeInfo(index, coclass.put()));
        if (auto found = ImplementedInterface(coclass.get(), guid)) return found;
    }
    Check(TYPE_E_ELEMENTNOTFOUND);
    return {};
}

NameTable::NameTable(ITypeInfo* description) : description_(description) {
    const UINT count = WithAttributes(description, [](const TYPEATTR& attributes) { return attributes.cFuncs; });
    for (UINT index = 0; index < count; ++index) {
        FUNCDESC* function = nullptr;
        Check(description->GetFuncDesc(index, &function));
        const DISPID identifier = function->memid;
        description->ReleaseFuncDesc(function);
        Bstr name;
        UINT named = 0;
        Check(description->GetNames(identifier, name.put(), 1, &named));
        entries_.push_back({LowerCase(name.get()), identifier});
    }
    std::ranges::sort(entries_, {}, &Entry::name);
}

HRESULT NameTable::Find(LPOLESTR* names, UINT count, DISPID* identifiers) const {
    if (count == 1 && names[0]) {
        const auto wanted = LowerCase(names[0]);
        const auto found = std::ranges::lower_bound(entries_, wanted, {}, &Entry::name);
        if (found != entries_.end() && found->name == wanted) {
            *identifiers = found->identifier;
            return S_OK;
        }
    }
    return description_->GetIDsOfNames(names, count, identifiers);
}

HRESULT InvokeMember(ITypeInfo* description, IDispatch* object, DISPID member, WORD flags, DISPPARAMS* arguments,
                     VARIANT* result, EXCEPINFO* exception, UINT* badArgument) {
    SetErrorInfo(0, nullptr);
    if (exception) *exception = {};
    return description->Invoke(object, member, flags, arguments, result, exception, badArgument);
}

ITypeInfo* SharedTypeInfo::Get() {
    void* known = InterlockedCompareExchangePointer(&description_, nullptr, nullptr);
    if (!known) {
        auto found = FindTypeInfo(*guid_);
        known = InterlockedCompareExchangePointer(&description_, found.get(), nullptr);
        if (!known) known = found.detach();
    }
    return static_cast<ITypeInfo*>(known);
}

const NameTable& SharedTypeInfo::Names() {
    void* known = InterlockedCompareExchangePointer(&names_, nullptr, nullptr);
    if (!known) {
        auto made = std::make_unique<NameTable>(Get());
        known = InterlockedCompareExchangePointer(&names_, made.get(), nullptr);
        if (!known) known = made.release();
    }
    return *static_cast<const NameTable*>(known);
}

}  // namespace com
