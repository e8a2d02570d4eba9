// A library of problems with published optima, where it is present: SDPSOL_SDPLIB
// names its folder, in the environment or when the build is configured. Skipped,
// and shown as skipped, where it is not.
#include <gtest/gtest.h>

#include <cmath>
#include <cstdlib>
#include <filesystem>
#include <ostream>
#include <string>

#include "solver/decide/decide.h"
#include "solver/engine/csdp_engine.h"
#include "solver/engine/engine_memory.h"
#include "solver/exchange/sdpa_reader.h"
#include "solver/problem/structure.h"
#include "tests/support/test_folder.h"
#include "tests/verdicts/decide_text.h"

namespace sdpsol::testing {
namespace {

namespace fs = std::filesystem;

fs::path folder() {
  const char* named = std::getenv("SDPSOL_SDPLIB");
  return named != nullptr ? named : SDPSOL_SDPLIB;
}

struct Published {
  const char* name;
  double minimum;     ///< of the problem as it is read
  double last_digit;  ///< one unit in the last digit that is published, or agreed on
  /// What may lie between the optimum and its proven bound.
  double gap = last_digit;
};

void PrintTo(const Published& published, std::ostream* out) {
  *out << published.name;
}

Outcome decide_file(const fs::path& path) {
  const Source source(path.string(), test_support::content_of(path.string()));
  Diagnostics diagnostics;
  const auto model = read_sdpa(source, diagnostics);
  if (!model) {
    ADD_FAILURE() << diagnostics.render(source);
    return {};
  }
  reserve_engine_memory();
  const auto engine = make_csdp_engine();
  return decide(build_problem(*model), *engine,
                {.max_iterations = model->parameters.max_iterations});
}

class PublishedOptimum : public ::testing::TestWithParam<Published> {};

TEST_P(PublishedOptimum, IsReachedToThePublishedDigitsAndProven) {
  const fs::path path = folder() / (std::string(GetParam().name) + ".dat-s");
  if (!fs::exists(path)) GTEST_SKIP() << "there is no " << path;
  const Outcome outcome = decide_file(path);
  ASSERT_STREQ(word_for(outcome.verdict), "FEASIBLE") << outcome.reason;
  ASSERT_TRUE(outcome.objective && outcome.bound);
  EXPECT_FALSE(outcome.limited_by_box);
  EXPECT_NEAR(-*outcome.objective, GetParam().minimum, GetParam().last_digit);
  EXPECT_NEAR(-*outcome.bound, GetParam().minimum, GetParam().gap);
  EXPECT_GE(*outcome.bound, *outcome.objective);
}

// Published values follow the library's own sign; these are the minima as read.
INSTANTIATE_TEST_SUITE_P(
    Sdplib, PublishedOptimum,
    ::testing::Values(Published{"truss1", -8.999996, 1e-6}, Published{"truss3", -9.109996, 1e-6},
                      Published{"control1", 17.78463, 1e-5}, Published{"control2", 8.3, 1e-6},
                      Published{"theta1", 23, 1e-5}, Published{"mcp100", 226.1574, 1e-4},
                      // Its multipliers have no interior: what is left of a balance that
                      // no computed one reaches is charged to a box.
                      Published{"gpp100", -44.9435, 1e-4, 0.1},
                      // Ill-conditioned: two to three digits agree.
                      Published{"hinf1", 2.0326, 0.01}, Published{"arch0", 0.566517, 1e-6}),
    [](const auto& suite) { return std::string(suite.param.name); });

TEST(PublishedVerdict, Infp1IsInfeasible) {
  const fs::path path = folder() / "infp1.dat-s";
  if (!fs::exists(path)) GTEST_SKIP() << "there is no " << path;
  const Outcome outcome = decide_file(path);
  EXPECT_STREQ(word_for(outcome.verdict), "INFEASIBLE") << outcome.reason;
}

TEST(PublishedVerdict, Infd1IsFeasibleAndWithoutBound) {
  const fs::path path = folder() / "infd1.dat-s";
  if (!fs::exists(path)) GTEST_SKIP() << "there is no " << path;
  const Outcome outcome = decide_file(path);
  EXPECT_STREQ(word_for(outcome.verdict), "FEASIBLE") << outcome.reason;
  EXPECT_TRUE(outcome.limited_by_box);
}

}  // namespace
}  // namespace sdpsol::testing
