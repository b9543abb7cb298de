#pragma once

#include <cstddef>
#include <memory>
#include <string>

namespace bench {

/// The driver as its user has it: on Windows the registered component, called through its function table; elsewhere the
/// driver and host classes that the component is made of. Raises std::exception.
class Client {
  public:
    /// Creates a driver, off-line.
    Client();
    ~Client();

    void GoOnLine(const std::string& port);
    void GoOffLine();
    /// A property read: the error queue and one query.
    double Level();
    /// Transfers the captured screen; returns its bytes.
    std::size_t Screen();
    void LogMessages(bool log);

    struct Parts;
    std::unique_ptr<Parts> parts;
};

/// The log that all drivers of the process share: the file it goes to, or none.
void LogInto(const std::string& fileName);

/// An apartment for the thread's objects.
class Apartment {
  public:
    Apartment() { Enter(); }
    ~Apartment() { Leave(); }
    Apartment(const Apartment&) = delete;
    Apartment& operator=(const Apartment&) = delete;

  private:
    static void Enter();
    static void Leave();
};

/// Bytes that the process has taken from its heaps.
std::size_t MemoryInUse();

}  // namespace bench
