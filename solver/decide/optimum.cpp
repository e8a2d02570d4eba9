#include "solver/decide/optimum.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "solver/check/exact_sum.h"
#include "solver/check/feasible.h"
#include "solver/check/infeasible.h"

namespace sdpsol {
namespace {

constexpr int kMaxBoxRounds = 5;
// The relative gap aimed at: people compare the fifth digit.
constexpr double kGap = 1e-7;
// An engine that would leave the box stays as far inside of it.
constexpr double kAtTheBox = 1 - 1e-4;
// Bounds that are no farther apart tell one optimum.
constexpr double kSameBound = 1e-6;
// What interior-point codes of the field ask of themselves.
constexpr double kUsualAccuracy = 1e-8;
// Shares of the way inside reach from 2^-43 to 1/2.
constexpr int kPulls = 44;

bool is_boxed(const Selection& selection, std::int32_t unknown) {
  return std::find(selection.boxed.begin(), selection.boxed.end(), unknown) !=
         selection.boxed.end();
}

/// Unknowns of the objective that no condition knows: nothing but the box bounds them.
std::vector<std::int32_t> free_unknowns(const Problem& problem, const Selection& selection) {
  const std::vector<bool> bounded = unknowns_in(problem, selection);
  std::vector<std::int32_t> free;
  for (std::int32_t k = 0; k < problem.unknowns; ++k) {
    const auto at = static_cast<std::size_t>(k);
    if (!bounded[at] && problem.objective->cost[at] != 0) free.push_back(k);
  }
  return free;
}

Problem in_box(Problem problem, double big_m) {
  problem.boxed = true;
  problem.big_m = big_m;
  return problem;
}

bool all_finite(const std::vector<double>& numbers) {
  return std::all_of(numbers.begin(), numbers.end(), [](double v) { return std::isfinite(v); });
}

class Maximisation {
 public:
  Maximisation(const Problem& problem, Selection selection, Engine& engine, const Limits& limits)
      : problem_(problem),
        selection_(std::move(selection)),
        engine_(engine),
        limits_(limits),
        scaling_(problem.boxed ? scale_by_constants(problem) : keep_scale(problem)),
        free_(free_unknowns(problem, selection_)) {
    optimum_.bound = std::numeric_limits<double>::infinity();
    optimum_.bound_reach = problem.boxed ? problem.big_m : HUGE_VAL;
    // Problems of exchange formats come in the units in which their authors solved them.
    if (!problem.boxed) limits_.accuracy = kUsualAccuracy;
  }

  Optimum run() {
    for (int round = 0; round < kMaxBoxRounds; ++round) {
      const Program program(problem_, selection_, scaling_, Goal::kObjective);
      if (!program.has_unknowns()) {
        optimum_.point = point_of(program, {});
        optimum_.bound = proven_bound(problem_, {});
        break;
      }
      const Candidate candidate = solve(program);
      optimum_.unbounded = candidate.reason == StopReason::kUnbounded;
      if (problem_.boxed && box_what_left()) continue;
      if (optimum_.interior.empty() && candidate.reason == StopReason::kInfeasible) {
        optimum_.ray = program.multipliers(candidate.last, Program::Keep::kEnough);
        break;
      }
      improve_bound(program, candidate.last);
      if (optimum_.interior.empty()) break;
      find_best_inside();
      if (rescaled_ || !all_finite(optimum_.point) || is_good(candidate)) break;
      scaling_ = scale_by_point(problem_, scaling_, optimum_.point);
      rescaled_ = true;
    }
    optimum_.limited_by_box = !unknowns_at_the_box().empty() && !bounded_without_box_;
    return std::move(optimum_);
  }

