#pragma once

#include <chrono>
#include <deque>
#include <optional>
#include <string>
#include <string_view>

#include "simulator/FileDescriptor.h"
#include "simulator/Interpreter.h"
#include "simulator/LineBuffer.h"
#include "simulator/Script.h"

namespace sim {

using Steady = std::chrono::steady_clock;

/// One partner of the dialogue: takes bytes apart into lines and sends answers when their time has come.
class Peer {
  public:
    /// A peer on a serial line does not own its descriptor; it is never closed, a close only drops what is unsent.
    Peer(FileDescriptor connection, Face face);
    Peer(int serialLine, Face face) : descriptor_(serialLine), face_(face) {}

    int Descriptor() const { return descriptor_; }
    sim::Face Face() const { return face_; }
    bool Serial() const { return connection_.Get() < 0; }
    bool Closed() const { return closed_; }
    bool Deaf() const { return deaf_; }
    void MakeDeaf() { deaf_ = true; }

    /// Takes in what has arrived.
    void Receive();
    std::optional<LineBuffer::Line> NextLine();

    /// Queues an answer as the treatment wants it. Answers leave in the order of their lines, a delayed one holds
    /// the later ones up.
    void Send(std::string_view answer, const Treatment& treatment, std::string_view terminator, Steady::time_point now);
    void Close(bool reset);
    /// Sends what is due.
    void Flush(Steady::time_point now);
    /// When Flush has to be called next; none when there is nothing to send.
    std::optional<Steady::time_point> Due() const;
    /// Part of an answer that is due could not be sent yet.
    bool Blocked() const { return blocked_; }
    /// So many answers wait for a partner who does not read them that no more lines are taken from him.
    bool Full() const { return output_.size() > 1000; }

  private:
    struct Piece {
        Steady::time_point due;
        std::string bytes;
        bool thenClose = false, reset = false;
    };

    FileDescriptor connection_;
    int descriptor_;
    sim::Face face_;
    LineBuffer lines_;
    std::deque<Piece> output_;
    bool closed_ = false, deaf_ = false, blocked_ = false;
};

}  // namespace sim
