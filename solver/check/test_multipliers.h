// Multipliers for tests, written down by hand.
#pragma once

#include "solver/check/multipliers.h"

namespace sdpsol::testing {

/// The multiplier with the weight l*l on a row (l itself on an equation).
inline Multiplier on_row(std::size_t block, double l) {
  return {block, Eigen::MatrixXd::Constant(1, 1, l)};
}

}  // namespace sdpsol::testing
