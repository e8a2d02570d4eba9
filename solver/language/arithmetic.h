// Sums, products and the like of affine matrices.
//
// Operands come by value and leave as the result: a sum appends one operand's
// terms to the other's, a product with a number scales them in place. So an
// expression of n terms costs O(n) however it is nested. Terms that share entry
// and unknown meet later, in collect_terms().
//
// Magnitudes are added where values are added and multiplied where they are
// multiplied. A factor that is the number 0 leaves no terms at all: 0*x is 0
// without any rounding. Errors blame the range `at`.
#pragma once

#include <cstdint>
#include <string>

#include "solver/language/affine_matrix.h"
#include "solver/language/source.h"

namespace sdpsol {

/// "2x3".
std::string shape_text(const AffineMatrix& matrix);

bool is_scalar(const AffineMatrix& matrix);
bool holds_unknowns(const AffineMatrix& matrix);
/// A constant 1 x 1 matrix whose value is exactly 0: it stretches to any shape.
bool is_number_zero(const AffineMatrix& matrix);

AffineMatrix constant(double value);
/// Entry-wise copies of a scalar. @throws LanguageError if they are too many.
AffineMatrix spread(const AffineMatrix& scalar, std::int32_t rows, std::int32_t columns, Span at);

AffineMatrix negate(AffineMatrix a);
AffineMatrix transpose(AffineMatrix a);

/// a + b. @throws LanguageError if the shapes differ and neither is the number 0.
AffineMatrix add(AffineMatrix a, AffineMatrix b, Span at);
/// a - b, likewise.
AffineMatrix subtract(AffineMatrix a, AffineMatrix b, Span at);

/// Product of two affine matrices, at least one of them constant.
/// @param a m x k.  @param b k x n, or either of them 1 x 1: a scalar.
/// @return m x n.  @throws LanguageError if the inner sizes differ, both factors
/// hold unknowns or a coefficient overflows.
/// Cost: the nonzeros of the result; for two matrices, neither of them 1 x 1, the
/// multiplications and sorting them.
AffineMatrix multiply(AffineMatrix a, AffineMatrix b, Span at);

/// a / b for a constant scalar b other than 0. @throws LanguageError for any
/// other divisor and where a coefficient overflows.
AffineMatrix divide(AffineMatrix a, const AffineMatrix& b, Span at);

/// Collects terms. @throws LanguageError where a coefficient is beyond the range
/// of numbers.
void settle(AffineMatrix& matrix, Span at);

/// @throws LanguageError if a value of so many terms is not allowed.
void require_room(std::size_t terms, Span at);

}  // namespace sdpsol
