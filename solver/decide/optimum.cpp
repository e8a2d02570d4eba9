#include "solver/decide/optimum.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "solver/check/exact_sum.h"
#include "solver/check/feasible.h"
#include "solver/check/infeasible.h"

namespace sdpsol {
namespace {

constexpr int kMostRounds = 5;
// The relative gap aimed at: people compare the fifth digit.
constexpr double kGap = 1e-7;
// The optimum itself is tried first, then shares of the way inside from 2^-43 to 1/2.
constexpr int kPulls = 44;

bool is_boxed(const Selection& selection, std::int32_t unknown) {
  return std::find(selection.boxed.begin(), selection.boxed.end(), unknown) !=
         selection.boxed.end();
}

/// Unknowns that only the objective knows have nothing but the box.
void box_free_unknowns(const Problem& problem, Selection& selection) {
  std::vector<bool> bounded(static_cast<std::size_t>(problem.unknowns), false);
  auto mark = [&](std::size_t block) {
    for (const AffineTerm& t : problem.blocks[block].terms) {
      if (varies(t)) bounded[static_cast<std::size_t>(t.unknown)] = true;
    }
  };
  for (const std::size_t b : selection.inequalities) mark(b);
  for (const PinnedRow& row : selection.equations) mark(row.block);
  for (std::int32_t k = 0; k < problem.unknowns; ++k) {
    const auto at = static_cast<std::size_t>(k);
    if (!bounded[at] && problem.objective->cost[at] != 0) selection.boxed.push_back(k);
  }
}

/// Boxes the unknowns that have left the box; all of them where the engine found
/// no bound on the objective.
bool box_what_left(const Problem& problem, const std::vector<double>& point, StopReason reason,
                   Selection& selection) {
  bool any = false;
  for (std::int32_t k = 0; k < problem.unknowns; ++k) {
    const bool left = !(std::fabs(point[static_cast<std::size_t>(k)]) <= problem.big_m);
    if ((left || reason == StopReason::kUnbounded) && !is_boxed(selection, k)) {
      selection.boxed.push_back(k);
      any = true;
    }
  }
  return any;
}

bool at_the_box(const Problem& problem, const Selection& selection,
                const std::vector<double>& point) {
  return std::any_of(selection.boxed.begin(), selection.boxed.end(), [&](std::int32_t k) {
    return std::fabs(point[static_cast<std::size_t>(k)]) > problem.big_m * (1 - 1e-6);
  });
}

/// Keeps the first iterate that a verdict can rest on, and the best one that is
/// certainly inside.
void watch(const Problem& problem, const std::vector<double>& point, Optimum& optimum) {
  if (optimum.interior.empty()) {
    FeasibleCheck check = check_point(problem, point);
    if (check.result != PointResult::kProven) return;
    optimum.interior = std::move(check.point);
    optimum.distance = std::move(check.distance);
    optimum.best_inside = optimum.interior;
  }
  if (objective_at(problem, point) <= objective_at(problem, optimum.best_inside)) return;
  FeasibleCheck check = check_point(problem, point, RoomAsked::kBeyondRounding);
  if (check.result == PointResult::kProven) optimum.best_inside = std::move(check.point);
}

}  // namespace

Optimum maximise(const Problem& problem, Selection selection, Engine& engine,
                 const Limits& limits) {
  Optimum optimum;
  optimum.bound = std::numeric_limits<double>::infinity();
  Scaling scaling = scale_by_constants(problem);
  box_free_unknowns(problem, selection);
  bool rescaled = false;
  for (int round = 0; round < kMostRounds; ++round) {
    const Program program(problem, selection, scaling, Goal::kObjective);
    if (!program.has_unknowns()) {
      optimum.point.assign(static_cast<std::size_t>(problem.unknowns), 0.0);
      optimum.bound = problem.objective->constant;
      break;
    }
    const Observer observer = [&](const Iterate& iterate) {
      watch(problem, program.point(iterate), optimum);
      return false;
    };
    const Candidate candidate = engine.solve(program.cones(), limits, observer);
    optimum.iterations += candidate.last.iteration;
    optimum.point = program.point(candidate.last);
    if (box_what_left(problem, optimum.point, candidate.reason, selection)) continue;
    for (const auto keep : {Program::Keep::kAll, Program::Keep::kActive}) {
      optimum.bound =
          std::min(optimum.bound, proven_bound(problem, program.multipliers(candidate.last, keep)));
    }
    if (optimum.best_inside.empty()) break;
    const std::vector<double> inside = pull_inside(problem, optimum.point, optimum.best_inside);
    if (objective_at(problem, inside) > objective_at(problem, optimum.best_inside)) {
      optimum.best_inside = inside;
    }
    const double value = objective_at(problem, optimum.best_inside);
    if (rescaled || optimum.bound - value <= kGap * std::fabs(value)) break;
    const auto finite = [](double v) { return std::isfinite(v); };
    if (!std::all_of(optimum.point.begin(), optimum.point.end(), finite)) break;
    // Sizes taken from the optimum itself give the engine another digit or two.
    scaling = scale_by_point(problem, scaling, optimum.point);
    rescaled = true;
  }
  optimum.limited_by_box = at_the_box(problem, selection, optimum.point);
  return optimum;
}

std::vector<double> pull_inside(const Problem& problem, const std::vector<double>& optimum,
                                const std::vector<double>& inside) {
  for (int step = 0; step < kPulls; ++step) {
    const double share = step == 0 ? 0.0 : std::ldexp(1.0, step - kPulls);
    std::vector<double> point(optimum.size());
    for (std::size_t k = 0; k < point.size(); ++k) {
      point[k] = optimum[k] + share * (inside[k] - optimum[k]);
      point[k] = std::clamp(point[k], -problem.big_m, problem.big_m);
    }
    FeasibleCheck check = check_point(problem, std::move(point), RoomAsked::kBeyondRounding);
    if (check.result == PointResult::kProven) return check.point;
  }
  return inside;
}

double objective_at(const Problem& problem, const std::vector<double>& point) {
  ExactSum sum;
  sum.add(problem.objective->constant);
  for (std::size_t k = 0; k < point.size(); ++k) {
    sum.add_product(problem.objective->cost[k], point[k]);
  }
  return sum.estimate();
}

}  // namespace sdpsol
