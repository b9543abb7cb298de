#pragma once

#include "platform/com/ComPtr.h"
#include "platform/com/Errors.h"
#include "platform/com/MemberTable.h"
#include "platform/com/Object.h"
#include "platform/com/TypeLibrary.h"

namespace com {

/// IDispatch of one dual interface, served from its type description.
template <class Interface>
class Dispatch : public Interface {
  public:
    STDMETHODIMP GetTypeInfoCount(UINT* count) final {
        if (!count) return E_POINTER;
        *count = 1;
        return S_OK;
    }

    STDMETHODIMP GetTypeInfo(UINT index, LCID, ITypeInfo** description) final {
        if (!description) return E_POINTER;
        *description = nullptr;
        if (index != 0) return DISP_E_BADINDEX;
        return Border(IID_IDispatch, [&] { *description = Members().Description().detach(); });
    }

    STDMETHODIMP GetIDsOfNames(REFIID reserved, LPOLESTR* names, UINT count, LCID, DISPID* identifiers) final {
        if (!names || !identifiers) return E_POINTER;
        if (reserved != IID_NULL) return DISP_E_UNKNOWNINTERFACE;
        return Border(IID_IDispatch, [&] { return Members().Find(names, count, identifiers); });
    }

    STDMETHODIMP Invoke(DISPID member, REFIID reserved, LCID, WORD flags, DISPPARAMS* arguments, VARIANT* result,
                        EXCEPINFO* exception, UINT* badArgument) final {
        if (reserved != IID_NULL) return DISP_E_UNKNOWNINTERFACE;
        return Border(IID_IDispatch,
                      [&] { return Members().Invoke(this, member, flags, arguments, result, exception, badArgument); });
    }

  private:
    // Never destroyed: a client may call while the process ends.
    static const MemberTable& Members() {
        static const MemberTable& members = *new MemberTable(FindTypeInfo(__uuidof(Interface)));
        return members;
    }
};

template <class Interface>
inline constexpr const IID& IdOf<Dispatch<Interface>> = __uuidof(Interface);

/// An automation object with dual interfaces, the default one first. Coclass is null for objects whose class has no
/// entry in the type library.
template <const CLSID* Coclass, class Default, class... Further>
class DualFace : public Object<Dispatch<Default>, Dispatch<Further>..., ISupportErrorInfo, IProvideClassInfo> {
  public:
    STDMETHODIMP InterfaceSupportsErrorInfo(REFIID iid) final {
        const bool ours = iid == IID_IDispatch || iid == __uuidof(Default) || (... || (iid == __uuidof(Further)));
        return ours ? S_OK : S_FALSE;
    }

    STDMETHODIMP GetClassInfo(ITypeInfo** description) final {
        if (!description) return E_POINTER;
        *description = nullptr;
        return Border(IID_IProvideClassInfo, [&] { *description = FindTypeInfo(*Coclass).detach(); });
    }

  protected:
    void* Find(REFIID iid) override {
        if (iid == IID_IDispatch) return Identity();
        const bool has = iid != IID_IProvideClassInfo || Coclass;
        return has ? DualFace::Object::Find(iid) : nullptr;
    }

    /// The object's identity.
    IDispatch* Identity() { return static_cast<Dispatch<Default>*>(this); }
};

/// Creates an automation object: a class table's create function.
template <class Face>
HRESULT Create(REFIID iid, void** object) {
    return ComPtr<Face>(new Face)->QueryInterface(iid, object);
}

}  // namespace com
