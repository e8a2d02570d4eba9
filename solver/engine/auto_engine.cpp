#include "solver/engine/auto_engine.h"

#include "solver/engine/cones_engine.h"

namespace sdpsol {

Candidate AutoEngine::solve(const ConeProgram& program, const Limits& limits,
                            const Observer& observer) {
  last_ = suits_cones_engine(program) ? &cones_ : &general_;
  return last_->solve(program, limits, observer);
}

}  // namespace sdpsol
