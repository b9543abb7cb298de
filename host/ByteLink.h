#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <system_error>
#include <utility>

#include "host/Patience.h"
#include "platform/Transport.h"

namespace host {

/// What a link throws when it fails.
struct LinkFailure {
    platform::TransportError Code;
    std::string Text;
};

/// "Writing failed: " and the system's own words for the error.
inline LinkFailure SystemFailure(platform::TransportError code, const std::string& doing, int error) {
    return {code, doing + " failed: " + std::system_category().message(error)};
}

/// What a link throws when it cannot be opened: why, in a few plain words.
struct OpeningFailure {
    std::string Reason;
};

/// Bytes to and from one peer. Everything about commands and answers is InstrumentTransport's.
class ByteLink {
  public:
    using Milliseconds = Patience::Milliseconds;

    ByteLink() = default;
    ByteLink(const ByteLink&) = delete;
    ByteLink& operator=(const ByteLink&) = delete;
    virtual ~ByteLink() = default;

    /// Opens the closed link with the present settings, in one attempt. Throws OpeningFailure or Aborted.
    virtual void Open(Patience& patience) = 0;
    virtual void Close() noexcept = 0;
    virtual bool IsOpen() const = 0;
    /// Where the peer is, for messages.
    virtual std::string Address() const = 0;

    /// Waits up to that time until bytes can be written, and writes what goes; returns how many. Throws LinkFailure.
    virtual std::size_t Write(std::span<const std::uint8_t> bytes, Milliseconds time) = 0;
    /// Waits up to that time for what was written to leave; true when it has. Throws LinkFailure.
    virtual bool Flush(Milliseconds) { return true; }
    /// Waits up to that time for bytes, and reads what is there; returns how many. Throws LinkFailure, LinkLost when
    /// the peer is gone.
    virtual std::size_t Read(std::span<std::uint8_t> bytes, Milliseconds time) = 0;
    /// Makes sure that nothing sent before can be read any more; may leave the link closed. Throws LinkFailure.
    virtual void Resynchronise(Patience& patience) = 0;
};

}  // namespace host
