#include "grasp/batch/batch_progress.h"

#include <gtest/gtest.h>

#include "grasp/batch/tally.h"

namespace grasp {
namespace {

TEST(BatchProgressLine, TellsRateAndRemainingTime) {
  const BatchState state = {1000, 25'000, 0, 100'000};
  EXPECT_EQ(batch_progress_line(state, 4, 79), "1000 grasps  25 %  250.0 per second  0:12 left");
  EXPECT_EQ(batch_progress_line(state, 4000, 79),
            "1000 grasps  25 %  0.3 per second  3:20:00 left");
}

TEST(BatchProgressLine, CountsForTheRateOnlyWhatThisRunHasDone) {
  const BatchState state = {10, 500, 90'000, 1000};
  EXPECT_EQ(batch_progress_line(state, 5, 79), "90010 grasps  50 %  2.0 per second  0:05 left");
}

TEST(BatchProgressLine, KnowsNoRemainingTimeOfAStream) {
  EXPECT_EQ(batch_progress_line({10, 500, 0, {}}, 5, 79), "10 grasps  2.0 per second");
}

TEST(BatchProgressLine, BeginsWithNothingDone) {
  EXPECT_EQ(batch_progress_line({0, 0, 0, 1000}, 0, 79), "0 grasps  0 %");
}

TEST(BatchProgressLine, IsNotWiderThanTheTerminal) {
  EXPECT_EQ(batch_progress_line({1000, 25'000, 0, 100'000}, 4, 12), "1000 grasps ");
}

TEST(Tally, SumsUp) {
  Tally tally;
  EXPECT_EQ(tally.summary(), "0 grasps");
  tally.count("FEASIBLE");
  EXPECT_EQ(tally.summary(), "1 grasp: 1 FEASIBLE");
  tally.count_error();
  tally.count("INFEASIBLE");
  tally.count("FEASIBILITY CANNOT BE DETERMINED");
  EXPECT_EQ(tally.summary(),
            "4 grasps: 1 FEASIBLE, 1 INFEASIBLE, 1 FEASIBILITY CANNOT BE DETERMINED, 1 line with "
            "an error");
  tally.count_error();
  EXPECT_EQ(tally.errors(), 2U);
}

}  // namespace
}  // namespace grasp
