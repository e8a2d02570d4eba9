// Cuts the text of a definition into tokens.
#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <string_view>

#include "solver/language/language_error.h"
#include "solver/language/source.h"

namespace sdpsol {

enum class TokenKind : std::uint8_t {
  kName,
  kNumber,
  kPlus,
  kMinus,
  kStar,
  kSlash,
  kApostrophe,
  kOpenParenthesis,
  kCloseParenthesis,
  kOpenBracket,
  kCloseBracket,
  kComma,
  kSemicolon,
  kAssign,
  kGreater,
  kGreaterEqual,
  kLess,
  kLessEqual,
  kEqual,
  kInvalid,  ///< bytes that mean nothing, or a number that is none
  kEnd,
};

struct Token {
  TokenKind kind = TokenKind::kEnd;
  Span span;
  double number = 0;  ///< of a kNumber
};

/// The token at hand and the one after it. Never throws: what it cannot read
/// becomes a kInvalid token, and it is the parser's business to complain.
class Lexer {
 public:
  /// `source` must outlive the lexer.
  explicit Lexer(const Source& source);

  const Token& current() const { return tokens_[current_]; }
  const Token& ahead() const { return tokens_[1 - current_]; }
  /// End of the token before the current one; 0 at the start.
  std::uint32_t last_end() const { return last_end_; }
  void advance();
  /// Goes on at byte `end`, where a token has been read by other means.
  void move_to(std::uint32_t end);

  std::string_view text() const { return text_; }
  std::string_view text(Span span) const { return text_.substr(span.begin, span.end - span.begin); }
  /// "expected <what>, found ..." at the current token, or what is wrong with it
  /// where it is no token at all.
  LanguageError unexpected(const std::string& expected) const;

 private:
  void skip_blanks();
  void scan(Token& token);
  TokenKind scan_symbol();

  std::string_view text_;
  std::size_t at_ = 0;
  std::uint32_t last_end_ = 0;
  std::array<Token, 2> tokens_;
  std::size_t current_ = 0;  ///< which of the two it is
};

}  // namespace sdpsol
