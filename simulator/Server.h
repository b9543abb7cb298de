#pragma once

#include <list>
#include <memory>
#include <optional>
#include <string>

#include "simulator/Interpreter.h"
#include "simulator/Peer.h"
#include "simulator/Replay.h"
#include "simulator/Script.h"
#include "simulator/SerialLine.h"
#include "simulator/TcpListener.h"

namespace sim {

/// Lets any number of partners talk to one instrument.
class Server {
  public:
    struct Options {
        bool replayTiming = false;  // answers of the replay are as late as they were
        bool verbose = false;
    };

    /// A rule of the script comes before what the replay says about the same line.
    Server(Receiver& receiver, Script& script, Replay& replay, Options options);

    /// Each gives the port in use. Throws std::system_error.
    uint16_t ListenOn(uint16_t port, Face face);
    void ServeSerialLine(const std::string& path);

    /// Works until the descriptor becomes readable.
    void Run(int stopDescriptor);

  private:
    struct Port {
        TcpListener listener;
        Face face;
    };

    void Accept(Port& port);
    void Work(Peer& peer);
    void Execute(Peer& peer, const std::string& line);
    void Finish(Peer& peer, const std::string& line, const Treatment& treatment);
    void Log(const Peer& peer, std::string_view direction, std::string_view text) const;
    int PollTimeout(Steady::time_point now) const;

    Receiver& receiver_;
    Interpreter interpreter_;
    Script& script_;
    Replay& replay_;
    Options options_;
    std::list<Port> ports_;
    std::list<SerialLine> serialLines_;
    std::list<Peer> peers_;
    // A busy instrument: nothing is executed before this moment, then first the line that made it busy.
    Steady::time_point busyUntil_{};
    struct Waiting {
        Peer* peer;
        std::string line;
        Treatment treatment;
    };
    std::optional<Waiting> waiting_;
};

}  // namespace sim
