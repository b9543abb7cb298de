#include <fcntl.h>
#include <poll.h>
#include <sys/file.h>
#include <sys/ioctl.h>
#include <termios.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <filesystem>
#include <system_error>

#include "host/SerialLink.h"

namespace host {

namespace {

speed_t SpeedOf(int baudRate) {
    constexpr struct {
        int BaudRate;
        speed_t Speed;
    } speeds[] = {{300, B300},   {600, B600},     {1200, B1200},   {2400, B2400},   {4800, B4800},
                  {9600, B9600}, {19200, B19200}, {38400, B38400}, {57600, B57600}, {115200, B115200}};
    for (const auto& speed : speeds) {
        if (speed.BaudRate == baudRate) return speed.Speed;
    }
    throw OpeningFailure{"there is no baud rate of " + std::to_string(baudRate)};
}

int Descriptor(std::intptr_t line) { return static_cast<int>(line); }

/// True when the event came; throws when the line has gone.
bool Await(std::intptr_t line, short event, std::chrono::milliseconds time) {
    pollfd entry{Descriptor(line), event, 0};
    if (poll(&entry, 1, static_cast<int>(time.count())) <= 0) return false;
    if (entry.revents & event) return true;
    throw LinkFailure{platform::LinkLost, "The serial line was disconnected"};
}

/// Why a line cannot be had; the error of the last call.
std::string Reason() {
    switch (errno) {
        case ENOENT:
        case ENXIO:
        case ENODEV:
            return "no such port";
        case EBUSY:
        case EWOULDBLOCK:
            return "port in use by another program";
        case ENOTTY:
            return "it is no serial line";
    }
    return std::system_category().message(errno);
}

LinkFailure Failure(platform::TransportError code, const char* doing) {
    const int error = errno;
    const bool gone = error == EIO || error == ENXIO || error == ENODEV;
    return SystemFailure(gone ? platform::LinkLost : code, doing, error);
}

}  // namespace

std::string SerialLink::PathOf(const std::string& name) {
    if (name.starts_with('/')) return name;
    const int number = name.starts_with("COM") ? std::atoi(name.c_str() + 3) : 0;
    const char* named = std::getenv("CONDUIT_PORTS");
    const bool isReplaced = named && !std::filesystem::is_regular_file(named);
    if (number < 1 || number > 256 || isReplaced) throw OpeningFailure{"no such port"};
    return "/dev/ttyS" + std::to_string(number - 1);
}

void SerialLink::OpenLine(const std::string& path) {
    line_ = open(path.c_str(), O_RDWR | O_NOCTTY | O_NONBLOCK | O_CLOEXEC);
    if (!IsOpen()) throw OpeningFailure{Reason()};
    // The lock keeps out programs that may ignore TIOCEXCL, such as those of root.
    if (!isatty(Descriptor(line_)) || flock(Descriptor(line_), LOCK_EX | LOCK_NB) != 0) {
        throw OpeningFailure{Reason()};
    }
    ioctl(Descriptor(line_), TIOCEXCL);
}

void SerialLink::Configure(const SerialSettings& settings) {
    termios mode{};
    if (tcgetattr(Descriptor(line_), &mode) != 0) throw OpeningFailure{Reason()};
    cfmakeraw(&mode);
    const speed_t speed = SpeedOf(settings.BaudRate);
    cfsetispeed(&mode, speed);
    cfsetospeed(&mode, speed);
    const auto set = [](tcflag_t& flags, tcflag_t flag, bool on) { flags = on ? flags | flag : flags & ~flag; };
    mode.c_cflag |= CLOCAL | CREAD;
    set(mode.c_cflag, CSIZE, false);
    set(mode.c_cflag, settings.DataBits == 7 ? CS7 : CS8, true);
    set(mode.c_cflag, PARENB, settings.Parity != 'N');
    set(mode.c_cflag, PARODD, settings.Parity == 'O');
    set(mode.c_iflag, INPCK, settings.Parity != 'N');
    set(mode.c_cflag, CSTOPB, settings.StopBits == 2);
    set(mode.c_cflag, CRTSCTS, settings.Handshaking == SerialSettings::Hardware);
    set(mode.c_iflag, IXON | IXOFF, settings.Handshaking == SerialSettings::XonXoff);
    mode.c_cc[VMIN] = 1;  // reading nothing then means that the line has gone
    mode.c_cc[VTIME] = 0;
    if (tcsetattr(Descriptor(line_), TCSANOW, &mode) != 0) throw OpeningFailure{Reason()};
    tcflush(Descriptor(line_), TCIOFLUSH);
}

void SerialLink::CloseLine() noexcept {
    // A stopped peer must not hold up the closing with output that it never takes.
    tcflush(Descriptor(line_), TCIOFLUSH);
    ioctl(Descriptor(line_), TIOCNXCL);
    close(Descriptor(line_));
}

std::size_t SerialLink::Write(std::span<const std::uint8_t> bytes, Milliseconds time) {
    if (!Await(line_, POLLOUT, time)) return 0;
    const auto count = write(Descriptor(line_), bytes.data(), bytes.size());
    if (count >= 0) return static_cast<std::size_t>(count);
    if (errno == EAGAIN || errno == EINTR) return 0;
    throw Failure(platform::WriteFailed, "Writing");
}

bool SerialLink::Flush(Milliseconds time) {
    const auto waiting = [this] {
        int count = 0;
        return ioctl(Descriptor(line_), TIOCOUTQ, &count) == 0 && count > 0;
    };
    const auto end = Patience::Clock::now() + time;
    while (waiting()) {
        if (Patience::Clock::now() >= end) return false;
        usleep(2000);  // some characters; no system call waits for the end of output with a limit
    }
    return true;
}

std::size_t SerialLink::Read(std::span<std::uint8_t> bytes, Milliseconds time) {
    if (!Await(line_, POLLIN, time)) return 0;
    const auto count = read(Descriptor(line_), bytes.data(), bytes.size());
    if (count > 0) return static_cast<std::size_t>(count);
    if (count == 0) throw LinkFailure{platform::LinkLost, "The serial line was disconnected"};
    if (errno == EAGAIN || errno == EINTR) return 0;
    throw Failure(platform::ReadFailed, "Reading");
}

}  // namespace host
