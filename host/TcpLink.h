#pragma once

#include <memory>

#include "host/ByteLink.h"
#include "platform/SettingsNode.h"

namespace host {

/// A TCP connection to "Host" (name, IPv4 or IPv6 address) and "Port", opened within "Connect Timeout" seconds. Looking
/// up a name takes as long as the system's resolver takes. Out of step it is closed, so that nothing late arrives.
/// Settings without "Host" mean this PC, and 5 seconds.
class TcpLink : public ByteLink {
  public:
    explicit TcpLink(std::shared_ptr<platform::SettingsNode> settings) : settings_(std::move(settings)) {}
    ~TcpLink() override { Close(); }

    void Open(Patience& patience) override;
    void Close() noexcept final;
    bool IsOpen() const override { return socket_ != None; }
    std::string Address() const override;

    std::size_t Write(std::span<const std::uint8_t> bytes, Milliseconds time) override;
    std::size_t Read(std::span<std::uint8_t> bytes, Milliseconds time) override;
    void Resynchronise(Patience&) override { Close(); }

  private:
    std::string Host() const;

    static constexpr std::intptr_t None = -1;

    std::shared_ptr<platform::SettingsNode> settings_;
    std::intptr_t socket_ = None;
    bool wroteLast_ = false;
};

}  // namespace host
