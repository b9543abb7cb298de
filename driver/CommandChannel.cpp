#include "driver/CommandChannel.h"

#include <algorithm>
#include <string>

#include "driver/Conversions.h"
#include "driver/RuntimeErrors.h"

namespace tarn4x {

namespace {

using platform::AutomationError;
using platform::ObjectError;

enum LogKind : std::int16_t { Received = 5, Sending = 6 };

constexpr float RetryPause = 1.0F;  // seconds

/// A time-out of the write itself is final, whatever its number.
bool IsTransient(const AutomationError& error, std::initializer_list<std::int32_t> codes) {
    return std::ranges::any_of(codes, [&](auto code) { return error.Number == ObjectError(code); }) &&
           LowerCase(error.Description).find("send timed out") == std::string::npos;
}

bool IsComplete(std::string_view answer, const std::optional<std::vector<std::string_view>>& fragments) {
    const auto contains = [&](std::string_view text) { return answer.find(text) != std::string_view::npos; };
    return fragments ? std::ranges::any_of(*fragments, contains) : !contains("---");
}

}  // namespace

CommandChannel::CommandChannel(platform::Framework& services, platform::SettingsNode& settings)
    : framework(services), remoteControl(settings.Item("Remote Control")), logMessages(settings.Item("Log Messages")) {}

std::shared_ptr<platform::Transport> CommandChannel::Transport() const {
    if (!link) RaiseObjectVariableNotSet();
    return link;
}

void CommandChannel::SendCommand(std::string_view command) {
    for (int retries = 0;;) {
        try {
            CheckErrorQueue();
            break;
        } catch (const AutomationError& error) {
            if (error.Number != platform::TypeMismatch &&
                !IsTransient(error, {platform::InstrumentNotReady, platform::LinkLost})) {
                throw;
            }
            if (!TryAgain(retries)) return;
        }
    }
    LogMessage(Sending, command);
    Transport()->SendReceive(command, nullptr);
}

void CommandChannel::SendCommand(std::string_view command, std::string& response, Expected fragments,
                                 std::string_view delimiter) {
    std::optional<std::vector<std::string_view>> list;
    if (fragments) list = Split(*fragments, delimiter);
    int retries = 0;
    do {
        try {
            CheckErrorQueue();
            LogMessage(Sending, command);
            Transport()->SendReceive(command, &response);
            LogMessage(Received, command, response);
            if (IsComplete(response, list)) return;
        } catch (const AutomationError& error) {
            if (error.Number != platform::TypeMismatch &&
                !IsTransient(error, {platform::InstrumentNotReady, platform::LinkLost})) {
                throw;
            }
        }
    } while (TryAgain(retries));
}

std::string CommandChannel::QueryString(std::optional<std::string_view> command) {
    return Transfer(command, {platform::InstrumentNotReady, platform::LinkLost}, [&] {
        auto response = Transport()->ReadString(command);
        LogMessage(Received, command.value_or(""), response);
        return response;
    });
}

void CommandChannel::WriteCommand(std::string_view command) {
    Transfer(command, {platform::InstrumentNotReady, platform::LinkLost}, [&] { Transport()->WriteString(command); });
}

std::vector<std::uint8_t> CommandChannel::QueryBinary(std::int16_t count, std::optional<std::string_view> command) {
    return Transfer(command, {platform::InstrumentNotReady, platform::LinkLost}, [&] {
        auto data = Transport()->ReadBlock(count, command);
        LogMessage(Received, command.value_or(""), std::to_string(data.size()) + " bytes");
        return data;
    });
}

void CommandChannel::WriteBinary(std::int16_t count, std::span<const std::uint8_t> data,
                                 std::optional<std::string_view> command) {
    Transfer(command.value_or(""), {platform::InstrumentNotReady, platform::LinkLost},
             [&] { Transport()->WriteBlock(count, data, command); });
}

std::string CommandChannel::ReadErrorQueue() {
    constexpr std::string_view query = "SYST:ERR?";
    LogMessage(Sending, query);
    return Transfer({}, {platform::LinkLost}, [&] {
        auto entry = Transport()->ReadString(query);
        LogMessage(Received, query, entry);
        return entry;
    });
}

bool CommandChannel::HasErrorQueue() { return platform::ToText(remoteControl->GetValue()) != "Conduit.clsGUI"; }

void CommandChannel::CheckErrorQueue() {
    if (!HasErrorQueue()) return;
    for (;;) {
        const auto entry = ReadErrorQueue();
        if (framework.TheApplication().AbortRequested() || entry == R"(0,"No error")") return;
    }
}

void CommandChannel::LogMessage(std::int16_t kind, std::string_view text, std::string_view data) noexcept {
    const auto unwanted = [&] {
        try {
            return !ToBoolean(platform::ToText(logMessages->GetValue()));
        } catch (const AutomationError&) {  // a setting that is no truth value silences nothing
            return false;
        }
    };
    try {
        if (!unwanted()) framework.TheMessageLog().Log(kind, "TARN", text, data);
    } catch (...) {  // a log that fails must not break a transfer
        return;
    }
}

template <class Body>
auto CommandChannel::Transfer(std::optional<std::string_view> command,
                              std::initializer_list<std::int32_t> transientCodes, Body&& body) -> decltype(body()) {
    bool announced = !command;
    for (int retries = 0;;) {
        try {
            if (!announced) {
                CheckErrorQueue();
                LogMessage(Sending, *command);
                announced = true;
            }
            return body();
        } catch (const AutomationError& error) {
            auto& application = framework.TheApplication();
            if (application.AbortRequested()) return decltype(body())();
            if (retries >= RetryLimit || !IsTransient(error, transientCodes)) throw;
            ++retries;
            application.Delay(RetryPause);
        }
    }
}

bool CommandChannel::TryAgain(int& retries) {
    auto& application = framework.TheApplication();
    if (application.AbortRequested() || ++retries > RetryLimit) return false;
    application.Delay(RetryPause);
    return true;
}

}  // namespace tarn4x
