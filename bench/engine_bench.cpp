// The engine alone, in this process: what it takes inside of a whole decision, its
// search for structure in the problem included, as the command has it.
//
//   contacts/N   against cvxopt's cone solver, at its quickest, on the same second-order
//                cones; "faster" is the floor over ours, goal 5. "faster_converged" is the
//                same where our engine, as the other, goes on to its full accuracy.
//   growth       engine time per byte of text, over that of the fewest contacts, the
//                search for structure left aside: goal at most 1. "structure" is its share.
//
// Both engines must find the same margin.
#include <chrono>
#include <cmath>
#include <cstdlib>
#include <exception>
#include <iostream>
#include <memory>
#include <sstream>
#include <stdexcept>
#include <string>
#include <vector>

#include "bench/compare.h"
#include "bench/many_contacts.h"
#include "bench/second_order.h"
#include "bench/suite.h"
#include "solver/decide/decide.h"
#include "solver/engine/cones/range_system.h"
#include "solver/engine/cones_engine.h"
#include "solver/engine/watched_engine.h"
#include "solver/exchange/exported_programs.h"
#include "solver/language/reader.h"
#include "solver/problem/structure.h"
#include "tests/support/test_folder.h"

namespace {

using sdpsol::ConeProgram;
using sdpsol::Problem;

std::unique_ptr<sdpsol::Engine> make_engine() {
  return sdpsol::make_cones_engine();
}

// What the engine does before its first step, and throws away here.
void find_structure(const ConeProgram& program) {
  const sdpsol::cones::Layout layout(program);
  if (!sdpsol::cones::RangeSystem::make(layout, program.objective)) {
    throw std::runtime_error("no structure was found");
  }
}

double seconds_of(const auto& call) {
  const double start = bench::wall_seconds();
  call();
  return bench::wall_seconds() - start;
}

// Finds the structure once more when the other engine is done, outside of its time.
class StructureTwice final : public sdpsol::Engine {
 public:
  explicit StructureTwice(sdpsol::Engine& engine) : engine_(engine) {}

  std::string_view name() const override { return engine_.name(); }
  sdpsol::Candidate solve(const ConeProgram& program, const sdpsol::Limits& limits,
                          const sdpsol::Observer& observer) override {
    sdpsol::Candidate candidate = engine_.solve(program, limits, observer);
    structure_ += seconds_of([&] { find_structure(program); });
    return candidate;
  }
  double structure() const { return structure_; }

