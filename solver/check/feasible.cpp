#include "solver/check/feasible.h"

#include <algorithm>
#include <cmath>

#include "solver/check/equations.h"
#include "solver/check/evaluate.h"
#include "solver/check/null_vectors.h"
#include "solver/check/positive.h"

namespace sdpsol {
namespace {

constexpr double kNearlySingular = 1e-8;
// More than all products that underflow in one block can lose.
constexpr double kUnderflow = 0x1p-1040;

/// A block at every point within `distance` (per unknown; empty: the point only).
struct Enclosed {
  Eigen::MatrixXd value;
  Eigen::MatrixXd error;      ///< entry by entry
  Eigen::VectorXd magnitude;  ///< diag T, its largest value over the region
};

Enclosed enclose(const Block& block, const std::vector<double>& point,
                 const std::vector<double>& distance) {
  Evaluated at = evaluate(block, point);
  Enclosed region{std::move(at.value), at.magnitude * at.rounding, at.magnitude.diagonal()};
  region.error.array() += kUnderflow;
  if (distance.empty()) return region;
  for (const AffineTerm& t : block.terms) {
    if (t.unknown == kConstant) continue;
    const double d = distance[static_cast<std::size_t>(t.unknown)] * (1 + 1e-12);
    region.error(t.row, t.column) += d * std::fabs(t.value);
    if (t.row == t.column) {
      region.magnitude[t.row] += d * t.magnitude;
    } else {
      region.error(t.column, t.row) += d * std::fabs(t.value);
    }
  }
  return region;
}

/// Part of T that covers what subtracting share*T rounds: T is summed in floating point
/// as well, its own rounding is far below 1e-9 of it.
double rounding_of_share(double share) {
  return std::fabs(share) * 1e-9 + 0x1p-50;
}

/// F - share*diag(T) positive definite all over the region.
bool holds(Enclosed region, double share) {
  region.value.diagonal() -= share * region.magnitude;
  region.error.diagonal() += rounding_of_share(share) * region.magnitude;
  return certainly_positive_definite(region.value, region.error);
}

/// The same for a block of size 1, as numbers.
bool row_holds(const Block& row, const std::vector<double>& point,
               const std::vector<double>& distance, double share) {
  const EvaluatedRow at = evaluate_row(row, point);
  double error = at.magnitude * at.rounding + kUnderflow;
  double magnitude = at.magnitude;
  for (const AffineTerm& t : row.terms) {
    if (distance.empty()) break;
    if (t.unknown == kConstant) continue;
    const double d = distance[static_cast<std::size_t>(t.unknown)] * (1 + 1e-12);
    error += d * std::fabs(t.value);
    magnitude += d * t.magnitude;
  }
  return certainly_positive(at.value - share * magnitude,
                            error + rounding_of_share(share) * magnitude);
}

/// A row without any coefficient that is not 0 and a constant that is not
/// negative needs no room and no equation to hold when it is not strict.
bool is_trivially_true(const Block& block) {
  if (block.size != 1 || block.sense == Sense::kStrict) return false;
  double constant = 0;
  for (const AffineTerm& t : block.terms) {
    if (t.unknown == kConstant) {
      constant = t.value;
    } else if (t.value != 0) {
      return false;
    }
  }
  return block.sense == Sense::kEqual ? constant == 0 : constant >= 0;
}

PointResult check_matrix_without_room(const Block& block, const std::vector<double>& point,
                                      const std::vector<double>& distance) {
  const Enclosed region = enclose(block, point, distance);
  if (holds(region, 0)) return PointResult::kProven;
  // Far from positive semidefinite no null vector can help, and looking for one costs
  // more than a factorisation.
  if (!holds(region, -kNearlySingular)) return PointResult::kNotProven;
  const NullSplit split = split_null_vectors(block);
  if (!split.found) return PointResult::kOnlyWithin1e8;
  if (split.rest.size == 0) return PointResult::kProven;
  return holds(enclose(split.rest, point, distance), 0) ? PointResult::kProven
                                                        : PointResult::kOnlyWithin1e8;
}

bool in_box(const Problem& problem, const std::vector<double>& point,
            const std::vector<double>& distance) {
  for (std::size_t k = 0; k < point.size(); ++k) {
    if (!std::isfinite(point[k])) return false;
    if (!problem.boxed) continue;
    const double reach = distance.empty() ? 0.0 : distance[k];
    if (!(std::fabs(point[k]) <= problem.big_m)) return false;
    // The sum rounds: an exact solution may be beyond although it seems to be at the border.
    if (reach > 0 && !(std::fabs(point[k]) + reach < problem.big_m)) return false;
  }
  return true;
}

/// The rows that must be taken as equations at this point.
std::vector<std::size_t> tight_rows(const Problem& problem, const std::vector<double>& point,
                                    double share) {
  std::vector<std::size_t> tight;
  for (std::size_t b = 0; b < problem.blocks.size(); ++b) {
    const Block& block = problem.blocks[b];
    if (block.size != 1 || block.sense == Sense::kStrict || is_trivially_true(block)) continue;
    if (block.sense == Sense::kEqual || !row_holds(block, point, {}, share)) tight.push_back(b);
  }
  return tight;
}

/// Equations only ever join: a row that was one stays one, although the point that
/// was moved onto it may seem to leave room again.
std::vector<std::size_t> settle_equations(const Problem& problem, std::vector<double>& point,
                                          double share) {
  std::vector<std::size_t> equations;
  for (;;) {
    std::vector<std::size_t> all = tight_rows(problem, point, share);
    all.insert(all.end(), equations.begin(), equations.end());
    std::sort(all.begin(), all.end());
    all.erase(std::unique(all.begin(), all.end()), all.end());
    if (all.size() == equations.size()) return equations;
    equations = std::move(all);
    move_onto(problem, equations, point);
  }
}

}  // namespace

FeasibleCheck check_point(const Problem& problem, std::vector<double> point, RoomAsked asked) {
  FeasibleCheck check;
  check.point = std::move(point);
  for (const double v : check.point) {
    if (!std::isfinite(v)) return check;
  }
  const double share = asked == RoomAsked::kForVerdict ? kRoom : 0;
  const std::vector<std::size_t> equations = settle_equations(problem, check.point, share);
  if (!equations.empty()) {
    auto distance = distance_to_solution(problem, equations, check.point);
    if (!distance) return check;
    check.distance = std::move(*distance);
  }
  if (!in_box(problem, check.point, check.distance)) return check;

  PointResult worst = PointResult::kProven;
  for (std::size_t b = 0; b < problem.blocks.size(); ++b) {
    const Block& block = problem.blocks[b];
    if (std::binary_search(equations.begin(), equations.end(), b) || is_trivially_true(block)) {
      continue;
    }
    if (block.size == 1) {
      // A non-strict row that is no equation had room at the point itself; now
      // it only has to hold for its neighbours as well.
      const double needed = block.sense == Sense::kStrict ? share : 0;
      if (!row_holds(block, check.point, check.distance, needed)) return check;
      continue;
    }
    if (block.sense == Sense::kStrict) {
      if (!holds(enclose(block, check.point, check.distance), share)) return check;
      continue;
    }
    const PointResult result = check_matrix_without_room(block, check.point, check.distance);
    if (result == PointResult::kNotProven) return check;
    if (result == PointResult::kOnlyWithin1e8) worst = result;
  }
  check.result = worst;
  return check;
}

}  // namespace sdpsol
