#include "solver/decide/scaling.h"

#include <algorithm>
#include <cmath>

namespace sdpsol {
namespace {

double size_of(const AffineTerm& term, const std::vector<double>& sizes) {
  return term.unknown == kConstant ? 1 : sizes[static_cast<std::size_t>(term.unknown)];
}

std::vector<Eigen::VectorXd> diagonals(const Problem& problem, const std::vector<double>& sizes) {
  std::vector<Eigen::VectorXd> result;
  result.reserve(problem.blocks.size());
  for (const Block& block : problem.blocks) {
    Eigen::VectorXd d = Eigen::VectorXd::Zero(block.size);
    for (const AffineTerm& t : block.terms) {
      if (t.row == t.column) d[t.row] += t.magnitude * size_of(t, sizes);
    }
    result.push_back(std::move(d));
  }
  return result;
}

/// Where no unknown has a size: the constants alone.
std::vector<Eigen::VectorXd> constant_diagonals(const Problem& problem) {
  std::vector<Eigen::VectorXd> result;
  result.reserve(problem.blocks.size());
  for (const Block& block : problem.blocks) {
    Eigen::VectorXd d = Eigen::VectorXd::Zero(block.size);
    for (const AffineTerm& t : block.terms) {
      if (t.unknown != kConstant) break;
      if (t.row == t.column) d[t.row] += t.magnitude;
    }
    result.push_back(std::move(d));
  }
  return result;
}

/// Sizes suggested for one unknown by the entries it occurs in: size_i makes
/// entry i comparable with what stands beside it.
struct Suggestions {
  double sum_of_squares = 0;  ///< of 1 / size_i
  int count = 0;
  void add(double inverse_size) {
    sum_of_squares += inverse_size * inverse_size;
    ++count;
  }
  /// Near the least of the suggestions: an unknown that is small where it
  /// matters must not be measured by a far-away bound.
  double size() const { return 1 / std::sqrt(sum_of_squares / count); }
};

/// One pass: every unknown without a size gets one from the entries whose
/// diagonals are known by now. Returns whether any did.
bool suggest(const Problem& problem, const std::vector<Eigen::VectorXd>& d,
             std::vector<double>& sizes) {
  std::vector<Suggestions> suggestions(sizes.size());
  for (std::size_t b = 0; b < problem.blocks.size(); ++b) {
    const Eigen::VectorXd roots = d[b].cwiseSqrt();
    if (!(roots.maxCoeff() > 0)) continue;
    for (const AffineTerm& t : problem.blocks[b].terms) {
      if (t.unknown == kConstant || !(t.magnitude > 0)) continue;
      const auto k = static_cast<std::size_t>(t.unknown);
      const double entry = roots[t.row] * roots[t.column];
      if (sizes[k] == 0 && entry > 0) suggestions[k].add(t.magnitude / entry);
    }
  }
  bool any = false;
  for (std::size_t k = 0; k < sizes.size(); ++k) {
    if (suggestions[k].count == 0) continue;
    sizes[k] = std::clamp(suggestions[k].size(), 1e-150, 1e150);
    any = true;
  }
  return any;
}

/// The first unknown that still has no size gets one by itself: in a problem
/// without constants the overall size is free.
bool choose_one(const Problem& problem, std::vector<double>& sizes) {
  for (const Block& block : problem.blocks) {
    for (const AffineTerm& t : block.terms) {
      if (t.unknown == kConstant || !(t.magnitude > 0)) continue;
      double& size = sizes[static_cast<std::size_t>(t.unknown)];
      if (size != 0) continue;
      size = std::clamp(1 / t.magnitude, 1e-150, 1e150);
      return true;
    }
  }
  return false;
}

/// Diagonal entries that only off-diagonal terms reach are measured by these.
void fill_empty_diagonals(const Problem& problem, Scaling& scaling) {
  for (std::size_t b = 0; b < problem.blocks.size(); ++b) {
    Eigen::VectorXd& d = scaling.diagonal[b];
    const Eigen::VectorXd known = d;
    for (const AffineTerm& t : problem.blocks[b].terms) {
      if (t.row == t.column) continue;
      const double entry = t.magnitude * size_of(t, scaling.unknown);
      auto fill = [&](std::int32_t empty, std::int32_t other) {
        if (known[empty] > 0) return;
        d[empty] = std::max(d[empty], known[other] > 0 ? entry * entry / known[other] : entry);
      };
      fill(t.row, t.column);
      fill(t.column, t.row);
    }
    for (double& entry : d) entry = entry > 0 ? entry : 1.0;
  }
}

double objective_size(const Problem& problem, const std::vector<double>& sizes) {
  if (!problem.objective) return 1;
  double size = 0;
  for (std::size_t k = 0; k < sizes.size(); ++k) {
    size += std::fabs(problem.objective->cost[k]) * sizes[k];
  }
  return size > 0 ? size : 1;
}

}  // namespace

Scaling scale_by_constants(const Problem& problem) {
  Scaling scaling;
  scaling.unknown.assign(static_cast<std::size_t>(problem.unknowns), 0.0);
  std::vector<double>& sizes = scaling.unknown;
  scaling.diagonal = constant_diagonals(problem);
  while (suggest(problem, scaling.diagonal, sizes) || choose_one(problem, sizes)) {
    scaling.diagonal = diagonals(problem, sizes);
    // The usual end, without another look at everything.
    if (std::find(sizes.begin(), sizes.end(), 0.0) == sizes.end()) break;
  }
  for (double& size : scaling.unknown) size = size > 0 ? size : 1.0;
  fill_empty_diagonals(problem, scaling);
  scaling.objective = objective_size(problem, scaling.unknown);
  return scaling;
}

Scaling keep_scale(const Problem& problem) {
  Scaling scaling;
  scaling.unknown.assign(static_cast<std::size_t>(problem.unknowns), 1.0);
  for (const Block& block : problem.blocks) {
    scaling.diagonal.emplace_back(Eigen::VectorXd::Ones(block.size));
  }
  return scaling;
}

Scaling scale_by_point(const Problem& problem, const Scaling& previous,
                       const std::vector<double>& point) {
  Scaling scaling;
  scaling.unknown = previous.unknown;
  for (std::size_t k = 0; k < point.size(); ++k) {
    scaling.unknown[k] = std::max(std::fabs(point[k]), 1e-3 * previous.unknown[k]);
  }
  scaling.diagonal = diagonals(problem, scaling.unknown);
  fill_empty_diagonals(problem, scaling);
  scaling.objective = objective_size(problem, scaling.unknown);
  return scaling;
}

}  // namespace sdpsol
