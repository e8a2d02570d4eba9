// Batches of grasps: what a grasp of four contacts costs in one against starting an
// empty static program through the same shell, what a second worker brings, and whether
// memory grows with the number of grasps.
//
// Goals: "ratio" of one_grasp 2; "ratio" of two_workers, the rate against that of one, 1.7;
// "growth" of memory 1. --grasps=N is the size of the larger batch for memory, which a
// usual run does not take the time for: 100000.
#include <benchmark/benchmark.h>
#include <sys/wait.h>
#include <unistd.h>

#include <charconv>
#include <cstdlib>
#include <fstream>
#include <iostream>
#include <stdexcept>
#include <string>

#include "bench/compare.h"
#include "bench/suite.h"
#include "grasp/batch/batch.h"
#include "grasp/batch/grasp_line.h"
#include "grasp/batch/random_grasps.h"
#include "tests/support/test_folder.h"

namespace {

using test_support::TestFolder;

constexpr std::size_t kContacts = 4;
constexpr std::uint64_t kSeed = 1;
constexpr std::size_t kFewGrasps = 1000;
std::size_t many_grasps = 4000;

const grasp::Road kRoad = {PLUGIN, "'" SDPSOL_COMMAND "'"};

std::string write_batch(const TestFolder& folder, std::size_t count) {
  std::string path = folder.path("grasps" + std::to_string(count));
  std::ofstream out(path);
  grasp::RandomGrasps grasps(kSeed, kContacts);
  for (std::size_t i = 0; i < count; ++i) out << grasps.next() << '\n';
  if (!out.flush()) throw std::runtime_error("cannot write " + path);
  return path;
}

bool answer(const std::string& input, unsigned workers, const grasp::MakeAnswerLine& make) {
  grasp::BatchOptions options;
  options.input = input;
  options.output = input + ".answers";
  options.quiet = true;
  options.workers = workers;
  const bool is_done = grasp::run_batch(options, make, std::cerr) == grasp::kBatchDone;
  return unlink(options.output->c_str()) == 0 && is_done;
}

// With what it costs to start the worker, which is that of one grasp or two.
void one_grasp(benchmark::State& state) {
  constexpr std::size_t kGrasps = 100;
  const TestFolder folder;
  const std::string batch = write_batch(folder, kGrasps);
  const auto make = grasp::answer_grasps(kRoad, {});
  bool failed = false;
  bench::compare(
      state, bench::wall_seconds, [&] { failed = !answer(batch, 1, make) || failed; },
      [&] {
        for (std::size_t i = 0; i < kGrasps; ++i)
          failed = std::system(EMPTY_PROCESS) != 0 || failed;
      });
  if (failed) throw std::runtime_error("a grasp has no answer");
}

void two_workers(benchmark::State& state) {
  const TestFolder folder;
  const std::string batch = write_batch(folder, kFewGrasps);
  const auto make = grasp::answer_grasps(kRoad, {});
  bool failed = false;
  bench::compare(
      state, bench::wall_seconds, [&] { failed = !answer(batch, 1, make) || failed; },
      [&] { failed = !answer(batch, 2, make) || failed; });
  if (failed) throw std::runtime_error("a grasp has no answer");
}

// In kilobytes.
long peak_memory() {
  std::ifstream status("/proc/self/status");
  for (std::string word; status >> word;) {
    long kilobytes = 0;
    if (word == "VmHWM:" && status >> kilobytes) return kilobytes;
  }
  return 0;
}

struct Peaks {
  long main = 0;
  long worker = 0;
};

// The workers leave theirs in a file, from time to time and at the end.
Peaks peaks_of(std::size_t count) {
  const TestFolder folder;
  const std::string batch = write_batch(folder, count);
  const auto make = [&](const grasp::PrintedText& printed) -> grasp::AnswerLine {
    return [&, line_answer = grasp::answer_grasps(kRoad, {})(printed)](std::uint64_t number,
                                                                       const std::string& text) {
      const grasp::LineAnswer said = line_answer(number, text);
      if (number % 100 == 0) std::ofstream(folder.path("worker")) << peak_memory();
      return said;
    };
  };
  // In a process of its own, whose peak nothing else has set.
  const pid_t child = fork();
  if (child == 0) {
    const bool is_done = answer(batch, 1, make);
    std::ofstream(folder.path("main")) << peak_memory();
    _exit(is_done ? 0 : 1);
  }
  int status = 0;
  if (child < 0 || waitpid(child, &status, 0) != child || status != 0)
    throw std::runtime_error("a batch failed");
  return {std::stol(test_support::content_of(folder.path("main"))),
          std::stol(test_support::content_of(folder.path("worker")))};
}

void memory(benchmark::State& state) {
  for ([[maybe_unused]] auto iteration : state) {
    const Peaks few = peaks_of(kFewGrasps);
    const Peaks many = peaks_of(many_grasps);
    state.counters["grasps"] = static_cast<double>(many_grasps);
    state.counters["main_kB"] = static_cast<double>(many.main);
    state.counters["worker_kB"] = static_cast<double>(many.worker);
    state.counters["main_growth"] = static_cast<double>(many.main) / static_cast<double>(few.main);
    state.counters["worker_growth"] =
        static_cast<double>(many.worker) / static_cast<double>(few.worker);
  }
}

// Takes the option that is ours.
void read_options(int& argc, char** argv) {
  constexpr std::string_view kOption = "--grasps=";
  int kept = 0;
  for (int i = 0; i < argc; ++i) {
    const std::string_view word = argv[i];
    if (word.substr(0, kOption.size()) == kOption)
      std::from_chars(word.data() + kOption.size(), word.data() + word.size(), many_grasps);
    else
      argv[kept++] = argv[i];
  }
  argc = kept;
}

}  // namespace

int main(int argc, char** argv) {
  read_options(argc, argv);
  bench::Suite suite;
  suite.add("one_grasp", one_grasp)->UseManualTime()->Iterations(10)->Unit(benchmark::kMillisecond);
  suite.add("two_workers", two_workers)
      ->UseManualTime()
      ->Iterations(3)
      ->Unit(benchmark::kMillisecond);
  suite.add("memory", memory)->Iterations(1)->Unit(benchmark::kMillisecond);
  return suite.run(argc, argv);
}
