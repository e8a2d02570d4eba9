#include "bench/suite.h"

#include <algorithm>
#include <exception>
#include <string_view>
#include <utility>

namespace bench {

benchmark::internal::Benchmark* Suite::add(const std::string& name,
                                           std::function<void(benchmark::State&)> body) {
  added_.push_back(benchmark::RegisterBenchmark(
      name.c_str(), [this, body = std::move(body)](benchmark::State& state) {
        try {
          body(state);
        } catch (const std::exception& error) {
          failed_ = true;
          state.SkipWithError(error.what());
        }
      }));
  return added_.back();
}

int Suite::run(int argc, char** argv) {
  const auto is_once = [](const char* word) { return std::string_view(word) == "--once"; };
  char** const rest = std::remove_if(argv, argv + argc, is_once);
  if (rest != argv + argc) {
    argc = static_cast<int>(rest - argv);
    for (auto* each : added_) each->Iterations(1);
  }
  benchmark::Initialize(&argc, argv);
  if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 2;
  if (benchmark::RunSpecifiedBenchmarks() == 0) return 2;
  return failed_ ? 1 : 0;
}

}  // namespace bench
