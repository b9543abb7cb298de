#pragma once

#include <type_traits>

#include "platform/com/ComPtr.h"
#include "platform/com/Errors.h"
#include "platform/com/Server.h"
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
        return Border(IID_IDispatch, [&] { *description = ComPtr<ITypeInfo>(Description()).detach(); });
    }

    STDMETHODIMP GetIDsOfNames(REFIID reserved, LPOLESTR* names, UINT count, LCID, DISPID* identifiers) final {
        if (!names || !identifiers) return E_POINTER;
        if (reserved != IID_NULL) return DISP_E_UNKNOWNINTERFACE;
        return Border(IID_IDispatch, [&] { return Shared().Members().Find(names, count, identifiers); });
    }

    STDMETHODIMP Invoke(DISPID member, REFIID reserved, LCID, WORD flags, DISPPARAMS* arguments, VARIANT* result,
                        EXCEPINFO* exception, UINT* badArgument) final {
        if (reserved != IID_NULL) return DISP_E_UNKNOWNINTERFACE;
        return Border(IID_IDispatch, [&] {
            return Shared().Members().Invoke(this, member, flags, arguments, result, exception, badArgument);
        });
    }

  private:
    static SharedTypeInfo& Shared() {
        static constinit SharedTypeInfo shared(&__uuidof(Interface));
        return shared;
    }
    static ITypeInfo* Description() { return Shared().Get(); }
};

/// An automation object with dual interfaces, the default one first. Coclass is null for objects whose class has no
/// entry in the type library. The object begins without a reference; while clients hold references it counts as one
/// object of the server, and the last release deletes it.
template <const CLSID* Coclass, class Default, class... Further>
class DualFace : public Dispatch<Default>,
                 public Dispatch<Further>...,
                 public ISupportErrorInfo,
                 public IProvideClassInfo {
  public:
    DualFace() = default;
    DualFace(const DualFace&) = delete;
    DualFace& operator=(const DualFace&) = delete;
    virtual ~DualFace() = default;

    STDMETHODIMP QueryInterface(REFIID iid, void** object) final {
        if (!object) return E_POINTER;
        *object = Find(iid);
        if (!*object) return QueryFurther(iid, object);
        AddRef();
        return S_OK;
    }

    STDMETHODIMP_(ULONG) AddRef() final {
        const LONG held = InterlockedIncrement(&references_);
        if (held == 1) CountObject();
        return static_cast<ULONG>(held);
    }

    STDMETHODIMP_(ULONG) Release() final {
        const LONG left = InterlockedDecrement(&references_);
        if (left == 0) {
            LastReleased();
            DiscountObject();
        }
        return static_cast<ULONG>(left);
    }

    STDMETHODIMP InterfaceSupportsErrorInfo(REFIID iid) final {
        const bool ours = iid == __uuidof(Default) || (... || (iid == __uuidof(Further)));
        return ours || iid == IID_IDispatch ? S_OK : S_FALSE;
    }

    STDMETHODIMP GetClassInfo(ITypeInfo** description) final {
        if (!description) return E_POINTER;
        *description = nullptr;
        return Border(IID_IProvideClassInfo, [&] { *description = FindTypeInfo(*Coclass).detach(); });
    }

  protected:
    /// The object's identity.
    IUnknown* Identity() { return static_cast<Dispatch<Default>*>(this); }

  private:
    /// Interfaces beside those of every automation object.
    virtual HRESULT QueryFurther(REFIID, void**) { return E_NOINTERFACE; }
    virtual void LastReleased() { delete this; }

    void* Find(REFIID iid) {
        if (iid == IID_IUnknown || iid == IID_IDispatch) return static_cast<Dispatch<Default>*>(this);
        if (iid == IID_ISupportErrorInfo) return static_cast<ISupportErrorInfo*>(this);
        if (iid == IID_IProvideClassInfo && Coclass) return static_cast<IProvideClassInfo*>(this);
        void* found = nullptr;
        static_cast<void>(FindDual<Default>(iid, found) || (... || FindDual<Further>(iid, found)));
        return found;
    }

    template <class Interface>
    bool FindDual(REFIID iid, void*& found) {
        if (iid != __uuidof(Interface)) return false;
        found = static_cast<Interface*>(static_cast<Dispatch<Interface>*>(this));
        return true;
    }

    LONG references_ = 0;
};

/// Creates an automation object: a class table's create function.
template <class Face>
HRESULT Create(REFIID iid, void** object) {
    return ComPtr<Face>(new Face)->QueryInterface(iid, object);
}

}  // namespace com
