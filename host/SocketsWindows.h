#pragma once

#include <winsock2.h>
#include <ws2tcpip.h>

#include <chrono>

/// What differs between the socket interfaces of the systems.
namespace host::sockets {

using Handle = SOCKET;
using Length = int;
inline constexpr int SendFlags = 0;

/// Waiting for an answer costs several times what asking for one that has not come yet does.
inline constexpr bool WaitIsCheap = false;

/// Starts the socket library of the process on the first call; it stays until the process ends.
inline void Start() {
    static const int started = [] {
        WSADATA data;
        return WSAStartup(MAKEWORD(2, 2), &data);
    }();
    static_cast<void>(started);
}
inline constexpr int Refused = WSAECONNREFUSED, NoReply = WSAETIMEDOUT, NoHost = WSAEHOSTUNREACH,
                     NoNetwork = WSAENETUNREACH;
inline int LastError() { return WSAGetLastError(); }
inline bool WouldBlock(int error) { return error == WSAEWOULDBLOCK; }
inline bool ConnectGoesOn(int error) { return error == WSAEWOULDBLOCK; }
inline bool PeerIsGone(int error) {
    return error == WSAECONNRESET || error == WSAECONNABORTED || error == WSAETIMEDOUT || error == WSAENOTCONN ||
           error == WSAESHUTDOWN || error == WSAENETRESET;
}

inline void MakeNonBlocking(Handle socket) {
    u_long on = 1;
    ioctlsocket(socket, static_cast<long>(FIONBIO), &on);
}
inline void Close(Handle socket) { closesocket(socket); }

enum class Direction { In, Out };

inline bool Wait(Handle socket, Direction direction, std::chrono::milliseconds time) {
    fd_set ready{1, {socket}};
    fd_set failed{1, {socket}};
    const auto count = time.count();
    timeval limit{static_cast<long>(count / 1000), static_cast<long>(count % 1000 * 1000)};
    const bool in = direction == Direction::In;
    return select(0, in ? &ready : nullptr, in ? nullptr : &ready, &failed, &limit) > 0;
}
inline bool WaitReadable(Handle socket, std::chrono::milliseconds time) { return Wait(socket, Direction::In, time); }
/// Also true when connecting has failed.
inline bool WaitWritable(Handle socket, std::chrono::milliseconds time) { return Wait(socket, Direction::Out, time); }

}  // namespace host::sockets
