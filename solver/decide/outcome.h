// The answer to a problem.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "solver/check/multipliers.h"
#include "solver/problem/problem.h"

namespace sdpsol {

enum class Verdict { kFeasible, kInfeasible, kUndetermined };

struct Outcome {
  Verdict verdict = Verdict::kUndetermined;
  /// Why it could not be determined, or what contradiction was found.
  std::string reason;
  /// Conditions that the reason speaks of, by index, if it speaks of any.
  std::vector<std::int32_t> conditions;
  /// The unknowns: with kFeasible the reported point, with kUndetermined the
  /// last iterate, else empty.
  std::vector<double> point;
  /// The point which the verdict rests on; differs from `point` if there is an objective.
  std::vector<double> interior;
  /// In the sense of Problem (a maximisation); only with kFeasible.
  std::optional<double> objective;
  std::optional<double> bound;
  /// The bound is proven for the points with |v| <= bound_reach. In a problem without
  /// a box that may leave others, and is infinite where it does not.
  double bound_reach = 0;
  bool limited_by_box = false;
  /// The weights that prove the claim: kInfeasible, or kUndetermined for one of the
  /// reasons that are claims themselves. Empty where a single condition is false.
  std::vector<Multiplier> certificate;
  /// With kFeasible: an exact solution of the equations lies within distance[k] of
  /// interior[k]; empty if `interior` is one itself.
  std::vector<double> distance;
  int iterations = 0;
  /// Whose candidate was certified, or else was the last one.
  std::string engine;
  /// How often a second engine was asked because of what the first left open.
  int fallbacks = 0;
};

}  // namespace sdpsol
