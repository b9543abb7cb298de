#pragma once

#include <gmock/gmock.h>

#include <functional>

#include "host/ByteLink.h"
#include "platform/AutomationError.h"

/// What the body returns; what it raises, as "9 source: description", object errors without their offset; what a link
/// throws, as "2015 text" or the reason alone.
inline std::string Outcome(const std::function<std::string()>& body) {
    try {
        return body();
    } catch (const platform::AutomationError& error) {
        const auto number = error.Number < 0 ? error.Number - platform::ObjectError(0) : error.Number;
        return std::to_string(number) + ' ' + error.Source + ": " + error.Description;
    } catch (const host::LinkFailure& failure) {
        return std::to_string(failure.Code) + ' ' + failure.Text;
    } catch (const host::OpeningFailure& failure) {
        return failure.Reason;
    }
}

/// The same for a body without a result; empty when nothing is raised.
template <class Body>
std::string Raised(Body&& body) {
    return Outcome([&] { return body(), std::string(); });
}
