#include "grasp/process/guarded.h"

#include <poll.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <csignal>
#include <system_error>

#include "grasp/process/printed_text.h"
#include "grasp/process/scratch_folder.h"
#include "host/descriptor.h"
#include "host/held_signals.h"
#include "host/process_end.h"
#include "host/program.h"

namespace grasp {
namespace {

namespace fs = std::filesystem;

// Waits until the child has ended or is to be ended. @return whether it has.
bool wait_for(const zelhost::Descriptor& child, const zelhost::HeldSignals& signals) {
  for (;;) {
    std::array<pollfd, 2> events = {{{child.get(), POLLIN, 0}, {signals.descriptor(), POLLIN, 0}}};
    if (poll(events.data(), events.size(), -1) < 0) continue;
    if (events[0].revents != 0) return true;
    if (events[1].revents != 0) return false;
  }
}

}  // namespace

int run_guarded(const std::function<int(const fs::path& home)>& work) {
  const fs::path home = fs::current_path();
  const zelhost::HeldSignals signals;
  const ScratchFolder folder;
  flush_all();
  const pid_t child = fork();
  if (child < 0) throw std::system_error(errno, std::generic_category(), "a process");
  if (child == 0) {
    signals.release();
    setpgid(0, 0);
    // It is in the background of its terminal, and prints there nevertheless.
    std::signal(SIGTTOU, SIG_IGN);
    const int status = zelhost::report_failures("grasp", [&] {
      folder.enter();
      return work(home);
    });
    flush_all();
    folder.remove();
    _exit(status);
  }
  setpgid(child, child);
  if (!wait_for(zelhost::end_of(child), signals)) {
    zelhost::end_group(child);
    return 128 + signals.arrived();
  }
  const int status = zelhost::reap_group(child);
  if (WIFEXITED(status)) return WEXITSTATUS(status);
  throw GuardedWorkDied("the process that worked was " + zelhost::how_it_ended(status));
}

}  // namespace grasp
