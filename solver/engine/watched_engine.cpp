#include "solver/engine/watched_engine.h"

#include <algorithm>

namespace sdpsol {

Candidate WatchedEngine::solve(const ConeProgram& program, const Limits& limits,
                               const Observer& observer) {
  using Clock = std::chrono::steady_clock;
  Clock::time_point entered = Clock::now();
  const Observer watching = [&](const Iterate& iterate) {
    log_.inside += Clock::now() - entered;
    ++log_.iterations;
    if (watch_) {
      watch_({.iteration = log_.iterations,
              .is_margin = program.is_margin,
              .value = iterate.value * program.value_unit + program.value_origin,
              .gap = std::max(0.0, (iterate.bound - iterate.value) * program.value_unit)});
    }
    const bool enough = observer && observer(iterate);
    entered = Clock::now();
    return enough;
  };
  Candidate candidate = engine_.solve(program, limits, watching);
  log_.inside += Clock::now() - entered;
  return candidate;
}

}  // namespace sdpsol
