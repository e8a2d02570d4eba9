// A solve of four contacts against starting an empty static program through the same
// shell. Since every solve starts the command anew, that is the least it can cost.
//
//   process/QUESTION   the command alone; goal for "ratio": 1.5
//   driver/QUESTION    from writing the definition to the parsed result
#include <cstdlib>
#include <exception>
#include <functional>
#include <iostream>
#include <stdexcept>
#include <string>

#include "bench/compare.h"
#include "bench/four_contacts.h"
#include "bench/suite.h"
#include "tests/support/test_folder.h"
#include "unit/sdpsol_wrapper.h"

namespace {

using bench::Grasp;
using Ask = std::function<void(sdpsol_wrapper&, const Grasp&)>;

enum class Work { kProcess, kDriver };

// The driver keeps the definition of the question, which every round runs again.
void solve(benchmark::State& state, const Ask& ask, Work work) {
  const test_support::TestFolder folder;
  sdpsol_wrapper solver("'" SDPSOL_COMMAND "'", folder.path("definition"), folder.path("result"));
  ask(solver, bench::four_contacts());
  bool failed = solver.lastResult.errorCode != 0 || !solver.lastResult.feasible;
  if (failed) throw std::runtime_error("a run failed or found no internal force");
  const std::string command = "'" SDPSOL_COMMAND "' -q -o '" + folder.path("result") + "' '" +
                              folder.path("definition") + "'";
  const auto run_process = [&] { failed = std::system(command.c_str()) != 0 || failed; };
  const auto run_driver = [&] {
    failed = solver.run() != 0 || !solver.lastResult.feasible || failed;
  };
  const auto run_empty = [&] { failed = std::system(EMPTY_PROCESS) != 0 || failed; };
  if (work == Work::kProcess) {
    bench::compare(state, bench::wall_seconds, run_process, run_empty);
    state.counters["goal"] = 1.5;
  } else {
    bench::compare(state, bench::wall_seconds, run_driver, run_empty);
  }
  if (failed) throw std::runtime_error("a run failed or found no internal force");
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
    for (const Work work : {Work::kProcess, Work::kDriver}) {
      const std::string kind = work == Work::kProcess ? "process/" : "driver/";
      suite
          .add(kind + question.name,
               [ask = question.ask, work](benchmark::State& state) { solve(state, ask, work); })
          ->UseManualTime()
          ->Iterations(500)
          ->Unit(benchmark::kMillisecond);
    }
  }
  return suite.run(argc, argv);
} catch (const std::exception& error) {
  std::cerr << "process_bench: " << error.what() << "\n";
  return 1;
}
