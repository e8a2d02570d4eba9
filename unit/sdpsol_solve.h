// From a composed problem to a result record.
#pragma once

#include "unit/sdpsol_compose.h"
#include "unit/sdpsol_wrapper.h"

namespace sdpsol_internal {

/// Prints the warnings, makes the problem the driver's definition and runs it.
/// A failed run needs no look at its code: it leaves nothing feasible behind.
/// Without a definition only `lastResult` is reset.
/// @throws std::out_of_range as `run`.
void solve(sdpsol_wrapper& driver, Composed problem);

}  // namespace sdpsol_internal
