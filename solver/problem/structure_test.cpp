// Conditions taken apart into blocks.
#include "solver/problem/structure.h"

#include <gtest/gtest.h>

#include <utility>

namespace sdpsol {
namespace {

AffineTerm term(std::int32_t row, std::int32_t column, std::int32_t unknown, double value) {
  return {row, column, unknown, value, value < 0 ? -value : value};
}

Condition matrix(std::int32_t size, std::vector<AffineTerm> upper) {
  const std::size_t count = upper.size();
  for (std::size_t i = 0; i < count; ++i) {
    AffineTerm mirrored = upper[i];
    std::swap(mirrored.row, mirrored.column);
    if (mirrored.row != mirrored.column) upper.push_back(mirrored);
  }
  return {{size, size, std::move(upper)}, Sense::kStrict, true, {}};
}

Problem built(std::vector<Condition> conditions, std::int32_t unknowns = 3) {
  Model model;
  model.unknown_count = unknowns;
  model.conditions = std::move(conditions);
  return build_problem(model);
}

TEST(BuildProblem, ComponentsKeepTheOrderOfTheText) {
  // indices 0 and 2 belong together, 1 and 3 stand alone
  const Problem problem = built({matrix(4, {term(0, 0, 0, 1), term(1, 1, 1, 2), term(0, 2, 2, 3),
                                            term(2, 2, 0, 4), term(3, 3, 1, 5)})});
  ASSERT_EQ(problem.blocks.size(), 3U);
  EXPECT_EQ(problem.blocks[0].size, 2);
  EXPECT_EQ(problem.blocks[0].terms,
            (std::vector<AffineTerm>{term(0, 0, 0, 1), term(1, 1, 0, 4), term(0, 1, 2, 3)}));
  EXPECT_EQ(problem.blocks[1].size, 1);
  EXPECT_EQ(problem.blocks[1].terms, (std::vector<AffineTerm>{term(0, 0, 1, 2)}));
  EXPECT_EQ(problem.blocks[2].terms, (std::vector<AffineTerm>{term(0, 0, 1, 5)}));
  for (const Block& block : problem.blocks) EXPECT_EQ(block.condition, 0);
}

TEST(BuildProblem, WritesOutReferencesAndAddsUpWhatMeets) {
  // Entry (0,1) is twice the form plus an unknown that the form holds too.
  const std::vector<AffineTerm> upper = {term(0, 0, 2, 1), term(0, 1, 1, 5),
                                         term(0, 1, kFirstForm, -2), term(1, 1, kFirstForm, 1)};
  Model model;
  model.unknown_count = 3;
  model.forms = {{term(0, 0, kConstant, 4), term(0, 0, 1, -3)}};
  model.conditions = {
      matrix(2, upper),
      {{1, 1, {term(0, 0, kConstant, -1), term(0, 0, kFirstForm, -1)}}, {}, {}, {}}};
  const Problem problem = build_problem(model);
  ASSERT_EQ(problem.blocks.size(), 2U);
  EXPECT_EQ(problem.blocks[0].terms,
            (std::vector<AffineTerm>{term(0, 1, kConstant, -8), term(1, 1, kConstant, 4),
                                     term(0, 1, 1, 11), term(1, 1, 1, -3), term(0, 0, 2, 1)}));
  EXPECT_EQ(problem.blocks[1].terms,
            (std::vector<AffineTerm>{term(0, 0, kConstant, -5), term(0, 0, 1, 3)}));
}

TEST(BuildProblem, TakesUnknownsThatAreFarApart) {
  const Problem problem = built({matrix(2, {term(0, 0, 999'999, 1), term(0, 1, 5, 2),
                                            term(1, 1, kConstant, 3), term(1, 1, 999'999, 4)})},
                                1'000'000);
  EXPECT_EQ(problem.blocks[0].terms,
            (std::vector<AffineTerm>{term(1, 1, kConstant, 3), term(0, 1, 5, 2),
                                     term(0, 0, 999'999, 1), term(1, 1, 999'999, 4)}));
}

TEST(BuildProblem, AnIndexWithoutEntriesIsARowThatReadsZero) {
  const Problem problem = built({matrix(2, {term(0, 0, 0, 1)})});
  ASSERT_EQ(problem.blocks.size(), 2U);
  EXPECT_EQ(problem.blocks[1].size, 1);
  EXPECT_TRUE(problem.blocks[1].terms.empty());
}

TEST(BuildProblem, ACancelledEntryStillConnects) {
  AffineTerm cancelled = term(0, 1, 0, 0);
  cancelled.magnitude = 2;
  const Problem problem = built({matrix(2, {term(0, 0, 0, 1), cancelled, term(1, 1, 0, 1)})});
  ASSERT_EQ(problem.blocks.size(), 1U);
  EXPECT_EQ(problem.blocks[0].size, 2);
}

TEST(BuildProblem, OnlyTheUpperTriangleIsKept) {
  const Problem problem =
      built({matrix(2, {term(0, 0, 0, 1), term(0, 1, 0, 2), term(1, 1, 0, 3)})});
  ASSERT_EQ(problem.blocks.size(), 1U);
  EXPECT_EQ(problem.blocks[0].terms,
            (std::vector<AffineTerm>{term(0, 0, 0, 1), term(0, 1, 0, 2), term(1, 1, 0, 3)}));
}

TEST(BuildProblem, ElementsBecomeRowsEmptyOnesToo) {
  const Condition condition{
      {2, 2, {term(0, 1, 0, 1), term(1, 1, kConstant, 7)}}, Sense::kNonStrict, false, {}};
  const Problem problem = built({matrix(1, {term(0, 0, 0, 1)}), condition});
  ASSERT_EQ(problem.blocks.size(), 5U);
  EXPECT_EQ(problem.blocks[0].sense, Sense::kStrict);
  EXPECT_TRUE(problem.blocks[1].terms.empty());
  EXPECT_EQ(problem.blocks[2].terms, (std::vector<AffineTerm>{term(0, 0, 0, 1)}));
  EXPECT_TRUE(problem.blocks[3].terms.empty());
  EXPECT_EQ(problem.blocks[4].terms, (std::vector<AffineTerm>{term(0, 0, kConstant, 7)}));
  for (std::size_t b = 1; b < 5; ++b) {
    EXPECT_EQ(problem.blocks[b].condition, 1);
    EXPECT_EQ(problem.blocks[b].sense, Sense::kNonStrict);
  }
}

TEST(BuildProblem, AMatrixEquationIsTakenElementByElement) {
  Condition condition = matrix(2, {term(0, 0, 0, 1), term(0, 1, 1, 1), term(1, 1, 2, 1)});
  condition.sense = Sense::kEqual;
  const Problem problem = built({condition});
  ASSERT_EQ(problem.blocks.size(), 4U);
  for (const Block& block : problem.blocks) {
    EXPECT_EQ(block.size, 1);
    EXPECT_EQ(block.sense, Sense::kEqual);
  }
}

TEST(BuildProblem, AnEquationSaysNothingWhereItHasNoTerms) {
  Condition condition{
      {10'000, 10'000, {term(0, 1, 0, 1), term(0, 1, 2, -1), term(9'999, 9'999, 1, 2)}},
      Sense::kEqual,
      false,
      {}};
  const Problem problem = built({std::move(condition)});
  ASSERT_EQ(problem.blocks.size(), 2U);
  EXPECT_EQ(problem.blocks[0].terms,
            (std::vector<AffineTerm>{term(0, 0, 0, 1), term(0, 0, 2, -1)}));
  EXPECT_EQ(problem.blocks[1].terms, (std::vector<AffineTerm>{term(0, 0, 1, 2)}));
}

TEST(BuildProblem, AMinimisationIsAMaximisationOfTheOpposite) {
  Model model;
  model.unknown_count = 2;
  model.parameters.big_m = 7;
  model.objective =
      Objective{{1, 1, {term(0, 0, kConstant, -3), term(0, 0, 1, 2)}}, false, "g", {}};
  const Problem minimised = build_problem(model);
  EXPECT_EQ(minimised.big_m, 7);
  EXPECT_EQ(minimised.objective->constant, 3);
  EXPECT_EQ(minimised.objective->constant_magnitude, 3);
  EXPECT_EQ(minimised.objective->cost, (std::vector<double>{0, -2}));
  model.objective->maximize = true;
  EXPECT_EQ(build_problem(model).objective->cost, (std::vector<double>{0, 2}));
}

}  // namespace
}  // namespace sdpsol
