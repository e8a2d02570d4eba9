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

/// Weights under which conditions contradict each other, the box, or any room.
struct Proof {
  std::vector<std::int32_t> conditions;  ///< those that take part; none: no proof
  std::vector<Multiplier> multipliers;
};

/// The conditions that the multipliers weigh, each once.
Proof proof_by(const Problem& problem, std::vector<Multiplier> multipliers);

struct Feasibility {
  Verdict verdict = Verdict::kUndetermined;
  std::string reason;  ///< with kUndetermined
  /// kInfeasible: conditions that contradict each other; kUndetermined: those that
  /// leave nothing in the box, or no room, if that is the reason.
  Proof proof;
  std::vector<double> point;     ///< kFeasible: proven; otherwise the last iterate
  std::vector<double> distance;  ///< kFeasible: see FeasibleCheck
  int iterations = 0;
};

/// Maximises the common margin, in units of each inequality's own size and
/// capped at 1, until the point or the multipliers prove a verdict.
/// @param problem without obvious contradictions, its singular matrices reduced.
Feasibility find_feasible_point(const Problem& problem, Selection selection, Engine& engine,
                                const Limits& limits);

}  // namespace sdpsol
