#pragma once

#include <functional>
#include <string>

#include "tests/com/Client.h"

/// A whole number from an environment variable.
int Environment(const char* variable, int otherwise);

/// A session with the simulated receiver: through the function table and by name, with a read, an object, a failure.
void UseTheReceiver(const ComPtr<_clsTarn4x>& driver);

/// Does the same again and again, some cycles a round, and expects that no round leaves more behind than the second
/// one: blocks and bytes in all heaps of the process, handles (of which the first free one becomes
/// a later one). The allowance (8 blocks, 1 KiB) is for the heaps'
/// book-keeping; one object that is left behind in each of 10 cycles exceeds it. Prints what it measured after each
/// round: a line "measured NAME ...".
void ExpectFlat(const std::string& name, int rounds, int cycles, const std::function<void()>& cycle);
