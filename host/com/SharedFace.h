#pragma once

#include "platform/com/DualFace.h"

namespace com {

/// An automation object of which a process has one, for all its apartments. It counts as an object of the server only
/// while clients hold it, but once it is there the module stays: what it knows must not go with the last client.
template <const CLSID* Coclass, class Interface>
class SharedFace : public DualFace<Coclass, Interface> {
  protected:
    SharedFace() {
        Check(CoCreateFreeThreadedMarshaler(this->Identity(), marshaler_.put()));
        HMODULE kept = nullptr;
        GetModuleHandleExW(GET_MODULE_HANDLE_EX_FLAG_PIN | GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS,
                           reinterpret_cast<LPCWSTR>(Coclass), &kept);
    }

  private:
    HRESULT QueryFurther(REFIID iid, void** object) final {
        return iid == IID_IMarshal ? marshaler_->QueryInterface(iid, object) : E_NOINTERFACE;
    }
    void LastReleased() final {}

    ComPtr<IUnknown> marshaler_;
};

}  // namespace com
