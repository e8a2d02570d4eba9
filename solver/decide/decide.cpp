#include "solver/decide/decide.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "solver/check/evaluate.h"
#include "solver/check/feasible.h"
#include "solver/check/infeasible.h"
#include "solver/check/obvious.h"
#include "solver/decide/feasibility.h"
#include "solver/decide/optimum.h"
#include "solver/decide/presolve.h"
#include "solver/dense/symmetric_eigen.h"
#include "solver/problem/noise.h"

namespace sdpsol {
namespace {

// A gap to the bound that no second engine is asked to narrow.
constexpr double kGoodGap = 1e-6;
// So few unknowns take an engine milliseconds.
constexpr std::int32_t kQuicklyAsked = 60;
// A reported point that is as near to the box is at its border, but for being inside.
constexpr double kNearTheBox = 1 - 1e-3;
constexpr const char* kContradiction = "the conditions contradict each other";

Outcome infeasible(std::string reason, Proof proof, int iterations) {
  Outcome outcome;
  outcome.verdict = Verdict::kInfeasible;
  outcome.reason = std::move(reason);
  outcome.conditions = std::move(proof.conditions);
  outcome.certificate = std::move(proof.multipliers);
  outcome.iterations = iterations;
  return outcome;
}

/// A strict inequality between constants without room decides whatever the
/// unknowns are.
std::optional<Outcome> decided_by_constants(const Problem& problem) {
  const std::vector<double> origin(static_cast<std::size_t>(problem.unknowns), 0.0);
  for (std::size_t b = 0; b < problem.blocks.size(); ++b) {
    const Block& block = problem.blocks[b];
    if (block.sense != Sense::kStrict || has_unknowns(block)) continue;
    const Evaluated at = evaluate(block, origin);
    const Eigen::VectorXd size = at.magnitude.diagonal();
    if (!(size.minCoeff() > 0) || relative_room(at) > 2 * kRoom) continue;
    const Eigen::VectorXd scale = size.cwiseSqrt().cwiseInverse();
    const SymmetricEigen eigen =
        symmetric_eigen(scale.asDiagonal() * at.value * scale.asDiagonal());
    const Eigen::MatrixXd factor = scale.asDiagonal() * eigen.vectors.col(0);
    Proof proof = proof_by(problem, {{b, factor}});
    const Disproof disproof = disprove(problem, proof.multipliers);
    if (disproof == Disproof::kNone) continue;
    if (disproof == Disproof::kInfeasible) {
      return infeasible("a relation between constants is false", std::move(proof), 0);
    }
    Outcome outcome;
    outcome.reason = kNoRoomLeft;
    outcome.conditions = std::move(proof.conditions);
    outcome.certificate = std::move(proof.multipliers);
    return outcome;
  }
  return std::nullopt;
}

/// Equations that contradict each other leave an engine nothing to work on.
std::optional<Outcome> contradictory_equations(const Problem& problem, const Selection& selection) {
  if (selection.equations.empty()) return std::nullopt;
  const std::vector<double> sizes = scale_by_constants(problem).unknown;
  Proof proof = proof_by(problem, contradiction_among(problem, selection.equations, sizes));
  if (disprove(problem, proof.multipliers) != Disproof::kInfeasible) return std::nullopt;
  return infeasible("equations contradict each other", std::move(proof), 0);
}

/// The engine's optimum is a candidate: the box is no limit of a point that is far from it.
bool is_at_the_box(const Problem& problem, const std::vector<double>& point) {
  return std::any_of(point.begin(), point.end(),
                     [&](double v) { return std::fabs(v) >= kNearTheBox * problem.big_m; });
}

Outcome feasible(const Problem& problem, const Optimum& optimum, std::vector<double> interior,
                 std::vector<double> distance) {
  Outcome outcome;
  outcome.verdict = Verdict::kFeasible;
  outcome.point = optimum.best_inside.empty() ? pull_inside(problem, optimum.point, interior)
                                              : optimum.best_inside;
  outcome.interior = std::move(interior);
  outcome.distance = std::move(distance);
  outcome.objective = objective_at(problem, outcome.point);
  outcome.bound = optimum.bound;
  outcome.bound_reach = optimum.bound_reach;
  outcome.limited_by_box = optimum.limited_by_box && is_at_the_box(problem, outcome.point);
  return outcome;
}

/// @param problem without obvious contradictions, its singular matrices reduced.
Outcome decide_by_engine(const Problem& problem, Engine& engine, const Limits& limits) {
  const Selection selection = select_conditions(problem);
  if (auto outcome = contradictory_equations(problem, selection)) return *outcome;

  Optimum optimum;
  if (problem.objective) {
    optimum = maximise(problem, selection, engine, limits);
    if (!optimum.interior.empty()) {
      Outcome outcome = feasible(problem, optimum, optimum.interior, optimum.distance);
      outcome.iterations = optimum.iterations;
      return outcome;
    }
    if (disprove(problem, optimum.ray) == Disproof::kInfeasible) {
      return infeasible(kContradiction, proof_by(problem, std::move(optimum.ray)),
                        optimum.iterations);
    }
  }
  Feasibility found = find_feasible_point(problem, selection, engine, limits);
  const int iterations = optimum.iterations + found.iterations;
  switch (found.verdict) {
    case Verdict::kInfeasible:
      return infeasible(kContradiction, std::move(found.proof), iterations);
    case Verdict::kFeasible: {
      Outcome outcome;
      if (problem.objective) {
        outcome = feasible(problem, optimum, std::move(found.point), std::move(found.distance));
      } else {
        outcome.verdict = Verdict::kFeasible;
        outcome.interior = found.point;
        outcome.distance = std::move(found.distance);
        outcome.point = std::move(found.point);
      }
      outcome.iterations = iterations;
      return outcome;
    }
    case Verdict::kUndetermined:
      break;
  }
  Outcome outcome;
  outcome.reason = std::move(found.reason);
  outcome.conditions = std::move(found.proof.conditions);
  outcome.certificate = std::move(found.proof.multipliers);
  outcome.point = std::move(found.point);
  outcome.iterations = iterations;
  return outcome;
}

Outcome decide_reduced(const Problem& problem, Engine& engine, const Limits& limits) {
  if (!has_singular_matrices(problem)) return decide_by_engine(problem, engine, limits);
  Outcome outcome = decide_by_engine(reduce_singular_matrices(problem), engine, limits);
  restore_struck_rows(problem, outcome.certificate);
  return outcome;
}

Outcome decide_as_written(const Problem& written, Engine& engine, const Limits& limits);

/// Matrices without an interior in reach give an engine trouble, and the contradiction
/// often needs no more of them than their diagonals.
Outcome decide_by_diagonals(const Problem& problem, Outcome undetermined, Engine& engine,
                            const Limits& limits) {
  const DiagonalRelaxation relaxation = relax_to_diagonals(problem);
  Outcome relaxed = decide_as_written(relaxation.problem, engine, limits);
  undetermined.iterations += relaxed.iterations;
  if (relaxed.verdict != Verdict::kInfeasible) return undetermined;
  relaxed.certificate = lift_multipliers(problem, relaxation, relaxed.certificate);
  relaxed.iterations = undetermined.iterations;
  return relaxed;
}

/// Takes every coefficient at its word.
Outcome decide_as_written(const Problem& written, Engine& engine, const Limits& limits) {
  if (auto found = find_obvious_contradiction(written)) {
    return infeasible(found->reason, {found->conditions, {}}, 0);
  }
  if (auto outcome = decided_by_constants(written)) return *outcome;
  Outcome outcome = decide_reduced(written, engine, limits);
  const bool has_matrices = std::any_of(written.blocks.begin(), written.blocks.end(),
                                        [](const Block& block) { return block.size > 1; });
  if (outcome.verdict != Verdict::kUndetermined || !has_matrices) return outcome;
  return decide_by_diagonals(written, std::move(outcome), engine, limits);
}

/// What is shown as a certificate is what the checker made of it.
Outcome with_balanced_certificate(const Problem& problem, Outcome outcome) {
  outcome.certificate = balanced_multipliers(problem, outcome.certificate);
  return outcome;
}

Outcome decided_by_noise(Outcome last, std::vector<std::int32_t> conditions) {
  Outcome outcome;
  outcome.reason = "decided by coefficients at noise level";
  outcome.conditions = std::move(conditions);
  outcome.point = std::move(last.point);
  outcome.iterations = last.iterations;
  return outcome;
}

Outcome decide_both_ways(const Problem& problem, Engine& engine, const Limits& limits) {
  std::vector<std::int32_t> noisy = noisy_conditions(problem);
  Outcome as_written = decide_as_written(problem, engine, limits);
  as_written = with_balanced_certificate(problem, std::move(as_written));
  if (noisy.empty()) return as_written;

  const Problem clean = without_noise(problem);
  if (as_written.verdict == Verdict::kFeasible &&
      check_point(clean, as_written.interior).result == PointResult::kProven) {
    return as_written;
  }
  Outcome cleaned = decide_as_written(clean, engine, limits);
  as_written.iterations += cleaned.iterations;
  if (cleaned.verdict == as_written.verdict) return as_written;
  return decided_by_noise(std::move(as_written), std::move(noisy));
}

/// How far the bound is from the objective, relative to it.
double relative_gap(const Outcome& outcome) {
  const double value = *outcome.objective;
  return (*outcome.bound - value) / std::max(1.0, std::fabs(value));
}

/// True if another engine may say more.
bool leaves_something_open(const Problem& problem, const Outcome& outcome) {
  switch (outcome.verdict) {
    case Verdict::kInfeasible:
      return false;
    case Verdict::kUndetermined:
      // That there is no room, or nothing in the box, is an answer where it is proven. What
      // is not strict may hold without room, and a contradiction may need no box: whoever
      // can be asked quickly is asked.
      return outcome.certificate.empty() || problem.unknowns <= kQuicklyAsked;
    case Verdict::kFeasible:
      return outcome.objective && !(relative_gap(outcome) <= kGoodGap);
  }
  return true;
}

/// Whether the point of `second` shows that `first` is not as good as points can be.
bool is_surpassed(const Outcome& first, const Outcome& second) {
  const double value = *first.objective;
  return *second.objective - value > kGoodGap * std::max(1.0, std::fabs(value));
}

/// Whether `first` stays the answer to a problem of which `second` says so much.
bool is_kept(const Outcome& first, const Outcome& second) {
  switch (second.verdict) {
    case Verdict::kUndetermined:
      return first.verdict != Verdict::kUndetermined || !first.certificate.empty();
    case Verdict::kInfeasible:
      return false;
    case Verdict::kFeasible:
      return first.verdict == Verdict::kFeasible &&
             !(relative_gap(second) <= relative_gap(first) / 2) && !is_surpassed(first, second);
  }
  return true;
}

}  // namespace

Outcome decide(const Problem& problem, Engine& engine, const Limits& limits) {
  Outcome outcome = decide_both_ways(problem, engine, limits);
  outcome.engine = engine.name();
  return outcome;
}

Outcome decide_with_fallback(const Problem& problem, Engine& first, Engine& fallback,
                             const Limits& limits) {
  Outcome outcome = decide(problem, first, limits);
  if (!leaves_something_open(problem, outcome) || outcome.engine == fallback.name()) return outcome;
  Outcome second = decide(problem, fallback, limits);
  const int iterations = outcome.iterations + second.iterations;
  if (!is_kept(outcome, second)) outcome = std::move(second);
  outcome.iterations = iterations;
  outcome.fallbacks = 1;
  return outcome;
}

}  // namespace sdpsol
