#include "solver/language/operand.h"

#include <cmath>
#include <string>

#include "solver/language/arithmetic.h"
#include "solver/language/language_error.h"
#include "solver/language/number.h"

namespace sdpsol {

double constant_scalar(const Operand& operand, const char* what) {
  if (!is_scalar(operand.value)) {
    throw LanguageError(operand.span, what + std::string(" must be a scalar, this is ") +
                                          shape_text(operand.value));
  }
  double sum = 0;
  for (const AffineTerm& term : operand.value.terms) {
    if (term.unknown != kConstant) {
      throw LanguageError(operand.span,
                          what + std::string(" must be constant, this holds variables"))
          .with_unknown(term.unknown);
    }
    sum += term.value;
  }
  return sum;
}

std::int32_t whole_number(const Operand& operand, const char* what, std::int32_t low,
                          std::int32_t high) {
  const double value = constant_scalar(operand, what);
  if (!(value >= low && value <= high && value == std::floor(value))) {
    throw LanguageError(operand.span, what + std::string(" must be a whole number from ") +
                                          std::to_string(low) + " to " + std::to_string(high) +
                                          ", this is " + number_text(value));
  }
  return static_cast<std::int32_t>(value);
}

}  // namespace sdpsol
