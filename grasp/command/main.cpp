#include <csignal>
#include <iostream>

#include "grasp/batch/guarded.h"
#include "grasp/command/failure.h"
#include "grasp/command/options.h"
#include "grasp/command/road.h"
#include "grasp/command/single.h"
#include "host/standard_output.h"

namespace {

using grasp::command::BatchOptions;
using grasp::command::Options;
using grasp::command::RandomOptions;
using grasp::command::SingleOptions;

int carry_out(const Options& options) {
  if (const auto* const single = std::get_if<SingleOptions>(&options.what)) {
    const grasp::Road road = find_road(options);
    return grasp::run_guarded([&](const std::filesystem::path& home) {
      return answer_single(*single, options, road, home);
    });
  }
  return 0;
}

}  // namespace

int main(int argc, char** argv) {
  // Beyond the largest size of files a write fails, and is no end of the program.
  std::signal(SIGXFSZ, SIG_IGN);
  zelhost::open_missing_descriptors();
  return grasp::command::report_failures([&] {
    const auto parsed = grasp::command::parse_command_line(argc, argv);
    zelhost::print(std::cout, [&parsed](std::ostream& out) { out << parsed.output; });
    std::cerr << parsed.error;
    return parsed.options ? carry_out(*parsed.options) : parsed.status;
  });
}
