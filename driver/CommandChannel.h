#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "platform/Framework.h"

namespace tarn4x {

/// Everything that the driver exchanges with the instrument passes here: the error queue is drained before each
/// transfer, transfers are logged, and transient errors and answers that are not ready yet are tried again.
class CommandChannel {
  public:
    using Expected = std::optional<std::string_view>;

    /// The settings are the driver's catalogue ("Remote Control", "Log Messages").
    CommandChannel(platform::Framework& framework, platform::SettingsNode& settings);

    void SetTransport(std::shared_ptr<platform::Transport> transport) { link = std::move(transport); }
    bool HasTransport() const { return link != nullptr; }
    /// The transport, which its user owns for as long as it is used: a wait may take the driver off-line, or off-line
    /// and on-line again with another one. Raises 91 while none is held.
    std::shared_ptr<platform::Transport> Transport() const;
    bool Holds(const std::shared_ptr<platform::Transport>& transport) const { return link == transport; }

    /// Writes a command and waits for no answer. It is never sent twice.
    void SendCommand(std::string_view command);
    /// Writes a query and reads its answer, again a second later while the answer contains "---" or, when fragments
    /// are given, none of them; RetryLimit times at most, then the last answer stands. Fragments are case-sensitive.
    void SendCommand(std::string_view command, std::string& response, Expected fragments = {},
                     std::string_view delimiter = ",");

    /// One transfer each. When the user has asked to stop, a failure is an empty result.
    std::string QueryString(std::optional<std::string_view> command);
    void WriteCommand(std::string_view command);
    std::vector<std::uint8_t> QueryBinary(std::int16_t count, std::optional<std::string_view> command = {});
    void WriteBinary(std::int16_t count, std::span<const std::uint8_t> data,
                     std::optional<std::string_view> command = {});

    /// One entry of the instrument's error queue, as it came.
    std::string ReadErrorQueue();
    /// False for the front-panel application, which has no error queue.
    bool HasErrorQueue();

    /// How often a query or a failed transfer is repeated.
    std::int16_t RetryLimit = 0;

  private:
    void CheckErrorQueue();
    void LogMessage(std::int16_t kind, std::string_view text, std::string_view data = {}) noexcept;
    /// One transfer with its announcement: drain and log (unless it only reads), then the transfer, repeated while
    /// its error is one of the transient codes.
    template <class Body>
    auto Transfer(std::optional<std::string_view> command, std::initializer_list<std::int32_t> transientCodes,
                  Body&& body) -> decltype(body());
    /// Waits for the next attempt; false: the user asked to stop, or the limit is reached.
    bool TryAgain(int& retries);

    platform::Framework& framework;
    std::shared_ptr<platform::SettingsNode> remoteControl;
    std::shared_ptr<platform::SettingsNode> logMessages;
    std::shared_ptr<platform::Transport> link;
};

}  // namespace tarn4x
