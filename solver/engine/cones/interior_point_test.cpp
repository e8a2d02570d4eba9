// The method, in the unknowns and in the forces alike: what it ends with can be checked
// without it.
#include "solver/engine/cones/interior_point.h"

#include <gtest/gtest.h>

#include "solver/engine/cones/range_system.h"
#include "solver/engine/cones/test_candidates.h"
#include "solver/engine/cones/test_contacts.h"
#include "solver/engine/cones/variable_system.h"

namespace sdpsol::cones {
namespace {

using Eigen::Index;
using Eigen::MatrixXd;
using Eigen::VectorXd;
using testing::arrow;
using testing::as_vector;
using testing::Contacts;
using testing::contacts_program;
using testing::dense;
using testing::expect_optimal;
using testing::Form;
using testing::kOne;
using testing::matrix;
using testing::Numbers;
using testing::row;

// Where rounding ends the way of larger problems, this is taken for solved.
constexpr double kWhereRoundingEnds = 1e-6;

enum class In { kUnknowns, kForces };

class InteriorPoint : public ::testing::TestWithParam<In> {
 protected:
  static Candidate solved(const ConeProgram& program, const Observer& observer = {},
                          const Limits& limits = {}) {
    const Layout layout(program);
    std::unique_ptr<NewtonSystem> system;
    if (GetParam() == In::kForces) {
      system = RangeSystem::make(layout, program.objective);
    } else {
      system = std::make_unique<VariableSystem>(layout, program.objective);
    }
    if (!system) throw std::logic_error("no range of forces");
    return solve_interior(layout, *system, multiplier_offsets(program.cones), limits, observer);
  }

