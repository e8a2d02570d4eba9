#include "tests/engines/contest.h"

#include <utility>

#include "solver/decide/decide.h"
#include "solver/engine/cones_engine.h"
#include "solver/engine/csdp_engine.h"
#include "solver/engine/watched_engine.h"

namespace sdpsol::testing {
namespace {

double seconds_inside(const EngineLog& log) {
  return std::chrono::duration<double>(log.inside).count();
}

}  // namespace

Contest::Contest()
    : reference_(make_csdp_engine()),
      cones_(make_cones_engine()),
      first_(std::make_unique<AutoEngine>(*cones_, *reference_)) {}

Contest::Contest(std::unique_ptr<Engine> first)
    : reference_(make_csdp_engine()), first_(std::move(first)) {}

Judgement Contest::of(const EngineProblem& drawn) {
  EngineLog first_log;
  EngineLog fallback_log;
  EngineLog reference_log;
  WatchedEngine first(*first_, first_log, {});
  WatchedEngine fallback(*reference_, fallback_log, {});
  WatchedEngine reference(*reference_, reference_log, {});
  const Outcome outcome = decide_with_fallback(drawn.problem, first, fallback, {});
  const Outcome expected = decide(drawn.problem, reference, {});
  const bool answered = outcome.engine == fallback.name();
  const Fallback use = outcome.fallbacks == 0 ? Fallback::kNotAsked
                       : answered             ? Fallback::kAnswered
                                              : Fallback::kAsked;
  Judgement judgement = judge(drawn, outcome, use, expected);
  judgement.first_seconds = seconds_inside(first_log);
  judgement.fallback_seconds = seconds_inside(fallback_log);
  judgement.reference_seconds = seconds_inside(reference_log);
  return judgement;
}

}  // namespace sdpsol::testing
