#include "grasp/command/whole_file.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <string>
#include <system_error>

#include "host/descriptor.h"

namespace grasp::command {
namespace {

namespace fs = std::filesystem;

[[noreturn]] void fail(const std::string& name) {
  throw std::system_error(errno, std::generic_category(), name);
}

void write_all(int descriptor, std::string_view text, const std::string& name) {
  while (!text.empty()) {
    const ssize_t written = write(descriptor, text.data(), text.size());
    if (written < 0 && errno == EINTR) continue;
    if (written < 0) fail(name);
    text.remove_prefix(static_cast<std::size_t>(written));
  }
}

// Where a chain of symbolic links leads to, whether there is something or not.
fs::path target_of(fs::path file) {
  constexpr int kMaxLinks = 40;
  for (int links = 0; links < kMaxLinks && fs::is_symlink(file); ++links)
    file = file.parent_path() / fs::read_symlink(file);
  return file;
}

// A reader that leaves is an error here, and no end of the process.
class NoPipeSignal {
 public:
  NoPipeSignal() : before_(std::signal(SIGPIPE, SIG_IGN)) {}
  ~NoPipeSignal() { std::signal(SIGPIPE, before_); }
  NoPipeSignal(const NoPipeSignal&) = delete;
  NoPipeSignal& operator=(const NoPipeSignal&) = delete;
  NoPipeSignal(NoPipeSignal&&) = delete;
  NoPipeSignal& operator=(NoPipeSignal&&) = delete;

 private:
  void (*before_)(int);
};

void write_into(const fs::path& file, const std::string& name, std::string_view text) {
  const zelhost::Descriptor out(open(file.c_str(), O_WRONLY | O_CLOEXEC));
  if (!out.is_open()) fail(name);
  const NoPipeSignal no_signal;
  write_all(out.get(), text, name);
}

// The rights of a new file, as the process's user gives them.
mode_t usual_rights() {
  const mode_t mask = umask(0);
  umask(mask);
  constexpr mode_t kEverybody = 0666;
  return kEverybody & ~mask;
}

// The rights of the file, or of a new one.
mode_t rights_of(const fs::path& file) {
  struct stat found {};
  constexpr mode_t kRights = 0777;
  return stat(file.c_str(), &found) == 0 ? found.st_mode & kRights : usual_rights();
}

// Beside the file, and gone unless it takes the file's place.
class Draft {
 public:
  /// @param name what errors call the file.
  Draft(const fs::path& file, const std::string& name)
      : file_(file),
        name_(name),
        // The file's own name may be as long as names can be.
        draft_((file.parent_path() / "grasp.XXXXXX").string()),
        out_(mkostemp(draft_.data(), O_CLOEXEC)) {
    if (!out_.is_open()) fail(name_);
  }
  ~Draft() {
    if (is_there_) unlink(draft_.c_str());
  }
  Draft(const Draft&) = delete;
  Draft& operator=(const Draft&) = delete;
  Draft(Draft&&) = delete;
  Draft& operator=(Draft&&) = delete;

  void write(std::string_view text) { write_all(out_.get(), text, name_); }

  void take_place() {
    // A draft is for its owner only.
    if (fchmod(out_.get(), rights_of(file_)) != 0) fail(name_);
    if (rename(draft_.c_str(), file_.c_str()) != 0) fail(name_);
    is_there_ = false;
  }

 private:
  const fs::path& file_;
  const std::string& name_;
  std::string draft_;
  zelhost::Descriptor out_;
  bool is_there_ = true;
};

}  // namespace

void write_whole(const fs::path& file, const std::string& name, std::string_view text) {
  const fs::path target = target_of(file);
  const fs::file_status status = fs::status(target);
  if (fs::exists(status) && !fs::is_regular_file(status)) {
    write_into(target, name, text);
    return;
  }
  Draft draft(target, name);
  draft.write(text);
  draft.take_place();
}

}  // namespace grasp::command
