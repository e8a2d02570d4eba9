#include "solver/language/reader.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <utility>

#include "solver/language/expression_reader.h"
#include "solver/language/language_error.h"
#include "solver/language/lexer.h"
#include "solver/language/statement_reader.h"
#include "solver/language/text_check.h"

namespace sdpsol {
namespace {

// Goes on behind the ";" that ends the statement. Inside a matrix ";" ends rows,
// so there it must be the one after the "]". But where a "]" or ";" is missing,
// what looks like a statement is one: at the place of the error itself, or at
// the beginning of a line.
void skip_statement(Lexer& lexer, std::uint32_t statement_begin, int open_brackets) {
  const std::uint32_t error_begin = lexer.current().span.begin;
  if (error_begin == statement_begin) lexer.advance();
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
      lexer.advance();
      return;
    }
  }
}

bool read_statement(StatementReader& statements, Diagnostics& diagnostics) {
  try {
    statements.read();
    return true;
  } catch (const UndefinedName& error) {
    statements.mark_missing(error.name, diagnostics.add(error.diagnostic));
  } catch (const LanguageError& error) {
    diagnostics.add(error.diagnostic);
  } catch (const AlreadyReported&) {
    // The author knows, and what follows from it needs no further words.
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
    if (!read_statement(statements, diagnostics)) {
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
