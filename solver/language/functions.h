// The functions of the language.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "solver/language/affine_matrix.h"
#include "solver/language/operand.h"
#include "solver/language/source.h"

namespace sdpsol {

enum class Function {
  kZeros,  ///< zeros(m,n) m x n, zeros(m) m x m
  kOnes,   ///< ones(m,n), ones(m)
  kEye,    ///< eye(n), n x n
  kDiag,   ///< of a vector of n: n x n; of a square matrix: its diagonal as a column
  kTrace,  ///< of a square matrix
  kSum,    ///< of all entries
};

std::optional<Function> function_named(std::string_view name);
/// All of them, as a message lists them: "zeros, ones, ... and sum".
std::string function_names();

/// Calls a function whose name stands at `at`.
/// @throws LanguageError for a wrong number of arguments, sizes that are no
/// whole numbers from 1 on, and shapes that the function is not made for.
AffineMatrix call_function(Function function, std::vector<Operand> arguments, Span at);

/// Entry (row, column), both from 0 and inside, of a collected matrix.
/// Cost: the logarithm of its terms, and the terms of the entry.
AffineMatrix element_of(const AffineMatrix& collected, std::int32_t row, std::int32_t column);

}  // namespace sdpsol
