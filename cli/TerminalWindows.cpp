#ifndef NOMINMAX
#define NOMINMAX
#endif
#include <windows.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>

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
// Windows Terminal says that it is there; the fonts of the console before it lack most block characters.
bool KnowsUnicode() { return std::getenv("WT_SESSION") != nullptr; }

Size GetSize() {
    CONSOLE_SCREEN_BUFFER_INFO info;
    if (!GetConsoleScreenBufferInfo(GetStdHandle(STD_OUTPUT_HANDLE), &info)) return {};
    const auto length = [](int first, int last) {
        return static_cast<std::size_t>(last) - static_cast<std::size_t>(first) + 1U;
    };
    return {length(info.srWindow.Left, info.srWindow.Right), length(info.srWindow.Top, info.srWindow.Bottom)};
}

// Consoles before those of Windows 10 know no escape sequences.
void MoveUp(std::size_t lines) {
    const auto console = GetStdHandle(STD_OUTPUT_HANDLE);
    CONSOLE_SCREEN_BUFFER_INFO info;
    if (!GetConsoleScreenBufferInfo(console, &info)) return;
    const auto up = std::min(static_cast<SHORT>(lines), info.dwCursorPosition.Y);
    SetConsoleCursorPosition(console, {0, static_cast<SHORT>(info.dwCursorPosition.Y - up)});
}

void Prepare() {
    SetConsoleOutputCP(CP_UTF8);
    // Otherwise each byte would be written alone, and a console puts no characters together.
    std::setvbuf(stdout, nullptr, _IOFBF, 1 << 16);
}

}  // namespace cli::terminal
