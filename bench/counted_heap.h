// How much memory a program holds: linking this replaces the global operator new
// by one that counts.
#pragma once

#include <cstddef>

namespace bench {

/// Bytes that are asked of operator new and not given back yet.
std::size_t heap_in_use();
/// The most that was in use at once since reset_heap_peak().
std::size_t heap_peak();
void reset_heap_peak();

}  // namespace bench
