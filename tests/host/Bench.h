#pragma once

#include <gmock/gmock.h>

#include "host/Framework.h"
#include "tests/host/Peer.h"
#include "tests/host/Raised.h"
#include "tests/host/TestVisa.h"

inline constexpr char Ethernet[] = "Conduit.clsEthernet", Gpib[] = "Conduit.clsGPIB", FrontPanel[] = "Conduit.clsGUI";

inline constexpr float Short = 0.05F, Long = 20.0F;  // seconds; the first for what is to time out

/// A link of that kind, connected to a peer.
struct Bench {
    Bench(const char* progId, std::vector<Peer::Session> script, float timeout = Long)
        : peer(std::move(script)), link(framework.CreateTransport(progId)) {
        if (progId == std::string_view(Gpib)) {
            PutOnGpib(peer.Port, *link->Settings());
        } else {
            link->Settings()->Item("Port")->SetValue(true, true, peer.Port);
        }
        link->SetName("My receiver");
        link->SetTimeout(timeout);
        link->Connect(true);
    }
    std::string Query(std::string_view command) { return link->ReadString(command); }
    /// The transport's code with which a query fails.
    std::int32_t Failure(std::string_view command) {
        return Raised([&] { Query(command); }).Number - platform::ObjectError(0);
    }
    std::string Block(std::int16_t count, std::optional<std::string_view> command = {}) {
        const auto block = link->ReadBlock(count, command);
        return {block.begin(), block.end()};
    }
    std::string Address() {
        const auto setting = [&](const char* name) {
            return platform::ToText(link->Settings()->Item(name)->GetValue());
        };
        return link->Settings()->Name() == "GPIB" ? "GPIB0::" + setting("Primary Address")
                                                  : "127.0.0.1:" + setting("Port");
    }
    std::string Log() {
        std::string entries;
        for (int i = 1; i <= framework.TheMessageLog().Count(); ++i) {
            entries += framework.TheMessageLog().Entry(i) + '\n';
        }
        return entries;
    }

    Peer peer;
    host::Framework framework;
    std::shared_ptr<platform::Transport> link;
};