 private:
  Candidate solve(const Program& program) {
    trail_.clear();
    const Observer observer = [&](const Iterate& iterate) {
      trail_.push_back(point_of(program, iterate));
      if (optimum_.interior.empty()) examine_interior();
      return false;
    };
    Candidate candidate = program.solve_by(engine_, limits_, observer);
    optimum_.iterations += candidate.last.iteration;
    optimum_.point = point_of(program, candidate.last);
    // Where equations leave nothing to choose, no engine makes a step.
    if (trail_.empty()) observer(candidate.last);
    return candidate;
  }

  /// The iterate in the unknowns of the problem; those that only the objective knows
  /// are at the border of the box.
  std::vector<double> point_of(const Program& program, const Iterate& iterate) const {
    std::vector<double> point = program.point(iterate);
    for (const std::int32_t k : free_) {
      const auto at = static_cast<std::size_t>(k);
      point[at] = std::copysign(problem_.big_m, problem_.objective->cost[at]);
    }
    return point;
  }

  /// The first iterate that a verdict can rest on.
  void examine_interior() {
    FeasibleCheck check = check_point(problem_, trail_.back());
    if (check.result != PointResult::kProven) return;
    optimum_.interior = std::move(check.point);
    optimum_.distance = std::move(check.distance);
    optimum_.best_inside = optimum_.interior;
  }

  /// False where other sizes may give the engine another digit or two.
  bool is_good(const Candidate& candidate) const {
    const double value = objective_at(problem_, optimum_.best_inside);
    if (optimum_.bound - value <= kGap * std::fabs(value)) return true;
    // Without a box a bound is proven from balanced multipliers only, which a better
    // point does not bring.
    return !problem_.boxed && candidate.reason == StopReason::kConverged;
  }

  /// Boxes the unknowns that have left the box; all of them where the engine found
  /// no bound on the objective. The box is their size then, until a point tells better.
  bool box_what_left() {
    std::vector<double> sizes = scaling_.unknown;
    bool any = false;
    for (std::int32_t k = 0; k < problem_.unknowns; ++k) {
      const auto at = static_cast<std::size_t>(k);
      const bool left = !(std::fabs(optimum_.point[at]) <= problem_.big_m);
      if ((left || optimum_.unbounded) && !is_boxed(selection_, k)) {
        selection_.boxed.push_back(k);
        sizes[at] = problem_.big_m;
        any = true;
      }
    }
    if (any) scaling_ = scale_by_point(problem_, scaling_, sizes);
    return any;
  }

  void improve_bound(const Program& program, const Iterate& last) {
    using Keep = Program::Keep;
    if (problem_.boxed) {
      try_bound(problem_, program.multipliers(last, Keep::kEnough)) ||
          try_bound(problem_, program.multipliers(last, Keep::kActive));
      if (!unknowns_at_the_box().empty()) try_without_box(program, last);
    } else {
      // Where no exact balance is in reach, what is left is charged to a box.
      try_bound(problem_, program.multipliers(last, Keep::kEnough)) ||
          try_bound(in_box(problem_, reach()), program.multipliers(last, Keep::kAll));
    }
  }

  /// An unknown may be at the box where others of the same objective are not: then the
  /// bound needs no box.
  void try_without_box(const Program& program, const Iterate& last) {
    Problem unboxed = problem_;
    unboxed.boxed = false;
    const double allowed = optimum_.bound + kSameBound * std::max(1.0, std::fabs(optimum_.bound));
    for (const auto keep : {Program::Keep::kEnough, Program::Keep::kActive}) {
      if (bounded_without_box_ || !std::isfinite(optimum_.bound)) return;
      bounded_without_box_ = proven_bound(unboxed, program.multipliers(last, keep)) <= allowed;
    }
  }

  /// Keeps the best proven bound. True if it is as close to the value as is aimed at.
  bool try_bound(const Problem& problem, const std::vector<Multiplier>& multipliers) {
    const double bound = proven_bound(problem, multipliers, unknowns_at_the_box());
    if (bound < optimum_.bound) {
      optimum_.bound = bound;
      optimum_.bound_reach = problem.boxed ? problem.big_m : HUGE_VAL;
    }
    const double value = objective_at(problem, optimum_.point);
    return optimum_.bound - value <= kGap * std::fabs(value);
  }

