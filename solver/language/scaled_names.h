// The short way through long sums. Nearly all of a big definition is sums of terms
// such as "+0.25*z17", written by programs without a blank. Token by token, each
// of them would take five tokens and two values; here it is read in one go, and
// whatever looks in the least different is left to the grammar.
#pragma once

#include "solver/language/lexer.h"
#include "solver/language/partial_value.h"
#include "solver/language/symbols.h"

namespace sdpsol {

/// Adds terms {sign} NUMBER "*" NAME to a scalar `sum`, as long as each of them ends
/// where a product ends and its name stands for a scalar of a single term.
/// @param lexer at a sign; afterwards behind the last term that was read.
/// @return false if not a single one could be read.
bool append_scaled_names(Lexer& lexer, const SymbolTable& symbols, PartialValue& sum);

}  // namespace sdpsol
