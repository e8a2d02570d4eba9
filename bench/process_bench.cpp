// A whole solve of four contacts, from writing the definition to the parsed
// result, against starting an empty static program through the same shell.
// Since every solve starts the command anew, that is the least it can cost.
//
// The goal for "ratio" is 1.5 for each of the five questions.
#include <cstdlib>
#include <exception>
#include <functional>
#include <iostream>
#include <stdexcept>

#include "bench/compare.h"
#include "bench/four_contacts.h"
#include "bench/suite.h"
#include "tests/support/test_folder.h"
#include "unit/sdpsol_wrapper.h"

namespace {

using bench::Grasp;
using Ask = std::function<void(sdpsol_wrapper&, const Grasp&)>;

// The driver keeps the definition of the question, which every round runs again.
void solve(benchmark::State& state, const Ask& ask) {
  const test_support::TestFolder folder;
  sdpsol_wrapper solver("'" SDPSOL_COMMAND "'", folder.path("definition"), folder.path("result"));
  ask(solver, bench::four_contacts());
  bool failed = solver.lastResult.errorCode != 0 || !solver.lastResult.feasible;
  if (failed) throw std::runtime_error("a run failed or found no internal force");
  bench::compare(
      state, bench::wall_seconds,
      [&] { failed = solver.run() != 0 || !solver.lastResult.feasible || failed; },
      [&] { failed = std::system(EMPTY_PROCESS) != 0 || failed; });
  if (failed) throw std::runtime_error("a run failed or found no internal force");
  state.counters["goal"] = 1.5;
}

}  // namespace

int main(int argc, char** argv) try {
  struct {
    const char* name;
    Ask ask;
  } const questions[] = {
      {"exists",
       [](sdpsol_wrapper& solver, const Grasp& g) {
         solver.internalForceExists(g.base, g.types, g.friction, g.bounds);
       }},
      {"individual",
       [](sdpsol_wrapper& solver, const Grasp& g) {
         solver.internalForceMaximizeIndividual(g.base, g.types, g.friction, g.bounds,
                                                {0, 1, 2, 3});
       }},
      {"friction",
       [](sdpsol_wrapper& solver, const Grasp& g) {
         solver.internalForceMaximizeFrictionContacts(g.base, g.types, g.friction, g.bounds,
                                                      nullptr);
       }},
      {"all",
       [](sdpsol_wrapper& solver, const Grasp& g) {
         solver.internalForceMaximizeAll(g.base, g.types, g.friction, g.bounds, nullptr);
       }},
      {"point", [](sdpsol_wrapper& solver, const Grasp& g) {
         solver.internalForceMaximizePointContact(g.base, g.types, g.friction, g.bounds, 0);
       }}};
  bench::Suite suite;
  for (const auto& question : questions) {
    suite.add(question.name, [ask = question.ask](benchmark::State& state) { solve(state, ask); })
        ->UseManualTime()
        ->Iterations(500)
        ->Unit(benchmark::kMillisecond);
  }
  return suite.run(argc, argv);
} catch (const std::exception& error) {
  std::cerr << "process_bench: " << error.what() << "\n";
  return 1;
}
