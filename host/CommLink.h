#pragma once

#include <memory>

#include "host/ByteLink.h"
#include "platform/SettingsNode.h"

namespace host {

/// The serial port of the setting "Comm Port" ("3", "COM3", or a path), whatever it stands for: a device, or by its
/// name a serial device server or nothing (NamedPorts). What it stands for is looked up when it is opened.
class CommLink final : public ByteLink {
  public:
    explicit CommLink(std::shared_ptr<platform::SettingsNode> settings) : settings_(std::move(settings)) {}

    void Open(Patience& patience) override;
    void Close() noexcept override { link_.reset(); }
    bool IsOpen() const override { return link_ && link_->IsOpen(); }
    /// "COM3", or with what it stands for "COM9=tcp://10.0.0.5:4001".
    std::string Address() const override;

    std::size_t Write(std::span<const std::uint8_t> bytes, Milliseconds time) override {
        return link_->Write(bytes, time);
    }
    bool Flush(Milliseconds time) override { return link_->Flush(time); }
    std::size_t Read(std::span<std::uint8_t> bytes, Milliseconds time) override { return link_->Read(bytes, time); }
    void Resynchronise(Patience& patience) override {
        if (link_) link_->Resynchronise(patience);
    }

  private:
    std::shared_ptr<platform::SettingsNode> settings_;
    std::unique_ptr<ByteLink> link_;
};

}  // namespace host
