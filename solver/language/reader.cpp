#include "solver/language/reader.h"

#include <cstddef>
#include <cstdint>
#include <stdexcept>

#include "solver/language/advice.h"
#include "solver/language/expression_reader.h"
#include "solver/language/language_error.h"
#include "solver/language/lexer.h"
#include "solver/language/relation.h"
#include "solver/language/statement_reader.h"
#include "solver/language/text_check.h"

namespace sdpsol {
namespace {

// Whether an error at a "," stands among elements whose "[" is missing: then the "]"
// comes before anything else that such a list cannot hold.
bool in_unopened_matrix(Lexer lexer) {
  if (lexer.current().kind != TokenKind::kComma) return false;
  for (;; lexer.advance()) {
    const TokenKind kind = lexer.current().kind;
    if (kind == TokenKind::kCloseBracket) return true;
    if (kind == TokenKind::kEnd || kind == TokenKind::kAssign || kind == TokenKind::kOpenBracket ||
        is_relation(kind)) {
      return false;
    }
  }
}

// Goes on behind the ";" that ends the statement. Inside a matrix ";" ends rows,
// so there it must be the one after the "]". But where a "]" or ";" is missing,
// what looks like a statement is one: at the place of the error itself, or at
// the beginning of a line.
void skip_statement(Lexer& lexer, std::uint32_t statement_begin, int open_brackets) {
  const std::uint32_t error_begin = lexer.current().span.begin;
  if (error_begin == statement_begin && begins_foreign_comment(lexer.text(), error_begin)) {
    const std::size_t line_end = lexer.text().find('\n', error_begin);
    while (lexer.current().kind != TokenKind::kEnd && lexer.current().span.begin < line_end) {
      lexer.advance();
    }
    return;
  }
  if (error_begin == statement_begin) lexer.advance();
  if (in_unopened_matrix(lexer)) ++open_brackets;
  for (; lexer.current().kind != TokenKind::kEnd; lexer.advance()) {
    const std::string_view before = lexer.text({0, lexer.current().span.begin});
    const std::size_t last = before.find_last_not_of(" \t");
    const bool at_line_start = last == std::string_view::npos || before[last] == '\n';
    const bool at_error = lexer.current().span.begin == error_begin;
    if ((at_line_start || at_error) && ExpressionReader::at_statement(lexer)) return;
    const TokenKind kind = lexer.current().kind;
    if (kind == TokenKind::kOpenBracket) ++open_brackets;
    if (kind == TokenKind::kCloseBracket && open_brackets > 0) --open_brackets;
    if (kind == TokenKind::kSemicolon && open_brackets == 0) {
      if (closes_what_is_not_open(lexer.text().substr(lexer.current().span.end))) continue;
      lexer.advance();
      return;
    }
  }
}

bool read_statement(StatementReader& statements, Diagnostics& diagnostics,
                    std::size_t errors_before) {
  try {
    statements.read();
    return true;
  } catch (const MissingSemicolon& error) {
    diagnostics.add(error.diagnostic);
    return error.next_begins;
  } catch (const UndefinedName& error) {
    statements.mark_missing(error.name, diagnostics.add(error.diagnostic));
  } catch (const LanguageError& error) {
    diagnostics.add(error.diagnostic);
  } catch (const AlreadyReported&) {
    // The author knows, and what follows from it needs no further words.
    if (diagnostics.error_count() == errors_before) {
      throw std::logic_error("a statement is left out without a message");
    }
  }
  return false;
}

}  // namespace

std::optional<Model> read_definition(const Source& source, Diagnostics& diagnostics) {
  const std::size_t errors_before = diagnostics.error_count();
  if (!is_text(source, diagnostics)) return std::nullopt;

  Lexer lexer(source);
  StatementReader statements(lexer, diagnostics);
  bool empty = true;
  while (lexer.current().kind != TokenKind::kEnd && !diagnostics.full()) {
    if (lexer.current().kind == TokenKind::kSemicolon) {
      lexer.advance();
      continue;
    }
    empty = false;
    const std::uint32_t begin = lexer.current().span.begin;
    if (!read_statement(statements, diagnostics, errors_before)) {
      skip_statement(lexer, begin, statements.abandon());
    }
  }
  if (diagnostics.error_count() > errors_before) return std::nullopt;

  const Model& model = statements.model();
  if (model.conditions.empty() && !model.objective) {
    const Span end{lexer.last_end(), lexer.last_end()};
    diagnostics.add(LanguageError(end, empty ? "the definition is empty"
                                             : "nothing to satisfy and nothing to maximise: a "
                                               "definition needs a relation or an objective")
                        .diagnostic);
    return std::nullopt;
  }
  return statements.take_model();
}

}  // namespace sdpsol
