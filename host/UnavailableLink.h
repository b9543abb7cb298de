#pragma once

#include "host/ByteLink.h"

namespace host {

/// A link that this version knows the settings of, but cannot open.
class UnavailableLink : public ByteLink {
  public:
    UnavailableLink(const char* address, const char* reason) : address_(address), reason_(reason) {}

    void Open(Patience&) override { throw LinkFailure{platform::LinkLost, reason_}; }
    void Close() noexcept override {}
    bool IsOpen() const override { return false; }
    std::string Address() const override { return address_; }
    std::size_t Write(std::span<const std::uint8_t>, Milliseconds) override { return 0; }
    std::size_t Read(std::span<std::uint8_t>, Milliseconds) override { return 0; }
    void Resynchronise(Patience&) override {}

  private:
    const char* address_;
    const char* reason_;
};

}  // namespace host
