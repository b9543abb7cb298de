#pragma once

#include <memory>
#include <optional>
#include <string>

#include "cli/Destination.h"
#include "cli/Failure.h"
#include "cli/Framework.h"
#include "cli/Members.h"
#include "driver/clsTarn4x.h"
#include "platform/AutomationError.h"

namespace cli {

/// Thrown when the user has asked to stop.
struct Stopped {};
inline Failure StoppedByUser() { return {.Ends = Refused, .Description = "Stopped by the user"}; }

/// The driver and its receiver for one run of the program. It goes on-line when it is first needed, and off-line at the
/// end, which gives the receiver back to its own keys.
class Session {
  public:
    struct Options {
        std::optional<Destination> Receiver;
        std::string Trace;     ///< file that the dialogue is appended to; empty for none
        bool NoWaits = false;  ///< leaves out the pauses that an instrument needs
    };

    explicit Session(Options options);
    ~Session() { GoOffLine(); }
    Session(const Session&) = delete;
    Session& operator=(const Session&) = delete;

    /// The driver as it is; for what needs no receiver.
    tarn4x::clsTarn4x& Driver();
    /// The driver, on-line. Throws Failure when there is no connection or no receiver was named, and Stopped.
    tarn4x::clsTarn4x& OnLine();
    void GoOffLine() noexcept;
    /// Gives a lost connection up, without a word to the receiver; OnLine makes a new one.
    void Drop() { driver_.reset(); }

    Application& TheApplication() { return framework_->TheApplication(); }
    Framework& TheFramework() { return *framework_; }
    /// Throws Stopped when the user has asked to stop.
    void CheckStop();

    /// Has the driver do something for a request. What it raises becomes a Failure; also throws Stopped.
    template <class Body>
    void Try(const Request& request, Body&& body);

    /// What the user is told about an error that the driver raised. With a request, whose it was.
    Failure Explain(const platform::AutomationError& error, const Request* request = nullptr);

  private:
    Failure NoConnection(std::string source) const;
    std::string PresentMode();

    Options options_;
    std::shared_ptr<Framework> framework_;
    std::optional<tarn4x::clsTarn4x> driver_;
};

template <class Body>
void Session::Try(const Request& request, Body&& body) {
    const Application::Activity activity(TheApplication(), request.Name);
    framework_->ForgetLinkNotes();
    try {
        body();
    } catch (const platform::AutomationError& error) {
        throw Explain(error, &request);
    }
    CheckStop();
}

}  // namespace cli
