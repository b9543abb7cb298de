#include <fcntl.h>
#include <sys/ioctl.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <string_view>

#include "cli/Terminal.h"

namespace cli::terminal {

bool ShowsOutput() { return isatty(STDOUT_FILENO) != 0; }
bool ShowsErrors() { return isatty(STDERR_FILENO) != 0; }

// The variables in the order in which the C library looks at them.
bool KnowsUnicode() {
    for (const char* variable : {"LC_ALL", "LC_CTYPE", "LANG"}) {
        const char* text = std::getenv(variable);
        const std::string_view locale = text ? text : "";
        if (!locale.empty()) return locale.find("UTF-8") != locale.npos || locale.find("utf8") != locale.npos;
    }
    return false;
}

Size GetSize() {
    winsize size{};
    if (ioctl(STDOUT_FILENO, TIOCGWINSZ, &size) != 0 || size.ws_col == 0 || size.ws_row == 0) return {};
    return {size.ws_col, size.ws_row};
}

void MoveUp(std::size_t lines) { std::printf("\x1B[%zuA\r", lines); }

// A socket or a file that is opened takes the number of a standard stream that the caller closed, and would get what is
// printed: the receiver its own values. Such streams are filled with one that cannot be written.
void Prepare() {
    int file = open("/dev/null", O_RDONLY);
    while (file >= 0 && file <= STDERR_FILENO) file = open("/dev/null", O_RDONLY);
    if (file > STDERR_FILENO) close(file);
}

}  // namespace cli::terminal
