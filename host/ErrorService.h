#pragma once

#include "host/MessageLog.h"

namespace host {

/// Error service of a process. Every member may be called from any thread; reporting is switched for the caller's
/// thread alone, so that a thread that only tries something silences nobody else.
class ErrorService : public platform::ErrorService {
  public:
    explicit ErrorService(MessageLog& log) : log_(log) {}
    ErrorService(const ErrorService&) = delete;
    ErrorService& operator=(const ErrorService&) = delete;
    ~ErrorService() override { ErrorService::SetErrorReporting(true); }

    [[noreturn]] void RaiseDriverError(const platform::AutomationError& error) override {
        if (ErrorReporting()) log_.Log(FailureEntry, error.Source, error.Description, std::to_string(error.Number));
        throw error;
    }
    bool ErrorReporting() override { return silenced != this; }
    void SetErrorReporting(bool reporting) override {
        if (reporting != ErrorReporting()) silenced = reporting ? nullptr : this;
    }

  private:
    static inline thread_local const ErrorService* silenced = nullptr;  ///< the one whose reporting is off here

    MessageLog& log_;
};

}  // namespace host
