#include "simulator/SerialLine.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <termios.h>

#include <cerrno>
#include <cstdlib>
#include <filesystem>
#include <system_error>

namespace sim {

namespace {

[[noreturn]] void Fail(const std::string& what) { throw std::system_error(errno, std::generic_category(), what); }

}  // namespace

SerialLine::SerialLine(std::string path)
    : path_(std::move(path)), instrument_(::posix_openpt(O_RDWR | O_NOCTTY | O_NONBLOCK | O_CLOEXEC)) {
    if (instrument_.Get() < 0 || ::grantpt(instrument_.Get()) != 0 || ::unlockpt(instrument_.Get()) != 0) {
        Fail("pseudo-terminal");
    }
    device_ = ::ptsname(instrument_.Get());
    host_ = FileDescriptor{::open(device_.c_str(), O_RDWR | O_NOCTTY | O_CLOEXEC)};
    termios mode{};
    if (host_.Get() < 0 || ::tcgetattr(host_.Get(), &mode) != 0) Fail(device_);
    ::cfmakeraw(&mode);
    ::tcsetattr(host_.Get(), TCSANOW, &mode);
    struct stat old {};
    if (::lstat(path_.c_str(), &old) == 0 && S_ISLNK(old.st_mode)) ::unlink(path_.c_str());
    if (::symlink(device_.c_str(), path_.c_str()) != 0) Fail(path_);
}

SerialLine::~SerialLine() {
    std::error_code ignored;
    // Somebody else may have put a link of his own there meanwhile.
    if (std::filesystem::read_symlink(path_, ignored) == device_) ::unlink(path_.c_str());
}

}  // namespace sim
