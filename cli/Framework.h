#pragma once

#include <optional>
#include <string>
#include <vector>

#include "cli/Application.h"
#include "host/Framework.h"
#include "host/Transports.h"
#include "simulator/Simulator.h"

namespace cli {

/// The stand-alone host's framework with what the program has of its own: its application services, a receiver inside
/// the program in place of TCP/IP, and no look at serial ports that nobody asked for.
class Framework : public host::Framework {
  public:
    /// With a seed there is a receiver inside the program.
    explicit Framework(std::optional<unsigned> seed);

    Application& TheApplication() override { return application_; }
    std::shared_ptr<platform::Transport> CreateTransport(std::string_view progId) override;

    /// A driver lists the serial ports while it is created, and refuses to be without one. Meanwhile it is offered
    /// ports that open and that nobody answers on, whatever the computer has.
    void OfferSilentPorts(bool offer) { silentPorts_ = offer; }

    /// What the links have reported since ForgetLinkNotes, each thing once: "No connection to 10.0.0.5:5025: no reply
    /// in time", "Receive timed out (10.0.0.5:5025)".
    const std::vector<std::string>& LinkNotes() const { return linkNotes_; }
    void ForgetLinkNotes() { linkNotes_.clear(); }

  private:
    host::TransportServices Services();
    void NoteDown(std::string_view text, std::string_view data);

    Application application_;
    std::unique_ptr<sim::Simulator> simulator_;
    bool silentPorts_ = false;
    std::vector<std::string> linkNotes_;
};

}  // namespace cli
