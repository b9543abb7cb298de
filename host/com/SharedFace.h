#pragma once

#include "platform/com/DualFace.h"

namespace com {

/// An automation object of which a process has one, for all its apartments. It counts as an object of the server only
/// while clients hold it, but what it knows does not go with the last one.
template <const CLSID* Coclass, class Interface>
class SharedFace : public DualFace<Coclass, Interface> {
  protected:
    SharedFace() { Check(CoCreateFreeThreadedMarshaler(this->Identity(), marshaler_.put())); }

  private:
    void* Find(REFIID iid) final {
        return iid == IID_IMarshal ? marshaler_.template As<IMarshal>().get() : SharedFace::DualFace::Find(iid);
    }
    void LastReleased() final {}

    ComPtr<IUnknown> marshaler_;
};

}  // namespace com
