#include "tests/engines/refutation.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "solver/check/evaluate.h"
#include "tests/engines/exact_truth.h"
#include "tests/engines/judge.h"

namespace sdpsol::testing {
namespace {

const char* against_planted_verdict(const EngineProblem& drawn, Claim claim) {
  switch (drawn.truth) {
    case Truth::kUnknown:
      return nullptr;
    case Truth::kFeasible:
      if (claim == Claim::kInfeasible) return "infeasible, where a point was planted";
      if (claim == Claim::kEmptyBox) return "nothing in the box, where a point was planted";
      if (claim == Claim::kBorderline && drawn.has_room) {
        return "no point with room, where one was planted";
      }
      return nullptr;
    case Truth::kInfeasible:
      return claim == Claim::kFeasible ? "feasible, where a contradiction was planted" : nullptr;
    case Truth::kOutsideBox:
      if (claim == Claim::kFeasible) return "feasible, where the box is empty";
      if (claim == Claim::kInfeasible) return "infeasible, where a point is outside the box";
      return nullptr;
  }
  return nullptr;
}

bool all_finite(const std::vector<double>& numbers) {
  return std::all_of(numbers.begin(), numbers.end(), [](double v) { return std::isfinite(v); });
}

/// Strict inequalities must leave the room of a verdict, but for the sizes within the
/// distance to a solution.
bool rests_on_a_point(const Problem& problem, const Outcome& outcome) {
  if (!all_finite(outcome.interior) || !all_finite(outcome.distance)) return false;
  const RationalPoint point = rational(outcome.interior);
  const Rational room(kRoom * (1 - 1e-6));
  for (const Block& block : problem.blocks) {
    if (block.sense == Sense::kStrict && !is_positive(value_at(block, point, room), true)) {
      return false;
    }
  }
  return outcome.distance.empty()
             ? satisfies(problem, point)
             : satisfied_within(problem, outcome.interior, outcome.distance, kRoom);
}

const char* against_points(const Problem& problem, const Outcome& outcome) {
  const auto unknowns = static_cast<std::size_t>(problem.unknowns);
  if (outcome.point.size() != unknowns || outcome.interior.size() != unknowns) {
    return "feasible without a point";
  }
  if (!rests_on_a_point(problem, outcome)) return "it rests on a point that is none";
  if (!all_finite(outcome.point)) return "the reported point is not finite";
  return violation(problem, rational(outcome.point), Rational(kRounding));
}

const char* against_objective(const EngineProblem& drawn, const Outcome& outcome) {
  if (!outcome.objective || !outcome.bound) return "feasible without its objective";
  const double objective = *outcome.objective;
  const double at_point = objective_of(drawn.problem, rational(outcome.point)).get_d();
  if (exceeds(objective, at_point) || exceeds(at_point, objective)) {
    return "the objective is not that of the point";
  }
  const bool at_box = std::any_of(outcome.point.begin(), outcome.point.end(), [&](double v) {
    return std::fabs(v) >= 0.99 * drawn.problem.big_m;
  });
  if (outcome.limited_by_box && !at_box) return "the box is said to be the limit from afar";
  if (std::isnan(*outcome.bound)) return "the bound is no number";
  if (drawn.reached && exceeds(*drawn.reached, *outcome.bound)) return "the bound is too good";
  if (drawn.limit && exceeds(objective, *drawn.limit, grain_of(drawn.problem, outcome))) {
    return "the objective is too good";
  }
  if (!drawn.optimum) return nullptr;
  if (*outcome.bound < *drawn.optimum) return "the bound is better than the optimum";
  const double allowed = 4.4e-6 * std::max(1.0, std::fabs(objective));
  if (outcome.limited_by_box && !drawn.limited_by_box && *outcome.bound - objective <= allowed) {
    return "the box is said to limit an optimum that needs no box";
  }
  return nullptr;
}

}  // namespace

double grain_of(const Problem& problem, const Outcome& outcome) {
  double size = 0;
  for (std::size_t k = 0; k < outcome.point.size(); ++k) {
    size += std::fabs(problem.objective->cost[k] * outcome.point[k]);
  }
  return std::numeric_limits<double>::epsilon() * size;
}

const char* refutation(const EngineProblem& drawn, const Outcome& outcome) {
  const Claim claim = claim_of(outcome);
  if (const char* wrong = against_planted_verdict(drawn, claim)) return wrong;
  if (claim != Claim::kFeasible) return nullptr;
  if (const char* wrong = against_points(drawn.problem, outcome)) return wrong;
  return drawn.problem.objective ? against_objective(drawn, outcome) : nullptr;
}

}  // namespace sdpsol::testing
