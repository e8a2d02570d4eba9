#include "solver/language/statement_reader.h"

#include <string>
#include <utility>

#include "solver/language/advice.h"
#include "solver/language/arithmetic.h"
#include "solver/language/explain.h"
#include "solver/language/limits.h"
#include "solver/language/names.h"
#include "solver/language/parameters.h"
#include "solver/language/relation.h"

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
  missing_ = {};
  const Token token = lexer_.current();
  const std::string_view word = lexer_.text(token.span);
  try {
    require_statement(token);
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
    const std::string_view name = lexer_.text(target_.span);
    const Symbol failed{Symbol::Kind::kFailed, {}, target_.span};
    // "x = x + 1" is no later definition of the x that it misses.
    if (name == missing_) {
      symbols_.set(name, failed);
    } else {
      publish(name, failed);
    }
  }
  return expressions_.recover();
}

void StatementReader::mark_missing(std::string_view name, std::size_t complaint) {
  symbols_.set(name, {Symbol::Kind::kMissing, {}, {}, 0, complaint});
  missing_ = name;
}

// A word, or what is none, and a name behind it: "Variable x, y", "maximise o = x".
// What they were to define counts as failed.
void StatementReader::require_statement(const Token& first) {
  const Token second = lexer_.ahead();
  const std::string_view word = lexer_.text(first.span);
  const bool unknown_word =
      first.kind == TokenKind::kName && !is_keyword(word) && symbols_.find(word) == nullptr;
  if (!unknown_word && first.kind != TokenKind::kInvalid) return;
  if (begins_foreign_comment(lexer_.text(), first.span.begin)) return;
  if (second.kind != TokenKind::kName || breaks_line({first.span.end, second.span.begin})) return;
  if (symbols_.find(lexer_.text(second.span)) == nullptr) target_ = second;
  fail_further_declarations(word);
  const std::string_view keyword = keyword_meant(word);
  if (keyword.empty() || keyword == "symmetric" || keyword == "diagonal") return;
  throw LanguageError(first.span,
                      in_quotes(word) + " is no keyword; it is written " + in_quotes(keyword));
}

void StatementReader::require_assignment(Span equals_sign) const {
  const std::string_view behind = lexer_.text().substr(equals_sign.end);
  if (!behind.starts_with('<') && !behind.starts_with('>')) return;
  const Span both{equals_sign.begin, equals_sign.end + 1};
  throw LanguageError(both, "unexpected " + in_quotes(lexer_.text(both)) +
                                std::string(advice_on_sign(lexer_.text(), equals_sign.end)));
}

Model StatementReader::take_model() {
  model_.forms = forms_.take();
  return std::move(model_);
}

void StatementReader::assignment() {
  const Token name = lexer_.current();
  const std::string_view text = lexer_.text(name.span);
  // Before anything is said about assigning: "x =< 1" is meant to be a relation.
  require_assignment(lexer_.ahead().span);
  require_not_variable(name, "it cannot be assigned, an equation is written '=='");
  lexer_.advance();
  lexer_.advance();
  if (is_parameter(text)) {
    const Operand operand = expressions_.expression();
    try {
      set_parameter(model_.parameters, text, operand);
    } catch (LanguageError& error) {
      explain_name(error, lexer_.text(), symbols_);
      throw;
    }
    publish_parameter(text, name.span);
    return;
  }
  target_ = name;
  assign(name, expressions_.composition().value);
}

void StatementReader::require_free(const Token& name, const char* use) const {
  const std::string_view text = lexer_.text(name.span);
  if (const auto reason = why_reserved(text)) throw LanguageError(name.span, *reason);
  if (is_parameter(text)) {
    throw LanguageError(name.span, in_quotes(text) + " is a parameter and cannot be " + use);
  }
}

void StatementReader::require_not_variable(const Token& name, const char* rule) const {
  const std::string_view text = lexer_.text(name.span);
  if (const auto reason = why_reserved(text)) throw LanguageError(name.span, *reason);
  const Symbol* symbol = symbols_.find(text);
  if (symbol != nullptr && symbol->kind == Symbol::Kind::kVariable) {
    throw LanguageError(name.span, in_quotes(text) + " is a variable; " + rule)
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

void StatementReader::objective(bool maximize) {
  const Token word = lexer_.current();
  lexer_.advance();
  const Token name = lexer_.current();
  if (name.kind != TokenKind::kName || lexer_.ahead().kind != TokenKind::kAssign) {
    throw LanguageError(name.span, "an objective has a name: it is written '" +
                                       std::string(lexer_.text(word.span)) + " objective = ...'");
  }
  lexer_.advance();
  lexer_.advance();
  require_free(name, "the name of an objective");
  require_not_variable(name, "an objective needs a name of its own");
  target_ = name;
  if (model_.objective) {
    throw LanguageError(word.span, "a second objective: there can be only one")
        .with_note(model_.objective->where, "the first objective");
  }
  Operand operand = expressions_.expression();
  if (!is_scalar(operand.value)) {
    throw with_name_explained(
        LanguageError(operand.span,
                      "an objective must be a scalar, this is " + shape_text(operand.value)),
        lexer_.text(), symbols_);
  }
  settle(operand.value, name.span);
  assign(name, operand.value);
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
  if (lexer_.current().kind == TokenKind::kSemicolon) {
    lexer_.advance();
    return;
  }
  const TokenKind kind = lexer_.current().kind;
  const bool plain = kind != TokenKind::kAssign && kind != TokenKind::kCloseParenthesis &&
                     kind != TokenKind::kCloseBracket;
  if (plain && at_new_line()) {
    target_ = Token{};
    throw MissingSemicolon({lexer_.last_end(), lexer_.last_end()},
                           kind == TokenKind::kName || kind == TokenKind::kOpenBracket);
  }
  throw wrong_end();
}

bool StatementReader::at_new_line() const {
  const Token& token = lexer_.current();
  return token.kind == TokenKind::kEnd || breaks_line({lexer_.last_end(), token.span.begin});
}

bool StatementReader::breaks_line(Span between) const {
  return lexer_.text(between).find('\n') != std::string_view::npos;
}

// What stands where the statement could end.
LanguageError StatementReader::wrong_end() const {
  const Token token = lexer_.current();
  const std::string found = in_quotes(lexer_.text(token.span));
  if (token.kind == TokenKind::kAssign) {
    require_assignment(token.span);
    return {token.span, "'=' assigns to a name; an equation is written with '=='"};
  }
  if (token.kind == TokenKind::kCloseParenthesis || token.kind == TokenKind::kCloseBracket) {
    return {token.span, found + " without one that opens it"};
  }
  LanguageError error = lexer_.unexpected("an operator or ';'");
  std::string& message = error.diagnostic.message;
  if (token.kind == TokenKind::kOpenParenthesis) {
    message += "; a product needs '*', and only a name has elements";
  } else if (token.kind == TokenKind::kOpenBracket) {
    message += "; a product needs '*', and an element is A(row, column)";
  } else if (token.kind == TokenKind::kComma || found == "'and'") {
    message += "; each relation is a statement of its own";
    if (lexer_.ahead().kind == TokenKind::kNumber) message += ", and numbers have a decimal point";
  }
  return error;
}

}  // namespace sdpsol
