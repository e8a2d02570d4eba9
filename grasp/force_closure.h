// Whether every wrench can be resisted.
#pragma once

#include <optional>

#include "grasp/answer.h"
#include "grasp/grasp.h"

namespace grasp {

/// A grasp has force closure exactly if its map has rank 6 and there is an internal force
/// strictly inside all cones (Murray, Li, Sastry, ch. 5, on force closure).
/// @param answer with balance, verdict and inquiry. @return none where it does not decide.
std::optional<bool> force_closure(const Grasp& grasp, const Answer& answer);

}  // namespace grasp
