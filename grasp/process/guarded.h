// One piece of work in a process of its own, for what the solver and the unit may do
// to a process: whoever waits in system() does not hear Ctrl-C.
#pragma once

#include <filesystem>
#include <functional>
#include <stdexcept>

namespace grasp {

/// The process that did the work has died; what() says how.
class GuardedWorkDied : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

/// Runs the work in a child that leads its own process group and stands in a scratch
/// folder, with the standard descriptors of this process; it must not read a terminal.
/// A SIGINT, SIGQUIT, SIGTERM or SIGHUP to this process ends the child with all that it
/// has started, and then this process. The folder is gone in every case; where this
/// process is killed, after the work.
/// @param work is handed the folder that this process stands in, against which a user's
/// relative paths are to be resolved. What it throws is said on standard error.
/// @return what the work returned, or the status of what it has thrown, or of there being
/// no folder (zelhost::report_failures); 128 and its number if one of those signals came
/// and this process survives it.
/// @throws std::system_error if there can be no child; GuardedWorkDied.
int run_guarded(const std::function<int(const std::filesystem::path& home)>& work);

}  // namespace grasp
