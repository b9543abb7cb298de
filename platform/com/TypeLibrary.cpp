#include "platform/com/TypeLibrary.h"

#include "platform/com/Errors.h"
#include "platform/com/Server.h"

namespace com {
ComPtr<ITypeInfo> FindTypeInfo(REFGUID guid) {
    ComPtr<ITypeLib> library;
    Check(LoadTypeLibEx(FileName(ThisModule()).c_str(), REGKIND_NONE, library.put()));
    ComPtr<ITypeInfo> description;
    if (SUCCEEDED(library->GetTypeInfoOfGuid(guid, description.put()))) return description;
    const UINT count = library->GetTypeInfoCount();
    for (UINT index = 0; index < count; ++index) {
        ComPtr<ITypeInfo> type;
        Check(library->GetTypeInfo(index, type.put()));
        HREFTYPE reference = 0;
        for (UINT implemented = 0; SUCCEEDED(type->GetRefTypeOfImplType(implemented, &reference)); ++implemented) {
            if (SUCCEEDED(type->GetRefTypeInfo(reference, description.put())) &&
                AttributesOf(description).guid == guid) {
                return description;
            }
        }
    }
    Check(TYPE_E_ELEMENTNOTFOUND);
    return {};
}

TYPEATTR AttributesOf(const ComPtr<ITypeInfo>& description) {
    TYPEATTR* attributes = nullptr;
    Check(description->GetTypeAttr(&attributes));
    const TYPEATTR result = *attributes;
    description->ReleaseTypeAttr(attributes);
    return result;
}

}  // namespace com
