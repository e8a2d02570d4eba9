#include "solver/engine/eliminate.h"

#include <algorithm>
#include <cmath>
#include <map>
#include <tuple>

#include "solver/dense/least_squares.h"
#include "solver/dense/subspaces.h"

namespace sdpsol {
namespace {

using Cone = ConeProgram::Cone;

// Smaller sums, against the largest of their cone, are what cancelling left over.
constexpr double kRounding = 1e-14;

Cone substitute(const Cone& cone, const Eigen::VectorXd& base, const Eigen::MatrixXd& directions) {
  std::map<std::tuple<std::int32_t, std::int32_t, std::int32_t>, double> sums;
  for (const auto& t : cone.coefficients) {
    if (t.unknown == ConeProgram::kConstantTerm) {
      sums[{t.unknown, t.row, t.column}] += t.value;
      continue;
    }
    sums[{ConeProgram::kConstantTerm, t.row, t.column}] += t.value * base[t.unknown];
    for (Eigen::Index j = 0; j < directions.cols(); ++j) {
      const double value = t.value * directions(t.unknown, j);
      if (value != 0) sums[{static_cast<std::int32_t>(j), t.row, t.column}] += value;
    }
  }
  double largest = 0;
  for (const auto& [key, value] : sums) largest = std::max(largest, std::fabs(value));
  Cone result{cone.size, {}};
  result.coefficients.reserve(sums.size());
  for (const auto& [key, value] : sums) {
    const auto [unknown, row, column] = key;
    if (std::fabs(value) < kRounding * largest) continue;
    result.coefficients.push_back({row, column, unknown, value});
  }
  return result;
}

}  // namespace

Elimination::Elimination(const ConeProgram& program) {
  const auto unknowns = static_cast<Eigen::Index>(program.unknowns);
  const auto count = static_cast<Eigen::Index>(program.equations.size());
  Eigen::MatrixXd matrix = Eigen::MatrixXd::Zero(count, unknowns);
  Eigen::VectorXd right = Eigen::VectorXd::Zero(count);
  for (Eigen::Index e = 0; e < count; ++e) {
    for (const auto& t : program.equations[static_cast<std::size_t>(e)].coefficients) {
      if (t.unknown == ConeProgram::kConstantTerm) {
        right[e] -= t.value;
      } else {
        matrix(e, t.unknown) += t.value;
      }
    }
  }
  directions_ = nullspace_base(matrix);
  base_ = LeastSquares(matrix).solve(right);

  reduced_.unknowns = static_cast<std::int32_t>(directions_.cols());
  const Eigen::Map<const Eigen::VectorXd> objective(program.objective.data(), unknowns);
  const Eigen::VectorXd reduced_objective = directions_.transpose() * objective;
  reduced_.objective.assign(reduced_objective.data(),
                            reduced_objective.data() + reduced_objective.size());
  base_value_ = objective.dot(base_);
  for (const Cone& cone : program.cones) {
    reduced_.cones.push_back(substitute(cone, base_, directions_));
  }
}

Iterate Elimination::lift(const Iterate& reduced) const {
  Iterate full = reduced;
  const Eigen::Map<const Eigen::VectorXd> w(reduced.point.data(),
                                            static_cast<Eigen::Index>(reduced.point.size()));
  const Eigen::VectorXd y = base_ + directions_ * w;
  full.point.assign(y.data(), y.data() + y.size());
  full.value += base_value_;
  full.bound += base_value_;
  return full;
}

}  // namespace sdpsol
