#pragma once

#include <cstddef>

/// What the program has to know of the terminal it may run in.
namespace cli::terminal {

/// Whether a user sees the standard output, or the standard error.
bool ShowsOutput();
bool ShowsErrors();
/// Whether the terminal shows more than ASCII.
bool KnowsUnicode();
struct Size {
    std::size_t Columns = 80, Lines = 24;
};
/// Of the terminal behind the standard output, as far as it tells.
Size GetSize();
/// Makes the terminal understand UTF-8 and the escape sequences of ECMA-48. What is no terminal stays as it is.
void Prepare();

}  // namespace cli::terminal
