// Whether what is claimed about a problem holds, found out in other ways than it was.
#pragma once

#include "solver/decide/outcome.h"
#include "solver/problem/problem.h"

namespace fuzz {

/// Of the whole problem, as it was read:
///   - the checker confirms point and certificate,
///   - in extended precision and by eigenvalues the point is inside everything, and the
///     certificate's weighted sum leaves next to nothing of the unknowns and no constant
///     above 0,
///   - the objective is that of the point, and not above its bound,
///   - exact arithmetic agrees where all conditions are rows.
void require_true_claims(const sdpsol::Problem& problem, const sdpsol::Outcome& outcome);

}  // namespace fuzz
