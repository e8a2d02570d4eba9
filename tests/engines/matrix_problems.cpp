#include "tests/engines/matrix_problems.h"

#include <Eigen/Core>
#include <Eigen/LU>
#include <algorithm>
#include <cmath>
#include <stdexcept>
#include <utility>
#include <vector>

#include "solver/decide/test_random_problems.h"
#include "tests/engines/exact_truth.h"
#include "tests/engines/grasp_problems.h"
#include "tests/engines/integer_problems.h"
#include "tests/verdicts/exact_simplex.h"
#include "tests/verdicts/random_definitions.h"
#include "tests/verdicts/random_matrices.h"

namespace sdpsol::testing {
namespace {

using Contradiction = RandomProblems::Contradiction;

RandomProblems problems_from(std::mt19937& random) {
  return RandomProblems(static_cast<unsigned>(random()));
}

EngineProblem contradiction(std::mt19937& random, Contradiction kind) {
  return {.problem = problems_from(random).with_planted_certificate(kind),
          .truth = Truth::kInfeasible,
          .has_room = true};
}

/// The room is measured exactly, in the sizes of the problem itself.
EngineProblem around_point(Problem problem, std::vector<double> point) {
  EngineProblem drawn{.problem = std::move(problem), .truth = Truth::kFeasible};
  drawn.has_room = satisfies(drawn.problem, rational(point), Rational(0.99 * kPlantedRoom));
  if (!drawn.has_room) throw std::logic_error("the planted point has room");
  drawn.point = std::move(point);
  return drawn;
}

double dot(const std::vector<double>& a, const std::vector<double>& b) {
  double sum = 0;
  for (std::size_t k = 0; k < a.size(); ++k) sum += a[k] * b[k];
  return sum;
}

/// Adds the objective that the multipliers bound: cost_k = -(sum of <F_k, Y>), so that
/// it stays below the sum of <F_0, Y> wherever every block is positive.
template <typename DrawMultiplier>
EngineProblem with_objective(RandomProblems& drawing, DrawMultiplier draw) {
  std::vector<double> point;
  Problem around = drawing.with_planted_point(&point);
  EngineProblem drawn = around_point(std::move(around), point);
  LinearObjective& objective = drawn.problem.objective.emplace();
  objective.cost.assign(point.size(), 0.0);
  double limit = 0;
  for (const Block& block : drawn.problem.blocks) {
    const Eigen::MatrixXd y = draw(block.size);
    for (const AffineTerm& t : block.terms) {
      const double weighed = (t.row == t.column ? 1 : 2) * t.value * y(t.row, t.column);
      if (t.unknown == kConstant) {
        limit += weighed;
      } else {
        objective.cost[static_cast<std::size_t>(t.unknown)] -= weighed;
      }
    }
  }
  drawn.reached = dot(objective.cost, point);
  drawn.limit = limit;
  return drawn;
}

Eigen::MatrixXd drawn_matrix(RandomProblems& drawing, Eigen::Index rows, Eigen::Index columns) {
  return Eigen::MatrixXd::NullaryExpr(rows, columns, [&] { return drawing.real(-1, 1); });
}

/// Small integers. Rows that depend on each other would hold together, or contradict each
/// other, by the rounding of their constants.
Eigen::MatrixXd independent_rows(RandomProblems& drawing, Eigen::Index rows, Eigen::Index columns) {
  for (;;) {
    const Eigen::MatrixXd drawn =
        Eigen::MatrixXd::NullaryExpr(rows, columns, [&] { return drawing.uniform(-3, 3); });
    if (Eigen::MatrixXd(drawn * drawn.transpose()).determinant() > 0.5) return drawn;
  }
}

void add_any_objective(Problem& problem, RandomProblems& drawing) {
  LinearObjective& objective = problem.objective.emplace();
  for (std::int32_t k = 0; k < problem.unknowns; ++k) {
    objective.cost.push_back(six_digits(drawing.real(-3, 3)));
  }
}

}  // namespace

EngineProblem planted_point(std::mt19937& random) {
  std::vector<double> point;
  Problem around = problems_from(random).with_planted_point(&point);
  return around_point(std::move(around), std::move(point));
}

EngineProblem planted_point_and_equations(std::mt19937& random) {
  RandomProblems drawing = problems_from(random);
  std::vector<double> point;
  Problem around = drawing.with_planted_point(&point);
  EngineProblem drawn = around_point(std::move(around), point);
  Problem& problem = drawn.problem;
  const Eigen::MatrixXd rows = independent_rows(
      drawing, drawing.uniform(1, std::min(3, problem.unknowns)), problem.unknowns);
  for (Eigen::Index e = 0; e < rows.rows(); ++e) {
    const std::vector<double> row(rows.row(e).begin(), rows.row(e).end());
    Block block{1, Sense::kEqual, static_cast<std::int32_t>(problem.blocks.size()), {}};
    const double constant = -dot(row, point);
    block.terms.push_back({0, 0, kConstant, constant, std::fabs(constant)});
    for (std::size_t k = 0; k < row.size(); ++k) {
      if (row[k] == 0) continue;
      block.terms.push_back({0, 0, static_cast<std::int32_t>(k), row[k], std::fabs(row[k])});
    }
    problem.blocks.push_back(std::move(block));
  }
  // The constants of the equations round: an exact solution is only near it.
  drawn.point.clear();
  return drawn;
}

EngineProblem negative_constant(std::mt19937& random) {
  return contradiction(random, Contradiction::kNegativeConstant);
}

EngineProblem zero_constant(std::mt19937& random) {
  return contradiction(random, Contradiction::kZeroConstant);
}

EngineProblem bounded_objective(std::mt19937& random) {
  RandomProblems drawing = problems_from(random);
  return with_objective(drawing, [&](Eigen::Index size) {
    const Eigen::MatrixXd a = drawn_matrix(drawing, size, size);
    const Eigen::MatrixXd y = a * a.transpose();
    return Eigen::MatrixXd(y / y.trace() + 0.03 * Eigen::MatrixXd::Identity(size, size));
  });
}

EngineProblem flat_objective(std::mt19937& random) {
  RandomProblems drawing = problems_from(random);
  return with_objective(drawing, [&](Eigen::Index size) {
    const Eigen::MatrixXd a = drawn_matrix(drawing, size, drawing.uniform(0, 1));
    return Eigen::MatrixXd(a * a.transpose());
  });
}

EngineProblem free_objective(std::mt19937& random) {
  RandomProblems drawing = problems_from(random);
  std::vector<double> point;
  Problem around = drawing.with_planted_point(&point);
  EngineProblem drawn = around_point(std::move(around), point);
  add_any_objective(drawn.problem, drawing);
  drawn.reached = dot(drawn.problem.objective->cost, point);
  return drawn;
}

EngineProblem objective_of_a_contradiction(std::mt19937& random) {
  RandomProblems drawing = problems_from(random);
  EngineProblem drawn =
      contradiction(random, drawing.uniform(0, 1) == 0 ? Contradiction::kNegativeConstant
                                                       : Contradiction::kZeroConstant);
  add_any_objective(drawn.problem, drawing);
  return drawn;
}

EngineProblem border_of_integers(std::mt19937& random) {
  using enum MatrixKind;
  constexpr MatrixKind kKinds[] = {kSingularPoint, kFaces,           kStrictFaces,
                                   kCertificate,   kZeroCertificate, kWeak};
  RandomProblems drawing = problems_from(random);
  PlantedProblem planted =
      RandomMatrices(static_cast<unsigned>(random())).draw(kKinds[drawing.uniform(0, 5)]);
  return {.problem = std::move(planted.problem),
          .truth = planted.feasible ? Truth::kFeasible : Truth::kInfeasible};
}

EngineProblem rows_alone(std::mt19937& random) {
  using enum LinearKind;
  constexpr LinearKind kKinds[] = {kIntegers,   kCones,  kDecimals,    kDependent, kEquations,
                                   kDuplicated, kUnused, kBadlyScaled, kSmallBox,  kSums};
  RandomProblems drawing = problems_from(random);
  const LinearDefinition definition =
      RandomDefinitions(static_cast<unsigned>(random()))
          .draw(kKinds[drawing.uniform(0, 9)], drawing.uniform(0, 2) == 0);
  EngineProblem drawn{.problem = problem_of(definition.text)};
  if (has_exact_solution(with_box(definition.paper, definition.big_m))) {
    drawn.truth = Truth::kFeasible;
  } else if (!has_exact_solution(definition.paper)) {
    drawn.truth = Truth::kInfeasible;
  }
  return drawn;
}

void change_units(EngineProblem& drawn, std::mt19937& random) {
  constexpr int kMax = 13;
  RandomProblems drawing = problems_from(random);
  const auto power = [&] { return std::ldexp(1.0, drawing.uniform(-kMax, kMax)); };
  Problem& problem = drawn.problem;
  // One unit for all, as of forces, takes the box along. Each with one of its own, the
  // box must hold them all; then it is so far away that what is charged to it shows in
  // the bounds of objectives.
  std::vector<double> unit(static_cast<std::size_t>(problem.unknowns), power());
  const bool one_for_all = drawing.uniform(0, 2) != 0;
  if (!one_for_all) std::generate(unit.begin(), unit.end(), power);
  std::vector<double> block_unit;
  for (Block& block : problem.blocks) {
    const double factor = block_unit.emplace_back(power());
    for (AffineTerm& t : block.terms) {
      const double by =
          factor * (t.unknown == kConstant ? 1 : unit[static_cast<std::size_t>(t.unknown)]);
      t.value *= by;
      t.magnitude *= by;
    }
  }
  problem.big_m =
      one_for_all && !unit.empty() ? problem.big_m / unit[0] : std::ldexp(problem.big_m, kMax);
  for (std::size_t k = 0; k < drawn.point.size(); ++k) drawn.point[k] /= unit[k];
  const double factor = problem.objective ? power() : 1;
  for (ExactWeight& y : drawn.weights) y.weight *= Rational(factor / block_unit[y.block]);
  if (!problem.objective) return;
  LinearObjective& objective = *problem.objective;
  objective.constant *= factor;
  objective.constant_magnitude *= factor;
  for (std::size_t k = 0; k < unit.size(); ++k) objective.cost[k] *= factor * unit[k];
  if (drawn.reached) *drawn.reached *= factor;
  if (drawn.limit) *drawn.limit *= factor;
  if (drawn.optimum) *drawn.optimum *= factor;
}

}  // namespace sdpsol::testing
