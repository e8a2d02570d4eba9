// The library behind the reference engine prints nothing and reads nothing; what the
// engine shares with every other is in engine_contract_test.cpp.
#include "solver/engine/csdp_engine.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <string>

#include "solver/engine/cones/test_cones.h"

namespace sdpsol {
namespace {

using testing::kOne;
using testing::kSmallestEigenvalue;
using testing::smallest_eigenvalue;

Candidate solved_by_csdp(const ConeProgram& program, const Limits& limits = {}) {
  return make_csdp_engine()->solve(program, limits, {});
}

/// What is written to descriptor 1 while it lives.
class CapturedOutput {
 public:
  CapturedOutput() : file_(std::tmpfile()), saved_(dup(1)) {
    std::fflush(stdout);
    dup2(fileno(file_), 1);
  }
  long end() {
    std::fflush(stdout);
    dup2(saved_, 1);
    close(saved_);
    std::fseek(file_, 0, SEEK_END);
    const long size = std::ftell(file_);
    std::fclose(file_);
    return size;
  }

 private:
  std::FILE* file_;
  int saved_;
};

TEST(CsdpEngine, PrintsNothing) {
  CapturedOutput output;
  solved_by_csdp(smallest_eigenvalue());
  solved_by_csdp({1, {1}, {{1, {{0, 0, 0, 1}}}}, {}});
  solved_by_csdp({1, {1}, {{1, {{0, 0, kOne, -1}, {0, 0, 0, 1}}}, {1, {{0, 0, 0, -1}}}}, {}});
  solved_by_csdp(smallest_eigenvalue(), {.max_iterations = 1});
  EXPECT_EQ(output.end(), 0);
}

TEST(CsdpEngine, ReadsNoParametersFromTheWorkingDirectory) {
  const auto before = std::filesystem::current_path();
  const auto folder =
      std::filesystem::temp_directory_path() / ("csdp_engine_test." + std::to_string(getpid()));
  std::filesystem::create_directory(folder);
  std::filesystem::current_path(folder);
  std::ofstream("param.csdp") << "axtol=1.0e-1\natytol=1.0e-1\nobjtol=1.0e-1\npinftol=1.0e8\n"
                                 "dinftol=1.0e8\nmaxiter=1\nminstepfrac=0.9\nmaxstepfrac=0.97\n"
                                 "minstepp=1.0e-8\nminstepd=1.0e-8\nusexzgap=1\ntweakgap=0\n"
                                 "affine=0\nprintlevel=5\nperturbobj=1\nfastmode=0\n";
  CapturedOutput output;
  const Candidate candidate = solved_by_csdp(smallest_eigenvalue());
  const long printed = output.end();
  std::filesystem::current_path(before);
  std::filesystem::remove_all(folder);
  EXPECT_EQ(printed, 0);
  EXPECT_EQ(candidate.reason, StopReason::kConverged);
  EXPECT_NEAR(candidate.last.point[0], kSmallestEigenvalue, 1e-7);
}

}  // namespace
}  // namespace sdpsol
