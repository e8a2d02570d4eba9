// A file that has a name and is in memory only, for readers that take the name of a file.
#pragma once

#include <sys/mman.h>
#include <unistd.h>

#include <string>
#include <string_view>

#include "fuzz/oracle.h"

namespace fuzz {

class MemoryFile {
 public:
  explicit MemoryFile(std::string_view text) : descriptor_(memfd_create("fuzz", MFD_CLOEXEC)) {
    require(descriptor_ >= 0 &&
                write(descriptor_, text.data(), text.size()) == static_cast<ssize_t>(text.size()),
            "no file in memory");
  }
  MemoryFile(const MemoryFile&) = delete;
  MemoryFile& operator=(const MemoryFile&) = delete;
  ~MemoryFile() { close(descriptor_); }

  std::string path() const { return "/proc/self/fd/" + std::to_string(descriptor_); }

 private:
  int descriptor_;
};

}  // namespace fuzz
