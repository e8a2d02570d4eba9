#include "grasp/batch/scratch_folder.h"

#include <cerrno>
#include <cstdlib>
#include <string>
#include <system_error>

namespace grasp {

namespace fs = std::filesystem;

ScratchFolder::ScratchFolder() {
  const char* const chosen = std::getenv("TMPDIR");
  const fs::path base = chosen != nullptr && *chosen != '\0' ? chosen : "/tmp";
  // Whoever removes it may stand in another folder by then.
  std::string name = (fs::absolute(base) / "grasp-XXXXXX").string();
  if (mkdtemp(name.data()) == nullptr)
    throw std::system_error(errno, std::generic_category(), "a scratch folder in " + base.string());
  path_ = name;
}

ScratchFolder::~ScratchFolder() {
  remove();
}

void ScratchFolder::remove() const noexcept {
  std::error_code ignored;
  fs::remove_all(path_, ignored);
}

}  // namespace grasp
