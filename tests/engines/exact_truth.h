// What points and weights say about a problem, in rational arithmetic: a double is a
// rational number, nothing is rounded, and nothing of what is tested takes part.
#pragma once

#include <cstddef>
#include <vector>

#include "solver/problem/problem.h"
#include "tests/verdicts/exact_simplex.h"

namespace sdpsol::testing {

/// A symmetric matrix; `at(i, j)` with i <= j.
class RationalMatrix {
 public:
  explicit RationalMatrix(std::int32_t size)
      : size_(static_cast<std::size_t>(size)), entries_(size_ * size_) {}
  std::size_t size() const { return size_; }
  Rational& at(std::size_t i, std::size_t j) { return entries_[i * size_ + j]; }
  const Rational& at(std::size_t i, std::size_t j) const { return entries_[i * size_ + j]; }
  RationalMatrix& operator*=(const Rational& factor) {
    for (Rational& entry : entries_) entry *= factor;
    return *this;
  }

 private:
  std::size_t size_;
  std::vector<Rational> entries_;
};

using RationalPoint = std::vector<Rational>;

/// One number per entry. All must be finite.
RationalPoint rational(const std::vector<double>& point);

/// Definite, or else semidefinite. By elimination: its pivots have the signs.
bool is_positive(RationalMatrix matrix, bool definite);

/// F(v) - room * diag(T(v)).
RationalMatrix value_at(const Block& block, const RationalPoint& point, const Rational& room = 0);

/// Every condition and the box. With a room that is not 0, strict or not, every
/// inequality must leave more than that; equations must hold as they are.
bool satisfies(const Problem& problem, const RationalPoint& point, const Rational& room = 0);

/// What the point violates, null if nothing: strict inequalities and the box are taken as
/// they are; the others may be short of 0, and equations off, by `slack` of the sizes of
/// what is added up where every unknown is as large as the largest.
const char* violation(const Problem& problem, const RationalPoint& point, const Rational& slack);

Rational objective_of(const Problem& problem, const RationalPoint& point);

/// True if some point satisfies everything and is no farther from `point` than
/// `distance`, unknown by unknown: the one that is nearest in units of `distance` and
/// meets the equations, and the rows that are not strict and have no more than `room`, or
/// next to none, or do not hold everywhere within the distance.
bool satisfied_within(const Problem& problem, const std::vector<double>& point,
                      const std::vector<double>& distance, double room);

/// The weight of a block; of an equation any number.
struct ExactWeight {
  std::size_t block = 0;
  RationalMatrix weight;
};

/// Sum of <Y_b, F_bk>: the constants first, then every unknown.
std::vector<Rational> weighed_sums(const Problem& problem, const std::vector<ExactWeight>& weights);

/// True if the weights are in their cones, every unknown cancels, and what is left reads
/// "negative >= 0" or, a strict inequality taking part, "0 > 0".
bool contradict(const Problem& problem, const std::vector<ExactWeight>& weights);

/// True if the weights prove that no point brings more than `value`.
bool bound_the_objective(const Problem& problem, const std::vector<ExactWeight>& weights,
                         const Rational& value);

}  // namespace sdpsol::testing
