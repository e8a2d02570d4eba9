// Running a piece of work that may crash, hang or end the process: in a process
// of its own.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "host/check/notes.h"

namespace zelcheck {

/// What became of the work.
struct ChildEnd {
  /// What the work complained of, and how it ended if it did not return: "killed by
  /// signal 11 (Segmentation fault)", "did not end within 60 s", "the process ended
  /// with status 3", "threw: WHAT". With what it was at before each.
  std::vector<std::string> complaints;
  std::vector<std::string> facts;
  /// What was printed, on standard output and standard error; shortened if it is long.
  std::string output;
  bool hung = false;
};

/// Runs the work in a forked child, in an empty folder that is gone afterwards and
/// with an empty standard input, and without the destructors of static objects when it
/// returns: work that wants those says notes.done() and calls exit(0). Whatever the work has
/// started ends with it. A SIGINT, SIGQUIT, SIGTERM or SIGHUP to this process takes effect
/// when the child is gone.
/// @param time_limit [s]
/// @throws std::system_error if there can be no child.
ChildEnd run_in_child(const std::function<void(const Notes&)>& work, double time_limit);

}  // namespace zelcheck
