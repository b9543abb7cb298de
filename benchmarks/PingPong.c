#include "benchmarks/PingPong.h"

#include <string.h>

#ifdef _WIN32
#include <winsock2.h>

typedef SOCKET Handle;
typedef int Length;

static void Prepare(Handle handle) {
    u_long on = 1;
    ioctlsocket(handle, (long)FIONBIO, &on);
}

static int AwaitAnswer(Handle handle) {
    fd_set ready, failed;
    struct timeval limit = {5, 0};
    FD_ZERO(&ready);
    FD_ZERO(&failed);
    FD_SET(handle, &ready);
    FD_SET(handle, &failed);
    return select(0, &ready, NULL, &failed, &limit) > 0;
}
#else
#include <arpa/inet.h>
#include <fcntl.h>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

typedef int Handle;
typedef size_t Length;
#define closesocket close

static void Prepare(Handle handle) { fcntl(handle, F_SETFL, fcntl(handle, F_GETFL) | O_NONBLOCK); }

static int AwaitAnswer(Handle handle) {
    struct pollfd entry = {handle, POLLIN, 0};
    return poll(&entry, 1, 5000) > 0;
}
#endif

enum { RoomSize = 65536 };

intptr_t PingPongOpen(uint16_t port) {
    struct sockaddr_in address;
    const int on = 1;
#ifdef _WIN32
    WSADATA data;
    WSAStartup(MAKEWORD(2, 2), &data);
#endif
    const Handle handle = socket(AF_INET, SOCK_STREAM, IPPROTO_TCP);
    memset(&address, 0, sizeof address);
    address.sin_family = AF_INET;
    address.sin_port = htons(port);
    address.sin_addr.s_addr = htonl(0x7F000001);
    setsockopt(handle, IPPROTO_TCP, TCP_NODELAY, (const char*)&on, sizeof on);
    if (connect(handle, (struct sockaddr*)&address, sizeof address) != 0) {
        closesocket(handle);
        return -1;
    }
    Prepare(handle);
    return (intptr_t)handle;
}

void PingPongClose(intptr_t socket) { closesocket((Handle)socket); }

static int Send(Handle handle, const char* query) {
    const int length = (int)strlen(query);
    return send(handle, query, (Length)length, 0) == length;
}

int PingPong(intptr_t socket, const char* const* queries, int count) {
    char room[RoomSize];
    for (int i = 0; i < count; ++i) {
        int filled = 0;
        if (!Send((Handle)socket, queries[i])) return -1;
        do {
            if (!AwaitAnswer((Handle)socket)) return -1;
            const int received = (int)recv((Handle)socket, room + filled, (Length)(RoomSize - filled), 0);
            if (received <= 0) return -1;
            filled += received;
        } while (room[filled - 1] != '\n');
    }
    return 0;
}

int PingPongBlock(intptr_t socket, const char* query, int size) {
    char room[RoomSize];
    if (!Send((Handle)socket, query)) return -1;
    for (int filled = 0; filled < size;) {
        if (!AwaitAnswer((Handle)socket)) return -1;
        const int received = (int)recv((Handle)socket, room, RoomSize, 0);
        if (received <= 0) return -1;
        filled += received;
    }
    return 0;
}
