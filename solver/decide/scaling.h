// The sizes in which unknowns and inequalities are measured.
#pragma once

#include <Eigen/Core>
#include <vector>

#include "solver/problem/problem.h"

namespace sdpsol {

/// unknown[k] is a typical size of v_k; diagonal[b] are the sizes of the
/// diagonal entries of block b at such a point, S_0 + sum of unknown[k] * S_k:
/// what "margin 1" means for that entry.
struct Scaling {
  std::vector<double> unknown;
  std::vector<Eigen::VectorXd> diagonal;
  double objective = 1;  ///< size of the objective, if there is one
};

/// Sizes read off the definition: an unknown is as large as makes its terms
/// comparable with the constants that they are added to. Rescaling an unknown or
/// an inequality rescales the result and changes nothing else.
Scaling scale_by_constants(const Problem& problem);

/// Every size 1: the problem as it stands.
Scaling keep_scale(const Problem& problem);

/// Sizes as found at a point, never less than 1e-3 of the previous ones.
Scaling scale_by_point(const Problem& problem, const Scaling& previous,
                       const std::vector<double>& point);

}  // namespace sdpsol
