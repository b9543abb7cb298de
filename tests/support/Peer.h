#pragma once

#include <chrono>
#include <stdexcept>
#include <string>
#include <string_view>
#include <utility>

#ifdef _WIN32
#include "host/SocketsWindows.h"
#else
#include <arpa/inet.h>

#include "host/SocketsPosix.h"
#endif

namespace support {

/// A peer on a free port of 127.0.0.1 (or ::1). Who connects waits in its queue until the test takes the connection.
class Peer {
  public:
    using Handle = host::sockets::Handle;

    class Connection {
      public:
        explicit Connection(Handle socket) : socket_(socket) {
            const int on = 1;  // pieces leave when they are sent
            setsockopt(socket, IPPROTO_TCP, TCP_NODELAY, reinterpret_cast<const char*>(&on), sizeof on);
        }
        ~Connection() { host::sockets::Close(socket_); }
        Connection(const Connection&) = delete;
        Connection& operator=(const Connection&) = delete;

        /// The next command without its LF; empty when the client has closed.
        std::string Line() {
            auto end = received_.find('\n');
            for (char bytes[4096]; end == std::string::npos; end = received_.find('\n')) {
                Await(socket_);
                const auto count = recv(socket_, bytes, sizeof bytes, 0);
                if (count <= 0) return {};
                received_.append(bytes, static_cast<std::size_t>(count));
            }
            const auto line = received_.substr(0, end);
            received_.erase(0, end + 1);
            return line;
        }
        void Send(std::string_view bytes) {
            send(socket_, bytes.data(), static_cast<host::sockets::Length>(bytes.size()), host::sockets::SendFlags);
        }

      private:
        Handle socket_;
        std::string received_;
    };

    /// Throws std::runtime_error when the machine does not know that kind of addresses.
    explicit Peer(int family = AF_INET) {
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
    }
    ~Peer() { host::sockets::Close(listener_); }
    Peer(const Peer&) = delete;
    Peer& operator=(const Peer&) = delete;

    /// The next one who connects.
    Connection Accept() {
        Await(listener_);
        return Connection(accept(listener_, nullptr, nullptr));
    }

    int Port = 0;

  private:
    static void Await(Handle socket) {
        if (host::sockets::WaitReadable(socket, std::chrono::seconds(20))) return;
        throw std::runtime_error("the client does nothing");
    }

    Handle listener_;
};

}  // namespace support
