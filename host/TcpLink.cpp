#include "host/TcpLink.h"

#include <algorithm>
#include <system_error>
#include <utility>

#include "host/LinkSettings.h"
#ifdef _WIN32
#include "host/SocketsWindows.h"
#else
#include "host/SocketsPosix.h"
#endif

namespace host {

namespace {

using sockets::Handle;

/// Why a connection does not come about.
std::string Reason(int error) {
    switch (error) {
        case sockets::Refused:
            return "connection refused";
        case sockets::NoReply:
            return "no reply in time";
        case sockets::NoHost:
        case sockets::NoNetwork:
            return "no route";
    }
    return std::system_category().message(error);
}

LinkFailure Failure(int error, platform::TransportError code, const char* doing) {
    return SystemFailure(sockets::PeerIsGone(error) ? platform::LinkLost : code, doing, error);
}

/// Options that a freshly created socket needs; each command leaves as one segment at once.
void Prepare(Handle socket) {
    sockets::MakeNonBlocking(socket);
    const int on = 1;
    setsockopt(socket, IPPROTO_TCP, TCP_NODELAY, reinterpret_cast<const char*>(&on), sizeof on);
}

/// Waits until the begun connection stands; returns the error, 0 for none.
int FinishConnecting(Handle socket, Patience& patience) {
    while (!sockets::WaitWritable(socket, patience.Slice())) {
        if (patience.Over()) return sockets::NoReply;
    }
    int error = 0;
    socklen_t size = sizeof error;
    getsockopt(socket, SOL_SOCKET, SO_ERROR, reinterpret_cast<char*>(&error), &size);
    return error;
}

bool Has(platform::SettingsNode& settings, std::string_view name) {
    return std::ranges::any_of(settings.Children(), [&](const auto& setting) { return setting->Name() == name; });
}

struct Addresses {
    addrinfo* First = nullptr;

    Addresses(const std::string& host, const std::string& port) {
        addrinfo hints{};
        hints.ai_socktype = SOCK_STREAM;
        hints.ai_flags = AI_NUMERICHOST;  // an address needs no resolver
        if (getaddrinfo(host.c_str(), port.c_str(), &hints, &First) == 0) return;
        hints.ai_flags = 0;
        if (getaddrinfo(host.c_str(), port.c_str(), &hints, &First) == 0) return;
        throw OpeningFailure{"name unknown"};
    }
    ~Addresses() { freeaddrinfo(First); }
    Addresses(const Addresses&) = delete;
    Addresses& operator=(const Addresses&) = delete;
};

}  // namespace

void TcpLink::Open(Patience& patience) {
    auto host = Host();
    if (host.starts_with('[') && host.ends_with(']')) host = host.substr(1, host.size() - 2);
    const int port = SettingNumber(*settings_, "Port", 1, 65535);
    const auto limit =
        Has(*settings_, "Connect Timeout") ? SettingNumber(*settings_, "Connect Timeout", 0.0, 3600.0) : 5.0;

    sockets::Start();
    const Addresses addresses(host, std::to_string(port));
    auto opening = patience.AtMost(limit);
    int left = 0;
    for (auto* address = addresses.First; address; address = address->ai_next) ++left;
    std::string reason;
    for (auto* address = addresses.First; address; address = address->ai_next, --left) {
        const Handle socket = ::socket(address->ai_family, address->ai_socktype, address->ai_protocol);
        socket_ = static_cast<std::intptr_t>(socket);
        if (!IsOpen()) {
            reason = Reason(sockets::LastError());
            continue;
        }
        Prepare(socket);
        int error = 0;
        try {
            if (connect(socket, address->ai_addr, static_cast<socklen_t>(address->ai_addrlen)) != 0) {
                error = sockets::LastError();
            }
            if (sockets::ConnectGoesOn(error)) {
                auto attempt = opening.AtMost(opening.Remaining() / left);  // a dead address leaves time for the next
                error = FinishConnecting(socket, attempt);
            }
        } catch (...) {
            Close();
            throw;
        }
        if (error == 0) return;
        Close();
        reason = Reason(error);
    }
    throw OpeningFailure{reason};
}

void TcpLink::Close() noexcept {
    if (IsOpen()) sockets::Close(static_cast<Handle>(socket_));
    socket_ = None;
}

std::string TcpLink::Address() const {
    const auto host = Host();
    const bool bare = host.find(':') != std::string::npos && !host.starts_with('[');
    return (bare ? '[' + host + ']' : host) + ':' + SettingText(*settings_, "Port");
}

std::string TcpLink::Host() const { return Has(*settings_, "Host") ? SettingText(*settings_, "Host") : "127.0.0.1"; }

// Both try first and wait only when nothing can be moved: on most systems a wait costs more than the transfer itself.

std::size_t TcpLink::Write(std::span<const std::uint8_t> bytes, Milliseconds time) {
    const auto socket = static_cast<Handle>(socket_);
    for (bool waited = false;; waited = true) {
        const auto count = send(socket, reinterpret_cast<const char*>(bytes.data()),
                                static_cast<sockets::Length>(bytes.size()), sockets::SendFlags);
        if (count >= 0) {
            wroteLast_ = true;
            return static_cast<std::size_t>(count);
        }
        if (const int error = sockets::LastError(); !sockets::WouldBlock(error)) {
            throw Failure(error, platform::WriteFailed, "Writing");
        }
        if (waited || time.count() == 0 || !sockets::WaitWritable(socket, time)) return 0;
    }
}

std::size_t TcpLink::Read(std::span<std::uint8_t> bytes, Milliseconds time) {
    const auto socket = static_cast<Handle>(socket_);
    // Directly after a command its answer cannot have come yet.
    bool waited = sockets::WaitIsCheap && std::exchange(wroteLast_, false) && time.count() > 0;
    if (waited && !sockets::WaitReadable(socket, time)) return 0;
    for (;; waited = true) {
        const auto count =
            recv(socket, reinterpret_cast<char*>(bytes.data()), static_cast<sockets::Length>(bytes.size()), 0);
        if (count > 0) return static_cast<std::size_t>(count);
        if (count == 0) throw LinkFailure{platform::LinkLost, "The instrument closed the connection"};
        if (const int error = sockets::LastError(); !sockets::WouldBlock(error)) {
            throw Failure(error, platform::ReadFailed, "Reading");
        }
        if (waited || time.count() == 0 || !sockets::WaitReadable(socket, time)) return 0;
    }
}

}  // namespace host
