#include "driver/Failure.h"

namespace tarn4x {

namespace {

constexpr std::int32_t PassesThrough = 40006;  // the framework's own

/// Whether the instrument's error queue tells more about an error of the transport.
bool IsInstrumentError(std::int32_t number) {
    return number >= platform::ObjectError(platform::WriteFailed) &&
           number <= platform::ObjectError(platform::InstrumentNotReady);
}

}  // namespace

void clsTarn4x::Raise(std::int32_t code, std::string source, std::string description) {
    RaiseThrough(framework->TheErrorService(),
                 {platform::ObjectError(code), std::move(source), std::move(description)});
}

void clsTarn4x::RaiseFor(std::string_view member, std::int32_t code, std::string description) {
    Raise(code, std::string("clsTarn4x.").append(member), std::move(description));
}

void clsTarn4x::RaiseFor(Members member, std::int32_t code, std::string description) {
    RaiseFor(NameOf(member), code, std::move(description));
}

void clsTarn4x::Report(const Operation& operation, const platform::AutomationError& error) {
    if (error.Number == PassesThrough) RaiseThrough(framework->TheErrorService(), error);
    auto description = operation.Text();
    if (operation.AsksInstrument && IsInstrumentError(error.Number)) {
        try {
            if (channel.HasErrorQueue()) description += ".  Error : " + channel.ReadErrorQueue();
        } catch (const platform::AutomationError&) {  // the short text says enough
            description = operation.Text();
        }
    }
    Raise(operation.Code, operation.Source(), std::move(description));
}

}  // namespace tarn4x
