#pragma once

#include <atomic>

#include "platform/com/Server.h"

namespace com {

/// Identity of an interface.
template <class Interface>
inline constexpr const IID& IdOf = __uuidof(Interface);

/// A COM object with these interfaces. It begins without a reference; while clients hold references it counts as one
/// object of the server, and the last release deletes it.
template <class... Interfaces>
class Object : public Interfaces... {
  public:
    Object() = default;
    Object(const Object&) = delete;
    Object& operator=(const Object&) = delete;
    virtual ~Object() = default;

    STDMETHODIMP QueryInterface(REFIID iid, void** object) final {
        if (!object) return E_POINTER;
        *object = Find(iid);
        if (!*object) return E_NOINTERFACE;
        AddRef();
        return S_OK;
    }

    STDMETHODIMP_(ULONG) AddRef() final {
        const ULONG held = ++references_;
        if (held == 1) CountObject();
        return held;
    }

    STDMETHODIMP_(ULONG) Release() final {
        const ULONG left = --references_;
        if (left == 0) {
            LastReleased();
            DiscountObject();
        }
        return left;
    }

  protected:
    /// The interface of that kind, null if there is none. The first one is the object's identity.
    virtual void* Find(REFIID iid) {
        void* found = nullptr;
        const auto matches = [&](REFIID own, void* object) {
            if (iid == own || iid == IID_IUnknown) found = object;
            return found != nullptr;
        };
        static_cast<void>((... || matches(IdOf<Interfaces>, static_cast<Interfaces*>(this))));
        return found;
    }

  private:
    virtual void LastReleased() { delete this; }

    std::atomic<ULONG> references_ = 0;
};

}  // namespace com
