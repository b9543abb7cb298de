#pragma once

#include <cstddef>

namespace bench {

/// How often this program has taken memory from the heap so far.
std::size_t Allocations();

}  // namespace bench
