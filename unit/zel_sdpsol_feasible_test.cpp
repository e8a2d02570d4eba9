// The method "Is_Feasible": what is cut out of its array, and when it refuses.
#include <gtest/gtest.h>
#include <sys/mman.h>

#include <numeric>
#include <string>

#include "unit/plugin_fixture.h"

namespace {

using namespace unit_test;

constexpr const char* kWarning =
    "sdpsol warning: is_feasible could not be executed because of wrong input dimensions.\n";

class IsFeasible : public PluginTest {
 protected:
  void set(float count, const Floats& values, float strict = 1) {
    RecordingHost::set_float(unit_, 0, 0, count);
    RecordingHost::set_array(unit_, 1, values);
    RecordingHost::set_float(unit_, 2, 0, strict);
  }

  // The definition that comes of it.
  std::string ask(float count, const Floats& values, float strict = 1) {
    driver_of(unit_).definition = "from before";
    set(count, values, strict);
    fire(unit_);
    return driver_of(unit_).definition;
  }

  void expect_refused() {
    driver_of(unit_).definition = "from before";
    driver_of(unit_).lastResult = {0, true, 5.0, {"old"}, {1.0}, 1};
    fire_anyhow(unit_);
    EXPECT_EQ(packets_, Packets{kWarning});
    EXPECT_EQ(said_, "");
    EXPECT_EQ(driver_of(unit_).definition, "from before");
    expect_same_result(driver_of(unit_).lastResult, {100, false, 0.0, {}, {}, 0});
    EXPECT_EQ(shown_on(unit_), (Shown{0, 0, 100, {}}));
    EXPECT_TRUE(calls_.ends_with("zel_reassign(Is_Feasible, 1, 0, 0, array)\n")) << calls_;
    EXPECT_FALSE(std::filesystem::exists(dir_.path("sdpsol.in")));
    EXPECT_EQ(get_result(root_), (Shown{0, 0, 100, {}}));
  }

  void expect_refused(float count, const Floats& values) {
    SCOPED_TRACE(std::to_string(count) + " matrices of " + std::to_string(values.size()) +
                 " values");
    set(count, values);
    expect_refused();
  }

  static Floats counting(std::size_t count) {
    Floats values(count);
    std::iota(values.begin(), values.end(), 0.0F);
    return values;
  }

