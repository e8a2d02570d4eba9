#include "solver/start/large_pages.h"

#include <malloc.h>
#include <sys/mman.h>

#include <algorithm>
#include <cstdlib>
#include <memory>
#include <vector>

namespace sdpsol {
namespace {

constexpr std::size_t kLargeText = std::size_t{1} << 18U;
// What a text of grasps becomes: values, conditions, blocks and a cone program.
constexpr std::size_t kBytesPerByte = 24;
constexpr std::size_t kMaxBytes = std::size_t{1} << 27U;
// The largest block that the heap does not map on its own, and a piece below it.
constexpr int kMapped = 1 << 25;
constexpr std::size_t kPiece = std::size_t{1} << 24U;

struct Free {
  void operator()(void* block) const { std::free(block); }
};
using Block = std::unique_ptr<void, Free>;

void advise_large_pages(void* block) {
  constexpr std::size_t kPage = 4096;
  std::size_t room = kPiece;
  if (std::align(kPage, kPiece - kPage, block, room) == nullptr) return;
  ::madvise(block, kPiece - kPage, MADV_HUGEPAGE);
}

}  // namespace

void use_large_pages(std::size_t text_bytes) {
  if (text_bytes < kLargeText) return;
  ::mallopt(M_MMAP_THRESHOLD, kMapped);
  ::mallopt(M_TRIM_THRESHOLD, 1 << 30);
  // The heap keeps blocks that are given back at once, and the advice with them.
  const std::size_t wanted = std::min(kMaxBytes, kBytesPerByte * text_bytes);
  std::vector<Block> blocks;
  for (std::size_t taken = 0; taken < wanted; taken += kPiece) {
    Block block(std::malloc(kPiece));
    if (!block) break;
    advise_large_pages(block.get());
    blocks.push_back(std::move(block));
  }
}

}  // namespace sdpsol
