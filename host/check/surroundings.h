// What a plug-in finds in the process and has to leave as it is.
#pragma once

#include <sys/types.h>

#include <array>
#include <string>
#include <utility>
#include <vector>

#include "host/descriptor.h"

namespace zelcheck {

/// The process at one moment: working folder, locale, standard input, output and error.
class Surroundings {
 public:
  Surroundings();

  /// What has changed since: "it changed the working folder", ...
  [[nodiscard]] std::vector<std::string> changes() const;

 private:
  // Device and number of a file; both 0 where there is none.
  using File = std::pair<dev_t, ino_t>;
  static File file_at(int descriptor);
  static File working_folder();

  File folder_;
  std::string locale_;
  std::array<File, 3> standard_files_;
};

/// Finds out whether a call that has forked comes back in both processes.
class ForkWatch {
 public:
  ForkWatch();

  /// To be called when the call is back. Waits a second for a process that was forked
  /// and runs no other program yet. In that process it does not return.
  [[nodiscard]] bool is_back_twice();

 private:
  pid_t process_;
  zelhost::Descriptor read_;
  // Held by whoever was forked, until it ends or runs another program.
  zelhost::Descriptor write_;
};

}  // namespace zelcheck
