// The first phase: is there a point, and with how much room?
#pragma once

#include <string>
#include <vector>

#include "solver/decide/outcome.h"
#include "solver/decide/program.h"
#include "solver/engine/engine.h"

namespace sdpsol {

/// The reason of a certified lack of room.
inline constexpr const char* kNoRoomLeft = "borderline: no point has more room than 4.4e-6";

struct Feasibility {
  Verdict verdict = Verdict::kUndetermined;
  std::string reason;  ///< with kUndetermined
  /// kInfeasible: those that contradict each other; kUndetermined: those that leave
  /// nothing in the box, or no room, if that is the reason.
  std::vector<std::int32_t> conditions;
  std::vector<double> point;  ///< kFeasible: proven; otherwise the last iterate
  int iterations = 0;
};

/// Maximises the common margin, in units of each inequality's own size and
/// capped at 1, until the point or the multipliers prove a verdict.
/// @param problem without obvious contradictions, its singular matrices reduced.
Feasibility find_feasible_point(const Problem& problem, Selection selection, Engine& engine,
                                const Limits& limits);

}  // namespace sdpsol
