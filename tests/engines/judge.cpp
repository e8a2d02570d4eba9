#include "tests/engines/judge.h"

#include <algorithm>
#include <cmath>
#include <cstdio>

#include "solver/decide/feasibility.h"
#include "solver/language/model.h"
#include "tests/engines/refutation.h"

namespace sdpsol::testing {
namespace {

bool is_feasible(Claim claim) {
  return claim == Claim::kFeasible;
}

/// Where all inequalities are strict, a point has room in all of them.
bool all_strict(const Problem& problem) {
  return std::all_of(problem.blocks.begin(), problem.blocks.end(),
                     [](const Block& block) { return block.sense == Sense::kStrict; });
}

/// That no point is in the box, or has room in everything, contradicts one that is, or has.
bool denies_points(Claim claim, bool with_room) {
  return claim == Claim::kInfeasible || claim == Claim::kEmptyBox ||
         (claim == Claim::kBorderline && with_room);
}

/// A bound is proven for every point, also for that of the other.
bool bound_is_passed(const Problem& problem, const Outcome& bounded, const Outcome& other) {
  return bounded.bound && other.objective &&
         exceeds(*other.objective, *bounded.bound, grain_of(problem, other));
}

bool has_gap(const Outcome& outcome) {
  const Parameters usual;
  const double allowed =
      std::max(usual.absolute_tolerance, usual.relative_tolerance * std::fabs(*outcome.objective));
  return !(*outcome.bound - *outcome.objective <= allowed);
}

const char* name_of(Truth truth) {
  switch (truth) {
    case Truth::kUnknown:
      return "nothing";
    case Truth::kFeasible:
      return "a point";
    case Truth::kInfeasible:
      return "a contradiction";
    case Truth::kOutsideBox:
      return "a point outside the box";
  }
  return "";
}

}  // namespace

Claim claim_of(const Outcome& outcome) {
  switch (outcome.verdict) {
    case Verdict::kFeasible:
      return Claim::kFeasible;
    case Verdict::kInfeasible:
      return Claim::kInfeasible;
    case Verdict::kUndetermined:
      break;
  }
  if (outcome.certificate.empty()) return Claim::kNone;
  return outcome.reason == kNoRoomLeft ? Claim::kBorderline : Claim::kEmptyBox;
}

const char* name_of(Claim claim) {
  switch (claim) {
    case Claim::kNone:
      return "open";
    case Claim::kFeasible:
      return "feasible";
    case Claim::kInfeasible:
      return "infeasible";
    case Claim::kEmptyBox:
      return "empty box";
    case Claim::kBorderline:
      return "borderline";
  }
  return "";
}

Judgement judge(const EngineProblem& drawn, const Outcome& first, Fallback fallback,
                const Outcome& reference) {
  Judgement result;
  result.truth = drawn.truth;
  result.has_room = drawn.has_room;
  result.first = claim_of(first);
  result.reference = claim_of(reference);
  result.problem_class = drawn.problem_class();
  result.first_refutation = refutation(drawn, first);
  result.reference_refutation = refutation(drawn, reference);
  result.first_against_truth = result.first_refutation != nullptr;
  result.reference_against_truth = result.reference_refutation != nullptr;
  const bool strict = all_strict(drawn.problem);
  result.against_each_other =
      (is_feasible(result.first) && denies_points(result.reference, strict)) ||
      (is_feasible(result.reference) && denies_points(result.first, strict)) ||
      bound_is_passed(drawn.problem, first, reference) ||
      bound_is_passed(drawn.problem, reference, first);
  result.first_left_room = drawn.has_room && first.verdict == Verdict::kUndetermined;
  result.reference_left_room = drawn.has_room && reference.verdict == Verdict::kUndetermined;
  result.fallback = fallback;
  if (drawn.optimum && first.objective) {
    result.optimum_is_known = true;
    result.first_objective = *first.objective;
    result.first_has_gap = has_gap(first);
    result.first_from_optimum =
        std::fabs(*first.objective - *drawn.optimum) / std::max(1.0, std::fabs(*drawn.optimum));
  }
  result.both_have_objectives = first.objective && reference.objective;
  if (result.both_have_objectives) {
    result.first_objective = *first.objective;
    result.reference_objective = *reference.objective;
    result.difference = std::fabs(*first.objective - *reference.objective) /
                        std::max(1.0, std::fabs(*reference.objective));
    result.first_has_gap = has_gap(first);
    result.reference_has_gap = has_gap(reference);
  }
  return result;
}

std::string text_of(const Judgement& j) {
  std::string text = std::string("planted ") + name_of(j.truth) + ", first " + name_of(j.first) +
                     ", reference " + name_of(j.reference);
  if (j.first_refutation != nullptr) text += std::string(" - first: ") + j.first_refutation;
  if (j.reference_refutation != nullptr) {
    text += std::string(" - reference: ") + j.reference_refutation;
  }
  if (j.fell_back()) text += j.fallback_helped() ? ", fell back with success" : ", fell back";
  if (j.both_have_objectives) {
    char numbers[160];
    std::snprintf(numbers, sizeof numbers, ", objectives %.17g%s and %.17g%s, %.1e apart",
                  j.first_objective, j.first_has_gap ? " (gap)" : "", j.reference_objective,
                  j.reference_has_gap ? " (gap)" : "", j.difference);
    text += numbers;
  }
  if (j.misses_optimum()) {
    char numbers[120];
    std::snprintf(numbers, sizeof numbers, ", objective %.17g%s is %.1e from the optimum",
                  j.first_objective, j.first_has_gap ? " (gap)" : "", j.first_from_optimum);
    text += numbers;
  }
  return text;
}

}  // namespace sdpsol::testing
