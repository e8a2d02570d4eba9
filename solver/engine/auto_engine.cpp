#include "solver/engine/auto_engine.h"

namespace sdpsol {

Candidate AutoEngine::solve(const ConeProgram& program, const Limits& limits,
                            const Observer& observer) {
  last_ = &fast_;
  Candidate candidate = fast_.solve(program, limits, observer);
  if (candidate.reason != StopReason::kUnsuited) return candidate;
  last_ = &general_;
  return general_.solve(program, limits, observer);
}

}  // namespace sdpsol
