// Times what the driver does over a socket, beside the least that any program would need for it. The same source is
// built for this system (driver classes) and for Windows (the registered component).
//
//   bench-dialogue single PORT LOGFILE   one driver and one receiver whose screen has 32,000 bytes
//   bench-dialogue many PORT...          1, 8 and 64 drivers at a time, a thread and one of 64 receivers each
//
// Prints a line for each result: name, p50, p99 and unit, separated by tab characters.
#include <atomic>
#include <cstring>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

#include "benchmarks/Client.h"
#include "benchmarks/PingPong.h"
#include "benchmarks/Rounds.h"

namespace {

using namespace bench;

constexpr int ScreenSize = 32'000, BlockSize = ScreenSize + 7 + 1;  // "#532000" and the line end

void Require(bool good, const char* what) {
    if (!good) throw std::runtime_error(what);
}

/// A bare connection to the same receiver.
class Wire {
  public:
    explicit Wire(const std::string& port) : socket_(PingPongOpen(static_cast<std::uint16_t>(std::stoi(port)))) {
        Require(socket_ != -1, "connecting");
    }
    ~Wire() { PingPongClose(socket_); }
    Wire(const Wire&) = delete;
    Wire& operator=(const Wire&) = delete;

    /// What a property read puts on the wire.
    void Read() const {
        static const char* const queries[] = {"SYST:ERR?\n", "READ:RF:LEVEL?\n"};
        Require(PingPong(socket_, queries, 2) == 0, "a bare exchange");
    }
    void Screen() const {
        static const char* const drain = "SYST:ERR?\n";
        Require(PingPong(socket_, &drain, 1) == 0, "a bare exchange");
        Require(PingPongBlock(socket_, "READ:BUFFER:PCX?\n", BlockSize) == 0, "a bare transfer");
    }

  private:
    std::intptr_t socket_;
};

void Single(const std::string& port, const std::string& logFile) {
    const Wire wire(port);
    Client driver;
    driver.GoOnLine(port);
    RunRound({{"bare", 1, [&] { wire.Read(); }},
              {"read", 1, [&] { driver.Level(); }, [&] { driver.LogMessages(false); }},
              {"read, log on", 1, [&] { driver.Level(); }, [&] { driver.LogMessages(true); }}},
             1000);
    LogInto(logFile);
    RunRound({{"read, log in a file", 1, [&] { driver.Level(); }}}, 200);
    LogInto("");
    driver.LogMessages(false);
    RunRound({{"bare screen", 1, [&] { wire.Screen(); }},
              {"screen", 1, [&] { Require(driver.Screen() == ScreenSize, "a screen"); }}},
             100);
    RunRound({{"create", 1, [] { Client created; }}}, 20);
}

/// Reads in a thread and an apartment of its own, with a driver or over a bare connection.
class Reader {
  public:
    Reader(bool bare, const std::string& port, const std::atomic<bool>& go, const std::atomic<bool>& stop)
        : thread_([this, bare, port, &go, &stop] {
              const Apartment apartment;
              try {
                  if (bare) {
                      const Wire wire(port);
                      Run(go, stop, [&] { wire.Read(); });
                  } else {
                      Client driver;
                      driver.GoOnLine(port);
                      driver.LogMessages(false);
                      Run(go, stop, [&] { driver.Level(); });
                      driver.GoOffLine();
                  }
              } catch (const std::exception& error) {
                  std::fprintf(stderr, "bench-dialogue: port %s: %s\n", port.c_str(), error.what());
                  failed = ready = true;
              }
          }) {}
    ~Reader() { thread_.join(); }
    Reader(const Reader&) = delete;
    Reader& operator=(const Reader&) = delete;

    std::atomic<bool> ready = false, failed = false;
    std::atomic<int> reads = 0;

  private:
    template <class Read>
    void Run(const std::atomic<bool>& go, const std::atomic<bool>& stop, Read read) {
        read();
        ready = true;
        while (!go) std::this_thread::sleep_for(std::chrono::milliseconds(1));
        for (; !stop; ++reads) read();
    }

    std::thread thread_;
};

void ReadAtOnce(bool bare, const std::vector<std::string>& ports, const std::string& name) {
    const auto before = MemoryInUse();
    std::atomic<bool> go = false, stop = false;
    std::vector<std::unique_ptr<Reader>> readers;
    readers.reserve(ports.size());
    for (const auto& port : ports) readers.push_back(std::make_unique<Reader>(bare, port, go, stop));
    for (const auto& reader : readers) {
        while (!reader->ready) std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }
    const auto memory = static_cast<double>(MemoryInUse() - before) / static_cast<double>(ports.size()) / 1024;
    const auto start = Clock::now();
    go = true;
    std::this_thread::sleep_for(std::chrono::milliseconds(1000));
    stop = true;
    int reads = 0;
    bool failed = false;
    for (const auto& reader : readers) {
        reads += reader->reads;
        failed = failed || reader->failed;
    }
    const double rate = reads / (Microseconds(Clock::now() - start) / 1e6);
    readers.clear();
    Require(!failed, "a reader");
    Print(name, rate, rate, "reads/s");
    if (!bare) Print(name + ", memory of one", memory, memory, "KiB");
}

void Many(const std::vector<std::string>& ports) {
    const Apartment apartment;
    for (const std::ptrdiff_t count : {1, 8, 64}) {
        const std::vector some(ports.begin(), ports.begin() + count);
        ReadAtOnce(true, some, std::to_string(count) + " bare");
        ReadAtOnce(false, some, std::to_string(count) + " drivers");
    }
}

}  // namespace

int main(int count, char** arguments) {
    const std::vector<std::string> given(arguments + 1, arguments + count);
    try {
        if (given.size() == 3 && given[0] == "single") {
            const Apartment apartment;
            Single(given[1], given[2]);
        } else if (given.size() == 65 && given[0] == "many") {
            Many({given.begin() + 1, given.end()});
        } else {
            std::fputs("usage: bench-dialogue single PORT LOGFILE\n       bench-dialogue many PORT...\n", stderr);
            return 2;
        }
    } catch (const std::exception& error) {
        std::fprintf(stderr, "bench-dialogue: %s failed\n", error.what());
        return 1;
    }
    return 0;
}
