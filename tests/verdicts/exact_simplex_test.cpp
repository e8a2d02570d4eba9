// The exact simplex against what is known by hand, and against another method.
#include "tests/verdicts/exact_simplex.h"

#include <gtest/gtest.h>

#include <random>

#include "solver/check/test_linear_truth.h"

namespace sdpsol::testing {
namespace {

using enum Sense;
using Kind = RationalOptimum::Kind;

RationalProgram program(std::size_t unknowns, std::vector<RationalRow> rows) {
  return {unknowns, std::move(rows)};
}

bool satisfies(const RationalProgram& program, const std::vector<Rational>& point) {
  for (const RationalRow& row : program.rows) {
    Rational value = row.constant;
    for (std::size_t k = 0; k < point.size(); ++k) value += row.coefficients[k] * point[k];
    if (row.sense == kEqual ? value != 0 : value < 0) return false;
    if (row.sense == kStrict && value == 0) return false;
  }
  return true;
}

TEST(ExactSimplex, TellsStrictFromNonStrict) {
  EXPECT_TRUE(has_exact_solution(program(1, {{{1}, 0, kNonStrict}, {{-1}, 0, kNonStrict}})));
  EXPECT_FALSE(has_exact_solution(program(1, {{{1}, 0, kStrict}, {{-1}, 0, kNonStrict}})));
  EXPECT_FALSE(has_exact_solution(program(1, {{{1}, 0, kStrict}, {{-1}, 0, kStrict}})));
}

TEST(ExactSimplex, SeesGapsOfAnySize) {
  const Rational tiny("1/1000000000000000000000000000000");
  EXPECT_TRUE(has_exact_solution(program(1, {{{1}, 0, kStrict}, {{-1}, tiny, kStrict}})));
  EXPECT_FALSE(has_exact_solution(program(1, {{{1}, 0, kNonStrict}, {{-1}, -tiny, kNonStrict}})));
}

TEST(ExactSimplex, KnowsConstants) {
  EXPECT_TRUE(has_exact_solution(program(0, {})));
  EXPECT_TRUE(has_exact_solution(program(0, {{{}, 1, kStrict}, {{}, 0, kEqual}})));
  EXPECT_FALSE(has_exact_solution(program(0, {{{}, 0, kStrict}})));
  EXPECT_FALSE(has_exact_solution(program(2, {{{0, 0}, 1, kEqual}})));
}

TEST(ExactSimplex, HoldsEquations) {
  // x + y == 1, x - y == 0
  const auto point = exact_solution(
      program(2, {{{1, 1}, -1, kEqual}, {{1, -1}, 0, kEqual}, {{1, 0}, 5, kStrict}}));
  ASSERT_TRUE(point);
  EXPECT_EQ((*point)[0], Rational(1, 2));
  EXPECT_EQ((*point)[1], Rational(1, 2));
  // redundant, contradictory
  EXPECT_TRUE(has_exact_solution(program(2, {{{1, 1}, -1, kEqual}, {{3, 3}, -3, kEqual}})));
  EXPECT_FALSE(has_exact_solution(program(2, {{{1, 1}, -1, kEqual}, {{3, 3}, -4, kEqual}})));
}

TEST(ExactSimplex, FindsTheOptimumOfABook) {
  // maximise 5x + 4y + 3z: 2x+3y+z <= 5, 4x+y+2z <= 11, 3x+4y+2z <= 8, all >= 0: 13 at (2,0,1)
  const RationalOptimum optimum = maximise_exactly(program(3, {{{-2, -3, -1}, 5, kNonStrict},
                                                               {{-4, -1, -2}, 11, kNonStrict},
                                                               {{-3, -4, -2}, 8, kNonStrict},
                                                               {{1, 0, 0}, 0, kNonStrict},
                                                               {{0, 1, 0}, 0, kNonStrict},
                                                               {{0, 0, 1}, 0, kNonStrict}}),
                                                   {5, 4, 3});
  ASSERT_EQ(optimum.kind, Kind::kReached);
  EXPECT_EQ(optimum.value, 13);
  EXPECT_EQ(optimum.point, (std::vector<Rational>{2, 0, 1}));
}

TEST(ExactSimplex, EndsWhereOtherRulesRunInCircles) {
  // Beale's: maximise 3/4 a - 150 b + 1/50 c - 6 d, 1/20 at (1/25, 0, 1, 0)
  const RationalOptimum optimum =
      maximise_exactly(program(4, {{{Rational(-1, 4), 60, Rational(1, 25), -9}, 0, kNonStrict},
                                   {{Rational(-1, 2), 90, Rational(1, 50), -3}, 0, kNonStrict},
                                   {{0, 0, -1, 0}, 1, kNonStrict},
                                   {{1, 0, 0, 0}, 0, kNonStrict},
                                   {{0, 1, 0, 0}, 0, kNonStrict},
                                   {{0, 0, 1, 0}, 0, kNonStrict},
                                   {{0, 0, 0, 1}, 0, kNonStrict}}),
                       {Rational(3, 4), -150, Rational(1, 50), -6});
  ASSERT_EQ(optimum.kind, Kind::kReached);
  EXPECT_EQ(optimum.value, Rational(1, 20));
}

TEST(ExactSimplex, SaysWhereThereIsNoBoundOrNoPoint) {
  EXPECT_EQ(maximise_exactly(program(1, {{{1}, 0, kNonStrict}}), {1}).kind, Kind::kUnbounded);
  EXPECT_EQ(maximise_exactly(program(1, {{{1}, 0, kNonStrict}}), {-1}).kind, Kind::kReached);
  EXPECT_EQ(maximise_exactly(program(1, {{{1}, -1, kNonStrict}, {{-1}, 0, kNonStrict}}), {1}).kind,
            Kind::kInfeasible);
  EXPECT_EQ(maximise_exactly(with_box(program(2, {}), 7), {1, -2}).value, 21);
}

TEST(ExactSimplex, MeasuresRoomAgainstTheSizesOfTheTerms) {
  // 1 < x < 1 + g has room r at the middle if g/2 > r * (2 + g/2)
  const auto between = [](const Rational& gap) {
    return program(1, {{{1}, -1, kStrict}, {{-1}, 1 + gap, kStrict}});
  };
  const Rational share(1, 1000);
  EXPECT_TRUE(has_exact_solution(with_room(between(Rational(5, 1000)), share)));
  EXPECT_FALSE(has_exact_solution(with_room(between(Rational(4, 1000)), share)));
  EXPECT_TRUE(has_exact_solution(with_room(program(1, {{{1}, -1, kEqual}}), share)));
}

TEST(ExactSimplex, AgreesWithEliminationOfTheUnknowns) {
  std::mt19937 random(401);
  const auto uniform = [&](int from, int to) {
    return std::uniform_int_distribution<int>(from, to)(random);
  };
  int feasible = 0;
  for (int round = 0; round < 1000; ++round) {
    const std::size_t unknowns = static_cast<std::size_t>(uniform(1, 4));
    std::vector<ExactRow> rows(static_cast<std::size_t>(uniform(1, 6)));
    RationalProgram same{unknowns, {}};
    for (ExactRow& row : rows) {
      RationalRow rational{std::vector<Rational>(unknowns), 0, kStrict};
      for (std::size_t k = 0; k < unknowns; ++k) {
        rational.coefficients[k] = static_cast<int>(row.coefficients[k] = uniform(-3, 3));
      }
      rational.constant = static_cast<int>(row.constant = uniform(0, 1) * uniform(-3, 3));
      constexpr Sense kSenses[] = {kStrict, kStrict, kNonStrict, kNonStrict, kEqual};
      rational.sense = row.sense = kSenses[uniform(0, 4)];
      same.rows.push_back(std::move(rational));
    }
    const auto point = exact_solution(same);
    ASSERT_EQ(point.has_value(), exactly_feasible(rows)) << "round " << round;
    if (!point) continue;
    ++feasible;
    ASSERT_TRUE(satisfies(same, *point)) << "round " << round;
  }
  EXPECT_GT(feasible, 200);
  EXPECT_LT(feasible, 800);
}

}  // namespace
}  // namespace sdpsol::testing
