// Definitions whose optimum is known on paper, in closed form: reached to a
// millionth, and proven as closely, so that no warning is due.
#include <gtest/gtest.h>

#include <cmath>
#include <filesystem>
#include <numbers>
#include <ostream>
#include <string>
#include <vector>

#include "tests/support/test_folder.h"
#include "tests/verdicts/decide_text.h"

namespace sdpsol::testing {
namespace {

const std::string kFolder = SDPSOL_SOURCE_DIR "/tests/verdicts/known_optima/";

struct Known {
  const char* name;
  double optimum;
};

void PrintTo(const Known& known, std::ostream* out) {
  *out << known.name;
}

const std::vector<Known> kKnown = {
    {"correlation_high", 0.96},
    {"correlation_low", 0.28},
    {"geometric_mean", std::numbers::sqrt2},
    {"largest_eigenvalue", 3 + std::numbers::sqrt3},
    {"line_fit", 1 / std::sqrt(6.0)},
    {"lyapunov_trace", 5.0 / 6},
    {"nearest_semidefinite", 1},
    {"nuclear_norm", std::sqrt(34.0)},
    {"one_sided_tail", 0.2},
    {"pentagon", std::sqrt(5.0)},
    {"petersen", 4},
    {"quartic", 2},
    {"resonance", 4.0 / 3},
    {"ring_cut", 2.5 * (1 + std::cos(std::numbers::pi / 5))},
    {"squeeze", 3},
    {"truss", 6.25},
    {"two_fingers", 10},
    {"two_largest_eigenvalues", 6 + std::numbers::sqrt3},
    {"two_sided_tail", 0.25},
};

class KnownOptima : public ::testing::TestWithParam<Known> {};

TEST_P(KnownOptima, AreReachedAndProven) {
  const std::string text = test_support::content_of(kFolder + GetParam().name + ".def");
  const Outcome outcome = decide_text(text);
  ASSERT_STREQ(word_for(outcome.verdict), "FEASIBLE") << outcome.reason;
  EXPECT_FALSE(outcome.limited_by_box);
  const bool minimize = text.find("minimize") != std::string::npos;
  const double truth = minimize ? -GetParam().optimum : GetParam().optimum;
  EXPECT_NEAR(*outcome.objective, truth, 1e-6 * std::fabs(truth));
  EXPECT_NEAR(*outcome.bound, truth, 1e-6 * std::fabs(truth));
  // The closed form has a rounding of its own.
  EXPECT_GE(*outcome.bound, truth - 1e-14 * std::fabs(truth));
  EXPECT_LE(*outcome.objective, truth + 1e-12 * std::fabs(truth));
}

INSTANTIATE_TEST_SUITE_P(Definitions, KnownOptima, ::testing::ValuesIn(kKnown),
                         [](const auto& suite) { return std::string(suite.param.name); });

TEST(KnownOptimaFolder, HoldsNothingElse) {
  std::size_t files = 0;
  for ([[maybe_unused]] const auto& file : std::filesystem::directory_iterator(kFolder)) ++files;
  EXPECT_EQ(files, kKnown.size());
}

}  // namespace
}  // namespace sdpsol::testing
