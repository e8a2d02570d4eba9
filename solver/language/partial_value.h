// Values on their way through an expression.
#pragma once

#include "solver/language/lexer.h"
#include "solver/language/operand.h"

namespace sdpsol {

/// A value that is not complete yet. Most values that come up in a definition are
/// a number, a scalar variable or their product: 1 x 1 with a single term. That
/// term is kept here and not on a list, whose allocation would cost more than
/// all the rest that is done with it.
struct PartialValue {
  bool is_single = false;
  AffineTerm single;    ///< the value, where is_single
  AffineMatrix matrix;  ///< the value, else
  Span span;

  static PartialValue of(const AffineMatrix& value, Span span);
  static PartialValue of(AffineMatrix&& value, Span span);
  static PartialValue of_number(double number, Span span);

  void negate();
  /// The value as a matrix, which may be moved from.
  AffineMatrix& as_matrix();
};

/// a = a * b for single terms of scalars. Returns false and changes nothing where
/// both hold unknowns, or the product vanishes or overflows.
bool scale_single(AffineTerm& a, const AffineTerm& b);

/// left = left <sign> right for a single term on the right where that needs no
/// checks: added to a scalar, or multiplied with a single term. Returns false and
/// changes nothing where it is not as simple as that.
bool combine_singles(PartialValue& left, TokenKind sign, const PartialValue& right);

}  // namespace sdpsol
