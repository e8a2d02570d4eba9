#include "solver/language/statement_reader.h"

#include <string>
#include <utility>
#include <vector>

#include "solver/language/arithmetic.h"
#include "solver/language/explain.h"
#include "solver/language/limits.h"
#include "solver/language/names.h"
#include "solver/language/parameters.h"
#include "solver/language/relation.h"
#include "solver/language/variables.h"

namespace sdpsol {
namespace {

// Gives back what growth has left over, where many short lists would add up. The
// unused end of a long one has never been touched and costs nothing, unlike a copy.
void trim(AffineMatrix& matrix) {
  constexpr std::size_t kShort = 4096;
  if (matrix.terms.size() < kShort) matrix.terms.shrink_to_fit();
}

}  // namespace

StatementReader::StatementReader(Lexer& lexer, Diagnostics& diagnostics)
    : lexer_(lexer), diagnostics_(diagnostics), expressions_(lexer, symbols_, forms_) {
  for (const std::string_view name : kParameterNames) publish_parameter(name, {});
}

void StatementReader::read() {
  target_ = Token{};
  const Token token = lexer_.current();
  const std::string_view word = lexer_.text(token.span);
  try {
    if (token.kind == TokenKind::kName && lexer_.ahead().kind == TokenKind::kAssign) {
      assignment();
    } else if (word == "variable") {
      declarations();
    } else if (word == "maximize" || word == "minimize") {
      objective(word == "maximize");
    } else {
      relations();
    }
    end_statement();
  } catch (LanguageError& error) {
    explain_unknowns(error, model_.variables);
    throw;
  }
}

int StatementReader::abandon() {
  if (target_.kind == TokenKind::kName) {
    publish(lexer_.text(target_.span), {Symbol::Kind::kFailed, {}, target_.span});
  }
  return expressions_.recover();
}

void StatementReader::mark_missing(std::string_view name, std::size_t complaint) {
  symbols_.set(name, {Symbol::Kind::kMissing, {}, {}, 0, complaint});
}

Model StatementReader::take_model() {
  model_.forms = forms_.take();
  return std::move(model_);
}

void StatementReader::assignment() {
  const Token name = lexer_.current();
  const std::string_view text = lexer_.text(name.span);
  require_not_variable(name);
  lexer_.advance();
  lexer_.advance();
  if (is_parameter(text)) {
    set_parameter(model_.parameters, text, expressions_.expression());
    publish_parameter(text, name.span);
    return;
  }
  target_ = name;
  assign(name, expressions_.composition().value);
  target_ = Token{};
}

void StatementReader::require_free(const Token& name, const char* use) const {
  const std::string_view text = lexer_.text(name.span);
  if (const auto reason = why_reserved(text)) throw LanguageError(name.span, *reason);
  if (is_parameter(text)) {
    throw LanguageError(name.span, in_quotes(text) + " is a parameter and cannot be " + use);
  }
}

void StatementReader::require_not_variable(const Token& name) const {
  const std::string_view text = lexer_.text(name.span);
  if (const auto reason = why_reserved(text)) throw LanguageError(name.span, *reason);
  const Symbol* symbol = symbols_.find(text);
  if (symbol != nullptr && symbol->kind == Symbol::Kind::kVariable) {
    throw LanguageError(name.span, in_quotes(text) + " is a variable and cannot be assigned")
        .with_note(symbol->defined, in_quotes(text) + " is declared here");
  }
}

void StatementReader::require_memory(std::size_t terms, Span at) const {
  const std::size_t held = symbols_.held_terms() + forms_.held_terms() + condition_terms_;
  if (held + terms <= kMaxHeldTerms) return;
  throw LanguageError(at, "all values and conditions together take more than " +
                              std::to_string(kMaxHeldTerms) + " terms");
}

void StatementReader::publish(std::string_view name, Symbol symbol) {
  const Symbol* known = symbols_.find(name);
  if (known != nullptr && known->kind == Symbol::Kind::kMissing) {
    diagnostics_.explain(known->complaint,
                         {symbol.defined, in_quotes(name) + " is defined only here, further down"});
  }
  forms_.hold(symbol.value);
  if (known != nullptr) forms_.drop(known->value);
  symbols_.set(name, std::move(symbol));
}

void StatementReader::publish_parameter(std::string_view name, Span where) {
  publish(name,
          {Symbol::Kind::kParameter, constant(get_parameter(model_.parameters, name)), where});
}

void StatementReader::assign(const Token& name, AffineMatrix value) {
  // A scalar is written out and a form of its own, so that forms do not nest.
  if (is_scalar(value)) forms_.write_out(value, name.span);
  forms_.settle(value, name.span);
  require_memory(value.terms.size(), name.span);
  trim(value);
  forms_.keep(value);
  publish(lexer_.text(name.span), {Symbol::Kind::kAssigned, std::move(value), name.span});
}

void StatementReader::declarations() {
  do {
    lexer_.advance();
    declaration();
    target_ = Token{};
  } while (lexer_.current().kind == TokenKind::kComma);
}

void StatementReader::declaration() {
  const Token name = lexer_.current();
  if (name.kind != TokenKind::kName) throw lexer_.unexpected("the name of a variable");
  lexer_.advance();
  require_free(name, "a variable");
  const std::string_view text = lexer_.text(name.span);
  const Symbol* symbol = symbols_.find(text);
  if (symbol != nullptr && symbol->kind == Symbol::Kind::kAssigned) {
    throw LanguageError(name.span, in_quotes(text) + " is declared after it was assigned")
        .with_note(symbol->defined, in_quotes(text) + " is assigned here");
  }
  if (symbol == nullptr || symbol->kind != Symbol::Kind::kVariable) {
    target_ = name;
    declare(declared_shape(name));
    return;
  }

  const Variable& known = model_.variables[symbol->variable];
  const Variable again = declared_shape(name);
  if (again.rows != known.rows || again.columns != known.columns || again.shape != known.shape) {
    throw LanguageError(name.span, in_quotes(text) +
                                       " is declared again with another shape: first " +
                                       shape_text(known) + ", here " + shape_text(again))
        .with_note(known.declared, "the first declaration");
  }
  diagnostics_.add({Diagnostic::Severity::kNote,
                    name.span,
                    in_quotes(text) + " is declared again with the same shape",
                    {},
                    {{known.declared, "the first declaration"}}});
}

Variable StatementReader::declared_shape(const Token& name) {
  Variable variable;
  variable.name = std::string(lexer_.text(name.span));
  variable.declared = name.span;
  if (lexer_.current().kind == TokenKind::kOpenParenthesis) {
    const std::uint32_t begin = lexer_.current().span.begin;
    const std::vector<Operand> sizes = expressions_.arguments();
    if (sizes.size() != 2) {
      throw LanguageError({begin, lexer_.last_end()},
                          "the shape of a variable is written (rows, columns)");
    }
    variable.rows = whole_number(sizes[0], "a size", 1, kMaxDimension);
    variable.columns = whole_number(sizes[1], "a size", 1, kMaxDimension);
  }
  const Token word = lexer_.current();
  const bool symmetric = lexer_.text(word.span) == "symmetric";
  if (!symmetric && lexer_.text(word.span) != "diagonal") return variable;
  if (variable.rows != variable.columns) {
    throw LanguageError(word.span, "a " + std::string(lexer_.text(word.span)) +
                                       " variable must be square, " + in_quotes(variable.name) +
                                       " is " + shape_text(variable));
  }
  lexer_.advance();
  if (variable.rows > 1) {
    variable.shape = symmetric ? Variable::Shape::kSymmetric : Variable::Shape::kDiagonal;
  }
  return variable;
}

void StatementReader::declare(Variable variable) {
  const std::int64_t unknowns = unknown_count(variable);
  if (unknowns > kMaxGeneratedEntries) {
    throw LanguageError(variable.declared, in_quotes(variable.name) + " would hold " +
                                               std::to_string(unknowns) + " unknowns; at most " +
                                               std::to_string(kMaxGeneratedEntries) +
                                               " are allowed");
  }
  variable.first_unknown = model_.unknown_count;
  AffineMatrix value = variable_value(variable);
  require_memory(value.terms.size(), variable.declared);
  model_.unknown_count += static_cast<std::int32_t>(unknowns);
  model_.variables.push_back(std::move(variable));
  const Span where = model_.variables.back().declared;
  publish(lexer_.text(where),
          {Symbol::Kind::kVariable, std::move(value), where, model_.variables.size() - 1});
}

void StatementReader::objective(bool maximize) {
  const Token word = lexer_.current();
  lexer_.advance();
  const Token name = lexer_.current();
  if (name.kind != TokenKind::kName || lexer_.ahead().kind != TokenKind::kAssign) {
    throw lexer_.unexpected("a name and '=', as in '" + std::string(lexer_.text(word.span)) +
                            " objective = ...'");
  }
  lexer_.advance();
  lexer_.advance();
  require_free(name, "the name of an objective");
  require_not_variable(name);
  target_ = name;
  if (model_.objective) {
    throw LanguageError(word.span, "a second objective: there can be only one")
        .with_note(model_.objective->where, "the first objective");
  }
  Operand operand = expressions_.expression();
  if (!is_scalar(operand.value)) {
    throw LanguageError(operand.span,
                        "an objective must be a scalar, this is " + shape_text(operand.value));
  }
  settle(operand.value, name.span);
  assign(name, operand.value);
  target_ = Token{};
  model_.objective = Objective{std::move(operand.value),
                               maximize,
                               std::string(lexer_.text(name.span)),
                               {word.span.begin, lexer_.last_end()}};
}

void StatementReader::relations() {
  Operand left = expressions_.composition();
  if (lexer_.current().kind == TokenKind::kSemicolon) {
    throw LanguageError(left.span,
                        "an expression alone is no statement: a relation such as '> 0' is missing");
  }
  while (is_relation(lexer_.current().kind)) {
    const Token sign = lexer_.current();
    lexer_.advance();
    Operand right = expressions_.composition();
    const Span left_span = left.span;
    const Span right_span = right.span;
    Operand middle;
    if (is_relation(lexer_.current().kind)) middle = right;
    try {
      RelationResult made =
          make_condition(std::move(left), sign, std::move(right), model_.variables, forms_);
      const std::size_t terms = written_out_size(made.condition.difference.terms, forms_.forms());
      require_room(terms, sign.span);
      require_memory(terms, sign.span);
      if (made.note) diagnostics_.add(std::move(*made.note));
      condition_terms_ += terms;
      trim(made.condition.difference);
      forms_.hold(made.condition.difference);
      model_.conditions.push_back(std::move(made.condition));
    } catch (LanguageError& error) {
      explain_operands(error, lexer_.text(), symbols_, left_span, right_span);
      throw;
    }
    left = std::move(middle);
  }
}

void StatementReader::end_statement() {
  const Token token = lexer_.current();
  switch (token.kind) {
    case TokenKind::kSemicolon:
      lexer_.advance();
      return;
    case TokenKind::kAssign:
      throw LanguageError(token.span, "'=' assigns to a name; an equation is written with '=='");
    case TokenKind::kCloseParenthesis:
    case TokenKind::kCloseBracket:
      throw LanguageError(token.span,
                          in_quotes(lexer_.text(token.span)) + " without one that opens it");
    default:
      break;
  }
  const std::string_view between = lexer_.text({lexer_.last_end(), token.span.begin});
  if (token.kind == TokenKind::kEnd || between.find('\n') != std::string_view::npos) {
    throw LanguageError({lexer_.last_end(), lexer_.last_end()},
                        "';' is missing at the end of this statement");
  }
  throw lexer_.unexpected("an operator or ';'");
}

}  // namespace sdpsol
