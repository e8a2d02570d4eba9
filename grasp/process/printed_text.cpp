#include "grasp/process/printed_text.h"

#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <iostream>

#include "host/text.h"

namespace grasp {
namespace {

constexpr std::size_t kLongest = 10'000;

}  // namespace

void flush_all() {
  std::cout.flush();
  std::fflush(nullptr);
}

std::string PrintedText::text() const {
  flush_all();
  std::string text(kLongest, '\0');
  ssize_t got = 0;
  do got = pread(descriptor_, text.data(), text.size(), 0);
  while (got < 0 && errno == EINTR);
  text.resize(got > 0 ? static_cast<std::size_t>(got) : 0);
  return text;
}

void PrintedText::clear() const {
  flush_all();
  struct stat state = {};
  if (fstat(descriptor_, &state) != 0 || state.st_size == 0) return;
  // What a disk does not take from a file, it takes from the next answer.
  [[maybe_unused]] const int ignored = ftruncate(descriptor_, 0);
}

std::string with_printed(const std::string& what, const std::string& printed) {
  const std::string_view text = zelhost::trimmed(printed);
  if (text.empty()) return what;
  return what + " (printed: " + zelhost::on_one_line(text) + ")";
}

}  // namespace grasp
