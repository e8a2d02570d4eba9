#include "solver/language/relation.h"

#include <string>
#include <utility>

#include "solver/language/arithmetic.h"
#include "solver/language/explain.h"
#include "solver/language/language_error.h"
#include "solver/language/number.h"
#include "solver/language/symmetry.h"
#include "solver/language/variables.h"

namespace sdpsol {
namespace {

Sense sense_of(TokenKind kind) {
  if (kind == TokenKind::kEqual) return Sense::kEqual;
  const bool strict = kind == TokenKind::kGreater || kind == TokenKind::kLess;
  return strict ? Sense::kStrict : Sense::kNonStrict;
}

bool is_vector(const AffineMatrix& matrix) {
  return matrix.rows == 1 || matrix.columns == 1;
}

// A scalar against a matrix can mean each entry or the multiple of the identity.
std::string advice_on_scalar(const AffineMatrix& matrix, const Token& sign) {
  if (sign.kind == TokenKind::kEqual) {
    return "; for every entry, write a scalar s as s*ones(" + std::to_string(matrix.rows) + "," +
           std::to_string(matrix.columns) + ")";
  }
  if (matrix.rows != matrix.columns) return "";
  return "; against a matrix, write a scalar s as s*eye(" + std::to_string(matrix.rows) + ")";
}

// Scalars against vectors; the number 0 against a matrix is left to subtract().
void spread_scalars(AffineMatrix& left, AffineMatrix& right, const Token& sign) {
  const Span at = sign.span;
  const auto agree = [&] { return left.rows == right.rows && left.columns == right.columns; };
  if (agree()) return;
  if (is_scalar(left) && is_vector(right)) left = spread(left, right.rows, right.columns, at);
  if (is_scalar(right) && is_vector(left)) right = spread(right, left.rows, left.columns, at);
  if (agree() || is_number_zero(left) || is_number_zero(right)) return;
  std::string message = "both sides of a relation need equal shapes: left is " + shape_text(left) +
                        ", right is " + shape_text(right);
  if (is_scalar(left) || is_scalar(right))
    message += advice_on_scalar(is_scalar(left) ? right : left, sign);
  throw LanguageError(at, std::move(message));
}

std::string difference_text(const Symmetry& symmetry, double sign,
                            const std::vector<Variable>& variables) {
  const auto entry = [&](std::int32_t row, std::int32_t column, double value) {
    return entry_text(row, column) + " is " + number_text(sign * value + 0.0);
  };
  const std::string where =
      symmetry.unknown == kConstant
          ? "in the constant part"
          : "in the coefficient of " + in_quotes(unknown_name(variables, symmetry.unknown));
  return where + ", entry " + entry(symmetry.row, symmetry.column, symmetry.upper) + " and entry " +
         entry(symmetry.column, symmetry.row, symmetry.lower);
}

LanguageError asymmetric(Span at, const std::string& entries, std::int32_t unknown,
                         const std::vector<Variable>& variables) {
  LanguageError error(at, "a matrix inequality needs symmetric matrices: " + entries);
  if (unknown == kConstant) return error;
  const Variable& variable = owner_of(variables, unknown);
  if (variable.shape != Variable::Shape::kGeneral || variable.rows == 1 || variable.columns == 1)
    return error;
  return std::move(error).with_note(variable.declared, in_quotes(variable.name) + " is declared " +
                                                           shape_text(variable) +
                                                           " here, and not symmetric");
}

}  // namespace

bool is_relation(TokenKind kind) {
  return kind == TokenKind::kGreater || kind == TokenKind::kGreaterEqual ||
         kind == TokenKind::kLess || kind == TokenKind::kLessEqual || kind == TokenKind::kEqual;
}

const char* relation_text(Sense sense) {
  switch (sense) {
    case Sense::kStrict:
      return "> 0";
    case Sense::kNonStrict:
      return ">= 0";
    case Sense::kEqual:
      return "== 0";
  }
  return "";
}

RelationResult make_condition(Operand left, const Token& sign, Operand right,
                              const std::vector<Variable>& variables, const FormTable& forms) {
  RelationResult result;
  Condition& condition = result.condition;
  condition.sense = sense_of(sign.kind);
  condition.where = {left.span.begin, right.span.end};

  spread_scalars(left.value, right.value, sign);
  const bool left_is_zero = is_number_zero(left.value);
  const bool reversed = sign.kind == TokenKind::kLess || sign.kind == TokenKind::kLessEqual;
  if (reversed) std::swap(left.value, right.value);
  condition.difference = subtract(std::move(left.value), std::move(right.value), sign.span);
  forms.settle(condition.difference, sign.span);

  AffineMatrix& difference = condition.difference;
  if (condition.sense == Sense::kEqual || is_vector(difference)) return result;
  if (difference.rows != difference.columns) {
    throw LanguageError(sign.span,
                        "an inequality needs scalars, vectors or square matrices, this is " +
                            shape_text(difference));
  }
  condition.is_matrix = true;
  if (is_symmetric(difference)) return result;
  // References that differ may still stand for the same terms.
  forms.write_out(difference, sign.span);
  settle(difference, sign.span);
  const Symmetry symmetry = symmetrize(difference);
  if (symmetry.grade == Symmetry::Grade::kExact) return result;
  // Entries are shown as the author wrote them: of the side that is not 0, or of
  // left - right.
  const std::string entries =
      difference_text(symmetry, reversed != left_is_zero ? -1.0 : 1.0, variables);
  if (symmetry.grade == Symmetry::Grade::kBroken) {
    throw asymmetric(sign.span, entries, symmetry.unknown, variables);
  }
  result.note = Diagnostic{
      Diagnostic::Severity::kNote, sign.span, "the symmetric part is used: " + entries, {}, {}};
  return result;
}

}  // namespace sdpsol
