// In the place of solver/decide/decide.h until that knows two engines: the reference
// engine in both roles, which must agree with itself.
#pragma once

#include <memory>
#include <string>
#include <utility>

#include "solver/decide/decide.h"
#include "solver/engine/csdp_engine.h"

namespace sdpsol::testing {

inline std::unique_ptr<Engine> make_engine_under_test(Engine& /*reference*/) {
  return make_csdp_engine();
}

struct OutcomeOfTwo : Outcome {
  std::string engine;
  int fallbacks = 0;
};

inline OutcomeOfTwo decide_with_fallback(const Problem& problem, Engine& first, Engine& fallback,
                                         const Limits& limits) {
  OutcomeOfTwo outcome{{decide(problem, first, limits)}, std::string(first.name()), 0};
  if (outcome.verdict != Verdict::kUndetermined || !outcome.certificate.empty()) return outcome;
  return {{decide(problem, fallback, limits)}, std::string(fallback.name()), 1};
}

}  // namespace sdpsol::testing
