// liars_soak: engines that lie, and a checker that is offered points and weights which are
// nearly right, on as many random problems as there is patience for. The ordinary tests
// run a slice of it.
//
//   liars_soak --count 100000        what was tried, what was accepted, and what is wrong
//   liars_soak --from 4711 --count 1 one problem again; engines_soak --show 4711 writes it
//
// Exits with 0 if nothing wrong was believed, 1 if something was, 2 over wrong usage.
#include <CLI/CLI.hpp>
#include <cstdio>
#include <exception>
#include <iostream>

#include "solver/engine/engine_memory.h"
#include "tests/engines/liar_trial.h"

namespace {

using namespace sdpsol::testing;  // NOLINT: a program of its own

int run_command(int argc, char** argv) {
  CLI::App app{"Lets engines lie about random problems.", "liars_soak"};
  std::uint32_t seed = 1;
  std::uint64_t from = 0;
  std::uint64_t count = 10000;
  int lies = 5;
  app.add_option("--count", count, "How many problems")
      ->capture_default_str()
      ->check(CLI::PositiveNumber);
  app.add_option("--seed", seed, "Another stream of problems")->capture_default_str();
  app.add_option("--from", from, "The number of the first one")->capture_default_str();
  app.add_option("--lies", lies, "Liars at each problem")->capture_default_str();
  try {
    app.parse(argc, argv);
  } catch (const CLI::ParseError& e) {
    return app.exit(e) == 0 ? 0 : 2;
  }
  sdpsol::reserve_engine_memory();
  LiarTally tally;
  LiarTrial trial(seed, tally);
  for (std::uint64_t index = from; index < from + count; ++index) {
    trial.examine(index, lies);
    if (tally.problems % 10000 == 0) std::cerr << tally.problems << " of " << count << " done\n";
  }
  tally.print(std::cout);
  return tally.all_wrong == 0 ? 0 : 1;
}

}  // namespace

int main(int argc, char** argv) {
  try {
    return run_command(argc, argv);
  } catch (const std::exception& e) {
    std::fprintf(stderr, "liars_soak: %s\n", e.what());
    return 1;
  }
}
