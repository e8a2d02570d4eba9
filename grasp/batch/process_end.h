// Ending a child process with all that it has started, and waiting for its end.
#pragma once

#include <sys/types.h>

namespace grasp {

/// Kills the process group that the child leads, and waits for the child.
/// @return its status, as waitpid() has it.
int end_group(pid_t child);

/// Waits for a child that has ended by itself or is about to, then kills what it left
/// running in its group. @return its status.
int reap_group(pid_t child);

}  // namespace grasp
