#include "host/command/interrupts.h"

#include <fcntl.h>
#include <sys/socket.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <cerrno>
#include <climits>
#include <csignal>
#include <initializer_list>

namespace zelrun {
namespace {

sigset_t watched_signals() {
  sigset_t signals;
  sigemptyset(&signals);
  sigaddset(&signals, SIGINT);
  sigaddset(&signals, SIGQUIT);
  return signals;
}

bool is_ignored(int signal) {
  struct sigaction action {};
  return sigaction(signal, nullptr, &action) == 0 && action.sa_handler == SIG_IGN;
}

// The process that notices: with its signals blocked, those that came are pending. For
// every byte it is sent, it answers with the number of one. It ends when nobody is left
// who could ask.
[[noreturn]] void notice(int socket) {
  dup2(socket, STDIN_FILENO);
  close_range(STDIN_FILENO + 1, UINT_MAX, 0);
  unsigned char byte = 0;
  while (recv(STDIN_FILENO, &byte, 1, 0) == 1) {
    sigset_t pending;
    sigemptyset(&pending);
    sigpending(&pending);
    byte = 0;
    for (const int signal : {SIGINT, SIGQUIT})
      if (sigismember(&pending, signal) == 1) byte = static_cast<unsigned char>(signal);
    if (send(STDIN_FILENO, &byte, 1, MSG_NOSIGNAL) != 1) break;
  }
  _exit(0);
}

}  // namespace

void end_by(int signal) {
  std::signal(signal, SIG_DFL);
  std::raise(signal);
  // Blocked from the start: the status is what a shell would make of it.
  _exit(128 + signal);
}

InterruptWatch::InterruptWatch() {
  if (is_ignored(SIGINT)) return;
  int ends[2] = {-1, -1};
  if (socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, ends) != 0) return;
  const sigset_t watched = watched_signals();
  sigset_t before;
  sigprocmask(SIG_BLOCK, &watched, &before);
  // A fork, but without a signal at its end, which takes it out of what wait() waits for.
  const long child = syscall(SYS_clone, 0L, 0L, 0L, 0L, 0L);
  if (child == 0) notice(ends[1]);
  sigprocmask(SIG_SETMASK, &before, nullptr);
  // Not in the place of a standard output that is closed: plug-ins would print into it.
  if (child > 0) socket_ = zelhost::Descriptor(fcntl(ends[0], F_DUPFD_CLOEXEC, STDERR_FILENO + 1));
  close(ends[0]);
  close(ends[1]);
}

int InterruptWatch::noticed() const {
  unsigned char byte = 0;
  if (send(socket_.get(), &byte, 1, MSG_NOSIGNAL) != 1) return 0;
  ssize_t got = 0;
  do got = recv(socket_.get(), &byte, 1, 0);
  while (got < 0 && errno == EINTR);
  return got == 1 ? byte : 0;
}

}  // namespace zelrun
