// Whole runs of sdpsol against whole runs of the commands csdp and sdpa, one thread each.
//
//   contacts/N/exists   against both on the exported margin problem
//   contacts/N/all      against both on the exported problem
//                       "faster" is the time of the faster of the two over ours; goals
//                       5, 20 and 30 for 20, 60 and 100 contacts
//   sdplib/NAME         floor: csdp on the file; "ratio", goal 1.2. "before" is our time
//                       over that with --engine csdp; goal 1 (where that folder is present)
//   four_contacts/...   no floor: where the time of each of the five questions goes, from
//                       the run's own JSON
//
// "csdp" and "sdpa" are their seconds; sdpa has none where it finds no optimum.
#include <sys/wait.h>

#include <algorithm>
#include <cstdlib>
#include <exception>
#include <filesystem>
#include <iostream>
#include <nlohmann/json.hpp>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include "bench/compare.h"
#include "bench/four_contacts.h"
#include "bench/many_contacts.h"
#include "bench/suite.h"
#include "tests/support/test_folder.h"
#include "unit/sdpsol_compose.h"

namespace {

namespace fs = std::filesystem;
using test_support::TestFolder;

/// @return the exit code, or -1.
int status_of(const std::string& command) {
  const int status = std::system((command + " >/dev/null 2>&1").c_str());
  return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

void run(const std::string& command) {
  if (status_of(command) != 0) throw std::runtime_error("failed: " + command);
}

std::string sdpsol(const std::string& arguments) {
  return "'" SDPSOL_COMMAND "' -q " + arguments;
}

std::string csdp(const std::string& file) {
  return "csdp '" + file + "'";
}

std::string sdpa(const std::string& file, const TestFolder& folder) {
  return "sdpa -ds '" + file + "' -o '" + folder.path("sdpa.out") + "'";
}

/// Whether sdpa says that it has found a point of the problem and one of the dual, which
/// is all that it says near an optimum of size 0.
bool sdpa_succeeded(const TestFolder& folder) {
  const std::string printed = test_support::content_of(folder.path("sdpa.out"));
  const auto at = printed.find("phase.value");
  const std::string phase = at == std::string::npos ? "" : printed.substr(at, 30);
  return phase.find("pdOPT") != std::string::npos || phase.find("pdFEAS") != std::string::npos;
}

/// @return what sdpsol says of the input.
std::string verdict_of(const std::string& input, const TestFolder& folder) {
  run(sdpsol("-o '" + folder.path("result") + "' --json '" + folder.path("json") + "' '" + input +
             "'"));
  const auto result = nlohmann::json::parse(test_support::content_of(folder.path("json")));
  return result.at("verdict").get<std::string>();
}

double seconds_of(const auto& call) {
  const double start = bench::wall_seconds();
  call();
  return bench::wall_seconds() - start;
}

struct Size {
  int contacts;
  double goal;
  int rounds;
};

void contacts(benchmark::State& state, const Size& size, bench::Question question) {
  const TestFolder folder;
  const std::string input =
      folder.file("definition", bench::many_contacts(size.contacts, question));
  const std::string problem = folder.path("problem.dat-s");
  const bool exists = question == bench::Question::kExists;
  run(sdpsol("--check " + std::string(exists ? "--export-sdpa-margin" : "--export-sdpa") + " '" +
             problem + "' '" + input + "'"));
  if (verdict_of(input, folder) != "FEASIBLE") throw std::runtime_error("no internal force");

  std::vector<double> ours;
  std::vector<double> csdp_times;
  std::vector<double> sdpa_times;
  bool sdpa_counts = true;
  for ([[maybe_unused]] auto iteration : state) {
    ours.push_back(
        seconds_of([&] { run(sdpsol("-o '" + folder.path("result") + "' '" + input + "'")); }));
    csdp_times.push_back(seconds_of([&] { run(csdp(problem)); }));
    sdpa_times.push_back(seconds_of([&] { run(sdpa(problem, folder)); }));
    sdpa_counts = sdpa_counts && sdpa_succeeded(folder);
    state.SetIterationTime(ours.back());
  }
  double floor = bench::median(csdp_times);
  state.counters["csdp"] = floor;
  if (sdpa_counts) {
    state.counters["sdpa"] = bench::median(sdpa_times);
    floor = std::min(floor, bench::median(sdpa_times));
  }
  state.counters["faster"] = floor / bench::median(ours);
  state.counters["goal"] = size.goal;
}

void published(benchmark::State& state, const std::string& file) {
  const TestFolder folder;
  if (verdict_of(file, folder) == "FEASIBILITY CANNOT BE DETERMINED") {
    throw std::runtime_error("undetermined");
  }
  const std::string ours = "-o '" + folder.path("result") + "' '" + file + "'";
  std::vector<double> by_csdp;
  bench::compare(
      state, bench::wall_seconds, [&] { run(sdpsol(ours)); },
      [&] {
        // 1 and 2 are what it calls infeasible.
        const int status = status_of(csdp(file));
        if (status < 0 || status > 2) throw std::runtime_error("csdp failed");
      },
      [&] { by_csdp.push_back(seconds_of([&] { run(sdpsol("--engine csdp " + ours)); })); });
  const double floor = state.counters["floor"];
  state.counters["csdp"] = floor;
  state.counters["before"] = state.counters["ratio"] * floor / bench::median(by_csdp);
  run(sdpa(file, folder));
  if (!sdpa_succeeded(folder)) return;
  state.counters["sdpa"] = seconds_of([&] { run(sdpa(file, folder)); });
}

void four_contacts(benchmark::State& state, const std::string& definition) {
  const TestFolder folder;
  const std::string input = folder.file("definition", definition);
  if (verdict_of(input, folder) != "FEASIBLE") throw std::runtime_error("no internal force");
  const std::string plain = sdpsol("-o '" + folder.path("result") + "' '" + input + "'");
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

std::vector<std::pair<std::string, std::string>> five_questions() {
  const bench::Grasp grasp = bench::four_contacts();
  const sdpsol_internal::Grasp data{grasp.base, grasp.types, grasp.friction, grasp.bounds};
  const std::vector<int> chosen = {0, 1, 2, 3};
  return {{"exists", *sdpsol_internal::compose_exists(data).definition},
          {"individual", *sdpsol_internal::compose_individual(data, chosen).definition},
          {"friction", *sdpsol_internal::compose_friction_contacts(data).definition},
          {"all", *sdpsol_internal::compose_all(data).definition},
          {"point", *sdpsol_internal::compose_point_contact(data, 0).definition}};
}

void add_all(bench::Suite& suite) {
  for (const auto& [name, definition] : five_questions()) {
    suite
        .add("four_contacts/" + name,
             [text = definition](benchmark::State& state) { four_contacts(state, text); })
        ->UseManualTime()
        ->Iterations(300)
        ->Unit(benchmark::kMillisecond);
  }
  for (const Size size : {Size{20, 5, 20}, Size{60, 20, 3}, Size{100, 30, 3}}) {
    for (const auto question : {bench::Question::kExists, bench::Question::kAll}) {
      const bool exists = question == bench::Question::kExists;
      suite
          .add("contacts/" + std::to_string(size.contacts) + (exists ? "/exists" : "/all"),
               [=](benchmark::State& state) { contacts(state, size, question); })
          ->UseManualTime()
          ->Iterations(size.rounds)
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
    suite
        .add("sdplib/" + entry.path().stem().string(),
             [=](benchmark::State& state) { published(state, file); })
        ->UseManualTime()
        ->Iterations(21)
        ->Unit(benchmark::kMillisecond);
  }
}

}  // namespace

int main(int argc, char** argv) try {
  for (const char* command : {"csdp", "sdpa"}) run(std::string("command -v ") + command);
  setenv("OMP_NUM_THREADS", "1", 1);
  setenv("OPENBLAS_NUM_THREADS", "1", 1);
  bench::Suite suite;
  add_all(suite);
  return suite.run(argc, argv);
} catch (const std::exception& error) {
  std::cerr << "solve_bench: " << error.what() << "\n";
  return 1;
}
