#ifndef NOMINMAX
#define NOMINMAX
#endif
#include <windows.h>

#include <initializer_list>

#include "cli/Terminal.h"

namespace cli::terminal {

namespace {

bool IsConsole(DWORD stream) {
    DWORD mode = 0;
    return GetConsoleMode(GetStdHandle(stream), &mode) != 0;
}

}  // namespace

bool ShowsOutput() { return IsConsole(STD_OUTPUT_HANDLE); }
bool ShowsErrors() { return IsConsole(STD_ERROR_HANDLE); }
bool KnowsUnicode() { return true; }

Size GetSize() {
    CONSOLE_SCREEN_BUFFER_INFO info;
    if (!GetConsoleScreenBufferInfo(GetStdHandle(STD_OUTPUT_HANDLE), &info)) return {};
    const auto length = [](int first, int last) {
        return static_cast<std::size_t>(last) - static_cast<std::size_t>(first) + 1U;
    };
    return {length(info.srWindow.Left, info.srWindow.Right), length(info.srWindow.Top, info.srWindow.Bottom)};
}

void Prepare() {
    for (const DWORD stream : {STD_OUTPUT_HANDLE, STD_ERROR_HANDLE}) {
        const auto console = GetStdHandle(stream);
        DWORD mode = 0;
        if (!GetConsoleMode(console, &mode)) continue;
        SetConsoleMode(console, mode | ENABLE_PROCESSED_OUTPUT | ENABLE_VIRTUAL_TERMINAL_PROCESSING);
        SetConsoleOutputCP(CP_UTF8);
    }
}

}  // namespace cli::terminal
