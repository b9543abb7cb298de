#pragma once

#include "platform/com/DualFace.h"

namespace com {

/// An automation object of which a process has one, for all its apartments. It lives as long as the module, and counts
/// as an object of the server only while clients hold it.
template <const CLSID* Coclass, class Interface>
class SharedFace : public DualFace<Coclass, Interface> {
  protected:
    SharedFace() { Check(CoCreateFreeThreadedMarshaler(this->Identity(), marshaler_.put())); }

  private:
    HRESULT QueryFurther(REFIID iid, void** object) final {
        return iid == IID_IMarshal ? marshaler_->QueryInterface(iid, object) : E_NOINTERFACE;
    }
    void LastReleased() final {}

    ComPtr<IUnknown> marshaler_;
};

}  // namespace com
