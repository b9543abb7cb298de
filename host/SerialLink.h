#pragma once

#include <memory>

#include "host/ByteLink.h"
#include "platform/SettingsNode.h"

namespace host {

struct SerialSettings {
    std::string Port;  ///< number of the port, or on POSIX systems the path of the line
    int BaudRate;
    int DataBits;
    char Parity;  ///< 'E', 'N' or 'O'
    int StopBits;
    enum { NoHandshake, XonXoff, Hardware } Handshaking;
};

/// A serial line: on Windows the port \\.\COM<n>; elsewhere the line com<n> in the folder that the environment variable
/// CONDUIT_PORTS names, or /dev/ttyS<n-1> without the variable. The line is used by one process at a time.
/// Of several links in one process that want a line at the same time, each waits for its turn.
/// Out of step, what arrives is thrown away until the line is quiet; an answer that comes later than that is beyond
/// what a serial line can tell.
class SerialLink final : public ByteLink {
  public:
    explicit SerialLink(std::shared_ptr<platform::SettingsNode> settings) : settings_(std::move(settings)) {}
    ~SerialLink() override { Close(); }

    void Open(Patience& patience) override;
    void Close() noexcept override;
    bool IsOpen() const override { return line_ != None; }
    std::string Address() const override;

    std::size_t Write(std::span<const std::uint8_t> bytes, Milliseconds time) override;
    bool Flush(Milliseconds time) override;
    std::size_t Read(std::span<std::uint8_t> bytes, Milliseconds time) override;
    void Resynchronise(Patience& patience) override;

  private:
    static constexpr std::intptr_t None = -1;

    static std::string PathOf(const std::string& port);
    void TakeTurn(const std::string& path, const Patience& patience);
    void OpenLine(const std::string& path);
    void Configure(const SerialSettings& settings);
    void CloseLine() noexcept;

    std::shared_ptr<platform::SettingsNode> settings_;
    std::string path_;  ///< of the line whose turn is this link's; empty when it has none
    std::intptr_t line_ = None;
};

}  // namespace host
