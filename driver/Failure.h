#pragma once

#include <utility>

#include "driver/Operation.h"
#include "driver/clsTarn4x.h"
#include "platform/Framework.h"

namespace tarn4x {

/// Raises an error through the framework's error service.
[[noreturn]] inline void RaiseThrough(platform::ErrorService& errors, const platform::AutomationError& error) {
    errors.RaiseDriverError(error);
    throw error;  // the service returned
}

/// Runs a step whose failure must not stop what follows.
template <class Step>
void IgnoringErrors(Step&& step) {
    try {
        step();
    } catch (const platform::AutomationError&) {  // by intent
        return;
    }
}

// What fails inside reaches the caller as "<verb> <member> failed", with the instrument's own error text behind it when
// the transport says that the instrument refused. 40006 passes through. Checks of arguments and preconditions stand
// outside, so that they reach the caller as they are raised.
template <class Body>
auto clsTarn4x::Guarded(const Operation& operation, Body&& body) {
    try {
        return std::forward<Body>(body)();
    } catch (const platform::AutomationError& error) {
        Report(operation, error);
    }
}

}  // namespace tarn4x
