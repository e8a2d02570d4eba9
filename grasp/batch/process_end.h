// Ending a child process with all that it has started, and waiting for its end.
#pragma once

#include <sys/types.h>

#include <string>

namespace grasp {

/// Kills the process group that the child leads, and waits for the child.
/// @return its status, as waitpid() has it.
int end_group(pid_t child);

/// Waits for a child that has ended by itself or is about to, then kills what it left
/// running in its group. @return its status.
int reap_group(pid_t child);

/// "killed by signal 11 (Segmentation fault)", "ended with status 3".
std::string how_it_ended(int status);

}  // namespace grasp
