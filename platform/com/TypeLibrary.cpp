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

// The first of those SharedTypeInfos that found their descriptions.
void* used = nullptr;

wchar_t Lower(wchar_t c) { return c >= L'A' && c <= L'Z' ? static_cast<wchar_t>(c - L'A' + L'a') : c; }

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
        identifiers_.emplace(name.get(), identifier);
    }
}

HRESULT NameTable::Find(LPOLESTR* names, UINT count, DISPID* identifiers) const {
    if (count == 1 && names[0]) {
        const auto found = identifiers_.find(std::wstring_view(names[0]));
        if (found != identifiers_.end()) {
            *identifiers = found->second;
            return S_OK;
        }
    }
    return description_->GetIDsOfNames(names, count, identifiers);
}

std::size_t NameTable::Hash::operator()(std::wstring_view name) const {
    std::size_t hash = 0;
    for (const wchar_t c : name) hash = hash * 31 + Lower(c);
    return hash;
}

bool NameTable::Equal::operator()(std::wstring_view one, std::wstring_view other) const {
    return std::ranges::equal(one, other, {}, Lower, Lower);
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
        if (!known) {
            known = found.detach();
            Remember();
        }
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

void SharedTypeInfo::Remember() {
    void* first = nullptr;
    do {
        first = InterlockedCompareExchangePointer(&used, nullptr, nullptr);
        next_ = static_cast<SharedTypeInfo*>(first);
    } while (InterlockedCompareExchangePointer(&used, this, first) != first);
}

void SharedTypeInfo::ReleaseAll() {
    for (auto each = static_cast<SharedTypeInfo*>(used); each; each = each->next_) {
        delete static_cast<NameTable*>(each->names_);
        static_cast<ITypeInfo*>(each->description_)->Release();
    }
}

}  // namespace com
