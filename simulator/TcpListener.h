#pragma once

#include <cstdint>

#include "simulator/FileDescriptor.h"

namespace sim {

/// A TCP port on 127.0.0.1. Throws std::system_error.
class TcpListener {
  public:
    /// Port 0 takes a free one.
    explicit TcpListener(uint16_t port);

    int Descriptor() const { return socket_.Get(); }
    uint16_t Port() const;
    /// A waiting connection, non-blocking and without Nagle's delay; without a descriptor when it is gone already.
    FileDescriptor Accept();

  private:
    FileDescriptor socket_;
};

/// Makes the next closing of a connection send a reset instead of an orderly end.
void ResetOnClose(int descriptor);

}  // namespace sim
