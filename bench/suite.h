// The benchmarks of one program, none of which has a time when its work fails.
#pragma once

#include <benchmark/benchmark.h>

#include <functional>
#include <string>
#include <vector>

namespace bench {

class Suite {
 public:
  /// @param body may throw: its benchmark is then reported as an error, without any
  ///   number, and the suite has failed.
  benchmark::internal::Benchmark* add(const std::string& name,
                                      std::function<void(benchmark::State&)> body);

  /// Runs those that the arguments choose; after `--once` each of them a single time, which
  /// shows whether it works and measures little.
  /// @return the status of the program: 0, 1 if any benchmark failed, 2 for wrong usage,
  ///   which choosing none is as well.
  int run(int argc, char** argv);

 private:
  std::vector<benchmark::internal::Benchmark*> added_;
  bool failed_ = false;
};

}  // namespace bench
