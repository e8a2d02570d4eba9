#include "solver/engine/reduced.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "solver/engine/compact.h"
#include "solver/engine/eliminate.h"

namespace sdpsol {
namespace {

/// No engine gets anywhere with numbers that are not finite or absurd: CSDP even ends the
/// process over some. Scaled programs hold neither.
bool has_usable_numbers(const ConeProgram& program) {
  constexpr double kLargest = 1e30;
  auto usable = [](double x) { return std::fabs(x) < kLargest; };
  return std::all_of(program.objective.begin(), program.objective.end(), usable) &&
         std::all_of(program.cones.begin(), program.cones.end(), [&](const auto& cone) {
           return std::all_of(cone.coefficients.begin(), cone.coefficients.end(),
                              [&](const auto& t) { return usable(t.value); });
         });
}

Candidate solve_compact(const ConeProgram& program, const Limits& limits, const Observer& observer,
                        const SolveCones& solve) {
  const Compaction compaction(program);
  const ConeProgram& reduced = compaction.reduced();
  Candidate candidate;
  const bool usable = has_usable_numbers(reduced);
  if (reduced.unknowns == 0 || !usable) {
    candidate.reason = usable ? StopReason::kConverged : StopReason::kTrouble;
    candidate.last.point.assign(reduced.objective.size(), 0.0);
    candidate.last.multipliers.assign(multiplier_offsets(program.cones).back(), 0.0);
  } else {
    const Observer lifting = [&](const Iterate& iterate) {
      return observer && observer(compaction.lift(iterate));
    };
    candidate = solve(reduced, limits, lifting);
  }
  candidate.last = compaction.lift(std::move(candidate.last));
  const bool tried = candidate.reason != StopReason::kUnsuited;
  if (tried && compaction.unbounded()) candidate.reason = StopReason::kUnbounded;
  return candidate;
}

}  // namespace

Candidate solve_reduced(const ConeProgram& program, const Limits& limits, const Observer& observer,
                        const SolveCones& solve) {
  if (program.equations.empty()) return solve_compact(program, limits, observer, solve);
  const Elimination elimination(program);
  const Observer lifting = [&](const Iterate& reduced) {
    return observer && observer(elimination.lift(reduced));
  };
  Candidate candidate = solve_compact(elimination.reduced(), limits, lifting, solve);
  candidate.last = elimination.lift(candidate.last);
  return candidate;
}

}  // namespace sdpsol
