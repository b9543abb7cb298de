#pragma once

#include <pty.h>
#include <unistd.h>

#include <cerrno>
#include <filesystem>
#include <system_error>

namespace sim {

/// A pseudo-terminal in raw mode that is linked at a path; the link goes with the object.
class SerialLine {
  public:
    /// Throws std::system_error.
    SerialLine() {
        if (::openpty(&instrument_, &host_, nullptr, nullptr, nullptr) != 0) {
            throw std::system_error(errno, std::generic_category(), "pseudo-terminal");
        }
        termios mode{};
        ::tcgetattr(host_, &mode);
        ::cfmakeraw(&mode);
        ::tcsetattr(host_, TCSANOW, &mode);
        device_ = ::ttyname(host_);
    }
    SerialLine(const SerialLine&) = delete;
    SerialLine& operator=(const SerialLine&) = delete;
    ~SerialLine() {
        std::error_code ignored;
        // Somebody else may have put a link of his own there meanwhile.
        if (std::filesystem::read_symlink(path_, ignored) == device_) std::filesystem::remove(path_, ignored);
        ::close(host_);
    }

    /// The descriptor of the instrument's end, which the caller closes.
    int Instrument() const { return instrument_; }
    /// Replaces a link that is there already, but nothing else. Throws std::system_error.
    void LinkAt(const std::filesystem::path& path) {
        std::error_code error;
        if (std::filesystem::is_symlink(path, error)) std::filesystem::remove(path, error);
        std::filesystem::create_symlink(device_, path, error);
        if (error) throw std::system_error(error, path);
        path_ = path;
    }

  private:
    int instrument_ = -1;
    int host_ = -1;  // kept open so that the line stays up, in raw mode, between two users
    std::filesystem::path device_, path_;
};

}  // namespace sim
