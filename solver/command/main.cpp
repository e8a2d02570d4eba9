// The process around a run: its streams, its signals, its ways to end.
#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <exception>
#include <new>
#include <string>

#include "solver/command/plain_options.h"
#include "solver/command/run.h"

namespace {

/// The engine's library calls exit() where it finds no memory.
void report_exit_inside_engine() {
  if (!sdpsol::ends_inside_engine()) return;
  std::fputs("sdpsol: the engine ended the program, probably out of memory\n", stderr);
  ::_exit(sdpsol::kExitInternal);
}

/// A file that is opened while a standard stream is closed would take the stream's
/// place, and its messages. What is opened here instead fails as a closed one does.
void hold_closed_streams() {
  for (const int stream : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) {
    if (::fcntl(stream, F_GETFD) >= 0) continue;
    ::open("/dev/null", stream == STDIN_FILENO ? O_WRONLY : O_RDONLY);
  }
}

bool print(const std::string& text) {
  errno = 0;
  if (std::fputs(text.c_str(), stdout) >= 0 && std::fflush(stdout) == 0) return true;
  std::fprintf(stderr, "sdpsol: cannot write standard output: %s\n", std::strerror(errno));
  return false;
}

}  // namespace

int main(int argc, char** argv) {
  hold_closed_streams();
  std::atexit(report_exit_inside_engine);
  // A write fails beyond the largest size of files, or into a pipe whose reader has
  // gone, and that is reported.
  std::signal(SIGXFSZ, SIG_IGN);
  std::signal(SIGPIPE, SIG_IGN);
  try {
    const sdpsol::ParsedCommandLine parsed = sdpsol::read_command_line(argc, argv);
    std::fputs(parsed.error.c_str(), stderr);
    if (!parsed.options) return print(parsed.output) ? parsed.status : sdpsol::kExitFile;
    return sdpsol::run(*parsed.options);
  } catch (const std::bad_alloc&) {
    std::fputs("sdpsol: out of memory\n", stderr);
  } catch (const std::exception& error) {
    std::fprintf(stderr, "sdpsol: internal error: %s\n", error.what());
  }
  return sdpsol::kExitInternal;
}
