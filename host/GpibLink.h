#pragma once

#include <memory>

#include "host/ByteLink.h"
#include "host/VisaRuntime.h"
#include "platform/SettingsNode.h"

namespace host {

/// An instrument at "Primary Address" (0 to 30) and "Secondary Address" (0 to 30, empty for none) of the GPIB interface
/// "Board", reached through the installed VISA runtime. END goes with a command's last byte, and ends an answer as LF
/// does. A device clear brings the link into step: it empties the instrument's buffers in both directions.
class GpibLink final : public ByteLink {
  public:
    explicit GpibLink(std::shared_ptr<platform::SettingsNode> settings) : settings_(std::move(settings)) {}
    ~GpibLink() override { Close(); }

    void Open(Patience& patience) override;
    void Close() noexcept override;
    bool IsOpen() const override { return instrument_ != None; }
    /// "GPIB0::6"; VISA puts "::INSTR" behind it.
    std::string Address() const override;

    std::size_t Write(std::span<const std::uint8_t> bytes, Milliseconds time) override;
    /// Without time, reads only the rest of an answer: an instrument that is made to talk with nothing to say puts an
    /// error into its queue.
    std::size_t Read(std::span<std::uint8_t> bytes, Milliseconds time) override;
    void Resynchronise(Patience& patience) override;

  private:
    static constexpr visa::Object None = 0;

    visa::Status Clear(Patience patience);
    void Limit(Milliseconds time);
    std::string Describe(visa::Status status) const;
    LinkFailure Failure(visa::Status status, platform::TransportError code, const char* doing) const;

    std::shared_ptr<platform::SettingsNode> settings_;
    visa::Runtime runtime_{};
    visa::Object manager_ = None;
    visa::Object instrument_ = None;
    Milliseconds limit_{};
    bool inAnswer_ = false;  ///< a part of an answer was read, and END is still to come
};

}  // namespace host
