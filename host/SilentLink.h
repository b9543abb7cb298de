#pragma once

#include <thread>

#include "host/ByteLink.h"

namespace host {

/// A port that opens, takes everything, and that nobody answers on.
class SilentLink final : public ByteLink {
  public:
    void Open(Patience&) override { open_ = true; }
    void Close() noexcept override { open_ = false; }
    bool IsOpen() const override { return open_; }
    std::string Address() const override { return "none"; }

    std::size_t Write(std::span<const std::uint8_t> bytes, Milliseconds) override { return bytes.size(); }
    std::size_t Read(std::span<std::uint8_t>, Milliseconds time) override {
        std::this_thread::sleep_for(time);
        return 0;
    }
    void Resynchronise(Patience&) override {}

  private:
    bool open_ = false;
};

}  // namespace host
