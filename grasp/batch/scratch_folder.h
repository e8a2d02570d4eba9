// A folder for the files of one process.
#pragma once

#include <filesystem>

namespace grasp {

/// An empty folder "grasp-XXXXXX" in $TMPDIR or /tmp, which goes with the object.
class ScratchFolder {
 public:
  /// @throws std::system_error if there can be none.
  ScratchFolder();
  ~ScratchFolder();
  ScratchFolder(const ScratchFolder&) = delete;
  ScratchFolder& operator=(const ScratchFolder&) = delete;
  ScratchFolder(ScratchFolder&&) = delete;
  ScratchFolder& operator=(ScratchFolder&&) = delete;

  [[nodiscard]] const std::filesystem::path& path() const { return path_; }

  /// Removes it with all that is in it: for a process that will run no destructor.
  void remove() const noexcept;

 private:
  std::filesystem::path path_;
};

}  // namespace grasp
