#pragma once

#include <gtest/gtest.h>

#include <optional>

#include "platform/AutomationError.h"

/// What the body raises; a failed test and an empty error when it raises nothing.
template <class Body>
platform::AutomationError Raised(Body&& body) {
    try {
        body();
    } catch (const platform::AutomationError& error) {
        return error;
    }
    ADD_FAILURE() << "no error was raised";
    return {0, {}, {}};
}
