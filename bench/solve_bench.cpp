// Whole runs of sdpsol against whole runs of the command csdp, whose library is the
// engine: what reading, structure, checking and writing cost beyond it, and what
// starting from one phase instead of two saves. Beside them the command sdpa.
//
//   contacts/N/exists   floor: csdp on the exported margin problem; goal 1.25
//   contacts/N/all      floor: that, plus csdp on the exported problem; goal 1.25
//   sdplib/NAME         floor: csdp on the file; goal 1.2 (where that folder is present)
//   four_contacts       no floor: where the time goes, from the run's own JSON
//
// The counter "ratio" is what counts; "sdpa" is its time over the same floor.
#include <benchmark/benchmark.h>

#include <cstdlib>
#include <exception>
#include <filesystem>
#include <iostream>
#include <nlohmann/json.hpp>
#include <stdexcept>
#include <string>
#include <vector>

#include "bench/compare.h"
#include "bench/four_contacts.h"
#include "bench/many_contacts.h"
#include "tests/support/test_folder.h"
#include "unit/sdpsol_compose.h"

namespace {

namespace fs = std::filesystem;
using test_support::TestFolder;

void run(const std::string& command) {
  if (std::system((command + " >/dev/null 2>&1").c_str()) != 0) {
    throw std::runtime_error("failed: " + command);
  }
}

/// csdp and sdpa exit with other codes than 0 for what they call infeasible.
void run_any(const std::string& command) {
  [[maybe_unused]] const int status = std::system((command + " >/dev/null 2>&1").c_str());
}

std::string sdpsol(const std::string& arguments) {
  return "'" SDPSOL_COMMAND "' " + arguments;
}

double median_seconds(int rounds, const std::string& command) {
  std::vector<double> times;
  for (int round = 0; round < rounds; ++round) {
    const double start = bench::wall_seconds();
    run_any(command);
    times.push_back(bench::wall_seconds() - start);
  }
  return bench::median(times);
}

/// sdpsol on `input` against csdp on `floors`, one after the other.
void compare_runs(benchmark::State& state, const std::string& input,
                  const std::vector<std::string>& floors) {
  const TestFolder folder;
  std::string sdpa = "{ true";
  for (const std::string& file : floors) {
    sdpa += "; sdpa -ds '" + file + "' -o '" + folder.path("sdpa.out") + "'";
  }
  bench::compare(
      state, bench::wall_seconds,
      [&] { run(sdpsol("-q -o '" + folder.path("result") + "' '" + input + "'")); },
      [&] {
        for (const std::string& file : floors) run_any("csdp '" + file + "'");
      });
  state.counters["sdpa"] = median_seconds(3, sdpa + "; }") / state.counters["floor"];
}

void contacts(benchmark::State& state, int count, bench::Question question) {
  TestFolder folder;
  const std::string input = folder.path("definition");
  test_support::write_file(input, bench::many_contacts(count, question));
  std::vector<std::string> floors = {folder.path("margin.dat-s")};
  std::string exports = "--check --export-sdpa-margin '" + floors[0] + "'";
  if (question == bench::Question::kAll) {
    floors.push_back(folder.path("objective.dat-s"));
    exports += " --export-sdpa '" + floors[1] + "'";
  }
  run(sdpsol(exports + " '" + input + "'"));
  compare_runs(state, input, floors);
}

void four_contacts(benchmark::State& state) {
  TestFolder folder;
  const bench::Grasp grasp = bench::four_contacts();
  test_support::write_file(
      folder.path("definition"),
      *sdpsol_internal::compose_all({grasp.base, grasp.types, grasp.friction, grasp.bounds})
           .definition);
  const std::string plain =
      sdpsol("-q -o '" + folder.path("result") + "' '" + folder.path("definition") + "'");
  const std::string with_json = plain + " --json '" + folder.path("json") + "'";
  std::vector<double> whole;
  std::vector<double> start;
  std::vector<std::vector<double>> parts(5);
  const std::vector<std::string> names = {"reading", "structure", "engine", "checking", "total"};
  for ([[maybe_unused]] auto iteration : state) {
    const double begin = bench::wall_seconds();
    run(plain);
    whole.push_back(bench::wall_seconds() - begin);
    const double empty = bench::wall_seconds();
    run(EMPTY_PROCESS);
    start.push_back(bench::wall_seconds() - empty);
    run(with_json);
    const auto result = nlohmann::json::parse(test_support::content_of(folder.path("json")));
    for (std::size_t i = 0; i < names.size(); ++i) {
      parts[i].push_back(result.at("times").at(names[i]).get<double>());
    }
    state.SetIterationTime(whole.back());
  }
  state.counters["start"] = bench::median(start);
  for (std::size_t i = 0; i < names.size(); ++i) state.counters[names[i]] = bench::median(parts[i]);
  state.counters["whole"] = bench::median(whole);
  state.counters["writing_and_end"] =
      state.counters["whole"] - state.counters["start"] - state.counters["total"];
}

fs::path sdplib() {
  const char* named = std::getenv("SDPSOL_SDPLIB");
  return named != nullptr ? named : SDPSOL_SDPLIB;
}

void register_all() {
  benchmark::RegisterBenchmark("four_contacts", four_contacts)
      ->UseManualTime()
      ->Iterations(300)
      ->Unit(benchmark::kMillisecond);
  for (const int count : {20, 60, 100}) {
    for (const auto question : {bench::Question::kExists, bench::Question::kAll}) {
      const std::string name = "contacts/" + std::to_string(count) +
                               (question == bench::Question::kAll ? "/all" : "/exists");
      benchmark::RegisterBenchmark(
          name.c_str(), [=](benchmark::State& state) { contacts(state, count, question); })
          ->UseManualTime()
          ->Iterations(count == 20 ? 20 : 3)
          ->Unit(benchmark::kMillisecond);
    }
  }
  if (!fs::is_directory(sdplib())) {
    std::cerr << "solve_bench: there is no " << sdplib() << ", its problems are left out\n";
    return;
  }
  for (const auto& entry : fs::directory_iterator(sdplib())) {
    if (entry.path().extension() != ".dat-s") continue;
    const std::string file = entry.path().string();
    const std::string name = "sdplib/" + entry.path().stem().string();
    benchmark::RegisterBenchmark(
        name.c_str(), [=](benchmark::State& state) { compare_runs(state, file, {file}); })
        ->UseManualTime()
        ->Iterations(21)
        ->Unit(benchmark::kMillisecond);
  }
}

}  // namespace

int main(int argc, char** argv) try {
  run("command -v csdp && command -v sdpa");
  register_all();
  benchmark::Initialize(&argc, argv);
  if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 2;
  benchmark::RunSpecifiedBenchmarks();
  return 0;
} catch (const std::exception& error) {
  std::cerr << "solve_bench: " << error.what() << "\n";
  return 1;
}
