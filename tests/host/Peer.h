#pragma once

#include <atomic>
#include <chrono>
#include <cstring>
#include <functional>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

#ifdef _WIN32
#include "host/SocketsWindows.h"
#else
#include <arpa/inet.h>

#include "host/SocketsPosix.h"
#endif

inline bool RunsOnWine() {
#ifdef _WIN32
    return GetProcAddress(GetModuleHandleA("ntdll.dll"), "wine_get_version") != nullptr;
#else
    return false;
#endif
}

/// A peer on a free port of 127.0.0.1 (or ::1) that serves its connections one after another, each as one session of
/// the script; the last session serves all further connections.
class Peer {
  public:
    class Connection {
      public:
        Connection(const Peer& peer, host::sockets::Handle socket) : peer_(peer), socket_(socket) {}

        /// The next command without its LF; empty when the client has closed.
        std::string Line() {
            for (;;) {
                if (const auto end = received_.find('\n'); end != std::string::npos) {
                    auto line = received_.substr(0, end);
                    received_.erase(0, end + 1);
                    return line;
                }
                if (peer_.ending_) return {};
                if (!host::sockets::WaitReadable(socket_, std::chrono::milliseconds(20))) continue;
                char bytes[4096];
                const auto count = recv(socket_, bytes, sizeof bytes, 0);
                if (count <= 0) return {};
                received_.append(bytes, static_cast<std::size_t>(count));
            }
        }

        void Send(std::string_view bytes) {
            while (!bytes.empty() && !peer_.ending_) {
                if (!host::sockets::WaitWritable(socket_, std::chrono::milliseconds(20))) continue;
                const auto count = send(socket_, bytes.data(), static_cast<host::sockets::Length>(bytes.size()),
                                        host::sockets::SendFlags);
                if (count < 0) return;
                bytes.remove_prefix(static_cast<std::size_t>(count));
            }
        }

        bool Ending() const { return peer_.ending_; }
        host::sockets::Handle Socket() const { return socket_; }

      private:
        const Peer& peer_;
        host::sockets::Handle socket_;
        std::string received_;
    };

    using Session = std::function<void(Connection&)>;

    explicit Peer(std::vector<Session> script, int family = AF_INET) : script_(std::move(script)) {
        host::sockets::Start();
        listener_ = socket(family, SOCK_STREAM, 0);
        sockaddr_storage address{};
        address.ss_family = static_cast<decltype(address.ss_family)>(family);
        auto& four = reinterpret_cast<sockaddr_in&>(address);
        auto& six = reinterpret_cast<sockaddr_in6&>(address);
        four.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
        if (family == AF_INET6) six.sin6_addr = in6addr_loopback;
        socklen_t size = family == AF_INET6 ? sizeof six : sizeof four;
        auto* where = reinterpret_cast<sockaddr*>(&address);
        if (bind(listener_, where, size) != 0 || listen(listener_, 5) != 0) throw std::runtime_error("no port");
        getsockname(listener_, where, &size);
        Port = ntohs(family == AF_INET6 ? six.sin6_port : four.sin_port);
        thread_ = std::thread([this] { Serve(); });
    }
    ~Peer() {
        ending_ = true;
        thread_.join();
        host::sockets::Close(listener_);
    }
    Peer(const Peer&) = delete;
    Peer& operator=(const Peer&) = delete;

    int Port = 0;
    std::atomic<int> Connections = 0;
    std::atomic<int> Ended = 0;  ///< connections that are closed again

  private:
    void Serve() {
        for (std::size_t session = 0; !ending_;) {
            if (!host::sockets::WaitReadable(listener_, std::chrono::milliseconds(20))) continue;
            const auto socket = accept(listener_, nullptr, nullptr);
            ++Connections;
            const int on = 1;  // pieces leave when they are sent
            setsockopt(socket, IPPROTO_TCP, TCP_NODELAY, reinterpret_cast<const char*>(&on), sizeof on);
            Connection connection(*this, socket);
            script_[session](connection);
            if (session + 1 < script_.size()) ++session;
            host::sockets::Close(socket);
            ++Ended;
        }
    }

    std::vector<Session> script_;
    host::sockets::Handle listener_;
    std::atomic<bool> ending_ = false;
    std::thread thread_;
};

/// Answers each command with what the function makes of it.
inline Peer::Session Answering(std::function<std::string(const std::string&)> answer) {
    return [answer = std::move(answer)](Peer::Connection& connection) {
        for (std::string line; !(line = connection.Line()).empty();) connection.Send(answer(line));
    };
}

/// Answers "Q 7" with "A 7" and a line end.
inline std::string Tagged(std::string command) {
    command[0] = 'A';
    return command += '\n';
}
