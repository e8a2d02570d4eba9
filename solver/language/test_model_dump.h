// For tests: a model as text.
#pragma once

#include <string>

#include "solver/language/model.h"
#include "solver/language/source.h"

namespace sdpsol {

/// Everything a model holds, one line for each variable and each entry that has
/// terms, in this form:
///
///     variable X 2x2 symmetric, unknowns 0 to 2
///     line 5: 2x2 matrix > 0: A*X + B > 0
///       (1,2) = -1 + 0.5*X(2,1) + 0{2}*s
///
/// A magnitude follows in braces where it differs from the value's.
std::string dump(const Model& model, const Source& source);

}  // namespace sdpsol
