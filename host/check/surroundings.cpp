#include "host/check/surroundings.h"

#include <fcntl.h>
#include <poll.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <clocale>
#include <system_error>

namespace zelcheck {
namespace {

constexpr std::array kStandardFiles = {"standard input", "standard output", "standard error"};

std::string present_locale() {
  const char* const name = std::setlocale(LC_ALL, nullptr);
  return name == nullptr ? "" : name;
}

}  // namespace

Surroundings::Surroundings()
    : folder_(working_folder()),
      locale_(present_locale()),
      standard_files_{file_at(0), file_at(1), file_at(2)} {}

std::vector<std::string> Surroundings::changes() const {
  std::vector<std::string> changes;
  if (working_folder() != folder_) changes.emplace_back("it changed the working folder");
  if (present_locale() != locale_) changes.emplace_back("it changed the locale");
  for (std::size_t i = 0; i < kStandardFiles.size(); ++i) {
    const File file = file_at(static_cast<int>(i));
    if (file == standard_files_[i]) continue;
    const std::string name = kStandardFiles[i];
    changes.push_back(file == File() ? "it closed " + name : "it replaced " + name);
  }
  return changes;
}

Surroundings::File Surroundings::file_at(int descriptor) {
  struct stat file = {};
  return fstat(descriptor, &file) == 0 ? File(file.st_dev, file.st_ino) : File();
}

Surroundings::File Surroundings::working_folder() {
  struct stat file = {};
  return stat(".", &file) == 0 ? File(file.st_dev, file.st_ino) : File();
}

ForkWatch::ForkWatch() : process_(getpid()) {
  std::array<int, 2> ends = {};
  if (pipe2(ends.data(), O_CLOEXEC) != 0)
    throw std::system_error(errno, std::generic_category(), "pipe");
  read_ = zelhost::Descriptor(ends[0]);
  write_ = zelhost::Descriptor(ends[1]);
}

bool ForkWatch::is_back_twice() {
  constexpr char kBack = 'b';
  if (getpid() != process_) {
    // What is still to be done is the other process's.
    const ssize_t written = write(write_.get(), &kBack, 1);
    _exit(written == 1 ? 0 : 1);
  }
  write_ = zelhost::Descriptor();
  pollfd end = {read_.get(), POLLIN, 0};
  char back = 0;
  return poll(&end, 1, 1000) == 1 && (end.revents & POLLIN) != 0 &&
         read(read_.get(), &back, 1) == 1 && back == kBack;
}

}  // namespace zelcheck
