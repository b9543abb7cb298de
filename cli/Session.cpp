#include "cli/Session.h"

#include <algorithm>

#include "cli/Advice.h"
#include "cli/Enumerations.h"

namespace cli {

namespace {

/// What transports write about it begins with this.
constexpr std::string_view NoConnectionText = "No connection";

/// A driver's or a transport's own number without the offset of automation objects, any other as it is.
std::int32_t CodeOf(std::int32_t number) {
    const auto code = number - platform::ObjectError(0);
    return number < 0 && code >= 0 && code <= 0xFFFF ? code : number;
}

std::string Joined(const std::vector<std::string>& notes) {
    std::string text;
    for (const auto& note : notes) text.append(text.empty() ? "" : "; ").append(note);
    return text;
}

}  // namespace

Session::Session(Options options)
    : options_(std::move(options)),
      framework_(std::make_shared<Framework>(options_.Receiver ? options_.Receiver->Seed : std::nullopt)) {
    if (options_.NoWaits || (options_.Receiver && options_.Receiver->Seed)) TheApplication().SetDelayScale(0.0);
}

tarn4x::clsTarn4x& Session::Driver() {
    if (!driver_) {
        framework_->OfferSilentPorts(true);
        driver_.emplace(framework_);
        framework_->OfferSilentPorts(false);
        driver_->put_IDriverSetup_Name("tarn4x");
    }
    return *driver_;
}

tarn4x::clsTarn4x& Session::OnLine() {
    auto& driver = Driver();
    if (driver.get_IDriverSetup_OnLine()) return driver;
    if (!options_.Receiver) {
        throw Misuse(
            "No receiver is named",
            "Say where it is: --host ADDRESS, --serial PORT, --gpib BOARD:ADDRESS, --front-panel, or "
            "--simulated for one inside this program. TARN4X_RECEIVER=\"--host ADDRESS\" makes it the default.");
    }
    if (!options_.Trace.empty()) {
        try {
            framework_->TheMessageLog().SetFileName(options_.Trace);
        } catch (const platform::AutomationError& error) {
            throw Misuse(error.Description);
        }
    }
    const auto settings = driver.get_IDriverSetup_Settings();
    settings->Item("Remote Control")->SetValue(true, true, options_.Receiver->Link);
    for (const auto& [path, value] : options_.Receiver->Settings) settings->Item(path)->SetValue(true, true, value);

    const Application::Activity activity(TheApplication(), "Going on-line");
    framework_->ForgetLinkNotes();
    driver.put_IDriverSetup_OnLine(true);
    CheckStop();
    if (!driver.get_IDriverSetup_OnLine()) throw NoConnection("clsTarn4x.OnLine");
    return driver;
}

void Session::GoOffLine() noexcept {
    try {
        if (!driver_ || !driver_->get_IDriverSetup_OnLine()) return;
        const Application::Activity activity(TheApplication(), "Going off-line");
        driver_->put_IDriverSetup_OnLine(false);
    } catch (const std::exception&) {  // going off-line does what it can
        return;
    }
}

void Session::CheckStop() {
    if (TheApplication().AbortRequested()) throw Stopped{};
}

Failure Session::Explain(const platform::AutomationError& error, const Request* request) {
    const auto& notes = framework_->LinkNotes();
    if (std::ranges::any_of(notes, [](const auto& note) { return note.starts_with(NoConnectionText); })) {
        return NoConnection(error.Source);
    }
    const auto number = CodeOf(error.Number);
    std::string_view modes;
    std::string presentMode;
    if (request && number == tarn4x::xtarnBadMeasureMode) {
        modes = request->Modes().Names;
        presentMode = PresentMode();
    }
    return {.Ends = Refused,
            .Number = number,
            .Source = error.Source,
            .Description = error.Description,
            .Cause = Joined(notes),
            .Advice = AdviceOn(number, request ? request->Member->Name : "", modes, presentMode)};
}

Failure Session::NoConnection(std::string source) const {
    auto reason = Joined(framework_->LinkNotes());
    auto advice = AdviceOnConnection(options_.Receiver->Link, reason);
    if (!reason.starts_with(NoConnectionText)) reason = std::string(NoConnectionText) + ": " + reason;
    return {.Ends = NotConnected,
            .Number = platform::NoConnection,
            .Source = std::move(source),
            .Description = std::move(reason),
            .Advice = std::move(advice)};
}

std::string Session::PresentMode() {
    try {
        const auto mode = driver_->get_MeasureMode();
        for (const auto& value : ValuesOf("TarnMeasureModes")) {
            if (value.Value == mode) return std::string(value.ShortName());
        }
    } catch (const platform::AutomationError&) {  // the advice does without
    }
    return "another one";
}

}  // namespace cli
