#include "host/terminal_line.h"

#include <sys/ioctl.h>
#include <unistd.h>

#include <cstdio>

namespace zelhost {
namespace {

void put(const std::string& text) {
  std::fputs(text.c_str(), stderr);
  std::fflush(stderr);
}

}  // namespace

bool has_terminal() {
  return isatty(STDERR_FILENO) == 1;
}

std::size_t terminal_columns() {
  // One less than the terminal's: a character in the last column may wrap.
  constexpr std::size_t kUsual = 79;
  struct winsize size = {};
  if (ioctl(STDERR_FILENO, TIOCGWINSZ, &size) != 0 || size.ws_col < 2) return kUsual;
  return size.ws_col - std::size_t{1};
}

void draw_terminal_line(const std::string& line) {
  put("\r" + line + "\033[K");
}

void clear_terminal_line() {
  put("\r\033[K");
}

}  // namespace zelhost
