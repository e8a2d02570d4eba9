// How a declared variable becomes scalar unknowns.
#pragma once

#include <cstdint>
#include <string>

#include "solver/language/affine_matrix.h"
#include "solver/language/model.h"

namespace sdpsol {

/// Number of scalar unknowns of a variable.
std::int64_t unknown_count(const Variable& variable);

/// The variable as a matrix of its unknowns, terms collected.
AffineMatrix variable_value(const Variable& variable);

/// "3x3 symmetric", "2x1".
std::string shape_text(const Variable& variable);

}  // namespace sdpsol
