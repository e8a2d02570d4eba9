#include "solver/command/files.h"

#include <fcntl.h>
#include <poll.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <optional>
#include <string_view>

#include "solver/command/options.h"
#include "solver/command/paths.h"

namespace sdpsol {
namespace {

// Of a file that does not tell its size.
constexpr std::size_t kFirstPiece = std::size_t{1} << 16U;

[[noreturn]] void fail_to_read(const std::string& name, int error) {
  throw FileError("cannot read " + in_words(name, "input") + ": " + std::strerror(error));
}

[[noreturn]] void fail_to_write(const std::string& name, int error) {
  throw FileError("cannot write " + in_words(name, "output") + ": " + std::strerror(error));
}

/// True if a read or write may be tried again: it was interrupted, or whoever
/// started us has set the stream not to wait, and now we have waited.
bool worth_another_try(int fd, short event) {
  if (errno == EINTR) return true;
  if (errno != EAGAIN) return false;
  struct pollfd wait {
    fd, event, 0
  };
  return ::poll(&wait, 1, -1) >= 0 || errno == EINTR;
}

bool write_all(int fd, std::string_view text) {
  while (!text.empty()) {
    const ssize_t written = ::write(fd, text.data(), text.size());
    if (written < 0 && worth_another_try(fd, POLLOUT)) continue;
    if (written < 0) return false;
    text.remove_prefix(static_cast<std::size_t>(written));
  }
  return true;
}

/// What the name leads to; nothing if no such file exists.
std::optional<struct stat> status_of_result(const std::string& name) {
  struct stat status {};
  if (::stat(name.c_str(), &status) == 0) return status;
  if (errno != ENOENT) fail_to_write(name, errno);
  return std::nullopt;
}

}  // namespace

std::string read_whole_file(const std::string& name, std::size_t most_bytes) {
  const bool standard = name == kStandardStream;
  const Descriptor file(standard ? ::dup(STDIN_FILENO)
                                 : ::open(name.c_str(), O_RDONLY | O_CLOEXEC));
  if (file.get() < 0) fail_to_read(name, errno);
  struct stat status {};
  std::string text;
  if (::fstat(file.get(), &status) == 0) {
    if (S_ISDIR(status.st_mode)) fail_to_read(name, EISDIR);
    const auto size = static_cast<std::size_t>(status.st_size);
    // Room for one byte more shows the end without another piece.
    if (S_ISREG(status.st_mode) && size <= most_bytes) text.resize(size + 1);
    const bool device = S_ISCHR(status.st_mode) || S_ISBLK(status.st_mode);
    if (device && ::isatty(file.get()) == 0) most_bytes = std::min(most_bytes, kMaxDeviceBytes);
  }
  std::size_t length = 0;
  for (;;) {
    if (length == text.size()) text.resize(std::max(2 * length, kFirstPiece));
    const ssize_t got = ::read(file.get(), text.data() + length, text.size() - length);
    if (got < 0 && worth_another_try(file.get(), POLLIN)) continue;
    if (got < 0) fail_to_read(name, errno);
    if (static_cast<std::size_t>(got) > most_bytes - length) fail_to_read(name, EFBIG);
    length += static_cast<std::size_t>(got);
    if (got > 0) continue;
    text.resize(length);
    return text;
  }
}

bool Descriptor::close() {
  const int fd = std::exchange(fd_, -1);
  return fd < 0 || ::close(fd) == 0;
}

ResultFile::ResultFile(const std::string& name) : name_(name) {
  if (name == kStandardStream) return;
  if (name.empty()) fail_to_write(name, ENOENT);
  const auto status = status_of_result(name);
  if (status && S_ISDIR(status->st_mode)) fail_to_write(name, EISDIR);
  in_place_ = status && !S_ISREG(status->st_mode);
  // The links of /proc, which /dev/stdout leads to, name what is no path.
  if (in_place_) {
    target_ = name;
    return;
  }
  auto target = follow_links(name);
  if (!target) fail_to_write(name, ELOOP);
  target_ = *std::move(target);
  if (::access(directory_of(target_).c_str(), W_OK | X_OK) != 0) fail_to_write(name, errno);
  if (status) remove_old();
}

ResultFile::~ResultFile() {
  drop();
}

/// Of a new file that will not be one. Leaves errno alone.
void ResultFile::drop() {
  const int error = errno;
  staged_.close();
  if (!beside_.empty()) ::unlink(std::exchange(beside_, {}).c_str());
  errno = error;
}

void ResultFile::remove_old() const {
  if (::unlink(target_.c_str()) != 0 && errno != ENOENT) {
    throw FileError("cannot remove the old '" + name_ + "': " + std::strerror(errno));
  }
}

void ResultFile::stage(std::string text) {
  text_ = std::move(text);
  if (!is_regular()) return;
  if ((open_without_name() || open_beside()) && write_all(staged_.get(), text_)) return;
  drop();
  fail_to_write(name_, errno);
}

void ResultFile::publish() {
  const bool done = !is_regular() ? write_in_place() : give_name() || write_beside_and_rename();
  if (done) return;
  drop();
  fail_to_write(name_, errno);
}

void ResultFile::withdraw() const {
  if (is_regular()) ::unlink(target_.c_str());
}

bool ResultFile::write_in_place() const {
  const bool standard = target_.empty();
  Descriptor file(standard ? ::dup(STDOUT_FILENO) : ::open(target_.c_str(), O_WRONLY | O_CLOEXEC));
  return file.get() >= 0 && write_all(file.get(), text_) && file.close();
}

bool ResultFile::give_name() {
  if (!beside_.empty()) return false;
  const std::string open_file = "/proc/self/fd/" + std::to_string(staged_.get());
  if (::linkat(AT_FDCWD, open_file.c_str(), AT_FDCWD, target_.c_str(), AT_SYMLINK_FOLLOW) != 0) {
    return false;
  }
  if (staged_.close()) return true;
  const int error = errno;
  ::unlink(target_.c_str());
  fail_to_write(name_, error);
}

/// The name may be taken again by now, which only a renamed file can deal with, and
/// there may be no /proc to give a name through.
bool ResultFile::write_beside_and_rename() {
  if (beside_.empty() && !(open_beside() && write_all(staged_.get(), text_))) return false;
  if (!staged_.close() || ::rename(beside_.c_str(), target_.c_str()) != 0) return false;
  beside_.clear();
  return true;
}

bool ResultFile::open_without_name() {
  const std::string folder = directory_of(target_);
  staged_ = Descriptor(::open(folder.c_str(), O_TMPFILE | O_WRONLY | O_CLOEXEC, 0666));
  return staged_.get() >= 0;
}

bool ResultFile::open_beside() {
  // A name of its own: one that adds to the target's may be longer than names can be.
  std::string beside = directory_of(target_) + "/.sdpsol-XXXXXX";
  staged_ = Descriptor(::mkostemp(beside.data(), O_CLOEXEC));
  if (staged_.get() < 0) return false;
  beside_ = std::move(beside);
  // mkostemp makes the file private; a result has the rights of any new file.
  const mode_t mask = ::umask(0);
  ::umask(mask);
  return ::fchmod(staged_.get(), 0666 & ~mask) == 0;
}

}  // namespace sdpsol
