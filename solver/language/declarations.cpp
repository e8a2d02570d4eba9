// Statements that declare variables: the part of StatementReader that reads them.
#include <cstdint>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "solver/language/advice.h"
#include "solver/language/limits.h"
#include "solver/language/statement_reader.h"
#include "solver/language/variables.h"

namespace sdpsol {

void StatementReader::declarations() {
  try {
    do {
      lexer_.advance();
      declaration();
      target_ = Token{};
    } while (lexer_.current().kind == TokenKind::kComma);
  } catch (const LanguageError&) {
    fail_further_declarations({});
    throw;
  }
}

// The names in the rest of a list of declarations that is in error, but not the word that
// the error is about.
void StatementReader::fail_further_declarations(std::string_view word) {
  for (Lexer rest = lexer_;
       rest.current().kind != TokenKind::kSemicolon && rest.current().kind != TokenKind::kEnd;
       rest.advance()) {
    if (rest.current().kind != TokenKind::kComma || rest.ahead().kind != TokenKind::kName) continue;
    const std::string_view name = lexer_.text(rest.ahead().span);
    if (name == word || symbols_.find(name) != nullptr) continue;
    symbols_.set(name, {Symbol::Kind::kFailed, {}, rest.ahead().span});
  }
}

void StatementReader::declaration() {
  const Token name = lexer_.current();
  if (name.kind != TokenKind::kName) throw lexer_.unexpected("the name of a variable");
  lexer_.advance();
  const std::string_view text = lexer_.text(name.span);
  if ((text == "symmetric" || text == "diagonal") && lexer_.current().kind == TokenKind::kName) {
    target_ = lexer_.current();
    throw LanguageError(name.span, in_quotes(text) + " stands behind the size, as in 'A(2,2) " +
                                       std::string(text) + "'");
  }
  require_free(name, "a variable");
  const Symbol* symbol = symbols_.find(text);
  if (symbol != nullptr && symbol->kind == Symbol::Kind::kAssigned) {
    throw LanguageError(name.span, in_quotes(text) + " is declared after it was assigned")
        .with_note(symbol->defined, in_quotes(text) + " is assigned here");
  }
  if (symbol == nullptr || symbol->kind != Symbol::Kind::kVariable) {
    target_ = name;
    Variable variable = declared_shape(name);
    require_declaration_end(variable);
    declare(std::move(variable));
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

// Before the variable counts as declared: "variable A(2,2) symetric" would else be
// a general one, and every use of it an error.
void StatementReader::require_declaration_end(const Variable& variable) const {
  const Token token = lexer_.current();
  if (token.kind == TokenKind::kSemicolon || token.kind == TokenKind::kComma || at_new_line()) {
    return;
  }
  const std::string_view word = lexer_.text(token.span);
  if (token.kind == TokenKind::kAssign) {
    throw LanguageError(token.span, "a variable is declared without a value; to fix it, write " +
                                        in_quotes(variable.name + " == ...") +
                                        " as a statement of its own");
  }
  if (const std::string_view keyword = keyword_meant(word); !keyword.empty() && keyword != word) {
    throw LanguageError(token.span,
                        in_quotes(word) + " is no keyword; it is written " + in_quotes(keyword));
  }
  throw lexer_.unexpected("'symmetric', 'diagonal', ',' or ';'");
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

}  // namespace sdpsol
