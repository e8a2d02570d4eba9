// Notes that tie an error to the places where its operands came from.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "solver/language/language_error.h"
#include "solver/language/model.h"
#include "solver/language/symbols.h"

namespace sdpsol {

/// The variable that the unknown, not kConstant, is a part of.
const Variable& owner_of(const std::vector<Variable>& variables, std::int32_t unknown);

/// Underlines both operands of the operator that `error` blames and says, for
/// each that is a plain name, what shape it has and since where; unless the error
/// has notes or unknowns, and with them better reasons, already.
void explain_operands(LanguageError& error, std::string_view text, const SymbolTable& symbols,
                      Span left, Span right);

/// Likewise for an error that blames one plain name and has neither notes nor ranges.
void explain_name(LanguageError& error, std::string_view text, const SymbolTable& symbols);

LanguageError with_name_explained(LanguageError error, std::string_view text,
                                  const SymbolTable& symbols);

/// Turns error.unknowns into notes at the declarations of their variables.
void explain_unknowns(LanguageError& error, const std::vector<Variable>& variables);

/// "x" or "X(2,1)", or "" for kConstant.
std::string unknown_name(const std::vector<Variable>& variables, std::int32_t unknown);

/// Row and column, given from 0, as authors count them: "(1,2)".
std::string entry_text(std::int32_t row, std::int32_t column);

}  // namespace sdpsol
