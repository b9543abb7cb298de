#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "simulator/Interpreter.h"
#include "simulator/Replay.h"
#include "simulator/Script.h"

namespace sim {

struct Options {
    Configuration configuration{};
    Script script{};
    Replay replay{};            // a rule of the script comes before what it says about the same line
    bool replayTiming = false;  // answers of the replay are as late as they were
    std::function<void(const std::string& entry)> log{};  // is told of everything that happens on a link
};

/// A simulated receiver inside a program: it answers the program itself, and any number of partners at its ports.
class Simulator {
  public:
    explicit Simulator(Options options = {});
    /// Closes the ports and all connections.
    ~Simulator();

    /// Executes a line (without its end) at once and gives the answer without its end, or nothing when there is none.
    /// What a script wants of a link (times, pieces, closing) is left out. Any thread may ask.
    std::optional<std::string> Answer(const std::string& line, Face face = Face::Remote);

    /// Opens a TCP port at an IPv4 address of this machine and gives its number; port 0 takes a free one. Throws
    /// std::invalid_argument when that is no address, std::runtime_error when the port cannot be used.
    std::uint16_t Listen(std::uint16_t port = 0, Face face = Face::Remote, const std::string& address = "127.0.0.1");
    /// Opens a pseudo-terminal and links it at the path as long as this object lives. A link that is there already is
    /// replaced, but nothing else. Throws std::runtime_error, and on Windows std::invalid_argument.
    void OpenSerialLine(const std::string& path);

    /// From now on SIGINT and SIGTERM, on Windows Ctrl-C and Ctrl-Break, end Run.
    void StopOnSignals();
    /// Serves in this thread what has been opened.
    void Run();
    /// Serves what has been opened, in a thread of its own, as long as this object lives.
    void Start();

  private:
    struct Parts;
    std::unique_ptr<Parts> parts_;
};

}  // namespace sim
