#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <exception>
#include <new>
#include <string>

#include "solver/command/options.h"
#include "solver/command/run.h"

namespace {

/// The engine's library calls exit() where it finds no memory. No result file has
/// been written at that point; what is left to do is to say so.
void report_exit_inside_engine() {
  if (!sdpsol::engine_is_running()) return;
  std::fputs("sdpsol: the engine ended the program, probably out of memory\n", stderr);
  ::_exit(sdpsol::kExitInternal);
}

bool print(const std::string& text) {
  errno = 0;
  if (std::fputs(text.c_str(), stdout) >= 0 && std::fflush(stdout) == 0) return true;
  std::fprintf(stderr, "sdpsol: cannot write standard output: %s\n", std::strerror(errno));
  return false;
}

}  // namespace

int main(int argc, char** argv) {
  std::atexit(report_exit_inside_engine);
  // Beyond the largest size of files a write fails, and that is reported.
  std::signal(SIGXFSZ, SIG_IGN);
  try {
    const sdpsol::ParsedCommandLine parsed = sdpsol::parse_command_line(argc, argv);
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
