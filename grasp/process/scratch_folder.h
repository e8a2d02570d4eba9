// A folder for the files of one process.
#pragma once

#include <filesystem>

namespace grasp {

/// A folder "grasp-" with twelve random letters in $TMPDIR; without that in /dev/shm, or
/// where that is not to be had in /tmp. One process chooses its name, and a child of it
/// makes the folder: so whichever of them is killed, and whenever, the other one knows
/// what to remove.
class ScratchFolder {
 public:
  /// Chooses the name. @throws std::system_error if there are no random numbers.
  ScratchFolder();
  /// Removes the folder with all that is in it, if it has been made.
  ~ScratchFolder();
  ScratchFolder(const ScratchFolder&) = delete;
  ScratchFolder& operator=(const ScratchFolder&) = delete;
  ScratchFolder(ScratchFolder&&) = delete;
  ScratchFolder& operator=(ScratchFolder&&) = delete;

  [[nodiscard]] const std::filesystem::path& path() const { return path_; }

  /// Makes the folder, and goes there. @throws std::system_error.
  void enter() const;

  /// For a process that will run no destructor.
  void remove() const noexcept;

 private:
  std::filesystem::path path_;
};

}  // namespace grasp
