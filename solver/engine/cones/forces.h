// How the unknowns act on the cones, found in the coefficients.
//
// In a grasp the coordinates z move the forces x = N*z, and only these stand in cones
// and bounds: each coordinate of the cones is a multiple of one force, plus what belongs
// to it alone (a margin of this contact), plus what all share (the common margin of the
// first phase). Nothing says so in the program: forces are what is left when equal forms,
// up to a factor, are taken for one.
#pragma once

#include <Eigen/Core>
#include <optional>
#include <vector>

#include "solver/engine/cones/layout.h"

namespace sdpsol::cones {

/// s = h + E*x + g*t, x = (F*z, locals): E is sparse, F dense and tall.
struct Forces {
  /// Unknowns of the program by their part in this.
  std::vector<std::int32_t> wide;      ///< z: occur in many cones
  std::vector<std::int32_t> local;     ///< occur in few; x ends with them
  std::optional<std::int32_t> common;  ///< t: the only unknown of the objective, if it is wide

  Eigen::MatrixXd factor;  ///< F, forces x wide unknowns, its rows of norm 1

  /// E, row after row: `unknown` is an index into x.
  CoordinateTerms linear;
  Eigen::VectorXd common_column;  ///< g; zeros without a common unknown

  Eigen::Index size() const { return factor.rows() + static_cast<Eigen::Index>(local.size()); }
};

/// Nothing if there are more than `most_left_over` forces beyond the wide unknowns.
/// Cost: the coefficients, and sorting the coordinates.
std::optional<Forces> find_forces(const Layout& layout, const std::vector<double>& objective,
                                  Eigen::Index most_left_over);

}  // namespace sdpsol::cones
