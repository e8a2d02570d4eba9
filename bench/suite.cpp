#include "bench/suite.h"

#include <exception>
#include <utility>

namespace bench {

benchmark::internal::Benchmark* Suite::add(const std::string& name,
                                           std::function<void(benchmark::State&)> body) {
  return benchmark::RegisterBenchmark(name.c_str(),
                                      [this, body = std::move(body)](benchmark::State& state) {
                                        try {
                                          body(state);
                                        } catch (const std::exception& error) {
                                          failed_ = true;
                                          state.SkipWithError(error.what());
                                        }
                                      });
}

int Suite::run(int argc, char** argv) {
  benchmark::Initialize(&argc, argv);
  if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 2;
  benchmark::RunSpecifiedBenchmarks();
  return failed_ ? 1 : 0;
}

}  // namespace bench
