// The benchmarks of one program, none of which has a time when its work fails.
#pragma once

#include <benchmark/benchmark.h>

#include <functional>
#include <string>

namespace bench {

class Suite {
 public:
  /// @param body may throw: its benchmark is then reported as an error, without any
  ///   number, and the suite has failed.
  benchmark::internal::Benchmark* add(const std::string& name,
                                      std::function<void(benchmark::State&)> body);

  /// Runs those that the arguments choose.
  /// @return the status of the program: 0, 1 if any benchmark failed, 2 for wrong usage.
  int run(int argc, char** argv);

 private:
  bool failed_ = false;
};

}  // namespace bench
