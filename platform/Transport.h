#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "platform/SettingsNode.h"

namespace platform {

/// Codes of the errors that transports raise, offset by ObjectErrorBase.
enum TransportError : std::int32_t {
    WriteFailed = 2010,
    ReadFailed = 2011,
    ProtocolBroken = 2012,      ///< the peer broke the protocol
    InstrumentNotReady = 2013,  ///< described as "Send timed out" when the write itself timed out
    ReceiveTimedOut = 2014,
    LinkLost = 2015,      ///< in a transfer; the next attempt opens the link again
    NoConnection = 2017,  ///< final: the link cannot be opened, or another call is using it
};

/// A link to one instrument: text dialogue, blocks and connection. All operations raise AutomationError.
class Transport {
  public:
    virtual ~Transport() = default;

    /// Time-out of a write or a read in seconds.
    virtual float Timeout() = 0;
    virtual void SetTimeout(float seconds) = 0;

    /// Writes a command and, when a response is given, reads one answer into it (without its line end).
    virtual void SendReceive(std::string_view command, std::string* response) = 0;
    virtual void WriteString(std::string_view command) = 0;
    /// Writes the command if given, then reads one answer.
    virtual std::string ReadString(std::optional<std::string_view> command) = 0;

    /// Writes the command if given, then reads exactly that many bytes.
    virtual std::vector<std::uint8_t> ReadBlock(std::int16_t count, std::optional<std::string_view> command) = 0;
    /// Writes the command if given, followed directly by the bytes.
    virtual void WriteBlock(std::int16_t count, std::span<const std::uint8_t> data,
                            std::optional<std::string_view> command) = 0;

    /// Name of the driver that uses the link, for the message log.
    virtual void SetName(std::string_view name) = 0;
    virtual std::shared_ptr<SettingsNode> Settings() = 0;
    /// True opens the link with the present settings, False closes it.
    virtual void Connect(bool connect) = 0;
    virtual bool IsConnected() = 0;
};

}  // namespace platform
