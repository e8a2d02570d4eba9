// The standard error stream as its writes: a pipe in packet mode stands in for
// it, so that a text written in two pieces can be told from one.
#pragma once

#include <fcntl.h>
#include <unistd.h>

#include <array>
#include <cstdlib>
#include <stdexcept>
#include <string>
#include <vector>

#if defined(SDPSOL_SANITIZE)
#include <sanitizer/common_interface_defs.h>
#endif

namespace unit_test {

/// While it lives, this process and the commands it starts write to the pipe.
/// It takes 256 writes of up to 4096 bytes; more of them fail.
class StderrPackets {
 public:
  StderrPackets() : saved_(fcntl(STDERR_FILENO, F_DUPFD_CLOEXEC, 3)) {
    if (saved_ < 0 || pipe2(ends_.data(), O_DIRECT | O_NONBLOCK | O_CLOEXEC) != 0 ||
        fcntl(ends_[1], F_SETPIPE_SZ, 1 << 20) < 0 || dup2(ends_[1], STDERR_FILENO) < 0) {
      throw std::runtime_error("no pipe in packet mode");
    }
    close(ends_[1]);
    report_to(saved_);
  }
  StderrPackets(const StderrPackets&) = delete;
  StderrPackets& operator=(const StderrPackets&) = delete;
  ~StderrPackets() {
    if (dup2(saved_, STDERR_FILENO) < 0) std::abort();
    report_to(STDERR_FILENO);
    close(saved_);
    close(ends_[0]);
  }

  /// What was written since the last call, a string per write.
  std::vector<std::string> take() {
    std::vector<std::string> packets;
    std::array<char, 4096> packet{};
    for (;;) {
      const ssize_t length = read(ends_[0], packet.data(), packet.size());
      if (length <= 0) return packets;
      packets.emplace_back(packet.data(), static_cast<std::size_t>(length));
    }
  }

 private:
  // A sanitizer's report must not end in the pipe.
  static void report_to([[maybe_unused]] int fd) {
#if defined(SDPSOL_SANITIZE)
    // The interface asks for the number in a pointer.
    __sanitizer_set_report_fd(reinterpret_cast<void*>(static_cast<std::intptr_t>(fd)));
#endif
  }

  int saved_;
  std::array<int, 2> ends_{};
};

}  // namespace unit_test
