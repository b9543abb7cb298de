#include "simulator/TcpListener.h"

#include <arpa/inet.h>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <sys/socket.h>

#include <cerrno>
#include <string>
#include <system_error>

namespace sim {

TcpListener::TcpListener(uint16_t port) : socket_(::socket(AF_INET, SOCK_STREAM | SOCK_NONBLOCK | SOCK_CLOEXEC, 0)) {
    const int on = 1;
    ::setsockopt(socket_.Get(), SOL_SOCKET, SO_REUSEADDR, &on, sizeof on);
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_port = htons(port);
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    if (::bind(socket_.Get(), reinterpret_cast<const sockaddr*>(&address), sizeof address) != 0 ||
        ::listen(socket_.Get(), 16) != 0) {
        throw std::system_error(errno, std::generic_category(), "port " + std::to_string(port));
    }
}

uint16_t TcpListener::Port() const {
    sockaddr_in address{};
    socklen_t length = sizeof address;
    ::getsockname(socket_.Get(), reinterpret_cast<sockaddr*>(&address), &length);
    return ntohs(address.sin_port);
}

FileDescriptor TcpListener::Accept() {
    FileDescriptor connection{::accept4(socket_.Get(), nullptr, nullptr, SOCK_NONBLOCK | SOCK_CLOEXEC)};
    const int on = 1;
    if (connection.Get() >= 0) ::setsockopt(connection.Get(), IPPROTO_TCP, TCP_NODELAY, &on, sizeof on);
    return connection;
}

void ResetOnClose(int descriptor) {
    const linger abort{1, 0};
    ::setsockopt(descriptor, SOL_SOCKET, SO_LINGER, &abort, sizeof abort);
}

}  // namespace sim
