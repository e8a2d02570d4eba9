// What makes a candidate right, in the matrices of the program.
#pragma once

#include <gtest/gtest.h>

#include <algorithm>

#include "solver/dense/symmetric_eigen.h"
#include "solver/engine/cones/test_cones.h"

namespace sdpsol::testing {

inline VectorXd as_vector(const std::vector<double>& numbers) {
  return Eigen::Map<const VectorXd>(numbers.data(), static_cast<Index>(numbers.size()));
}

inline MatrixXd multiplier(const ConeProgram& program, const Iterate& iterate, std::size_t cone) {
  const auto offset = multiplier_offsets(program.cones)[cone];
  const Index n = program.cones[cone].size;
  return Eigen::Map<const MatrixXd>(&iterate.multipliers[offset], n, n);
}

/// The least eigenvalue of all cones at a point.
inline double room_at(const ConeProgram& program, const std::vector<double>& point) {
  double least = HUGE_VAL;
  for (const auto& cone : program.cones) {
    least = std::min(least, symmetric_eigenvalues(matrix_at(cone, as_vector(point)))[0]);
  }
  return least;
}

inline double least_eigenvalue_of_multipliers(const ConeProgram& program, const Iterate& iterate) {
  double least = HUGE_VAL;
  for (std::size_t i = 0; i < program.cones.size(); ++i) {
    least = std::min(least, symmetric_eigenvalues(multiplier(program, iterate, i))[0]);
  }
  return least;
}

/// What the multipliers weigh each unknown with, and (the last one) the constant.
inline VectorXd weighed(const ConeProgram& program, const Iterate& iterate) {
  VectorXd sums = VectorXd::Zero(program.unknowns + 1);
  for (std::size_t i = 0; i < program.cones.size(); ++i) {
    const MatrixXd x = multiplier(program, iterate, i);
    for (const auto& c : program.cones[i].coefficients) {
      const double weight = c.row == c.column ? 1 : 2;
      sums[c.unknown == kOne ? program.unknowns : c.unknown] +=
          weight * c.value * x(c.row, c.column);
    }
  }
  return sums;
}

/// A point in the cones, multipliers in the cones that balance, and no gap between them:
/// no point is better.
inline void expect_optimal(const ConeProgram& program, const Candidate& candidate,
                           double tolerance = 1e-8) {
  EXPECT_EQ(candidate.reason, StopReason::kConverged);
  const VectorXd objective = as_vector(program.objective);
  const double value = objective.dot(as_vector(candidate.last.point));
  const double size = std::max(1.0, std::fabs(value));
  EXPECT_NEAR(candidate.last.value, value, tolerance * size);
  EXPECT_GE(room_at(program, candidate.last.point), -tolerance * size);
  EXPECT_GE(least_eigenvalue_of_multipliers(program, candidate.last), -1e-15);
  const VectorXd sums = weighed(program, candidate.last);
  EXPECT_LE((sums.head(program.unknowns) + objective).norm(),
            tolerance * std::max(1.0, objective.norm()));
  EXPECT_NEAR(sums[program.unknowns], value, tolerance * size);
}

}  // namespace sdpsol::testing