  /// The engine's iterates improve towards the end, and leave the inside only there.
  void find_best_inside() {
    double best = objective_at(problem_, optimum_.best_inside);
    for (auto point = trail_.rbegin(); point != trail_.rend(); ++point) {
      if (!(objective_at(problem_, *point) > best)) continue;
      FeasibleCheck check = check_point(problem_, *point, RoomAsked::kBeyondRounding);
      if (check.result != PointResult::kProven) continue;
      optimum_.best_inside = std::move(check.point);
      best = objective_at(problem_, optimum_.best_inside);
      break;
    }
    std::vector<double> inside = pull_inside(problem_, optimum_.point, optimum_.best_inside);
    if (objective_at(problem_, inside) > best) optimum_.best_inside = std::move(inside);
  }

  /// Where there is no box, how far a bound should reach at least: well beyond the
  /// point that it is for.
  double reach() const {
    double largest = problem_.big_m;
    for (const double v : optimum_.point) largest = std::max(largest, 10 * std::fabs(v));
    return largest;
  }

  std::vector<std::int32_t> unknowns_at_the_box() const {
    std::vector<std::int32_t> found = free_;
    for (const std::int32_t k : selection_.boxed) {
      const double v = std::fabs(optimum_.point[static_cast<std::size_t>(k)]);
      if (v > problem_.big_m * kAtTheBox) found.push_back(k);
    }
    return found;
  }

  const Problem& problem_;
  Selection selection_;
  Engine& engine_;
  Limits limits_;
  Scaling scaling_;
  std::vector<std::int32_t> free_;  ///< unknowns that only the objective knows
  bool rescaled_ = false;
  bool bounded_without_box_ = false;
  std::vector<std::vector<double>> trail_;  ///< the iterates of the present run
  Optimum optimum_;
};

}  // namespace

Optimum maximise(const Problem& problem, Selection selection, Engine& engine,
                 const Limits& limits) {
  const bool no_bound = !problem.boxed && !free_unknowns(problem, selection).empty();
  Optimum optimum;
  if (!no_bound) {
    optimum = Maximisation(problem, selection, engine, limits).run();
    if (problem.boxed || !optimum.unbounded) return optimum;
  }
  // Without a bound, the value inside the box is what can be told.
  const Problem inside = in_box(problem, problem.big_m);
  for (std::int32_t k = 0; k < problem.unknowns; ++k) selection.boxed.push_back(k);
  const int iterations = optimum.iterations;
  optimum = Maximisation(inside, std::move(selection), engine, limits).run();
  optimum.iterations += iterations;
  if (!optimum.limited_by_box) optimum.bound = std::numeric_limits<double>::infinity();
  return optimum;
}

std::vector<double> pull_inside(const Problem& problem, const std::vector<double>& optimum,
                                const std::vector<double>& inside) {
  const auto checked = [&](double share) {
    std::vector<double> point(optimum.size());
    for (std::size_t k = 0; k < point.size(); ++k) {
      point[k] = optimum[k] + share * (inside[k] - optimum[k]);
      if (problem.boxed) point[k] = std::clamp(point[k], -problem.big_m, problem.big_m);
    }
    return check_point(problem, std::move(point), RoomAsked::kBeyondRounding);
  };
  FeasibleCheck at_optimum = checked(0);
  if (at_optimum.result == PointResult::kProven) return std::move(at_optimum.point);
  // What lies farther inside than a point inside is inside: the least power of two is
  // found by halving.
  std::vector<double> best = inside;
  int outside = -kPulls;
  int within = 0;
  while (within - outside > 1) {
    const int exponent = outside + (within - outside) / 2;
    FeasibleCheck check = checked(std::ldexp(1.0, exponent));
    if (check.result == PointResult::kProven) {
      within = exponent;
      best = std::move(check.point);
    } else {
      outside = exponent;
    }
  }
  return best;
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
