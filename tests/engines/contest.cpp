#include "tests/engines/contest.h"

#include <chrono>
#include <utility>

#include "solver/decide/decide.h"
#include "solver/engine/auto_engine.h"
#include "solver/engine/cones_engine.h"
#include "solver/engine/csdp_engine.h"

namespace sdpsol::testing {
namespace {

/// What the command asks first.
class FirstOfTheCommand final : public Engine {
 public:
  std::string_view name() const override { return fastest_.name(); }
  Candidate solve(const ConeProgram& program, const Limits& limits,
                  const Observer& observer) override {
    return fastest_.solve(program, limits, observer);
  }

 private:
  std::unique_ptr<Engine> cones_ = make_cones_engine();
  std::unique_ptr<Engine> general_ = make_csdp_engine();
  AutoEngine fastest_{*cones_, *general_};
};

double seconds_inside(const EngineLog& log) {
  return std::chrono::duration<double>(log.inside).count();
}

}  // namespace

Contest::Contest() : Contest(std::make_unique<FirstOfTheCommand>()) {}

Contest::Contest(std::unique_ptr<Engine> first)
    : first_(std::move(first)),
      reference_(make_csdp_engine()),
      first_watched_(*first_, first_log_, {}),
      fallback_watched_(*reference_, fallback_log_, {}),
      reference_watched_(*reference_, reference_log_, {}) {}

Judgement Contest::of(const EngineProblem& drawn) {
  const double first_before = seconds_inside(first_log_);
  const double fallback_before = seconds_inside(fallback_log_);
  const double reference_before = seconds_inside(reference_log_);
  const Outcome first = decide_with_fallback(drawn.problem, first_watched_, fallback_watched_, {});
  const Outcome reference = decide(drawn.problem, reference_watched_, {});
  Judgement judgement = judge(drawn, first, first.fallbacks, reference);
  judgement.first_seconds = seconds_inside(first_log_) - first_before;
  judgement.fallback_seconds = seconds_inside(fallback_log_) - fallback_before;
  judgement.reference_seconds = seconds_inside(reference_log_) - reference_before;
  return judgement;
}

}  // namespace sdpsol::testing
