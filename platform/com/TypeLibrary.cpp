#include "platform/com/TypeLibrary.h"

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

const MemberTable& SharedTypeInfo::Members() {
    void* known = InterlockedCompareExchangePointer(&members_, nullptr, nullptr);
    if (!known) {
        auto made = std::make_unique<MemberTable>(Get());
        known = InterlockedCompareExchangePointer(&members_, made.get(), nullptr);
        if (!known) known = made.release();
    }
    return *static_cast<const MemberTable*>(known);
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
        delete static_cast<MemberTable*>(each->members_);
        static_cast<ITypeInfo*>(each->description_)->Release();
    }
}

}  // namespace com
