#include "solver/language/expression_reader.h"

#include <algorithm>
#include <string>
#include <utility>

#include "solver/language/advice.h"
#include "solver/language/arithmetic.h"
#include "solver/language/blocks.h"
#include "solver/language/explain.h"
#include "solver/language/functions.h"
#include "solver/language/limits.h"
#include "solver/language/names.h"
#include "solver/language/relation.h"
#include "solver/language/scaled_names.h"

namespace sdpsol {
namespace {

bool begins_value(TokenKind kind) {
  return kind == TokenKind::kName || kind == TokenKind::kNumber ||
         kind == TokenKind::kOpenParenthesis || kind == TokenKind::kOpenBracket;
}

Span join(Span first, Span last) {
  return {first.begin, last.end};
}

AffineMatrix apply(const Token& sign, AffineMatrix a, AffineMatrix b) {
  if (sign.kind == TokenKind::kPlus) return add(std::move(a), std::move(b), sign.span);
  if (sign.kind == TokenKind::kMinus) return subtract(std::move(a), std::move(b), sign.span);
  if (sign.kind == TokenKind::kStar) return multiply(std::move(a), std::move(b), sign.span);
  return divide(std::move(a), b, sign.span);
}

}  // namespace

bool ExpressionReader::at_statement(const Lexer& lexer) {
  if (lexer.current().kind != TokenKind::kName) return false;
  if (lexer.ahead().kind == TokenKind::kAssign) return true;
  return lexer.ahead().kind == TokenKind::kName && is_keyword(lexer.text(lexer.current().span));
}

int ExpressionReader::recover() {
  const auto brackets = std::count_if(open_.begin(), open_.end(), [](const Token& token) {
    return token.kind == TokenKind::kOpenBracket;
  });
  open_.clear();
  return static_cast<int>(brackets);
}

Operand ExpressionReader::composition() {
  PartialValue value = sum();
  return {std::move(value.as_matrix()), value.span};
}

Operand ExpressionReader::expression() {
  Operand operand = composition();
  forms_.write_out(operand.value, operand.span);
  return operand;
}

PartialValue ExpressionReader::sum() {
  PartialValue left = product();
  for (;;) {
    const Token sign = lexer_.current();
    if (sign.kind != TokenKind::kPlus && sign.kind != TokenKind::kMinus) return left;
    require_clear_sign();
    if (append_scaled_names(lexer_, symbols_, left)) continue;
    lexer_.advance();
    combine(left, sign, product());
  }
}

PartialValue ExpressionReader::product() {
  PartialValue left = factor();
  for (;;) {
    const Token sign = lexer_.current();
    if (sign.kind != TokenKind::kStar && sign.kind != TokenKind::kSlash) return left;
    lexer_.advance();
    combine(left, sign, factor());
  }
}

// Signs are counted and not nested, so that a long row of them needs no stack.
PartialValue ExpressionReader::factor() {
  const std::uint32_t begin = lexer_.current().span.begin;
  bool negative = false;
  for (;; lexer_.advance()) {
    if (lexer_.current().kind == TokenKind::kMinus) {
      negative = !negative;
    } else if (lexer_.current().kind != TokenKind::kPlus) {
      break;
    }
  }
  PartialValue value = primary();
  while (lexer_.current().kind == TokenKind::kApostrophe) {
    lexer_.advance();
    value.matrix = transpose(std::move(value.as_matrix()));
  }
  if (negative) value.negate();
  value.span = {begin, lexer_.last_end()};
  return value;
}

PartialValue ExpressionReader::primary() {
  const Token& token = lexer_.current();
  if (token.kind == TokenKind::kNumber) {
    PartialValue value = PartialValue::of_number(token.number, token.span);
    lexer_.advance();
    return value;
  }
  if (token.kind == TokenKind::kName) return name();
  if (token.kind == TokenKind::kOpenParenthesis) return parenthesised();
  if (token.kind == TokenKind::kOpenBracket) return matrix();
  if (token.kind == TokenKind::kEnd && !open_.empty()) throw not_closed();
  throw lexer_.unexpected("a value");
}

PartialValue ExpressionReader::name() {
  if (!open_.empty() && at_statement(lexer_)) throw not_closed();
  const Token token = lexer_.current();
  if (lexer_.ahead().kind != TokenKind::kOpenParenthesis) {
    const Symbol& symbol = look_up(token);
    lexer_.advance();
    return PartialValue::of(symbol.value, token.span);
  }

  const std::string_view text = lexer_.text(token.span);
  if (const auto function = function_named(text)) {
    lexer_.advance();
    std::vector<Operand> operands = arguments();
    try {
      AffineMatrix value = call_function(*function, std::move(operands), token.span);
      return PartialValue::of(std::move(value), {token.span.begin, lexer_.last_end()});
    } catch (LanguageError& error) {
      explain_name(error, lexer_.text(), symbols_);
      throw;
    }
  }
  const Symbol& symbol = look_up(token);
  lexer_.advance();
  const std::vector<Operand> indices = arguments();
  const Span span{token.span.begin, lexer_.last_end()};
  if (indices.size() != 2) {
    std::string message =
        "an element is written " + std::string(text.substr(0, 40)) + "(row, column)";
    if (is_scalar(symbol.value)) message += ", a product with '*'";
    throw LanguageError(span, std::move(message))
        .with_note(symbol.defined, in_quotes(text) + " is " + shape_text(symbol.value));
  }
  const std::int32_t row = whole_number(indices[0], "a row", 1, symbol.value.rows);
  const std::int32_t column = whole_number(indices[1], "a column", 1, symbol.value.columns);
  return PartialValue::of(element_of(symbol.value, row - 1, column - 1), span);
}

const Symbol& ExpressionReader::look_up(const Token& token) const {
  const std::string_view text = lexer_.text(token.span);
  const Symbol* symbol = symbols_.find(text);
  if (symbol == nullptr) {
    if (is_not_finite(text)) {
      throw LanguageError(token.span, in_quotes(text) + " is not a finite number");
    }
    if (is_keyword(text)) {
      throw LanguageError(token.span, "expected a value, found the keyword " + in_quotes(text));
    }
    if (function_named(text)) {
      throw LanguageError(token.span,
                          in_quotes(text) + " is a function and needs arguments in parentheses");
    }
    // No relation stands inside brackets: this name begins another statement.
    if (!open_.empty() && is_relation(lexer_.ahead().kind)) throw not_closed();
    const bool as_function = lexer_.ahead().kind == TokenKind::kOpenParenthesis;
    throw UndefinedName(token.span, text,
                        advice_on_name(text, as_function, symbols_.similar(text)));
  }
  if (symbol->kind == Symbol::Kind::kFailed || symbol->kind == Symbol::Kind::kMissing) {
    throw AlreadyReported{};
  }
  return *symbol;
}

std::vector<Operand> ExpressionReader::arguments() {
  std::vector<Operand> result;
  open();
  if (lexer_.current().kind != TokenKind::kCloseParenthesis) {
    result.push_back(expression());
    while (lexer_.current().kind == TokenKind::kComma) {
      lexer_.advance();
      result.push_back(expression());
    }
  }
  close(TokenKind::kCloseParenthesis, "',' or ')'");
  return result;
}

PartialValue ExpressionReader::parenthesised() {
  const std::uint32_t begin = lexer_.current().span.begin;
  open();
  PartialValue inner = sum();
  close(TokenKind::kCloseParenthesis, "an operator or ')'");
  inner.span = {begin, lexer_.last_end()};
  return inner;
}

PartialValue ExpressionReader::matrix() {
  const std::uint32_t begin = lexer_.current().span.begin;
  open();
  if (lexer_.current().kind == TokenKind::kCloseBracket) {
    throw LanguageError({begin, lexer_.current().span.end}, "a matrix needs at least one element");
  }
  BlockMatrix blocks;
  for (;;) {
    Operand element = matrix_element();
    Span row = element.span;
    blocks.add(std::move(element.value), element.span);
    while (lexer_.current().kind == TokenKind::kComma) {
      lexer_.advance();
      element = matrix_element();
      row = join(row, element.span);
      blocks.add(std::move(element.value), element.span);
    }
    require_separator();
    blocks.end_row(row);
    if (lexer_.current().kind != TokenKind::kSemicolon) break;
    lexer_.advance();
  }
  close(TokenKind::kCloseBracket, "',', ';' or ']'");
  return PartialValue::of(blocks.finish(), {begin, lexer_.last_end()});
}

/// Asked before a row is held against the others: what is missing is not its width.
void ExpressionReader::require_separator() const {
  if (begins_value(lexer_.current().kind) && !at_statement(lexer_)) {
    const Span between{lexer_.last_end(), lexer_.current().span.begin};
    if (lexer_.text(between).find('\n') != std::string_view::npos) {
      throw LanguageError({between.begin, between.begin},
                          "missing ';' or ',' in a matrix: a line break separates nothing");
    }
    throw LanguageError(lexer_.current().span, "missing ',' between the elements of a matrix");
  }
}

Operand ExpressionReader::matrix_element() {
  const Token& token = lexer_.current();
  if (token.kind == TokenKind::kComma || token.kind == TokenKind::kSemicolon ||
      token.kind == TokenKind::kCloseBracket) {
    throw LanguageError(token.span,
                        "an element is missing before " + in_quotes(lexer_.text(token.span)));
  }
  return composition();
}

void ExpressionReader::combine(PartialValue& left, const Token& sign, PartialValue right) const {
  const Span whole = join(left.span, right.span);
  if (!combine_singles(left, sign.kind, right)) {
    AffineMatrix& a = left.as_matrix();
    AffineMatrix& b = right.as_matrix();
    try {
      // What overflows or vanishes in a product must show here.
      if (sign.kind == TokenKind::kStar || sign.kind == TokenKind::kSlash) {
        forms_.write_out(a, sign.span);
        forms_.write_out(b, sign.span);
      }
      a = apply(sign, std::move(a), std::move(b));
    } catch (LanguageError& error) {
      explain_operands(error, lexer_.text(), symbols_, left.span, right.span);
      throw;
    }
  }
  left.span = whole;
}

void ExpressionReader::open() {
  const Token& token = lexer_.current();
  if (open_.size() >= kMaxNesting) {
    throw LanguageError(token.span,
                        "more than " + std::to_string(kMaxNesting) + " brackets inside each other");
  }
  open_.push_back(token);
  lexer_.advance();
}

void ExpressionReader::close(TokenKind kind, const char* expected) {
  if (lexer_.current().kind != kind) {
    const TokenKind found = lexer_.current().kind;
    const bool separates = found == TokenKind::kSemicolon &&
                           closes_what_is_not_open(lexer_.text().substr(lexer_.current().span.end));
    if (separates && kind == TokenKind::kCloseParenthesis) {
      throw LanguageError(lexer_.current().span, "';' does not separate arguments, ',' does");
    }
    if (found == TokenKind::kEnd || found == TokenKind::kSemicolon || found == TokenKind::kAssign ||
        at_statement(lexer_)) {
      throw not_closed();
    }
    throw lexer_.unexpected(expected).with_note(
        open_.back().span, in_quotes(lexer_.text(open_.back().span)) + " is opened here");
  }
  open_.pop_back();
  lexer_.advance();
}

LanguageError ExpressionReader::not_closed() const {
  const std::string opened = in_quotes(lexer_.text(open_.back().span));
  const Span here{lexer_.last_end(), lexer_.last_end()};
  return LanguageError(here, opened + " is not closed")
      .with_note(open_.back().span, opened + " is opened here");
}

// White space means nothing, so [1 -2] would be the number -1, while authors who
// write it mean two elements. Neither is right often enough to be taken silently.
void ExpressionReader::require_clear_sign() const {
  if (open_.empty() || open_.back().kind != TokenKind::kOpenBracket) return;
  const Span sign = lexer_.current().span;
  const bool blank_before = sign.begin > lexer_.last_end();
  const bool blank_after = lexer_.ahead().span.begin > sign.end;
  if (!blank_before || blank_after) return;
  const std::string text = in_quotes(lexer_.text(sign));
  throw LanguageError(sign, "missing ',' before " + text + "; where an operator is meant, put " +
                                "blanks on both sides of it or on none");
}

}  // namespace sdpsol
