#include "bench/counted_heap.h"

#include <algorithm>
#include <cstdlib>
#include <new>

namespace {

std::size_t in_use = 0;
std::size_t peak = 0;

// The size is kept in front of each block.
constexpr std::size_t kHeader = alignof(std::max_align_t);

}  // namespace

namespace bench {

std::size_t heap_in_use() {
  return in_use;
}

std::size_t heap_peak() {
  return peak;
}

void reset_heap_peak() {
  peak = in_use;
}

}  // namespace bench

void* operator new(std::size_t size) {
  void* const block = std::malloc(size + kHeader);
  if (block == nullptr) throw std::bad_alloc();
  *static_cast<std::size_t*>(block) = size;
  in_use += size;
  peak = std::max(peak, in_use);
  return static_cast<char*>(block) + kHeader;
}

void operator delete(void* pointer) noexcept {
  if (pointer == nullptr) return;
  void* const block = static_cast<char*>(pointer) - kHeader;
  in_use -= *static_cast<std::size_t*>(block);
  std::free(block);
}

void operator delete(void* pointer, std::size_t) noexcept {
  operator delete(pointer);
}
