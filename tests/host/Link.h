#pragma once

#include "host/Framework.h"
#include "host/SettingsTree.h"
#include "tests/host/Outcome.h"
#include "tests/host/TestVisa.h"
#include "tests/support/Peer.h"

using namespace std::chrono_literals;

/// A link with the settings of that transport, without a transport.
template <class Kind>
struct Link {
    explicit Link(const char* progId) : Settings(host::Framework().CreateTransport(progId)->Settings()) {}

    void Set(const char* name, const platform::Value& value) { Settings->Item(name)->SetValue(true, true, value); }
    /// Why it cannot be opened; empty when it can.
    std::string Open(double seconds = 20.0) {
        host::Patience patience(seconds, Services);
        return Raised([&] { Bytes.Open(patience); });
    }
    std::string Resynchronise(double seconds = 20.0) {
        host::Patience patience(seconds, Services);
        return Raised([&] { Bytes.Resynchronise(patience); });
    }
    /// How many bytes went.
    std::string Write(std::string_view text, host::ByteLink::Milliseconds time = 20s) {
        const std::vector<std::uint8_t> bytes(text.begin(), text.end());
        return Outcome([&] { return std::to_string(Bytes.Write(bytes, time)); });
    }
    std::string Read(host::ByteLink::Milliseconds time = 20s, std::size_t size = 1000) {
        std::vector<std::uint8_t> bytes(size);
        return Outcome(
            [&] { return std::string(bytes.begin(), bytes.begin() + static_cast<int>(Bytes.Read(bytes, time))); });
    }

    host::TransportServices Services;
    std::shared_ptr<platform::SettingsNode> Settings;
    Kind Bytes{Settings};
};
