// A value and the place in the text that it was read from.
#pragma once

#include <cstdint>

#include "solver/language/affine_matrix.h"
#include "solver/language/source.h"

namespace sdpsol {

struct Operand {
  AffineMatrix value;
  Span span;
};

/// The number that a constant scalar is. @param what names it in the error, as
/// in "a size". @throws LanguageError if it is a matrix or holds variables.
double constant_scalar(const Operand& operand, const char* what);

/// Likewise, a whole number within [low, high].
std::int32_t whole_number(const Operand& operand, const char* what, std::int32_t low,
                          std::int32_t high);

}  // namespace sdpsol
