#include "host/process_end.h"

#include <sys/wait.h>

#include <cstring>

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

}  // namespace zelhost
