#include "tests/engines/contest.h"

#include <utility>

#include "solver/engine/csdp_engine.h"
#include "tests/engines/same_engine_twice.h"
#include "tests/engines/timed_engine.h"

namespace sdpsol::testing {

Contest::Contest() : reference_(make_csdp_engine()), first_(make_engine_under_test(*reference_)) {}

Contest::Contest(std::unique_ptr<Engine> first)
    : reference_(make_csdp_engine()), first_(std::move(first)) {}

Judgement Contest::of(const EngineProblem& drawn) {
  TimedEngine first(*first_);
  TimedEngine fallback(*reference_);
  TimedEngine reference(*reference_);
  const auto outcome = decide_with_fallback(drawn.problem, first, fallback, {});
  const Outcome expected = decide(drawn.problem, reference, {});
  const bool answered = outcome.engine == fallback.name();
  const Fallback use = outcome.fallbacks == 0 ? Fallback::kNotAsked
                       : answered             ? Fallback::kAnswered
                                              : Fallback::kAsked;
  Judgement judgement = judge(drawn, outcome, use, expected);
  if (judgement.fallback_helped()) {
    judgement.claim_is_of_fallback = claim_of(decide(drawn.problem, *first_, {})) == Claim::kNone;
  }
  judgement.first_seconds = first.seconds();
  judgement.fallback_seconds = fallback.seconds();
  judgement.reference_seconds = reference.seconds();
  return judgement;
}

}  // namespace sdpsol::testing
