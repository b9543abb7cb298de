#pragma once

#include "platform/AutomationError.h"

namespace tarn4x {

// Errors of conversions and of objects that are missing, as the run time of automation hosts words them. Members report
// them as their own failure; clsStatistics lets them through.

[[noreturn]] inline void RaiseRuntimeError(std::int32_t number, const char* description) {
    throw platform::AutomationError(number, "XTarn4x", description);
}
[[noreturn]] inline void RaiseOverflow() { RaiseRuntimeError(platform::Overflow, "Overflow"); }
[[noreturn]] inline void RaiseTypeMismatch() { RaiseRuntimeError(platform::TypeMismatch, "Type mismatch"); }
[[noreturn]] inline void RaiseSubscriptOutOfRange() {
    RaiseRuntimeError(platform::SubscriptOutOfRange, "Subscript out of range");
}
[[noreturn]] inline void RaiseInvalidProcedureCall() {
    RaiseRuntimeError(platform::InvalidProcedureCall, "Invalid procedure call or argument");
}
[[noreturn]] inline void RaiseObjectVariableNotSet() {
    RaiseRuntimeError(platform::ObjectVariableNotSet, "Object variable or With block variable not set");
}

}  // namespace tarn4x
