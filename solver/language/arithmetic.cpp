#include "solver/language/arithmetic.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <utility>
#include <vector>

#include "solver/language/language_error.h"
#include "solver/language/limits.h"

namespace sdpsol {
namespace {

struct Number {
  double value = 0;
  double magnitude = 0;
};

Number number_of(const AffineMatrix& constant_scalar) {
  Number number;
  for (const AffineTerm& term : constant_scalar.terms) {
    number.value += term.value;
    number.magnitude += term.magnitude;
  }
  return number;
}

// A value of 0 with a magnitude is a cancellation and stays in sight; without
// one there is nothing left to see.
void push(std::vector<AffineTerm>& terms, const AffineTerm& term) {
  if (term.value != 0 || term.magnitude != 0) terms.push_back(term);
}

void require_finite(const std::vector<AffineTerm>& terms, Span at) {
  // Without a way out of the loop it runs at the speed of memory.
  bool finite = true;
  for (const AffineTerm& term : terms) {
    finite &= std::isfinite(term.value) && std::isfinite(term.magnitude);
  }
  if (!finite) throw LanguageError(at, "a coefficient becomes too large for a number");
}

// The shorter list goes behind the longer one, whichever side it comes from.
void append(AffineMatrix& a, AffineMatrix b, Span at) {
  require_room(a.terms.size() + b.terms.size(), at);
  if (a.terms.size() < b.terms.size()) std::swap(a.terms, b.terms);
  a.terms.insert(a.terms.end(), b.terms.begin(), b.terms.end());
}

// Brings a and b to one shape where one of them is the number 0.
void match_shapes(AffineMatrix& a, AffineMatrix& b, const char* sign, Span at) {
  if (a.rows == b.rows && a.columns == b.columns) return;
  if (is_number_zero(a)) {
    a = spread(a, b.rows, b.columns, at);
  } else if (is_number_zero(b)) {
    b = spread(b, a.rows, a.columns, at);
  } else {
    std::string message = std::string("'") + sign + "' needs equal shapes: left is " +
                          shape_text(a) + ", right is " + shape_text(b);
    if (is_scalar(a) || is_scalar(b)) message += "; only the number 0 stretches to any shape";
    throw LanguageError(at, std::move(message));
  }
}

void scale(std::vector<AffineTerm>& terms, Number factor, Span at) {
  if (factor.value == 0 && factor.magnitude == 0) {
    terms.clear();
    return;
  }
  bool vanished = false;
  for (AffineTerm& term : terms) {
    term.value *= factor.value;
    term.magnitude *= factor.magnitude;
    vanished = vanished || (term.value == 0 && term.magnitude == 0);
  }
  if (vanished) {
    std::erase_if(terms,
                  [](const AffineTerm& term) { return term.value == 0 && term.magnitude == 0; });
  }
  require_finite(terms, at);
}

AffineTerm product(const AffineTerm& a, const AffineTerm& b, std::int32_t row,
                   std::int32_t column) {
  return {row, column, std::max(a.unknown, b.unknown), a.value * b.value,
          a.magnitude * b.magnitude};
}

// The scalar holds unknowns, or a number of terms: every term of it meets every
// term of the matrix.
AffineMatrix scalar_times_matrix(const AffineMatrix& scalar, const AffineMatrix& matrix, Span at) {
  require_room(scalar.terms.size() * matrix.terms.size(), at);
  AffineMatrix result{matrix.rows, matrix.columns, {}};
  result.terms.reserve(scalar.terms.size() * matrix.terms.size());
  for (const AffineTerm& entry : matrix.terms) {
    for (const AffineTerm& term : scalar.terms) {
      push(result.terms, product(entry, term, entry.row, entry.column));
    }
  }
  require_finite(result.terms, at);
  return result;
}

// For each row of a: the rows of b that its terms meet, collected before the
// next row begins, so that memory follows the result and not the multiplications.
AffineMatrix matrix_times_matrix(AffineMatrix a, AffineMatrix b, Span at) {
  collect_terms(a);
  collect_terms(b);
  std::vector<std::size_t> row_starts(static_cast<std::size_t>(b.rows) + 1, 0);
  for (const AffineTerm& term : b.terms) ++row_starts[static_cast<std::size_t>(term.row) + 1];
  for (std::size_t i = 1; i < row_starts.size(); ++i) row_starts[i] += row_starts[i - 1];

  std::int64_t work = 0;
  for (const AffineTerm& term : a.terms) {
    const auto k = static_cast<std::size_t>(term.column);
    work += static_cast<std::int64_t>(row_starts[k + 1] - row_starts[k]);
  }
  if (work > kMaxProductWork) {
    throw LanguageError(at, "this product takes " + std::to_string(work) +
                                " multiplications; at most " + std::to_string(kMaxProductWork) +
                                " are allowed");
  }

  AffineMatrix result{a.rows, b.columns, {}};
  AffineMatrix row{1, b.columns, {}};
  for (auto begin = a.terms.cbegin(); begin != a.terms.cend();) {
    auto end = begin;
    row.terms.clear();
    for (; end != a.terms.cend() && end->row == begin->row; ++end) {
      const auto k = static_cast<std::size_t>(end->column);
      for (std::size_t i = row_starts[k]; i < row_starts[k + 1]; ++i) {
        push(row.terms, product(*end, b.terms[i], end->row, b.terms[i].column));
      }
    }
    collect_terms(row);
    require_room(result.terms.size() + row.terms.size(), at);
    result.terms.insert(result.terms.end(), row.terms.begin(), row.terms.end());
    begin = end;
  }
  require_finite(result.terms, at);
  return result;
}

std::int32_t first_unknown(const AffineMatrix& varying) {
  return std::find_if(varying.terms.begin(), varying.terms.end(),
                      [](const AffineTerm& term) { return term.unknown != kConstant; })
      ->unknown;
}

}  // namespace

std::string shape_text(const AffineMatrix& matrix) {
  return std::to_string(matrix.rows) + "x" + std::to_string(matrix.columns);
}

bool is_scalar(const AffineMatrix& matrix) {
  return matrix.rows == 1 && matrix.columns == 1;
}

bool holds_unknowns(const AffineMatrix& matrix) {
  return std::any_of(matrix.terms.begin(), matrix.terms.end(),
                     [](const AffineTerm& term) { return term.unknown != kConstant; });
}

bool is_number_zero(const AffineMatrix& matrix) {
  return is_scalar(matrix) && !holds_unknowns(matrix) && number_of(matrix).value == 0;
}

AffineMatrix constant(double value) {
  AffineMatrix result{1, 1, {}};
  if (value != 0) result.terms.push_back({0, 0, kConstant, value, std::abs(value)});
  return result;
}

AffineMatrix spread(const AffineMatrix& scalar, std::int32_t rows, std::int32_t columns, Span at) {
  AffineMatrix result{rows, columns, {}};
  if (scalar.terms.empty()) return result;
  const std::size_t entries = static_cast<std::size_t>(rows) * static_cast<std::size_t>(columns);
  require_room(entries * scalar.terms.size(), at);
  result.terms.reserve(entries * scalar.terms.size());
  for (std::int32_t row = 0; row < rows; ++row) {
    for (std::int32_t column = 0; column < columns; ++column) {
      for (AffineTerm term : scalar.terms) {
        term.row = row;
        term.column = column;
        result.terms.push_back(term);
      }
    }
  }
  return result;
}

AffineMatrix negate(AffineMatrix a) {
  for (AffineTerm& term : a.terms) term.value = -term.value;
  return a;
}

AffineMatrix transpose(AffineMatrix a) {
  std::swap(a.rows, a.columns);
  for (AffineTerm& term : a.terms) std::swap(term.row, term.column);
  return a;
}

AffineMatrix add(AffineMatrix a, AffineMatrix b, Span at) {
  match_shapes(a, b, "+", at);
  append(a, std::move(b), at);
  return a;
}

AffineMatrix subtract(AffineMatrix a, AffineMatrix b, Span at) {
  match_shapes(a, b, "-", at);
  append(a, negate(std::move(b)), at);
  return a;
}

AffineMatrix multiply(AffineMatrix a, AffineMatrix b, Span at) {
  const bool a_varies = holds_unknowns(a);
  const bool b_varies = holds_unknowns(b);
  if (!is_scalar(a) && !is_scalar(b) && a.columns != b.rows) {
    throw LanguageError(at, "'*' needs as many columns on the left as rows on the right: left is " +
                                shape_text(a) + ", right is " + shape_text(b));
  }
  if (a_varies && b_varies) {
    throw LanguageError(at, "variables in both factors: a product may hold them in one only")
        .with_unknown(first_unknown(a))
        .with_unknown(first_unknown(b));
  }

  if (is_scalar(a) && !a_varies) {
    scale(b.terms, number_of(a), at);
    return b;
  }
  if (is_scalar(b) && !b_varies) {
    scale(a.terms, number_of(b), at);
    return a;
  }
  if (is_scalar(a)) return scalar_times_matrix(a, b, at);
  if (is_scalar(b)) return scalar_times_matrix(b, a, at);
  return matrix_times_matrix(std::move(a), std::move(b), at);
}

AffineMatrix divide(AffineMatrix a, const AffineMatrix& b, Span at) {
  if (!is_scalar(b)) {
    throw LanguageError(at, "a divisor must be a scalar, this one is " + shape_text(b));
  }
  if (holds_unknowns(b)) {
    throw LanguageError(at, "a divisor must not hold variables").with_unknown(first_unknown(b));
  }
  const Number divisor = number_of(b);
  if (divisor.value == 0) throw LanguageError(at, "division by 0");
  if (!std::isfinite(divisor.value)) {
    throw LanguageError(at, "a coefficient becomes too large for a number");
  }
  // The divisor's own uncertainty, relative to its value, comes on top.
  const double spread_of_divisor = divisor.magnitude / std::abs(divisor.value);
  for (AffineTerm& term : a.terms) {
    term.value /= divisor.value;
    term.magnitude = term.magnitude / std::abs(divisor.value) * spread_of_divisor;
  }
  std::erase_if(a.terms,
                [](const AffineTerm& term) { return term.value == 0 && term.magnitude == 0; });
  require_finite(a.terms, at);
  return a;
}

void settle(AffineMatrix& matrix, Span at) {
  collect_terms(matrix);
  require_finite(matrix.terms, at);
}

void require_room(std::size_t terms, Span at) {
  if (terms > kMaxTerms) {
    throw LanguageError(at, "this value would take " + std::to_string(terms) + " terms; at most " +
                                std::to_string(kMaxTerms) + " are allowed");
  }
}

}  // namespace sdpsol
