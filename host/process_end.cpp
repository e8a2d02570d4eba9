#include "host/process_end.h"

#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <cstring>
#include <system_error>

namespace zelhost {

std::string how_it_ended(int status) {
  if (WIFSIGNALED(status)) {
    const int number = WTERMSIG(status);
    const char* const name = sigdescr_np(number);
    return "killed by signal " + std::to_string(number) + " (" +
           (name == nullptr ? "unknown" : name) + ")";
  }
  return "the process ended with status " + std::to_string(WEXITSTATUS(status));
}

Descriptor end_of(pid_t child) {
  Descriptor end(static_cast<int>(syscall(SYS_pidfd_open, child, 0)));
  if (end.is_open()) return end;
  const int why = errno;
  end_group(child);
  throw std::system_error(why, std::generic_category(), "pidfd_open");
}

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

}  // namespace zelhost
