// The second phase: how good can the objective be?
#pragma once

#include <vector>

#include "solver/decide/program.h"
#include "solver/engine/engine.h"

namespace sdpsol {

/// What a run with the objective yields. Nothing here is proven but `bound` and
/// `interior`.
struct Optimum {
  std::vector<double> point;        ///< the engine's optimum, on or near the border
  std::vector<double> interior;     ///< an iterate with room in every inequality, if one was met
  std::vector<double> distance;     ///< of `interior`, see FeasibleCheck
  std::vector<double> best_inside;  ///< the best iterate that satisfies every inequality
  double bound = 0;                 ///< no point does better; infinite if unproven
  double bound_reach = 0;           ///< the bound is proven for the points with |v| <= this
  bool limited_by_box = false;
  /// If the engine believes that there is no point: the multipliers that say so.
  std::vector<Multiplier> ray;
  bool unbounded = false;  ///< the engine believes that the objective has no bound
  int iterations = 0;
};

/// Maximises the objective. The way to the optimum leads through the interior, so
/// that the verdict often needs no run of its own. Where the problem has no box
/// and the objective no bound, the optimum inside the box is looked for.
Optimum maximise(const Problem& problem, Selection selection, Engine& engine, const Limits& limits);

/// The point closest to `optimum` on the way to `inside` that satisfies every
/// inequality strictly, by no more than the check's own rounding; `inside` itself
/// if there is none.
std::vector<double> pull_inside(const Problem& problem, const std::vector<double>& optimum,
                                const std::vector<double>& inside);

/// Objective of the problem at a point.
double objective_at(const Problem& problem, const std::vector<double>& point);

}  // namespace sdpsol
