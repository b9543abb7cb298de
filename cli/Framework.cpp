#include "cli/Framework.h"

#include <algorithm>

#include "cli/SimulatedLink.h"
#include "host/InstrumentTransport.h"
#include "host/SettingsTree.h"
#include "host/SilentLink.h"

namespace cli {

Framework::Framework(std::optional<unsigned> seed) {
    if (seed) simulator_ = std::make_unique<sim::Simulator>(sim::Options{.configuration = {.seed = *seed}});
}

std::shared_ptr<platform::Transport> Framework::CreateTransport(std::string_view progId) {
    const auto create = [&](std::unique_ptr<host::ByteLink> link, std::shared_ptr<platform::SettingsNode> settings) {
        return std::make_shared<host::InstrumentTransport>(progId, std::move(link), std::move(settings), Services());
    };
    if (simulator_ && !silentPorts_) {
        return create(std::make_unique<SimulatedLink>(*simulator_),
                      std::make_shared<host::SettingsNode>("TCP/IP", 0, 0));
    }
    auto transport = host::CreateTransport(progId, *CreateNode(), Services());
    if (!silentPorts_ || progId != "Conduit.clsComm") return transport;
    return create(std::make_unique<host::SilentLink>(), transport->Settings());
}

host::TransportServices Framework::Services() {
    return {.AbortRequested = [this] { return application_.AbortRequested(); },
            .Log =
                [this](std::int16_t kind, std::string_view source, std::string_view text, std::string_view data) {
                    if (kind == host::FailureEntry) NoteDown(text, data);
                    TheMessageLog().Log(kind, source, text, data);
                },
            .ErrorReporting = [this] { return TheErrorService().ErrorReporting(); }};
}

/// The data begins with the address of the link and, where there is more, a colon.
void Framework::NoteDown(std::string_view text, std::string_view data) {
    const auto address = data.substr(0, data.find(": "));
    std::string note(text);
    if (text.find(address) == text.npos) note.append(" (").append(address).append(")");
    if (std::ranges::find(linkNotes_, note) == linkNotes_.end()) linkNotes_.push_back(std::move(note));
}

}  // namespace cli
