#include "tests/engines/contest.h"

#include <chrono>
#include <utility>

#include "solver/engine/csdp_engine.h"
#include "tests/engines/same_engine_twice.h"

namespace sdpsol::testing {
namespace {

double seconds_inside(const WatchedEngine& engine) {
  return std::chrono::duration<double>(engine.time_inside()).count();
}

}  // namespace

Contest::Contest() : Contest(make_cones_engine()) {}

Contest::Contest(std::unique_ptr<Engine> first)
    : first_(std::move(first)),
      reference_(make_csdp_engine()),
      first_watched_(*first_, {}),
      fallback_watched_(*reference_, {}),
      reference_watched_(*reference_, {}) {}

Judgement Contest::of(const EngineProblem& drawn) {
  const double first_before = seconds_inside(first_watched_);
  const double fallback_before = seconds_inside(fallback_watched_);
  const double reference_before = seconds_inside(reference_watched_);
  const auto first = decide_with_fallback(drawn.problem, first_watched_, fallback_watched_, {});
  const Outcome reference = decide(drawn.problem, reference_watched_, {});
  Judgement judgement = judge(drawn, first, first.fallbacks, reference);
  judgement.first_seconds = seconds_inside(first_watched_) - first_before;
  judgement.fallback_seconds = seconds_inside(fallback_watched_) - fallback_before;
  judgement.reference_seconds = seconds_inside(reference_watched_) - reference_before;
  return judgement;
}

}  // namespace sdpsol::testing
