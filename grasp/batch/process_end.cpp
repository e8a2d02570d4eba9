#include "grasp/batch/process_end.h"

#include <sys/wait.h>

#include <cerrno>
#include <csignal>

namespace grasp {

int end_group(pid_t child) {
  // Before the child is reaped, while no other group can have its number.
  kill(-child, SIGKILL);
  int status = 0;
  while (waitpid(child, &status, 0) < 0 && errno == EINTR) continue;
  return status;
}

int reap_group(pid_t child) {
  siginfo_t info = {};
  while (waitid(P_PID, static_cast<id_t>(child), &info, WEXITED | WNOWAIT) < 0 && errno == EINTR)
    continue;
  return end_group(child);
}

}  // namespace grasp
