#include "tests/engines/exact_truth.h"

#include <algorithm>
#include <utility>

namespace sdpsol::testing {
namespace {

Rational factor_of(const AffineTerm& term, const RationalPoint& point) {
  return term.unknown == kConstant ? Rational(1) : point[static_cast<std::size_t>(term.unknown)];
}

bool is_zero(const RationalMatrix& matrix) {
  for (std::size_t i = 0; i < matrix.size(); ++i) {
    for (std::size_t j = i; j < matrix.size(); ++j) {
      if (matrix.at(i, j) != 0) return false;
    }
  }
  return true;
}

bool in_box(const Problem& problem, const RationalPoint& point) {
  const Rational bound(problem.big_m);
  return !problem.boxed || std::all_of(point.begin(), point.end(),
                                       [&](const Rational& v) { return abs(v) <= bound; });
}

/// Solves the positive semidefinite system by elimination; where a pivot is 0 its
/// unknown stays 0.
std::vector<Rational> solve(std::vector<std::vector<Rational>> m, std::vector<Rational> right) {
  const std::size_t n = right.size();
  for (std::size_t p = 0; p < n; ++p) {
    if (m[p][p] == 0) continue;
    for (std::size_t i = 0; i < n; ++i) {
      if (i == p || m[i][p] == 0) continue;
      const Rational by = m[i][p] / m[p][p];
      for (std::size_t j = p; j < n; ++j) m[i][j] -= by * m[p][j];
      right[i] -= by * right[p];
    }
  }
  for (std::size_t p = 0; p < n; ++p) right[p] = m[p][p] == 0 ? Rational(0) : right[p] / m[p][p];
  return right;
}

}  // namespace

RationalPoint rational(const std::vector<double>& point) {
  return RationalPoint(point.begin(), point.end());
}

bool is_positive(RationalMatrix m, bool definite) {
  for (std::size_t p = 0; p < m.size(); ++p) {
    if (m.at(p, p) < 0 || (definite && m.at(p, p) == 0)) return false;
    for (std::size_t i = p + 1; i < m.size(); ++i) {
      if (m.at(p, i) == 0) continue;
      if (m.at(p, p) == 0) return false;
      const Rational by = m.at(p, i) / m.at(p, p);
      for (std::size_t j = i; j < m.size(); ++j) m.at(i, j) -= by * m.at(p, j);
    }
  }
  return true;
}

RationalMatrix value_at(const Block& block, const RationalPoint& point, const Rational& room) {
  RationalMatrix value(block.size);
  for (const AffineTerm& t : block.terms) {
    const Rational factor = factor_of(t, point);
    Rational& entry = value.at(static_cast<std::size_t>(t.row), static_cast<std::size_t>(t.column));
    entry += factor * Rational(t.value);
    if (t.row == t.column) entry -= room * abs(factor) * Rational(t.magnitude);
  }
  return value;
}

bool satisfies(const Problem& problem, const RationalPoint& point, const Rational& room) {
  return in_box(problem, point) &&
         std::all_of(problem.blocks.begin(), problem.blocks.end(), [&](const Block& block) {
           if (block.sense == Sense::kEqual) return value_at(block, point).at(0, 0) == 0;
           const bool definite = block.sense == Sense::kStrict || room != 0;
           return is_positive(value_at(block, point, room), definite);
         });
}

namespace {

/// F(v) + slack * (the sizes of what is added up, each unknown as large as the largest:
/// beside 1e3, 1e-13 is 0 but for rounding).
RationalMatrix loosened(const Block& block, const RationalPoint& point, const Rational& slack) {
  Rational largest = 1;
  for (const Rational& v : point) largest = std::max(largest, Rational(abs(v)));
  RationalMatrix value = value_at(block, point);
  for (const AffineTerm& t : block.terms) {
    if (t.row != t.column) continue;
    const auto i = static_cast<std::size_t>(t.row);
    value.at(i, i) += slack * (t.unknown == kConstant ? Rational(1) : largest) * t.magnitude;
  }
  return value;
}

}  // namespace

const char* violation(const Problem& problem, const RationalPoint& point, const Rational& slack) {
  if (!in_box(problem, point)) return "the reported point is outside the box";
  for (const Block& block : problem.blocks) {
    switch (block.sense) {
      case Sense::kStrict:
        if (is_positive(value_at(block, point), true)) break;
        return "the reported point violates a strict inequality";
      case Sense::kNonStrict:
        if (is_positive(loosened(block, point, slack), false)) break;
        return "the reported point violates an inequality";
      case Sense::kEqual:
        if (loosened(block, point, slack).at(0, 0) >= 0 &&
            loosened(block, point, -slack).at(0, 0) <= 0) {
          break;
        }
        return "the reported point violates an equation";
    }
  }
  return nullptr;
}

Rational objective_of(const Problem& problem, const RationalPoint& point) {
  Rational sum(problem.objective->constant);
  for (std::size_t k = 0; k < point.size(); ++k) {
    sum += Rational(problem.objective->cost[k]) * point[k];
  }
  return sum;
}

namespace {

/// What is taken as an equation, besides equations.
struct Tight {
  double room = 0;             ///< rows that have no more than this
  bool diagonals_too = false;  ///< entries of matrices that may be rows: [x, x; x, x] >= 0
  bool reached_too = false;    ///< rows that do not hold everywhere within the distance
};

/// How far the diagonal entry may be from its value within the distance.
Rational reach_of(const Block& block, std::size_t i, const RationalPoint& distance) {
  Rational reach = 0;
  for (const AffineTerm& t : block.terms) {
    if (t.unknown == kConstant || t.row != t.column || static_cast<std::size_t>(t.row) != i)
      continue;
    reach += abs(Rational(t.value)) * distance[static_cast<std::size_t>(t.unknown)];
  }
  return reach;
}

bool satisfied_with(const Problem& problem, const std::vector<double>& point,
                    const std::vector<double>& distance, const Tight& tight) {
  const RationalPoint middle = rational(point);
  const RationalPoint unit = rational(distance);
  // Row e in the units: sum over k of rows[e][k] * w_k = -rest[e].
  std::vector<RationalPoint> rows;
  std::vector<Rational> rest;
  for (const Block& block : problem.blocks) {
    if (block.sense == Sense::kStrict || (block.size != 1 && !tight.diagonals_too)) continue;
    const RationalMatrix value = value_at(block, middle);
    const RationalMatrix beyond = value_at(block, middle, Rational(tight.room));
    for (std::size_t i = 0; i < value.size(); ++i) {
      const bool is_reached = tight.reached_too && value.at(i, i) <= reach_of(block, i, unit);
      if (block.sense != Sense::kEqual && beyond.at(i, i) > 0 && !is_reached) continue;
      RationalPoint& row = rows.emplace_back(unit.size());
      for (const AffineTerm& t : block.terms) {
        if (t.unknown == kConstant || t.row != t.column || static_cast<std::size_t>(t.row) != i) {
          continue;
        }
        const auto k = static_cast<std::size_t>(t.unknown);
        row[k] = Rational(t.value) * unit[k];
      }
      rest.push_back(-value.at(i, i));
    }
  }
  std::vector<std::vector<Rational>> gram(rows.size(), std::vector<Rational>(rows.size()));
  for (std::size_t a = 0; a < rows.size(); ++a) {
    for (std::size_t b = 0; b < rows.size(); ++b) {
      for (std::size_t k = 0; k < unit.size(); ++k) gram[a][b] += rows[a][k] * rows[b][k];
    }
  }
  const std::vector<Rational> weights = solve(std::move(gram), std::move(rest));
  RationalPoint nearest = middle;
  for (std::size_t k = 0; k < unit.size(); ++k) {
    Rational step = 0;
    for (std::size_t e = 0; e < rows.size(); ++e) step += weights[e] * rows[e][k];
    if (abs(step) > 1) return false;
    nearest[k] += step * unit[k];
  }
  return satisfies(problem, nearest);
}

}  // namespace

bool satisfied_within(const Problem& problem, const std::vector<double>& point,
                      const std::vector<double>& distance, double room) {
  // A row may have been met so closely that it seems to have some, or all there is: x >= 0
  // at 1e-30.
  for (const double least : {room, 1e-15, 1e-12, 1e-9}) {
    if (least < room) continue;
    for (const bool diagonals_too : {false, true}) {
      for (const bool reached_too : {false, true}) {
        if (satisfied_with(problem, point, distance, {least, diagonals_too, reached_too}))
          return true;
      }
    }
  }
  return false;
}

std::vector<Rational> weighed_sums(const Problem& problem,
                                   const std::vector<ExactWeight>& weights) {
  std::vector<Rational> sums(static_cast<std::size_t>(problem.unknowns) + 1);
  for (const ExactWeight& y : weights) {
    for (const AffineTerm& t : problem.blocks[y.block].terms) {
      const Rational& weight =
          y.weight.at(static_cast<std::size_t>(t.row), static_cast<std::size_t>(t.column));
      sums[static_cast<std::size_t>(t.unknown - kConstant)] +=
          (t.row == t.column ? 1 : 2) * weight * Rational(t.value);
    }
  }
  return sums;
}

namespace {

bool in_cones(const Problem& problem, const std::vector<ExactWeight>& weights) {
  return std::all_of(weights.begin(), weights.end(), [&](const ExactWeight& y) {
    return problem.blocks[y.block].sense == Sense::kEqual || is_positive(y.weight, false);
  });
}

}  // namespace

bool contradict(const Problem& problem, const std::vector<ExactWeight>& weights) {
  const std::vector<Rational> sums = weighed_sums(problem, weights);
  const bool cancels =
      std::all_of(sums.begin() + 1, sums.end(), [](const Rational& sum) { return sum == 0; });
  if (!cancels || !in_cones(problem, weights)) return false;
  if (sums[0] < 0) return true;
  return sums[0] == 0 && std::any_of(weights.begin(), weights.end(), [&](const ExactWeight& y) {
           return problem.blocks[y.block].sense == Sense::kStrict && !is_zero(y.weight);
         });
}

bool bound_the_objective(const Problem& problem, const std::vector<ExactWeight>& weights,
                         const Rational& value) {
  std::vector<Rational> sums = weighed_sums(problem, weights);
  for (std::size_t k = 0; k + 1 < sums.size(); ++k) {
    if (sums[k + 1] != -Rational(problem.objective->cost[k])) return false;
  }
  return in_cones(problem, weights) && sums[0] + Rational(problem.objective->constant) <= value;
}

}  // namespace sdpsol::testing
