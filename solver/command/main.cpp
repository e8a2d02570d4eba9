#include <unistd.h>

#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <new>

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

}  // namespace

int main(int argc, char** argv) {
  std::atexit(report_exit_inside_engine);
  // Beyond the largest size of files a write fails, and that is reported.
  std::signal(SIGXFSZ, SIG_IGN);
  try {
    const sdpsol::ParsedCommandLine parsed = sdpsol::parse_command_line(argc, argv);
    std::fputs(parsed.output.c_str(), stdout);
    std::fputs(parsed.error.c_str(), stderr);
    if (!parsed.options) return parsed.status;
    return sdpsol::run(*parsed.options);
  } catch (const std::bad_alloc&) {
    std::fputs("sdpsol: out of memory\n", stderr);
  } catch (const std::exception& error) {
    std::fprintf(stderr, "sdpsol: internal error: %s\n", error.what());
  }
  return sdpsol::kExitInternal;
}
