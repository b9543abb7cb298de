#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string_view>

#include "platform/AutomationError.h"
#include "platform/SettingsNode.h"
#include "platform/Transport.h"

namespace platform {

/// Application services, one of them in a process.
class Application {
  public:
    /// Value of AppState while the framework runs a test.
    static constexpr std::int32_t Running = 8;

    virtual ~Application() = default;
    /// True: the user has asked the running operation to stop.
    virtual bool AbortRequested() = 0;
    /// Waits that many seconds; ends early when AbortRequested becomes true.
    virtual void Delay(float seconds) = 0;
    virtual std::int32_t AppState() = 0;
    virtual void SuspendState() = 0;
    virtual void ResumeState() = 0;
};

/// Message log, one of them in a process.
class MessageLog {
  public:
    virtual ~MessageLog() = default;
    virtual void Log(std::int16_t kind, std::string_view source, std::string_view text, std::string_view data) = 0;
};

/// Error service, one of them in a process.
class ErrorService {
  public:
    virtual ~ErrorService() = default;
    /// Raises the error. A service of another framework that returns leaves raising to its caller.
    virtual void RaiseDriverError(const AutomationError& error) = 0;
    /// True: raised errors also become entries of the message log.
    virtual bool ErrorReporting() = 0;
    virtual void SetErrorReporting(bool reporting) = 0;
};

/// What a driver expects of its host.
class Framework {
  public:
    virtual ~Framework() = default;
    virtual Application& TheApplication() = 0;
    virtual MessageLog& TheMessageLog() = 0;
    virtual ErrorService& TheErrorService() = 0;
    virtual std::shared_ptr<SettingsNode> CreateNode() = 0;
    /// Creates a transport by its ProgID. Raises the creation error (429 or a result code) when it cannot be had.
    virtual std::shared_ptr<Transport> CreateTransport(std::string_view progId) = 0;
    /// The number that a text is in the user's regional format, infinite when it is too large for a double; nothing
    /// when it is none.
    virtual std::optional<double> NumberFromText(std::string_view text) = 0;
};

}  // namespace platform
