#include "solver/command/paths.h"

#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <climits>
#include <utility>

#include "solver/command/files.h"
#include "solver/command/options.h"

namespace sdpsol {
namespace {

/// What tells files apart; `name` is empty unless the file does not exist yet, and
/// device and inode are those of its folder then.
struct Identity {
  dev_t device = 0;
  ino_t inode = 0;
  std::string name;
  friend bool operator==(const Identity&, const Identity&) = default;
};

std::optional<Identity> identity_of_input(const std::string& name) {
  struct stat status {};
  if (name != kStandardStream) {
    if (::stat(name.c_str(), &status) != 0) return std::nullopt;
  } else if (::fstat(STDIN_FILENO, &status) != 0 || !S_ISREG(status.st_mode)) {
    // A terminal may be both standard input and output; only a file is lost by that.
    return std::nullopt;
  }
  return Identity{status.st_dev, status.st_ino, {}};
}

std::optional<Identity> identity_of_output(const std::string& name) {
  struct stat status {};
  if (name == kStandardStream) {
    if (::fstat(STDOUT_FILENO, &status) != 0 || S_ISCHR(status.st_mode)) return std::nullopt;
    return Identity{status.st_dev, status.st_ino, {}};
  }
  if (::stat(name.c_str(), &status) == 0) return Identity{status.st_dev, status.st_ino, {}};
  if (errno != ENOENT) return std::nullopt;
  const auto target = follow_links(name);
  if (!target || ::stat(directory_of(*target).c_str(), &status) != 0) return std::nullopt;
  return Identity{status.st_dev, status.st_ino, target->substr(target->rfind('/') + 1)};
}

}  // namespace

std::string in_words(const std::string& name, const std::string& standard) {
  return name == kStandardStream ? "standard " + standard : "'" + name + "'";
}

std::string directory_of(const std::string& name) {
  const std::size_t slash = name.rfind('/');
  if (slash == std::string::npos) return ".";
  return slash == 0 ? "/" : name.substr(0, slash);
}

std::optional<std::string> follow_links(std::string name) {
  constexpr int kMaxLinks = 40;
  for (int i = 0; i < kMaxLinks; ++i) {
    std::array<char, PATH_MAX> buffer{};
    const ssize_t length = ::readlink(name.c_str(), buffer.data(), buffer.size());
    if (length < 0) return name;
    std::string to(buffer.data(), static_cast<std::size_t>(length));
    if (to.front() != '/') to.insert(0, directory_of(name) + "/");
    name = std::move(to);
  }
  return std::nullopt;
}

void refuse_same_files(const std::string& input, const std::vector<std::string>& outputs) {
  struct Seen {
    std::string words;
    Identity identity;
  };
  std::vector<Seen> seen;
  if (auto identity = identity_of_input(input)) {
    seen.push_back({in_words(input, "input"), *std::move(identity)});
  }
  bool to_standard_output = false;
  for (const std::string& output : outputs) {
    if (output == kStandardStream && std::exchange(to_standard_output, true)) {
      throw UsageError("two outputs go to standard output");
    }
    auto identity = identity_of_output(output);
    if (!identity) continue;
    for (const Seen& other : seen) {
      if (other.identity == *identity) {
        throw UsageError(other.words + " and " + in_words(output, "output") + " are the same file");
      }
    }
    seen.push_back({in_words(output, "output"), *std::move(identity)});
  }
}

}  // namespace sdpsol
