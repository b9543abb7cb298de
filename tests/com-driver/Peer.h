#pragma once

#include <condition_variable>
#include <cstdint>
#include <map>
#include <mutex>
#include <string>
#include <string_view>
#include <thread>
#include <vector>

/// A scripted instrument on a free port of the loopback interface. It takes commands line by line and answers those
/// that it has an answer for.
class Peer {
  public:
    Peer();
    ~Peer();
    Peer(const Peer&) = delete;
    Peer& operator=(const Peer&) = delete;

    std::uint16_t Port() const { return port; }
    /// From now on the answers to queries, as "QUERY? = ANSWER | QUERY? = ANSWER". "{n}" in an answer becomes the
    /// number of times that the query has come.
    void Answers(std::string_view dialogue);
    /// Once that line has come so many times more, the line behind it gets an answer that is longer than any may be.
    void BreaksProtocolAfter(const std::string& line, int times = 1);
    /// Waits until the peer has received that line (5 s); false when it does not come.
    bool Received(const std::string& line);
    /// How often the peer has received that line.
    std::size_t Count(const std::string& line);

  private:
    void Serve();
    void Talk();
    std::string Take(const std::string& line);

    std::uintptr_t listener;
    std::uintptr_t connection;
    std::uint16_t port = 0;
    bool ending = false;
    std::string last;
    int untilBreak = 0;
    bool breaks = false;
    std::map<std::string, std::string> answers;
    std::vector<std::string> lines;
    std::mutex mutex;
    std::condition_variable arrived;
    std::thread thread;
};
