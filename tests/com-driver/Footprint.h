#pragma once

#include <functional>
#include <string>

/// A whole number from an environment variable.
int Setting(const char* variable, int otherwise);

/// Does the same again and again, some cycles a round, and expects that no round leaves more behind than the second
/// one: blocks and bytes in all heaps of the process, memory of its own, handles. The allowance
/// (8 blocks, 1 KiB in the heaps, 128 KiB of memory, nothing else) is for the heaps' book-keeping; one object that is
/// left behind in each of 10 cycles exceeds it. Prints what it measured after each round: a line "measured NAME ...".
void ExpectFlat(const std::string& name, int rounds, int cycles, const std::function<void()>& cycle);
