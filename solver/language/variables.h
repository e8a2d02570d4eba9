// How a declared variable becomes scalar unknowns.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "solver/language/affine_matrix.h"
#include "solver/language/model.h"

namespace sdpsol {

/// Number of scalar unknowns of a variable.
std::int64_t unknown_count(const Variable& variable);

/// Which of its unknowns, from 0, stands in entry (row, column), from 0 as well; nothing
/// for an entry that is 0 by the variable's shape.
std::optional<std::int32_t> unknown_in_entry(const Variable& variable, std::int32_t row,
                                             std::int32_t column);

/// The variable as a matrix of its unknowns, terms collected.
AffineMatrix variable_value(const Variable& variable);

/// "3x3 symmetric", "2x1".
std::string shape_text(const Variable& variable);

}  // namespace sdpsol
