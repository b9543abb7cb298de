#pragma once

#include <cstddef>

/// What the program has to know of the terminal it may run in.
namespace cli::terminal {

/// Whether a user sees the standard output, or the standard error.
bool ShowsOutput();
bool ShowsErrors();
/// Whether the terminal shows more than ASCII.
bool KnowsUnicode();
/// Characters in a line of the terminal behind the standard output; 80 when it does not tell.
std::size_t Width();
/// Makes the terminal understand UTF-8 and the escape sequences of ECMA-48. What is no terminal stays as it is.
void Prepare();

}  // namespace cli::terminal
