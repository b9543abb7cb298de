#pragma once

#include <string>
#include <string_view>
#include <utility>

#include "host/ErrorService.h"

namespace host {

/// Catches what this thread reports as its first failure while the watch is there: the reason of a failure that a
/// driver does not pass on. Failures are reported meanwhile, but to the watch alone when reporting was off.
class FailureWatch {
  public:
    explicit FailureWatch(ErrorService& errors) : errors_(errors) { errors_.SetErrorReporting(true); }
    ~FailureWatch() {
        current = outer_;
        errors_.SetErrorReporting(reporting_);
    }
    FailureWatch(const FailureWatch&) = delete;
    FailureWatch& operator=(const FailureWatch&) = delete;

    /// Address and reason; empty when nothing has failed.
    const std::string& Reason() const { return reason_; }

    /// Shows this thread's watch an entry of the message log, whose data begins with an address and a colon where a
    /// link has failed. False: the entry is for the watch alone.
    static bool Show(std::string_view text, std::string_view data) {
        if (!current) return true;
        if (auto& reason = current->reason_; reason.empty()) {
            const auto address = data.substr(0, data.find(": "));
            if (text.find(address) == text.npos) reason.append(address).append(": ");
            reason += text;
        }
        return current->reporting_;
    }

  private:
    static inline thread_local FailureWatch* current = nullptr;

    ErrorService& errors_;
    const bool reporting_ = errors_.ErrorReporting();
    FailureWatch* const outer_ = std::exchange(current, this);
    std::string reason_;
};

}  // namespace host
