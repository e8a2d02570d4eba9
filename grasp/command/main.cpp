#include <iostream>

#include "grasp/batch/grasp_line.h"
#include "grasp/batch/random_grasps.h"
#include "grasp/command/options.h"
#include "grasp/command/road.h"
#include "grasp/command/single.h"
#include "grasp/process/guarded.h"
#include "host/program.h"
#include "host/standard_output.h"

namespace {

using grasp::BatchOptions;
using grasp::command::Options;
using grasp::command::RandomOptions;
using grasp::command::SingleOptions;

void print_random(const RandomOptions& options, std::ostream& out) {
  grasp::RandomGrasps grasps(options.seed, options.contacts);
  for (std::uint64_t i = 0; i < options.count; ++i)
    zelhost::print(out, [&grasps](std::ostream& line) { line << grasps.next() << '\n'; });
}

int carry_out(const Options& options) {
  if (const auto* const single = std::get_if<SingleOptions>(&options.what)) {
    const grasp::Road road = find_road(options);
    return grasp::run_guarded([&](const std::filesystem::path& home) {
      return answer_single(*single, options, road, home);
    });
  }
  if (const auto* const batch = std::get_if<BatchOptions>(&options.what))
    return run_batch(*batch, answer_grasps(find_road(options), options.asked), std::cerr);
  print_random(std::get<RandomOptions>(options.what), std::cout);
  return zelhost::kExitDone;
}

}  // namespace

int main(int argc, char** argv) {
  return zelhost::run_program(
      "grasp", [&] { return grasp::command::parse_command_line(argc, argv); }, carry_out);
}
