#include "solver/language/partial_value.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "solver/language/arithmetic.h"
#include "solver/language/forms.h"
#include "solver/language/limits.h"

namespace sdpsol {

PartialValue PartialValue::of(const AffineMatrix& value, Span span) {
  PartialValue result;
  result.span = span;
  if (is_scalar(value) && value.terms.size() == 1) {
    result.is_single = true;
    result.single = value.terms.front();
  } else {
    result.matrix = value;
  }
  return result;
}

PartialValue PartialValue::of(AffineMatrix&& value, Span span) {
  PartialValue result;
  result.span = span;
  result.matrix = std::move(value);
  return result;
}

PartialValue PartialValue::of_number(double number, Span span) {
  PartialValue result;
  result.span = span;
  if (number == 0) {
    result.matrix = constant(0);
  } else {
    result.is_single = true;
    result.single = {0, 0, kConstant, number, std::abs(number)};
  }
  return result;
}

void PartialValue::negate() {
  if (is_single) {
    single.value = -single.value;
  } else {
    matrix = sdpsol::negate(std::move(matrix));
  }
}

AffineMatrix& PartialValue::as_matrix() {
  if (is_single) {
    matrix = AffineMatrix{1, 1, {single}};
    is_single = false;
  }
  return matrix;
}

bool scale_single(AffineTerm& a, const AffineTerm& b) {
  if (a.unknown != kConstant && b.unknown != kConstant) return false;
  const AffineTerm product{0, 0, std::max(a.unknown, b.unknown), a.value * b.value,
                           a.magnitude * b.magnitude};
  // Overflow has to be reported, and what vanishes has to go: both are rare.
  if (product.magnitude == 0 || !std::isfinite(product.magnitude)) return false;
  if (is_reference(product) && !is_moderate(product)) return false;
  a = product;
  return true;
}

bool combine_singles(PartialValue& left, TokenKind sign, const PartialValue& right) {
  if (!right.is_single) return false;
  if (sign == TokenKind::kPlus || sign == TokenKind::kMinus) {
    AffineMatrix& sum = left.as_matrix();
    if (!is_scalar(sum) || sum.terms.size() >= kMaxTerms) return false;
    sum.terms.push_back(right.single);
    if (sign == TokenKind::kMinus) sum.terms.back().value = -right.single.value;
    return true;
  }
  return sign == TokenKind::kStar && left.is_single && scale_single(left.single, right.single);
}

}  // namespace sdpsol
