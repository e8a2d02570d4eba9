// engines_soak: the engine under test against the reference on as many random problems
// as there is patience for. The ordinary tests run a slice of them.
//
//   engines_soak --count 1000000 --jobs 2    a table by family, and what is wrong
//   engines_soak --from 4711 --count 1       one problem again
//   engines_soak --reordered                 how well the reference agrees with itself
//   engines_soak --show 4711 >x.def          the problem itself
//
// Exits with 0 if every bound is kept, 1 if one is broken, 2 over wrong usage.
#include <CLI/CLI.hpp>
#include <cstdio>
#include <exception>
#include <iostream>
#include <optional>
#include <string>

#include "solver/engine/engine_memory.h"
#include "solver/exchange/exported_programs.h"
#include "solver/exchange/sdpa_writer.h"
#include "tests/engines/definition_text.h"
#include "tests/engines/soak_workers.h"

namespace {

using namespace sdpsol;           // NOLINT: a program of its own
using namespace sdpsol::testing;  // NOLINT

void show(std::uint32_t seed, std::uint64_t index, bool as_sdpa) {
  const Problem problem = engine_problem(seed, index).problem;
  std::cout << (as_sdpa ? sdpa_text(cone_program_of(problem), cone_program_comment(problem))
                        : definition_text(problem));
}

int run(const SoakRange& range) {
  constexpr std::uint64_t kStep = 10000;
  const Tally tally = soak(range, [&](std::uint64_t done) {
    if (done % kStep == 0) std::cerr << done << " of " << range.count << " done\n";
  });
  std::cout << "seed " << range.seed << ", problems " << range.from << " to "
            << range.from + range.count - 1 << "\n\n";
  tally.print_classes(std::cout);
  std::cout << '\n';
  tally.print_table(std::cout);
  tally.print_failures(std::cout);
  const auto broken = tally.broken_bounds();
  for (const std::string& bound : broken) std::cout << "BROKEN: " << bound << '\n';
  if (broken.empty()) std::cout << "every bound is kept\n";
  return broken.empty() ? 0 : 1;
}

int run_command(int argc, char** argv) {
  CLI::App app{"Holds two engines against each other on random problems.", "engines_soak"};
  SoakRange range;
  std::optional<std::uint64_t> shown;
  bool as_sdpa = false;
  app.add_option("--count", range.count, "How many problems")
      ->capture_default_str()
      ->check(CLI::PositiveNumber);
  app.add_option("--seed", range.seed, "Another stream of problems")->capture_default_str();
  app.add_option("--from", range.from, "The number of the first one")->capture_default_str();
  app.add_option("--jobs", range.jobs, "Processes")
      ->capture_default_str()
      ->check(CLI::Range(1, 256));
  app.add_flag("--reordered", range.reference_reordered,
               "Test the reference itself, with unknowns and cones in another order");
  app.add_option("--patience", range.seconds_per_problem, "Seconds for one problem")
      ->capture_default_str();
  app.add_option("--show", shown, "Write this problem as a definition, solve nothing");
  app.add_flag("--sdpa", as_sdpa, "Write it in the SDPA sparse format instead");
  try {
    app.parse(argc, argv);
  } catch (const CLI::ParseError& e) {
    return app.exit(e) == 0 ? 0 : 2;
  }
  reserve_engine_memory();
  if (!shown) return run(range);
  show(range.seed, *shown, as_sdpa);
  return 0;
}

}  // namespace

int main(int argc, char** argv) {
  try {
    return run_command(argc, argv);
  } catch (const std::exception& e) {
    std::fprintf(stderr, "engines_soak: %s\n", e.what());
    return 1;
  }
}
