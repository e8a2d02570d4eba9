// The truth about small linear problems with any data: the simplex method in
// rational arithmetic. A double is a rational number, so is a decimal; nothing is
// rounded anywhere, and Bland's rule lets no pivoting go on for ever.
#pragma once

#include <gmpxx.h>

#include <cstdint>
#include <optional>
#include <vector>

#include "solver/problem/problem.h"

namespace sdpsol::testing {

using Rational = mpq_class;

/// constant + sum of coefficients[k] * v_k, in a relation to 0.
struct RationalRow {
  std::vector<Rational> coefficients;  ///< one per unknown
  Rational constant;
  Sense sense = Sense::kStrict;
  /// What the numbers were added up from, the constant last, where they were: the
  /// sums of the magnitudes. Empty: the numbers' own magnitudes.
  std::vector<Rational> magnitudes = {};
};

/// Rows in unknowns of either sign.
struct RationalProgram {
  std::size_t unknowns = 0;
  std::vector<RationalRow> rows;
};

struct RationalOptimum {
  enum class Kind { kInfeasible, kUnbounded, kReached };
  Kind kind = Kind::kInfeasible;
  Rational value;               ///< with kReached
  std::vector<Rational> point;  ///< with kReached
};

/// Maximises sum of cost[k] * v_k, strict rows taken as non-strict ones: over the
/// closure of the feasible points, if there are any.
RationalOptimum maximise_exactly(const RationalProgram& program, const std::vector<Rational>& cost);

/// A point that satisfies every row, strict ones strictly; nothing if there is none.
std::optional<std::vector<Rational>> exact_solution(const RationalProgram& program);

inline bool has_exact_solution(const RationalProgram& program) {
  return exact_solution(program).has_value();
}

/// The program with |v_k| <= bound for every unknown.
RationalProgram with_box(RationalProgram program, const Rational& bound);

/// Asks each inequality for a share of the sizes of what it adds up:
/// F(v) > share * (|F_0| + sum of |F_k| * |v_k|). Equations stay as they are. The
/// unknowns of the program come first, their magnitudes behind them.
RationalProgram with_room(const RationalProgram& program, const Rational& share);

}  // namespace sdpsol::testing
