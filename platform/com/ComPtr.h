#pragma once

#include <utility>

#include "platform/com/Windows.h"

namespace com {

/// Owns one reference of a COM object.
template <class Interface>
class ComPtr {
  public:
    ComPtr() = default;
    /// Adds a reference of its own.
    explicit ComPtr(Interface* object) : object_(object) {
        if (object_) object_->AddRef();
    }
    ComPtr(const ComPtr& other) : ComPtr(other.object_) {}
    ComPtr(ComPtr&& other) noexcept : object_(other.detach()) {}
    ComPtr& operator=(ComPtr other) noexcept {
        std::swap(object_, other.object_);
        return *this;
    }
    ~ComPtr() {
        if (object_) object_->Release();
    }

    /// Takes over the caller's reference.
    static ComPtr Attach(Interface* object) {
        ComPtr owner;
        owner.object_ = object;
        return owner;
    }

    Interface* get() const { return object_; }
    Interface* operator->() const { return object_; }
    explicit operator bool() const { return object_ != nullptr; }

    /// For output arguments; lets go of what was held.
    Interface** put() {
        *this = ComPtr();
        return &object_;
    }
    void** putVoid() { return reinterpret_cast<void**>(put()); }

    /// Hands the reference over to the caller.
    Interface* detach() { return std::exchange(object_, nullptr); }

    /// The same object's other interface, null when it has none of that kind.
    template <class Other>
    ComPtr<Other> As(REFIID iid = __uuidof(Other)) const {
        ComPtr<Other> other;
        if (object_ && FAILED(object_->QueryInterface(iid, other.putVoid()))) return {};
        return other;
    }

  private:
    Interface* object_ = nullptr;
};

}  // namespace com
