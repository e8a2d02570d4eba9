// Rank and nullspace of a grasp map: which contact forces cancel each other.
#pragma once

#include <Eigen/Core>

#include "grasp/answer.h"
#include "grasp/geometry.h"

namespace grasp {

/// Singular values below this part of the largest are taken for 0: coordinates of
/// contacts are hardly ever known better, and the unit's texts carry six digits.
constexpr double kRankTolerance = 1e-6;

struct Nullspace {
  Balance balance;
  /// k x nullity, orthonormal columns. Depends on the nullspace alone, not on how it
  /// was computed: the columns are the components' unit vectors, projected onto the
  /// nullspace and made orthogonal to the columns before; each time the component
  /// whose projection is longest, the first of those as long as it. So the entry at
  /// that component is positive. Entries at rounding level are exactly 0.
  Eigen::MatrixXd base;
};

/// @param map 6 x k, k > 0, not 0: as weighed_grasp_map() gives it, so that metres and
/// millimetres have one rank.
Nullspace nullspace(const GraspMap& map);

/// Another base of the same nullspace, orthonormal too.
/// @param first its first column: a vector of length 1 in the nullspace, taken over as it
/// is. The others follow as in nullspace().
Eigen::MatrixXd base_with(const Nullspace& space, const Eigen::VectorXd& first);

}  // namespace grasp
