#pragma once

#include <atomic>

#include "host/MessageLog.h"

namespace host {

/// Error service of a process. Every member may be called from any thread.
class ErrorService : public platform::ErrorService {
  public:
    explicit ErrorService(MessageLog& log) : log_(log) {}

    [[noreturn]] void RaiseDriverError(const platform::AutomationError& error) override {
        if (reporting_) log_.Log(FailureEntry, error.Source, error.Description, std::to_string(error.Number));
        throw error;
    }
    bool ErrorReporting() override { return reporting_; }
    void SetErrorReporting(bool reporting) override { reporting_ = reporting; }

  private:
    MessageLog& log_;
    std::atomic<bool> reporting_ = true;
};

}  // namespace host
