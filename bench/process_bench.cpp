// A whole solve of four contacts, from writing the definition to the parsed
// result, against starting an empty static program through the same shell.
// Since every solve starts the command anew, that is the least it can cost.
//
// Each goal for "ratio" stands beside it.
#include <benchmark/benchmark.h>

#include <cstdlib>
#include <exception>
#include <functional>
#include <iostream>

#include "bench/compare.h"
#include "bench/four_contacts.h"
#include "tests/support/test_folder.h"
#include "unit/sdpsol_wrapper.h"

namespace {

using bench::Grasp;

// One question with its driver, whose definition every round runs again.
struct Case {
  const char* name;
  double goal;
  std::function<void(sdpsol_wrapper&, const Grasp&)> ask;
  bool failed = false;
  test_support::TestFolder folder = {};
  sdpsol_wrapper solver = {"'" SDPSOL_COMMAND "'", folder.path("definition"),
                           folder.path("result")};
};

void solve(benchmark::State& state, Case& run) {
  bench::compare(
      state, bench::wall_seconds, [&] { run.failed = run.solver.run() != 0 || run.failed; },
      [&] { run.failed = std::system(EMPTY_PROCESS) != 0 || run.failed; });
  state.counters["goal"] = run.goal;
}

}  // namespace

int main(int argc, char** argv) try {
  Case cases[] = {
      {"exists", 3,
       [](sdpsol_wrapper& solver, const Grasp& g) {
         solver.internalForceExists(g.base, g.types, g.friction, g.bounds);
       }},
      {"individual", 4.5,
       [](sdpsol_wrapper& solver, const Grasp& g) {
         solver.internalForceMaximizeIndividual(g.base, g.types, g.friction, g.bounds,
                                                {0, 1, 2, 3});
       }},
      {"friction", 4.5,
       [](sdpsol_wrapper& solver, const Grasp& g) {
         solver.internalForceMaximizeFrictionContacts(g.base, g.types, g.friction, g.bounds,
                                                      nullptr);
       }},
      {"all", 4.5,
       [](sdpsol_wrapper& solver, const Grasp& g) {
         solver.internalForceMaximizeAll(g.base, g.types, g.friction, g.bounds, nullptr);
       }},
      {"point", 4.5, [](sdpsol_wrapper& solver, const Grasp& g) {
         solver.internalForceMaximizePointContact(g.base, g.types, g.friction, g.bounds, 0);
       }}};
  for (Case& run : cases) {
    // Composes the definition; a time for a grasp without forces would mean nothing.
    run.ask(run.solver, bench::four_contacts());
    run.failed = run.solver.lastResult.errorCode != 0 || !run.solver.lastResult.feasible;
    if (run.failed) continue;
    benchmark::RegisterBenchmark(run.name, [&run](benchmark::State& state) { solve(state, run); })
        ->UseManualTime()
        ->Iterations(500)
        ->Unit(benchmark::kMillisecond);
  }
  benchmark::Initialize(&argc, argv);
  if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 2;
  benchmark::RunSpecifiedBenchmarks();

  int failures = 0;
  for (const Case& run : cases) {
    if (!run.failed) continue;
    std::cerr << "process_bench: " << run.name << ": a run failed or found no internal force\n";
    ++failures;
  }
  return failures == 0 ? 0 : 1;
} catch (const std::exception& error) {
  std::cerr << "process_bench: " << error.what() << "\n";
  return 1;
}
