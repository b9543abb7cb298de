#pragma once

#include <stdint.h>

#ifdef __cplusplus
extern "C" {
#endif

/* The least that a query over a socket can cost: send, wait, receive. Waits with the call that the driver's own TCP
   link waits with (poll; select on Windows), on a non-blocking socket. */

/* Connects to a port of the loopback interface; -1 when that fails. */
intptr_t PingPongOpen(uint16_t port);
void PingPongClose(intptr_t socket);

/* Sends each query (with its line end) and receives up to the line end of its answer. 0, or -1 when that fails. */
int PingPong(intptr_t socket, const char* const* queries, int count);
/* Sends one query and receives an answer of that many bytes. 0, or -1 when that fails. */
int PingPongBlock(intptr_t socket, const char* query, int size);

#ifdef __cplusplus
}
#endif
