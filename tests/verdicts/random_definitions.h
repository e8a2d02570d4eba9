// Random definitions of rows, and what they say on paper: every number is a
// decimal, known both as text and as a rational number.
#pragma once

#include <random>
#include <string>
#include <vector>

#include "tests/verdicts/exact_simplex.h"

namespace sdpsol::testing {

/// What makes the definitions of a kind hard.
enum class LinearKind {
  kIntegers,     ///< borders are hit often
  kCones,        ///< no constants: only borders
  kDecimals,     ///< up to six digits, many rows through one point
  kDependent,    ///< rows that are combinations of others
  kEquations,    ///< mostly equations, some of them redundant
  kDuplicated,   ///< the same rows again, also in other units and turned around
  kUnused,       ///< unknowns that occur nowhere, or only times 0
  kBadlyScaled,  ///< 1e-6 to 1e6 in the unknowns, 1e-5 to 1e5 in the rows
  kSmallBox,     ///< a box that many points are outside of
  kSums,         ///< coefficients and bounds written as sums that nearly cancel
};

struct LinearDefinition {
  LinearKind kind = LinearKind::kIntegers;
  std::string text;
  RationalProgram paper;       ///< the rows as written, without the box
  std::vector<Rational> cost;  ///< to be maximised; empty without an objective
  Rational big_m = 15000;
};

const char* name_of(LinearKind kind);

class RandomDefinitions {
 public:
  explicit RandomDefinitions(unsigned seed) : random_(seed) {}

  /// One to four unknowns, one to eight rows.
  LinearDefinition draw(LinearKind kind, bool with_objective);

 private:
  /// mantissa * 10^exponent
  struct Decimal {
    long mantissa = 0;
    int exponent = 0;
    Rational value() const;
    std::string text() const;
  };
  using Sum = std::vector<Decimal>;
  struct Row {
    std::vector<Sum> coefficients;
    Sum constant;  ///< on the left side
    Sense sense = Sense::kStrict;
  };

  int uniform(int from, int to) { return std::uniform_int_distribution<int>(from, to)(random_); }
  bool chance(int percent) { return uniform(1, 100) <= percent; }
  Sense sense(int percent_equations);
  Decimal six_digits();

  std::vector<Row> integer_rows(int largest_constant, int percent_equations);
  std::vector<Row> decimal_rows();
  void add_combinations(std::vector<Row>& rows);
  void add_duplicates(std::vector<Row>& rows);
  void drop_unknowns(std::vector<Row>& rows);
  void change_units(std::vector<Row>& rows);
  void write_as_sums(std::vector<Row>& rows);
  std::vector<Row> rows_of(LinearKind kind);

  std::string text_of(const Sum& sum) const;
  std::string text_of(const Row& row) const;
  static Rational value_of(const Sum& sum);
  static Rational magnitude_of(const Sum& sum);

  std::mt19937 random_;
  int unknowns_ = 1;
};

}  // namespace sdpsol::testing