 private:
  sdpsol::Engine& engine_;
  double structure_ = 0;
};

Problem problem_of(const std::string& text) {
  const sdpsol::Source source("grasp", text);
  sdpsol::Diagnostics diagnostics;
  const auto model = sdpsol::read_definition(source, diagnostics);
  if (!model) throw std::runtime_error("the definition is refused");
  return sdpsol::build_problem(*model);
}

struct EngineTime {
  double whole = 0;
  double structure = 0;  ///< part of it
};

EngineTime time_of_decision(const Problem& problem) {
  const auto engine = make_engine();
  sdpsol::EngineLog log;
  sdpsol::WatchedEngine watched(*engine, log, {});
  StructureTwice twice(watched);
  if (decide(problem, twice, {}).verdict != sdpsol::Verdict::kFeasible) {
    throw std::runtime_error("no internal force was found");
  }
  return {std::chrono::duration<double>(log.inside).count(), twice.structure()};
}

// The best margin, as far as the engine gets.
double best_margin(const ConeProgram& program) {
  const auto candidate = make_engine()->solve(program, {}, {});
  if (candidate.reason != sdpsol::StopReason::kConverged) {
    throw std::runtime_error("the engine did not converge");
  }
  return candidate.last.value;
}

struct Cvxopt {
  double seconds = 0;
  double margin = 0;
  std::string matrix;
  std::string solver;
};

Cvxopt cvxopt(const test_support::TestFolder& folder, const std::string& arguments) {
  const std::string command = "/usr/bin/python3 '" CVXOPT_CONES "' " + arguments;
  if (std::system((command + " >'" + folder.path("printed") + "'").c_str()) != 0) {
    throw std::runtime_error("failed: " + command);
  }
  std::istringstream printed(test_support::content_of(folder.path("printed")));
  Cvxopt result;
  if (!(printed >> result.seconds >> result.margin >> result.matrix >> result.solver)) {
    throw std::runtime_error("not understood: " + printed.str());
  }
  return result;
}

void against_cvxopt(benchmark::State& state, int contacts) {
  const Problem problem = problem_of(bench::many_contacts(contacts, bench::Question::kExists));
  const ConeProgram program = sdpsol::margin_program_of(problem);
  const test_support::TestFolder folder;
  const std::string file = folder.file("cones", bench::second_order_text(program));
  const Cvxopt quickest = cvxopt(folder, file);
  const double margin = best_margin(program);
  if (!(std::fabs(margin - quickest.margin) <= 1e-6)) {
    std::ostringstream message;
    message.precision(10);
    message << "margins differ: " << margin << " and " << quickest.margin << " of cvxopt";
    throw std::runtime_error(message.str());
  }

  const std::string again = file + " " + quickest.matrix + " " + quickest.solver;
  std::vector<double> ours;
  std::vector<double> converged;
  std::vector<double> floor;
  for ([[maybe_unused]] auto iteration : state) {
    ours.push_back(time_of_decision(problem).whole);
    converged.push_back(seconds_of([&] { best_margin(program); }));
    floor.push_back(cvxopt(folder, again).seconds);
    state.SetIterationTime(ours.back());
  }
  state.SetLabel(quickest.matrix + " " + quickest.solver);
  state.counters["goal"] = 5;
  state.counters["faster"] = bench::median(floor) / bench::median(ours);
  state.counters["faster_converged"] = bench::median(floor) / bench::median(converged);
  state.counters["cvxopt"] = bench::median(floor);
  state.counters["engine"] = bench::median(ours);
}

struct Size {
  explicit Size(int number_of_contacts) : contacts(number_of_contacts) {
    const std::string definition = bench::many_contacts(contacts, bench::Question::kExists);
    text = static_cast<double>(definition.size());
    problem = problem_of(definition);
  }

  int contacts = 0;
  double text = 0;  ///< bytes
  Problem problem;
  std::vector<double> whole;
  std::vector<double> structure;

  double share() const { return bench::median(structure) / bench::median(whole); }
  double steps() const { return bench::median(whole) - bench::median(structure); }
};

void growth(benchmark::State& state, const std::vector<int>& contacts) {
  std::vector<Size> sizes;
  for (const int count : contacts) sizes.emplace_back(count);
  for ([[maybe_unused]] auto iteration : state) {
    for (Size& size : sizes) {
      const EngineTime time = time_of_decision(size.problem);
      size.whole.push_back(time.whole);
      size.structure.push_back(time.structure);
    }
    state.SetIterationTime(sizes.back().whole.back());
  }
  const Size& least = sizes.front();
  for (const Size& size : sizes) {
    const auto counter = [&](const std::string& name) -> benchmark::Counter& {
      return state.counters[name + "/" + std::to_string(size.contacts)];
    };
    counter("engine") = bench::median(size.whole);
    counter("text") = size.text;
    counter("structure") = size.share();
    counter("growth") = (size.steps() / least.steps()) / (size.text / least.text);
  }
}

}  // namespace

int main(int argc, char** argv) try {
  // One thread for each, so that work is compared with work.
  setenv("OMP_NUM_THREADS", "1", 1);
  setenv("OPENBLAS_NUM_THREADS", "1", 1);
  bench::Suite suite;
  for (const int count : {60, 100}) {
    suite
        .add("contacts/" + std::to_string(count),
             [=](benchmark::State& state) { against_cvxopt(state, count); })
        ->UseManualTime()
        ->Iterations(5)
        ->Unit(benchmark::kMillisecond);
  }
  suite.add("growth",
            [](benchmark::State& state) {
              growth(state, {50, 100, 200, 400});
            })
      ->UseManualTime()
      ->Iterations(5)
      ->Unit(benchmark::kMillisecond);
  return suite.run(argc, argv);
} catch (const std::exception& error) {
  std::cerr << "engine_bench: " << error.what() << "\n";
  return 1;
}
