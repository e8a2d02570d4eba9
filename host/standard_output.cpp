#include "host/standard_output.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <iostream>
#include <system_error>

namespace zelhost {
namespace {

[[noreturn]] void fail() {
  throw std::system_error(errno == 0 ? EIO : errno, std::generic_category(), "standard output");
}

// The lowest descriptor that is none of the standard ones.
constexpr int kFirstFree = 3;

// What is opened takes the lowest free descriptor: this one, when those below it are open.
void open_if_closed(int descriptor, int how) {
  if (fcntl(descriptor, F_GETFD) < 0) open("/dev/null", how);
}

}  // namespace

void print(std::ostream& out, const std::function<void(std::ostream&)>& write) {
  // The stream does not say why it fails; the call that failed beneath it does.
  errno = 0;
  write(out);
  out.flush();
  if (!out) fail();
}

void open_missing_descriptors() {
  open_if_closed(STDIN_FILENO, O_RDWR);
  open_if_closed(STDOUT_FILENO, O_RDONLY);
  open_if_closed(STDERR_FILENO, O_RDWR);
}

ReservedOutput::ReservedOutput() {
  std::cout.flush();
  // Programs that plug-ins start must not inherit it.
  reserved_ = Descriptor(fcntl(STDOUT_FILENO, F_DUPFD_CLOEXEC, kFirstFree));
  if (!reserved_.is_open()) fail();
  if (dup2(STDERR_FILENO, STDOUT_FILENO) < 0) fail();
}

void ReservedOutput::write(std::string_view text) const {
  while (!text.empty()) {
    const ssize_t written = ::write(reserved_.get(), text.data(), text.size());
    if (written < 0 && errno == EINTR) continue;
    if (written <= 0) fail();
    text.remove_prefix(static_cast<std::size_t>(written));
  }
}

}  // namespace zelhost
