// A slice of what liars_soak runs: no lie becomes a verdict that is not true.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>

#include "tests/engines/liar_trial.h"
#include "tests/verdicts/many.h"

namespace sdpsol::testing {
namespace {

TEST(Liars, AreNotBelieved) {
  LiarTally tally;
  LiarTrial trial(1, tally);
  for (std::uint64_t i = 0; i < static_cast<std::uint64_t>(std::max(30, many(100))); ++i) {
    trial.examine(i * kStepThroughFamilies, 3);
  }
  for (const std::string& wrong : tally.wrong) ADD_FAILURE() << "liars_soak: " << wrong;
  // A checker that believes nothing would hide what this is for.
  const std::uint64_t verdicts = tally.claims[static_cast<std::size_t>(Claim::kFeasible)] +
                                 tally.claims[static_cast<std::size_t>(Claim::kInfeasible)];
  EXPECT_GT(verdicts, tally.trials / 3);
  EXPECT_GT(tally.claims[static_cast<std::size_t>(Claim::kNone)], 0U);
  EXPECT_GT(tally.points_accepted, tally.points / 20);
  EXPECT_LT(tally.points_accepted, tally.points);
  EXPECT_GT(tally.weights_accepted, tally.weights / 20);
  EXPECT_LT(tally.weights_accepted, tally.weights);
}

}  // namespace
}  // namespace sdpsol::testing
