#pragma once

#include <memory>

#include "host/ByteLink.h"
#include "platform/SettingsNode.h"

namespace host {

struct SerialSettings {
    int BaudRate;
    int DataBits;
    char Parity;  ///< 'E', 'N' or 'O'
    int StopBits;
    enum { NoHandshake, XonXoff, Hardware } Handshaking;
};

/// Throws away what arrives until the line is quiet, if it is open.
void ReadUntilQuiet(ByteLink& link, Patience& patience);

/// A serial line: a device, or one of the computer's own ports, which are on Windows \\.\COM<n>, elsewhere
/// /dev/ttyS<n-1>. The line is used by one process at a time. Of several links in one process that want a line at the
/// same time, each waits for its turn. Out of step, what arrives is thrown away until the line is quiet; an answer that
/// comes later than that is beyond what a serial line can tell.
class SerialLink final : public ByteLink {
  public:
    /// `line` is the name of an own port or the path of a device.
    SerialLink(std::shared_ptr<platform::SettingsNode> settings, std::string line)
        : settings_(std::move(settings)), name_(std::move(line)) {}
    ~SerialLink() override { Close(); }

    void Open(Patience& patience) override;
    void Close() noexcept override;
    bool IsOpen() const override { return line_ != None; }
    std::string Address() const override { return name_; }

    std::size_t Write(std::span<const std::uint8_t> bytes, Milliseconds time) override;
    bool Flush(Milliseconds time) override;
    std::size_t Read(std::span<std::uint8_t> bytes, Milliseconds time) override;
    void Resynchronise(Patience& patience) override { ReadUntilQuiet(*this, patience); }

  private:
    static constexpr std::intptr_t None = -1;

    static std::string PathOf(const std::string& name);
    void TakeTurn(const std::string& path, const Patience& patience);
    void OpenLine(const std::string& path);
    void Configure(const SerialSettings& settings);
    void CloseLine() noexcept;

    std::shared_ptr<platform::SettingsNode> settings_;
    std::string name_;
    std::string path_;  ///< of the line whose turn is this link's; empty when it has none
    std::intptr_t line_ = None;
};

}  // namespace host
