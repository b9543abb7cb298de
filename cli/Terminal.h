#pragma once

#include <cstddef>

/// What the program has to know of the terminal it may run in.
namespace cli::terminal {

/// Whether a user sees the standard output, or the standard error.
bool ShowsOutput();
bool ShowsErrors();
/// Whether the terminal shows block characters.
bool KnowsUnicode();
struct Size {
    std::size_t Columns = 80, Lines = 24;
};
/// Of the terminal behind the standard output, as far as it tells.
Size GetSize();
/// Moves the cursor of the terminal behind the standard output up by so many lines, to the beginning of a line.
void MoveUp(std::size_t lines);
/// Before anything else: makes the terminal understand UTF-8 and the standard streams safe to print to.
void Prepare();

}  // namespace cli::terminal
