#pragma once

#include <fcntl.h>
#include <netdb.h>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <cerrno>
#include <chrono>

/// What differs between the socket interfaces of the systems.
namespace host::sockets {

using Handle = int;
using Length = std::size_t;
inline constexpr int SendFlags = MSG_NOSIGNAL;

/// Waiting for an answer costs less than asking for one that has not come yet.
inline constexpr bool WaitIsCheap = true;

inline void Start() {}
inline constexpr int Refused = ECONNREFUSED, NoReply = ETIMEDOUT, NoHost = EHOSTUNREACH, NoNetwork = ENETUNREACH;
inline int LastError() { return errno; }
inline bool WouldBlock(int error) { return error == EAGAIN || error == EWOULDBLOCK || error == EINTR; }
inline bool ConnectGoesOn(int error) { return error == EINPROGRESS; }
inline bool PeerIsGone(int error) {
    return error == ECONNRESET || error == EPIPE || error == ECONNABORTED || error == ETIMEDOUT || error == ENOTCONN;
}

inline void MakeNonBlocking(Handle socket) {
    fcntl(socket, F_SETFL, fcntl(socket, F_GETFL) | O_NONBLOCK);
    fcntl(socket, F_SETFD, FD_CLOEXEC);
}
inline void Close(Handle socket) { close(socket); }

inline bool Wait(Handle socket, short events, std::chrono::milliseconds time) {
    pollfd entry{socket, events, 0};
    return poll(&entry, 1, static_cast<int>(time.count())) > 0;
}
inline bool WaitReadable(Handle socket, std::chrono::milliseconds time) { return Wait(socket, POLLIN, time); }
/// Also true when connecting has failed.
inline bool WaitWritable(Handle socket, std::chrono::milliseconds time) { return Wait(socket, POLLOUT, time); }

}  // namespace host::sockets
