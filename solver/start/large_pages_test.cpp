// In a program of its own, because it changes how the heap grows.
#include "solver/start/large_pages.h"

#include <gtest/gtest.h>

#include <cinttypes>
#include <cstdlib>
#include <fstream>
#include <memory>
#include <string>

namespace sdpsol {
namespace {

/// What the kernel notes about the mapping that holds an address.
std::string flags_of_mapping(const void* address) {
  const auto wanted = reinterpret_cast<std::uintptr_t>(address);
  std::ifstream maps("/proc/self/smaps");
  bool inside = false;
  for (std::string line; std::getline(maps, line);) {
    std::uintptr_t begin = 0;
    std::uintptr_t end = 0;
    if (std::sscanf(line.c_str(), "%" SCNxPTR "-%" SCNxPTR " ", &begin, &end) == 2) {
      inside = begin <= wanted && wanted < end;
    } else if (inside && line.starts_with("VmFlags:")) {
      return line + " ";
    }
  }
  return "";
}

bool next_block_has_large_pages() {
  const std::unique_ptr<char[]> block(new char[std::size_t{1} << 22U]);
  return flags_of_mapping(block.get() + (std::size_t{1} << 21U)).find(" hg ") != std::string::npos;
}

TEST(LargePages, AreForLargeTextsOnly) {
#ifdef SDPSOL_SANITIZE
  GTEST_SKIP() << "the sanitizers have a heap of their own";
#endif
  if (!std::ifstream("/sys/kernel/mm/transparent_hugepage/enabled")) {
    GTEST_SKIP() << "this kernel has no large pages";
  }
  use_large_pages(50'000);
  EXPECT_FALSE(next_block_has_large_pages());
  use_large_pages(1'500'000);
  EXPECT_TRUE(next_block_has_large_pages());
  EXPECT_TRUE(next_block_has_large_pages()) << "a block was given back to the system";
}

}  // namespace
}  // namespace sdpsol