  def_unittype* root_ = answering(kFeasible);
  def_unittype* unit_ = find(root_, "Is_Feasible");
};

constexpr std::string_view kTwoOfThree =
    "P0=[0,1,2;3,4,5;6,7,8];\n"
    "P1=[9,10,11;12,13,14;15,16,17];\n"
    "variable x1;\n"
    "P=P0+P1*x1;\n"
    "P>0;\n";

TEST_F(IsFeasible, CutsTheArrayMatrixAfterMatrixRowAfterRow) {
  EXPECT_EQ(ask(2, counting(18)), kTwoOfThree);
  EXPECT_EQ(content_of(dir_.path("sdpsol.in")), kTwoOfThree);
}

TEST_F(IsFeasible, LeavesOutWhatIsTooMuchForWholeMatrices) {
  EXPECT_EQ(ask(2, counting(20)), kTwoOfThree);
  EXPECT_EQ(ask(2, counting(31)), kTwoOfThree);
  EXPECT_EQ(ask(1, counting(3)), "P0=[0];\nP=P0;\nP>0;\n");
}

TEST_F(IsFeasible, TakesOneValueForEachOfTwo) {
  EXPECT_EQ(ask(2, {5, 7}), "P0=[5];\nP1=[7];\nvariable x1;\nP=P0+P1*x1;\nP>0;\n");
}

TEST_F(IsFeasible, TruncatesTheNumberOfMatrices) {
  EXPECT_EQ(ask(2.7F, {5, 7, 9}), ask(2, {5, 7}));
  EXPECT_EQ(ask(1.5F, {5, 7}), "P0=[5];\nP=P0;\nP>0;\n");
}

TEST_F(IsFeasible, WantsAtLeastAsManyValuesAsTheNumberBeforeItIsTruncated) {
  expect_refused(2.7F, {5, 7});
  expect_refused(1.5F, {5});
}

TEST_F(IsFeasible, ComposesWhatTheDriverComposesOfTheSameMatrices) {
  const Floats values{0.1F, -0.0F, 1e-30F, kInfinity, -kInfinity, kNan, 16777216, 1e30F};
  const std::vector<double> d(values.begin(), values.end());
  sdpsol_wrapper twin("true", dir_.path("twin.in"), dir_.path("answer"));
  twin.isFeasible({{{d[0], d[1]}, {d[2], d[3]}}, {{d[4], d[5]}, {d[6], d[7]}}}, true);
  EXPECT_EQ(ask(2, values), twin.definition);
}

TEST_F(IsFeasible, IsStrictUnlessAskedNotToBe) {
  const std::string strict = "P0=[1];\nP=P0;\nP>0;\n";
  const std::string plain = "P0=[1];\nP=P0;\nP>=0;\n";
  EXPECT_EQ(ask(1, {1}, 0.0F), plain);
  EXPECT_EQ(ask(1, {1}, -0.0F), plain);
  const float tiny = std::numeric_limits<float>::denorm_min();
  for (const float flag : {1.0F, -1.0F, 0.001F, tiny, -tiny, kInfinity, -kInfinity, kNan}) {
    EXPECT_EQ(ask(1, {1}, flag), strict) << flag;
  }
}

TEST_F(IsFeasible, RefusesANumberOfMatricesThatIsNotPositive) {
  for (const float count : {0.0F, -0.0F, -1.0F, -0.5F, -1e30F, -kInfinity, kNan}) {
    expect_refused(count, {1, 2, 3});
    fire_anyhow(unit_);
    EXPECT_EQ(calls_, "zel_reassign(Is_Feasible, 1, 0, 0, array)\n") << "the length was asked for";
  }
}

TEST_F(IsFeasible, RefusesLessThanOneMatrix) {
  for (const float count : {0.5F, 0.999F, std::numeric_limits<float>::denorm_min()}) {
    expect_refused(count, {1});
    expect_refused(count, {});
  }
}

TEST_F(IsFeasible, RefusesMoreMatricesThanValues) {
  expect_refused(3, {1, 2});
  expect_refused(4, {1, 2, 3});
  expect_refused(1, {});
  expect_refused(1e20F, {1});
  expect_refused(kInfinity, {1});
}

TEST_F(IsFeasible, RefusesANegativeLength) {
  for (const int length : {-1, std::numeric_limits<int>::min()}) {
    set(1, {1});
    RecordingHost::claim_length(unit_, 1, length);
    expect_refused();
  }
}

TEST_F(IsFeasible, RefusesAnArrayThatWasNeverSet) {
  RecordingHost::set_float(unit_, 0, 0, 1);
  expect_refused();
}

TEST_F(IsFeasible, PublishesTheRunAsGetResultDoes) {
  answer_with("*** Objective value\nobjective = 3.25\n\n*** Variables\nx1 = 0.5\n\nx2 = 0.1\n\n");
  ask(1, {1});
  const Shown expected{1, 3.25F, 0, {0.5F, 0.1F}};
  EXPECT_EQ(shown_on(unit_), expected);
  EXPECT_EQ(calls_,
            "zel_dim_of_dyn_inp(Is_Feasible, 1, 0)\n"
            "zel_reassign(Is_Feasible, 1, 0, 2, array)\n");
  const std::vector<Floats> all_else{{1.0F, 3.25F, 0.0F}};
  EXPECT_EQ(host_.floats_at_hand_overs, all_else);
  EXPECT_EQ(get_result(root_), expected);
}

TEST_F(IsFeasible, PublishesAnInfeasibleResult) {
  answer_with(kInfeasible);
  ask(1, {1});
  EXPECT_EQ(shown_on(unit_), (Shown{0, 0, 0, {}}));
}

TEST_F(IsFeasible, ReplacesParametersSetBefore) {
  def_unittype* const parameters = find(root_, "General:Set_Params");
  fire(parameters);
  EXPECT_EQ(ask(1, {1}), "P0=[1];\nP=P0;\nP>0;\n");
}

TEST_F(IsFeasible, RecoversAfterARefusal) {
  expect_refused(0, {});
  EXPECT_EQ(ask(2, counting(18)), kTwoOfThree);
  EXPECT_EQ(shown_on(unit_), (Shown{1, 0, 0, {1}}));
}

// Single precision rounds 4098*4098-1 up to 4098*4098, so the matrix has one
// entry more than the array, whose end is the end of readable memory.
TEST_F(IsFeasible, NeverReadsBehindALengthThatRoundsUp) {
  constexpr std::size_t side = 4098;
  constexpr std::size_t length = side * side - 1;
  RecordingHost::set_float(unit_, 0, 0, 1);
  RecordingHost::set_array(unit_, 1, Floats(length));
  RecordingHost::set_float(unit_, 2, 0, 1);
  fire(unit_);
  const std::string& text = driver_of(unit_).definition;
  const std::string end = ",1];\nP=P0;\nP>0;\n";
  ASSERT_EQ(text.size(), 4 + (2 * side * side - 1) + end.size() - 2);
  EXPECT_EQ(text.substr(text.size() - end.size()), end);
  std::size_t at = 4;
  for (std::size_t entry = 0; entry < length; ++entry, at += 2) {
    const bool row_ends = (entry + 1) % side == 0;
    ASSERT_TRUE(text[at] == '0' && text[at + 1] == (row_ends ? ';' : ',')) << entry;
  }
}

}  // namespace
