// How processes end: for people, and all that one has started with it.
#pragma once

#include <sys/types.h>

#include <string>

#include "host/descriptor.h"

namespace zelhost {

/// The end of a child as something that can be waited for together with others: readable
/// for poll() once it has come.
/// @throws std::system_error if there can be none; the child's group is ended then.
Descriptor end_of(pid_t child);

/// @param status as waitpid() has it.
/// @return "killed by signal 11 (Segmentation fault)", "the process ended with status 3".
std::string how_it_ended(int status);

/// Kills the process group that the child leads, and waits for the child.
/// @return its status, as waitpid() has it.
int end_group(pid_t child);

/// Waits for a child that has ended by itself or is about to, then kills what it left
/// running in its group. @return its status.
int reap_group(pid_t child);

}  // namespace zelhost
