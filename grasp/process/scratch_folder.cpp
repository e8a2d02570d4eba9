#include "grasp/process/scratch_folder.h"

#include <sys/random.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstdlib>
#include <string>
#include <string_view>
#include <system_error>

namespace grasp {
namespace {

namespace fs = std::filesystem;

// As many letters as bits can choose from without preferring some.
constexpr std::string_view kLetters = "abcdefghijklmnopqrstuvwxyz012345";

std::string random_letters() {
  std::array<unsigned char, 12> bytes = {};
  if (getrandom(bytes.data(), bytes.size(), 0) != static_cast<ssize_t>(bytes.size()))
    throw std::system_error(errno, std::generic_category(), "random numbers");
  std::string letters;
  for (const unsigned byte : bytes) letters += kLetters[byte % kLetters.size()];
  return letters;
}

// Files in memory save a tenth of what a small grasp costs.
fs::path base_folder() {
  const char* const chosen = std::getenv("TMPDIR");
  if (chosen != nullptr && *chosen != '\0') return chosen;
  const char* const in_memory = "/dev/shm";
  std::error_code unknown;
  const bool is_usable =
      fs::is_directory(in_memory, unknown) && access(in_memory, W_OK | X_OK) == 0;
  return is_usable ? in_memory : "/tmp";
}

}  // namespace

ScratchFolder::ScratchFolder() {
  const fs::path base = base_folder();
  // Whoever removes it may stand in another folder by then.
  path_ = fs::absolute(base) / ("grasp-" + random_letters());
}

ScratchFolder::~ScratchFolder() {
  remove();
}

void ScratchFolder::enter() const {
  if (mkdir(path_.c_str(), 0700) != 0 || chdir(path_.c_str()) != 0)
    throw std::system_error(errno, std::generic_category(),
                            "a scratch folder in " + path_.parent_path().string());
}

void ScratchFolder::remove() const noexcept {
  std::error_code ignored;
  fs::remove_all(path_, ignored);
}

}  // namespace grasp
