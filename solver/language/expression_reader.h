// Reads expressions and computes their values on the way.
//
//   expression := product {("+" | "-") product}
//   product    := factor {("*" | "/") factor}
//   factor     := {"+" | "-"} primary {"'"}
//   primary    := NUMBER | NAME | NAME "(" expression {"," expression} ")"
//               | "(" expression ")" | "[" row {";" row} "]"
//   row        := expression {"," expression}
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "solver/language/forms.h"
#include "solver/language/language_error.h"
#include "solver/language/lexer.h"
#include "solver/language/operand.h"
#include "solver/language/partial_value.h"
#include "solver/language/symbols.h"

namespace sdpsol {

/// A name without a definition is used.
class UndefinedName : public LanguageError {
 public:
  UndefinedName(Span span, std::string_view name_in_text, const std::string& advice)
      : LanguageError(span, in_quotes(name_in_text) + " is not defined" + advice),
        name(name_in_text) {}
  std::string_view name;
};

/// A statement that cannot be evaluated for a reason that has been reported.
struct AlreadyReported {};

/// One reader serves all expressions of a text. After an exception the lexer
/// stands somewhere inside the statement, and recover() must be called.
class ExpressionReader {
 public:
  ExpressionReader(Lexer& lexer, const SymbolTable& symbols, const FormTable& forms)
      : lexer_(lexer), symbols_(symbols), forms_(forms) {}

  /// Reads from the current token on as far as it continues an expression. Its
  /// value may hold references to forms.
  /// @throws LanguageError (UndefinedName), AlreadyReported.
  Operand composition();
  /// Likewise, without references.
  Operand expression();
  /// "(" expression {"," expression} ")" at the current token.
  std::vector<Operand> arguments();

  /// Forgets the brackets that an exception left open, and returns how many
  /// "[" there were among them.
  int recover();

  /// Whether a statement begins at the current token, as far as two tokens tell.
  static bool at_statement(const Lexer& lexer);

 private:
  PartialValue sum();
  PartialValue product();
  PartialValue factor();
  PartialValue primary();
  PartialValue name();
  PartialValue parenthesised();
  PartialValue matrix();
  void require_separator() const;
  Operand matrix_element();
  /// left = left <sign> right.
  void combine(PartialValue& left, const Token& sign, PartialValue right) const;
  const Symbol& look_up(const Token& name) const;

  void open();
  void close(TokenKind kind, const char* expected);
  void require_clear_sign() const;
  LanguageError not_closed() const;

  Lexer& lexer_;
  const SymbolTable& symbols_;
  const FormTable& forms_;
  std::vector<Token> open_;  ///< brackets and parentheses around the current token
};

}  // namespace sdpsol