  /// Programs of this shape that the system is made for.
  static std::vector<ConeProgram> shapes(Numbers& numbers) {
    std::vector<ConeProgram> shapes;
    for (const Contacts& kind : testing::kinds_of_contacts()) {
      shapes.push_back(contacts_program(numbers, kind));
    }
    for (const std::int32_t unknowns : {1, 2, 3, 7}) shapes.push_back(numbers.mixture(unknowns));
    if (GetParam() == In::kForces)
      std::erase_if(shapes, [](const ConeProgram& program) {
        return !RangeSystem::make(Layout(program), program.objective);
      });
    return shapes;
  }
};

std::string name_of(const ::testing::TestParamInfo<In>& in) {
  return in.param == In::kForces ? "InForces" : "InUnknowns";
}
INSTANTIATE_TEST_SUITE_P(, InteriorPoint, ::testing::Values(In::kUnknowns, In::kForces), name_of);

/// Cones without their constants, which are `h` instead.
void set_constants(ConeProgram& program, const VectorXd& h) {
  const Layout layout(program);
  for (auto& cone : program.cones) {
    std::erase_if(cone.coefficients, [](const auto& c) { return c.unknown == kOne; });
  }
  for (std::size_t r = 0; r < layout.row_cones.size(); ++r) {
    testing::add(program.cones[layout.row_cones[r]], 0, 0, {{kOne, h[static_cast<Index>(r)]}});
  }
  for (const Part& part : layout.parts) {
    const MatrixXd constant = testing::matrix_of(part, h);
    for (std::int32_t j = 0; j < part.order; ++j) {
      for (std::int32_t i = 0; i <= j; ++i) {
        if (constant(i, j) == 0) continue;
        testing::add(program.cones[part.cone], i, j, {{kOne, constant(i, j)}});
      }
    }
  }
}

/// The program with a point and with multipliers inside its cones: an optimum exists.
ConeProgram with_interiors(Numbers& numbers, ConeProgram program) {
  const Layout layout(program);
  const MatrixXd g = dense(layout, program.unknowns);
  const auto well_inside = [&]() -> VectorXd { return numbers.inside(layout) + unit(layout); };
  set_constants(program, well_inside() - g * numbers.vector(program.unknowns));
  const VectorXd objective = -g.transpose() * well_inside();
  program.objective.assign(objective.begin(), objective.end());
  return program;
}

TEST_P(InteriorPoint, FindsTheCornerOfALinearProgram) {
  // x + 2y <= 4, 3x + y <= 6
  const ConeProgram program = testing::program(
      {1, 1}, {row({{kOne, 4}, {0, -1}, {1, -2}}), row({{kOne, 6}, {0, -3}, {1, -1}})});
  const Candidate candidate = solved(program);
  expect_optimal(program, candidate);
  EXPECT_NEAR(candidate.last.value, 2.8, 1e-8);
  EXPECT_NEAR(candidate.last.point[0], 1.6, 1e-8);
  EXPECT_NEAR(candidate.last.point[1], 1.2, 1e-8);
  EXPECT_NEAR(candidate.last.multipliers[0], 0.4, 1e-8);
  EXPECT_NEAR(candidate.last.multipliers[1], 0.2, 1e-8);
}

TEST_P(InteriorPoint, FindsTheFarthestPointOfACircle) {
  // |(x, y)| <= 1 as an arrow, and 2x + y
  const ConeProgram program =
      testing::program({2, 1}, {arrow(2, {{kOne, 1}}, {{{0, 1}}, {{1, 1}}})});
  const Candidate candidate = solved(program);
  expect_optimal(program, candidate);
  EXPECT_NEAR(candidate.last.value, std::sqrt(5.0), 1e-8);
}

TEST_P(InteriorPoint, FindsTheLeastEigenvaluesOfMatrices) {
  const Form two = {{kOne, 2}, {0, -1}};
  const Form three = {{kOne, 3}, {0, -1}};
  const Form four = {{kOne, 4}, {0, -1}};
  const Form one = {{kOne, 1}};
  const ConeProgram second_order = testing::program({1}, {matrix(2, {two, one, three})});
  expect_optimal(second_order, solved(second_order));
  EXPECT_NEAR(solved(second_order).last.value, (5 - std::sqrt(5.0)) / 2, 1e-8);
  const ConeProgram block = testing::program({1}, {matrix(3, {two, one, {}, three, one, four})});
  expect_optimal(block, solved(block));
  EXPECT_NEAR(solved(block).last.value, 3 - std::sqrt(3.0), 1e-8);
}

// Of interiors as thin as these one in twenty ends before its optimum, which is what the
// second engine is for.
TEST_P(InteriorPoint, FindsTheOptimumOfNineMixturesInTen) {
  int optimal = 0;
  int all = 0;
  for (unsigned seed = 1; seed <= 20; ++seed) {
    Numbers numbers(seed);
    for (const ConeProgram& shape : shapes(numbers)) {
      const ConeProgram program = with_interiors(numbers, shape);
      // With an objective of its own a margin is no common unknown, but a wide one.
      if (GetParam() == In::kForces && !RangeSystem::make(Layout(program), program.objective))
        continue;
      ++all;
      if (testing::is_optimal(program, solved(program), kWhereRoundingEnds)) ++optimal;
    }
  }
  EXPECT_GE(all, 80);
  EXPECT_GE(optimal * 10, all * 9);
}

TEST_P(InteriorPoint, FindsTheLargestMarginOfContacts) {
  Numbers numbers(2);
  for (const Contacts& kind : testing::kinds_of_contacts()) {
    if (!kind.with_margin) continue;
    const ConeProgram program = contacts_program(numbers, kind);
    expect_optimal(program, solved(program), kWhereRoundingEnds);
  }
}

TEST_P(InteriorPoint, EveryIterateSaysWhatItsPointAndItsMultipliersAreWorth) {
  Numbers numbers(3);
  for (const ConeProgram& shape : shapes(numbers)) {
    int seen = 0;
    const Candidate candidate = solved(shape, [&](const Iterate& iterate) {
      EXPECT_EQ(iterate.iteration, ++seen);
      const double value = as_vector(shape.objective).dot(as_vector(iterate.point));
      EXPECT_NEAR(iterate.value, value, 1e-9 * (1 + std::fabs(value)));
      const double bound = testing::weighed(shape, iterate)[shape.unknowns];
      EXPECT_NEAR(iterate.bound, bound, 1e-9 * (1 + std::fabs(bound)));
      EXPECT_GE(testing::least_eigenvalue_of_multipliers(shape, iterate),
                -1e-15 * as_vector(iterate.multipliers).norm());
      return false;
    });
    EXPECT_EQ(candidate.last.iteration, seen);
    EXPECT_GT(seen, 2);
  }
}

TEST_P(InteriorPoint, StopsAtTheIterationLimit) {
  Numbers numbers(4);
  const ConeProgram program = contacts_program(numbers, {});
  for (const int limit : {1, 3}) {
    const Candidate candidate = solved(program, {}, {.max_iterations = limit});
    EXPECT_EQ(candidate.reason, StopReason::kIterationLimit);
    EXPECT_EQ(candidate.last.iteration, limit);
  }
}

TEST_P(InteriorPoint, StopsAtTheAccuracyThatIsAsked) {
  Numbers numbers(5);
  const ConeProgram program = contacts_program(numbers, {});
  const Candidate rough = solved(program, {}, {.accuracy = 1e-3});
  const Candidate fine = solved(program);
  EXPECT_EQ(rough.reason, StopReason::kConverged);
  EXPECT_LT(rough.last.iteration, fine.last.iteration);
  const auto gap = [&](const Candidate& c) {
    return std::fabs(testing::weighed(program, c.last)[program.unknowns] / c.last.value - 1);
  };
  EXPECT_LE(gap(rough), 1e-3);
  EXPECT_LE(gap(fine), kWhereRoundingEnds);
}

TEST_P(InteriorPoint, StopsWhenTheObserverIsSatisfied) {
  Numbers numbers(6);
  const ConeProgram program = contacts_program(numbers, {});
  Iterate seen;
  const Candidate candidate = solved(program, [&](const Iterate& iterate) {
    seen = iterate;
    return iterate.iteration == 3;
  });
  EXPECT_EQ(candidate.reason, StopReason::kAccepted);
  EXPECT_EQ(candidate.last.iteration, 3);
  EXPECT_EQ(candidate.last.point, seen.point);
  EXPECT_EQ(candidate.last.multipliers, seen.multipliers);
}

TEST_P(InteriorPoint, IsTheSameEveryTime) {
  Numbers numbers(7);
  const ConeProgram program = contacts_program(numbers, {});
  const Candidate first = solved(program);
  const Candidate second = solved(program);
  EXPECT_EQ(first.last.point, second.last.point);
  EXPECT_EQ(first.last.multipliers, second.last.multipliers);
}

TEST_P(InteriorPoint, SizesOfConesAndObjectiveChangeNoOptimum) {
  Numbers numbers(8);
  const ConeProgram program = contacts_program(numbers, {});
  const double value = solved(program).last.value;
  for (const double factor : {1e-3, 1e3}) {
    ConeProgram scaled = program;
    for (auto& cone : scaled.cones) {
      for (auto& c : cone.coefficients) c.value *= factor;
    }
    EXPECT_NEAR(solved(scaled).last.value, value, 1e-6 * std::fabs(value)) << factor;
    scaled = program;
    for (double& c : scaled.objective) c *= factor;
    EXPECT_NEAR(solved(scaled).last.value, factor * value, 1e-6 * std::fabs(factor * value))
        << factor;
  }
}

TEST_P(InteriorPoint, TellsWhatHasNoPoint) {
  // x >= 1, x <= 0
  const ConeProgram rows = testing::program({1}, {row({{kOne, -1}, {0, 1}}), row({{0, -1}})});
  EXPECT_EQ(solved(rows).reason, StopReason::kInfeasible);
  // 1 >= |(x, 2)|
  const ConeProgram circle =
      testing::program({1}, {arrow(2, {{kOne, 1}}, {{{0, 1}}, {{kOne, 2}}})});
  EXPECT_EQ(solved(circle).reason, StopReason::kInfeasible);
  // [-1, 0; 0, ..]
  const ConeProgram block = testing::program({1}, {matrix(3, {{{kOne, -1}},
                                                              {{0, 0.5}},
                                                              {{kOne, 0.1}},
                                                              {{kOne, 3}, {0, 1}},
                                                              {{kOne, 0.2}},
                                                              {{kOne, 2}}})});
  EXPECT_EQ(solved(block).reason, StopReason::kInfeasible);
}

TEST_P(InteriorPoint, TellsWhatHasNoBound) {
  const ConeProgram rows = testing::program({1}, {row({{kOne, -1}, {0, 1}})});
  EXPECT_EQ(solved(rows).reason, StopReason::kUnbounded);
  // x >= |(y, 1)|
  const ConeProgram cone =
      testing::program({0.5, 1}, {arrow(0, {{0, 1}}, {{{1, 1}}, {{kOne, 1}}})});
  EXPECT_EQ(solved(cone).reason, StopReason::kUnbounded);
}

}  // namespace
}  // namespace sdpsol::cones
