// From "A > B" to a condition.
#pragma once

#include <optional>
#include <vector>

#include "solver/language/forms.h"
#include "solver/language/lexer.h"
#include "solver/language/model.h"
#include "solver/language/operand.h"

namespace sdpsol {

bool is_relation(TokenKind kind);

/// "> 0", ">= 0" or "== 0".
const char* relation_text(Sense sense);

struct RelationResult {
  Condition condition;
  /// Says that the symmetric part was taken where the matrices were symmetric
  /// only up to their digits; its span is the relation's sign.
  std::optional<Diagnostic> note;
};

/// @param left, right either of them may be the number 0, which stretches to the
///   other's shape, or a scalar against a vector.
/// @param sign the relation between them.
/// @param variables name the unknowns in messages.
/// @param forms what the sides may refer to.
/// @throws LanguageError for shapes that do not go together, for an inequality
/// between matrices that are neither square nor vectors, and for coefficient
/// matrices that are not symmetric.
RelationResult make_condition(Operand left, const Token& sign, Operand right,
                              const std::vector<Variable>& variables, const FormTable& forms);

}  // namespace sdpsol
