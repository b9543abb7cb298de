#pragma once

#include "platform/com/Windows.h"

/// Hands out an output.
template <class Out, class Value>
HRESULT Give(Out* output, Value value) {
    *output = value;
    return S_OK;
}

/// A COM object on the test's stack that counts its references and has no type library. Answers to IUnknown,
/// IDispatch, Interface, and to ISupportErrorInfo when told so.
template <class Interface>
class Fake : public Interface, public ISupportErrorInfo {
  public:
    explicit Fake(bool supportsErrors = true) : supportsErrors_(supportsErrors) {}

    STDMETHODIMP QueryInterface(REFIID iid, void** object) override {
        *object = nullptr;
        if (iid == IID_IUnknown || iid == IID_IDispatch || iid == __uuidof(Interface)) {
            *object = static_cast<Interface*>(this);
        } else if (iid == IID_ISupportErrorInfo && supportsErrors_) {
            *object = static_cast<ISupportErrorInfo*>(this);
        }
        if (!*object) return E_NOINTERFACE;
        AddRef();
        return S_OK;
    }
    STDMETHODIMP_(ULONG) AddRef() override {
        ++Taken;
        return static_cast<ULONG>(++References);
    }
    STDMETHODIMP_(ULONG) Release() override { return static_cast<ULONG>(--References); }

    STDMETHODIMP GetTypeInfoCount(UINT* count) override { return Give(count, 0U); }
    STDMETHODIMP GetTypeInfo(UINT, LCID, ITypeInfo**) override { return DISP_E_BADINDEX; }
    STDMETHODIMP GetIDsOfNames(REFIID, LPOLESTR*, UINT, LCID, DISPID*) override { return DISP_E_UNKNOWNNAME; }
    STDMETHODIMP Invoke(DISPID, REFIID, LCID, WORD, DISPPARAMS*, VARIANT*, EXCEPINFO*, UINT*) override {
        return DISP_E_MEMBERNOTFOUND;
    }

    STDMETHODIMP InterfaceSupportsErrorInfo(REFIID iid) override { return iid == __uuidof(Interface) ? S_OK : S_FALSE; }

    int References = 0, Taken = 0;

  private:
    bool supportsErrors_;
};
