// Input data as a host may hold it at worst: right before memory that nobody may
// touch, and not to be written.
#pragma once

#include <sys/mman.h>
#include <unistd.h>

#include <cstddef>
#include <cstring>
#include <span>
#include <stdexcept>

namespace unit_test {

/// A copy of `bytes` that ends where readable memory ends. Reading past the end,
/// or writing anywhere, ends the process.
class GuardedArray {
 public:
  explicit GuardedArray(std::span<const std::byte> bytes)
      : page_(static_cast<std::size_t>(sysconf(_SC_PAGESIZE))),
        size_((bytes.size() / page_ + 1) * page_) {
    memory_ =
        mmap(nullptr, size_ + page_, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
    if (memory_ == MAP_FAILED) throw std::runtime_error("mmap failed");
    data_ = static_cast<std::byte*>(memory_) + (size_ - bytes.size());
    if (!bytes.empty()) std::memcpy(data_, bytes.data(), bytes.size());
    if (mprotect(memory_, size_, PROT_READ) != 0 ||
        mprotect(static_cast<std::byte*>(memory_) + size_, page_, PROT_NONE) != 0) {
      throw std::runtime_error("mprotect failed");
    }
  }
  GuardedArray(const GuardedArray&) = delete;
  GuardedArray& operator=(const GuardedArray&) = delete;
  ~GuardedArray() { munmap(memory_, size_ + page_); }

  void* data() const { return data_; }

 private:
  std::size_t page_;
  std::size_t size_;  // of the readable pages
  void* memory_ = nullptr;
  std::byte* data_ = nullptr;
};

}  // namespace unit_test
