#include "fuzz/claims.h"

#include <Eigen/Eigenvalues>
#include <algorithm>
#include <cmath>
#include <cstddef>
#include <vector>

#include "fuzz/oracle.h"
#include "solver/check/evaluate.h"
#include "solver/check/feasible.h"
#include "solver/check/infeasible.h"
#include "tests/engines/judge.h"
#include "tests/verdicts/exact_simplex.h"

namespace fuzz {
namespace {

using sdpsol::AffineTerm;
using sdpsol::Block;
using sdpsol::kConstant;
using sdpsol::Multiplier;
using sdpsol::Outcome;
using sdpsol::Problem;
using sdpsol::Sense;
using sdpsol::testing::Claim;

using Extended = long double;
using Matrix = Eigen::Matrix<Extended, Eigen::Dynamic, Eigen::Dynamic>;

// What is left where things are equal on paper: of the sizes of what was added up.
constexpr Extended kEqual = 1e-9L;
// What is left of an unknown that is 0 on paper: of the largest unknown, by which a reported
// point was moved onto equations. The distance is that of the other point.
constexpr Extended kMoved = 1e-14L;
// More unknowns or rows take exact arithmetic too long.
constexpr std::int32_t kFewUnknowns = 5;
constexpr std::size_t kFewRows = 16;

struct Value {
  Matrix value;
  Matrix size;   ///< of what was added up
  Matrix reach;  ///< how far it may be from the value at an exact solution
  Matrix whole;  ///< if all unknowns were as large as the largest
};

Value value_at(const Block& block, const std::vector<double>& point,
               const std::vector<double>& distance) {
  Value at{Matrix::Zero(block.size, block.size), Matrix::Zero(block.size, block.size),
           Matrix::Zero(block.size, block.size), Matrix::Zero(block.size, block.size)};
  Extended largest = 0;
  for (const double v : point) largest = std::max(largest, std::abs(static_cast<Extended>(v)));
  for (const AffineTerm& t : block.terms) {
    const auto k = static_cast<std::size_t>(t.unknown);
    const Extended factor = t.unknown == kConstant ? 1.0L : point[k];
    at.value(t.row, t.column) += factor * t.value;
    at.size(t.row, t.column) += std::abs(factor) * t.magnitude;
    if (t.unknown == kConstant) continue;
    at.whole(t.row, t.column) += largest * std::abs(t.value);
    if (!distance.empty())
      at.reach(t.row, t.column) += static_cast<Extended>(distance[k]) * std::abs(t.value);
  }
  for (Matrix* each : {&at.value, &at.size, &at.reach, &at.whole})
    *each = Matrix(each->template selfadjointView<Eigen::Upper>());
  return at;
}

/// The least eigenvalue in units of what was added up on the diagonal, and what the
/// distance to an exact solution may take of it.
struct Least {
  Extended room = 0;
  Extended doubt = 0;
};

Least least_of(const Value& at) {
  Eigen::Matrix<Extended, Eigen::Dynamic, 1> unit = at.size.diagonal();
  // A diagonal without anything: the row can only be 0.
  for (Extended& each : unit) each = each > 0 ? 1 / std::sqrt(each) : 1;
  const Matrix scaled = unit.asDiagonal() * at.value * unit.asDiagonal();
  const Matrix doubt = unit.asDiagonal() * at.reach * unit.asDiagonal();
  const Eigen::SelfAdjointEigenSolver<Matrix> eigen(scaled, Eigen::EigenvaluesOnly);
  return {eigen.eigenvalues().minCoeff(), doubt.norm()};
}

/// @param strict how much a strict inequality must leave.
/// @param moved what an equation may miss, of the largest unknown.
void require_inside(const Problem& problem, const std::vector<double>& point,
                    const std::vector<double>& distance, Extended strict, Extended moved) {
  require(point.size() == static_cast<std::size_t>(problem.unknowns), "a point of another length");
  for (const double v : point)
    require(!problem.boxed || std::abs(v) <= problem.big_m, "a point outside the box");
  for (const Block& block : problem.blocks) {
    const Value at = value_at(block, point, distance);
    const Least least = least_of(at);
    if (block.sense == Sense::kStrict)
      require(least.room - least.doubt > strict, "a strict inequality that does not hold");
    if (block.sense == Sense::kNonStrict)
      require(least.room >= -least.doubt - kEqual, "an inequality that does not hold");
    if (block.sense == Sense::kEqual)
      require(std::abs(at.value(0, 0)) <=
                  at.reach(0, 0) + kEqual * at.size(0, 0) + moved * at.whole(0, 0),
              "an equation that does not hold");
  }
}

void require_objective(const Problem& problem, const Outcome& outcome) {
  require(outcome.objective && outcome.bound, "no objective or no bound");
  Extended value = problem.objective->constant;
  Extended size = std::abs(value);
  for (std::size_t k = 0; k < outcome.point.size(); ++k) {
    const Extended term = static_cast<Extended>(problem.objective->cost[k]) * outcome.point[k];
    value += term;
    size += std::abs(term);
  }
  require(std::abs(value - *outcome.objective) <= kEqual * size, "another objective at the point");
  require(value <= *outcome.bound + kEqual * size, "an objective above its bound");
}

/// Sums of the weighted conditions, for the constants first and then for each unknown.
struct Sums {
  std::vector<Extended> values;
  std::vector<Extended> sizes;
};

Sums weighted(const Problem& problem, const std::vector<Multiplier>& multipliers) {
  const auto count = static_cast<std::size_t>(problem.unknowns) + 1;
  Sums sums{std::vector<Extended>(count), std::vector<Extended>(count)};
  for (const Multiplier& y : multipliers) {
    require(y.block < problem.blocks.size() && y.factor.rows() == problem.blocks[y.block].size,
            "a weight for something else");
    const Block& block = problem.blocks[y.block];
    const Matrix factor = y.factor.cast<Extended>();
    const Matrix weight =
        block.sense == Sense::kEqual ? factor : Matrix(factor * factor.transpose());
    const Matrix weight_size = factor.cwiseAbs() * factor.cwiseAbs().transpose();
    for (const AffineTerm& t : block.terms) {
      const std::size_t k = t.unknown == kConstant ? 0 : static_cast<std::size_t>(t.unknown) + 1;
      const Extended twice = t.row == t.column ? 1 : 2;
      sums.values[k] += twice * weight(t.row, t.column) * t.value;
      sums.sizes[k] +=
          twice *
          (block.sense == Sense::kEqual ? std::abs(weight(0, 0)) : weight_size(t.row, t.column)) *
          t.magnitude;
    }
  }
  return sums;
}

void require_contradiction(const Problem& problem, const Outcome& outcome) {
  const Sums sums = weighted(problem, outcome.certificate);
  // The box may be charged with this much of an unknown's terms.
  constexpr Extended kCharged = 2e-6L;
  for (std::size_t k = 1; k < sums.values.size(); ++k)
    require(std::abs(sums.values[k]) <= kCharged * sums.sizes[k], "an unknown does not cancel");
  require(sums.values[0] <= kEqual * sums.sizes[0], "the constants are no contradiction");
}

namespace exact = sdpsol::testing;

bool is_small_and_linear(const Problem& problem) {
  return problem.unknowns <= kFewUnknowns && problem.blocks.size() <= kFewRows &&
         std::all_of(problem.blocks.begin(), problem.blocks.end(),
                     [](const Block& block) { return block.size == 1; });
}

/// What the doubles say that were read.
exact::RationalProgram rows_of(const Problem& problem) {
  exact::RationalProgram program{static_cast<std::size_t>(problem.unknowns), {}};
  for (const Block& block : problem.blocks) {
    const std::vector<exact::Rational> zeros(program.unknowns + 1);
    exact::RationalRow row{{zeros.begin(), zeros.end() - 1}, 0, block.sense, zeros};
    for (const AffineTerm& t : block.terms) {
      const bool constant = t.unknown == kConstant;
      const auto k = constant ? program.unknowns : static_cast<std::size_t>(t.unknown);
      (constant ? row.constant : row.coefficients[k]) = t.value;
      row.magnitudes[k] = t.magnitude;
    }
    program.rows.push_back(std::move(row));
  }
  return program;
}

void require_exactly_true(const Problem& problem, Claim claim) {
  const exact::RationalProgram rows = rows_of(problem);
  const exact::RationalProgram boxed =
      problem.boxed ? with_box(rows, exact::Rational(problem.big_m)) : rows;
  switch (claim) {
    case Claim::kNone:
      return;
    case Claim::kFeasible:
      return require(has_exact_solution(boxed), "FEASIBLE without a point");
    case Claim::kInfeasible:
      return require(!has_exact_solution(boxed), "INFEASIBLE with a point");
    case Claim::kEmptyBox:
      return require(!has_exact_solution(boxed), "a point in an empty box");
    case Claim::kBorderline: {
      const auto with_room = exact::with_room(rows, exact::Rational(sdpsol::kRoom));
      return require(!has_exact_solution(with_box(with_room, exact::Rational(problem.big_m))),
                     "room where there is none");
    }
  }
}

void require_confirmed(const Problem& problem, const Outcome& outcome, Claim claim) {
  using sdpsol::Disproof;
  switch (claim) {
    case Claim::kNone:
      return;
    case Claim::kFeasible:
      // A point that was moved onto equations may seem to be off what it was moved onto.
      require(!outcome.distance.empty() ||
                  check_point(problem, outcome.interior).result == sdpsol::PointResult::kProven,
              "the checker does not confirm the point");
      require_inside(problem, outcome.interior, outcome.distance,
                     outcome.distance.empty() ? 0.99L * sdpsol::kRoom : 0.0L, 0);
      if (problem.objective) {
        require_inside(problem, outcome.point, outcome.distance, -kEqual, kMoved);
        require_objective(problem, outcome);
      }
      return;
    case Claim::kInfeasible:
      // A single condition that is false needs no weights.
      if (outcome.certificate.empty()) return;
      require_contradiction(problem, outcome);
      return require(disprove(problem, outcome.certificate) == Disproof::kInfeasible,
                     "the checker does not confirm the contradiction");
    case Claim::kEmptyBox:
      return require(disprove(problem, outcome.certificate) <= Disproof::kEmptyBox,
                     "the checker does not confirm the empty box");
    case Claim::kBorderline:
      return require(disprove(problem, outcome.certificate) <= Disproof::kBorderline,
                     "the checker does not confirm the border");
  }
}

}  // namespace

void require_true_claims(const Problem& problem, const Outcome& outcome) {
  const Claim claim = sdpsol::testing::claim_of(outcome);
  require(claim == Claim::kFeasible || !outcome.reason.empty(), "no reason");
  require_confirmed(problem, outcome, claim);
  if (is_small_and_linear(problem)) require_exactly_true(problem, claim);
}

}  // namespace fuzz
