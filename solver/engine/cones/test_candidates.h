// What makes a candidate right, in the matrices of the program.
#pragma once

#include <gtest/gtest.h>

#include <algorithm>

#include "solver/dense/symmetric_eigen.h"
#include "solver/engine/cones/test_cones.h"
#include "solver/engine/cones_engine.h"

namespace sdpsol::testing {

inline Candidate solved_by_cones(const ConeProgram& program, const Observer& observer = {}) {
  return make_cones_engine()->solve(program, {}, observer);
}

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

/// How far a candidate is from a point in the cones and multipliers in the cones that
/// balance, without a gap between them: then no point is better.
struct Shortfall {
  double value = 0;    ///< of the objective at the point
  double outside = 0;  ///< of the point, out of the cones; at most 0 inside
  double least_multiplier = 0;
  double balance = 0;  ///< relative to the objective's coefficients
  double gap = 0;
};

inline Shortfall shortfall(const ConeProgram& program, const Candidate& candidate) {
  const VectorXd objective = as_vector(program.objective);
  const VectorXd sums = weighed(program, candidate.last);
  Shortfall found;
  found.value = objective.dot(as_vector(candidate.last.point));
  const double size = std::max(1.0, std::fabs(found.value));
  found.outside = -room_at(program, candidate.last.point) / size;
  found.least_multiplier = least_eigenvalue_of_multipliers(program, candidate.last);
  found.balance =
      (sums.head(program.unknowns) + objective).norm() / std::max(1.0, objective.norm());
  found.gap = std::fabs(sums[program.unknowns] - found.value) / size;
  return found;
}

inline constexpr double kLeastMultiplier = -1e-15;

inline bool is_optimal(const ConeProgram& program, const Candidate& candidate, double tolerance) {
  const Shortfall found = shortfall(program, candidate);
  return candidate.reason == StopReason::kConverged && found.outside <= tolerance &&
         found.least_multiplier >= kLeastMultiplier && found.balance <= tolerance &&
         found.gap <= tolerance;
}

inline void expect_optimal(const ConeProgram& program, const Candidate& candidate,
                           double tolerance = 1e-8) {
  EXPECT_EQ(candidate.reason, StopReason::kConverged);
  const Shortfall found = shortfall(program, candidate);
  EXPECT_NEAR(candidate.last.value, found.value, tolerance * std::max(1.0, std::fabs(found.value)));
  EXPECT_LE(found.outside, tolerance);
  EXPECT_GE(found.least_multiplier, kLeastMultiplier);
  EXPECT_LE(found.balance, tolerance);
  EXPECT_LE(found.gap, tolerance);
}

}  // namespace sdpsol::testing
