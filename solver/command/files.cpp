#include "solver/command/files.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <climits>
#include <cstdlib>
#include <cstring>
#include <optional>
#include <string_view>
#include <utility>

#include "solver/command/options.h"

namespace sdpsol {
namespace {

std::string in_words(const std::string& name, const std::string& standard) {
  return name == kStandardStream ? "standard " + standard : "'" + name + "'";
}

[[noreturn]] void fail_to_read(const std::string& name, int error) {
  throw FileError("cannot read " + in_words(name, "input") + ": " + std::strerror(error));
}

[[noreturn]] void fail_to_write(const std::string& name, int error) {
  throw FileError("cannot write " + in_words(name, "output") + ": " + std::strerror(error));
}

/// Closes a file descriptor at the end of the scope.
class Descriptor {
 public:
  explicit Descriptor(int fd) : fd_(fd) {}
  Descriptor(const Descriptor&) = delete;
  Descriptor& operator=(const Descriptor&) = delete;
  ~Descriptor() {
    if (fd_ >= 0) ::close(fd_);
  }
  int get() const { return fd_; }
  /// Closes now; false if that failed, which is how some file systems report a
  /// write that did not reach the disk.
  bool close() { return ::close(std::exchange(fd_, -1)) == 0; }

 private:
  int fd_;
};

bool write_all(int fd, std::string_view text) {
  while (!text.empty()) {
    const ssize_t written = ::write(fd, text.data(), text.size());
    if (written < 0 && errno == EINTR) continue;
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

/// Nothing if there is no such input; reading it will say so.
std::optional<struct stat> status_of_input(const std::string& name) {
  struct stat status {};
  if (name != kStandardStream) {
    if (::stat(name.c_str(), &status) != 0) return std::nullopt;
    return status;
  }
  // A terminal may be both standard input and output; only a file is lost by that.
  if (::fstat(STDIN_FILENO, &status) != 0 || !S_ISREG(status.st_mode)) return std::nullopt;
  return status;
}

std::string directory_of(const std::string& name) {
  const std::size_t slash = name.rfind('/');
  if (slash == std::string::npos) return ".";
  return slash == 0 ? "/" : name.substr(0, slash);
}

/// Follows symbolic links by hand: the last one may lead to a file that does not
/// exist yet.
std::string follow_links(std::string name) {
  constexpr int kMostLinks = 40;
  for (int i = 0; i < kMostLinks; ++i) {
    std::array<char, PATH_MAX> buffer{};
    const ssize_t length = ::readlink(name.c_str(), buffer.data(), buffer.size());
    if (length < 0) return name;
    std::string to(buffer.data(), static_cast<std::size_t>(length));
    if (to.front() != '/') to.insert(0, directory_of(name) + "/");
    name = std::move(to);
  }
  fail_to_write(name, ELOOP);
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
    if (S_ISREG(status.st_mode) && size <= most_bytes) text.reserve(size);
  }
  std::array<char, 1 << 16> buffer;
  for (;;) {
    const ssize_t got = ::read(file.get(), buffer.data(), buffer.size());
    if (got < 0 && errno == EINTR) continue;
    if (got < 0) fail_to_read(name, errno);
    if (got == 0) return text;
    if (static_cast<std::size_t>(got) > most_bytes - text.size()) fail_to_read(name, EFBIG);
    text.append(buffer.data(), static_cast<std::size_t>(got));
  }
}

ResultFile::ResultFile(const std::string& name, const std::string& input) : name_(name) {
  if (name == kStandardStream) return;
  if (name.empty()) throw UsageError("the name of the result file is empty");
  const auto status = status_of_result(name);
  const auto input_status = status_of_input(input);
  if (status && input_status && status->st_dev == input_status->st_dev &&
      status->st_ino == input_status->st_ino) {
    throw UsageError(in_words(input, "input") + " and '" + name + "' are the same file");
  }
  if (status && S_ISDIR(status->st_mode)) fail_to_write(name, EISDIR);
  in_place_ = status && !S_ISREG(status->st_mode);
  // The links of /proc, which /dev/stdout leads to, name what is no path.
  target_ = in_place_ ? name : follow_links(name);
  if (in_place_) return;
  if (::access(directory_of(target_).c_str(), W_OK | X_OK) != 0) fail_to_write(name, errno);
  if (status) remove_old();
}

void ResultFile::remove_old() const {
  if (::unlink(target_.c_str()) != 0 && errno != ENOENT) {
    throw FileError("cannot remove the old '" + name_ + "': " + std::strerror(errno));
  }
}

void ResultFile::write(const std::string& text) const {
  if (!target_.empty() && !in_place_) {
    write_beside_and_rename(text);
    return;
  }
  Descriptor file(target_.empty() ? ::dup(STDOUT_FILENO)
                                  : ::open(target_.c_str(), O_WRONLY | O_CLOEXEC));
  if (file.get() < 0 || !write_all(file.get(), text) || !file.close()) fail_to_write(name_, errno);
}

void ResultFile::write_beside_and_rename(const std::string& text) const {
  // A name of its own: one that adds to the target's may be longer than names can be.
  std::string beside = directory_of(target_) + "/.sdpsol-XXXXXX";
  Descriptor file(::mkostemp(beside.data(), O_CLOEXEC));
  if (file.get() < 0) fail_to_write(name_, errno);
  // mkostemp makes the file private; a result has the rights of any new file.
  const mode_t mask = ::umask(0);
  ::umask(mask);
  const bool written = ::fchmod(file.get(), 0666 & ~mask) == 0 && write_all(file.get(), text) &&
                       file.close() && ::rename(beside.c_str(), target_.c_str()) == 0;
  if (written) return;
  const int error = errno;
  ::unlink(beside.c_str());
  fail_to_write(name_, error);
}

}  // namespace sdpsol
