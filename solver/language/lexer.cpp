#include "solver/language/lexer.h"

#include <algorithm>
#include <array>
#include <cstddef>

#include "solver/language/advice.h"
#include "solver/language/characters.h"
#include "solver/language/diagnostics.h"
#include "solver/language/number.h"

namespace sdpsol {
namespace {

bool begins_number(std::string_view text) {
  return !text.empty() &&
         (is_digit(text[0]) || (text[0] == '.' && text.size() > 1 && is_digit(text[1])));
}

// What a token is by its first byte; a "." needs a look at the second.
constexpr std::array<TokenKind, 256> token_kinds() {
  std::array<TokenKind, 256> kinds{};
  kinds.fill(TokenKind::kInvalid);
  for (std::size_t byte = 0; byte < kinds.size(); ++byte) {
    if (is_name_start(static_cast<char>(byte))) kinds[byte] = TokenKind::kName;
    if (is_digit(static_cast<char>(byte))) kinds[byte] = TokenKind::kNumber;
  }
  kinds['+'] = TokenKind::kPlus;
  kinds['-'] = TokenKind::kMinus;
  kinds['*'] = TokenKind::kStar;
  kinds['/'] = TokenKind::kSlash;
  kinds['\''] = TokenKind::kApostrophe;
  kinds['('] = TokenKind::kOpenParenthesis;
  kinds[')'] = TokenKind::kCloseParenthesis;
  kinds['['] = TokenKind::kOpenBracket;
  kinds[']'] = TokenKind::kCloseBracket;
  kinds[','] = TokenKind::kComma;
  kinds[';'] = TokenKind::kSemicolon;
  kinds['='] = TokenKind::kAssign;
  kinds['>'] = TokenKind::kGreater;
  kinds['<'] = TokenKind::kLess;
  return kinds;
}

constexpr std::array<TokenKind, 256> kTokenKinds = token_kinds();

TokenKind kind_of(char first) {
  return kTokenKinds[static_cast<unsigned char>(first)];
}

// A byte that no token, blank or comment begins with.
bool is_foreign(char byte) {
  return kind_of(byte) == TokenKind::kInvalid && !is_blank(byte) && byte != '%';
}

std::string complaint(std::string_view bytes) {
  if (!begins_number(bytes)) return "unexpected " + in_quotes(bytes);
  if (scan_number(bytes).status == ScannedNumber::Status::kOverflow) {
    return in_quotes(bytes) + " is too large for a number, the largest is about 1.8e308";
  }
  const std::string what = in_quotes(bytes) + " is not a number";
  // "2x", but not "1e", "1.2.3" or "0x1F".
  const std::size_t digits = std::min(bytes.find_first_not_of("0123456789."), bytes.size());
  const std::string_view name = bytes.substr(digits);
  const bool is_product = !name.empty() && name[0] != '_' && name[0] != 'e' && name[0] != 'E' &&
                          name.find('.') == std::string_view::npos && !bytes.starts_with("0x");
  return is_product ? what + "; a product is written " + std::string(bytes.substr(0, digits)) +
                          "*" + std::string(name.substr(0, 40))
                    : what;
}

}  // namespace

Lexer::Lexer(const Source& source) : text_(source.text()) {
  if (text_.starts_with(kByteOrderMark)) at_ = kByteOrderMark.size();
  scan(tokens_[0]);
  scan(tokens_[1]);
}

void Lexer::advance() {
  last_end_ = current().span.end;
  scan(tokens_[current_]);
  current_ = 1 - current_;
}

void Lexer::move_to(std::uint32_t end) {
  last_end_ = end;
  at_ = end;
  current_ = 0;
  scan(tokens_[0]);
  scan(tokens_[1]);
}

void Lexer::skip_blanks() {
  while (at_ < text_.size() && kind_of(text_[at_]) == TokenKind::kInvalid) {
    if (is_blank(text_[at_])) {
      ++at_;
    } else if (text_[at_] == '%') {
      at_ = std::min(text_.find('\n', at_), text_.size());
    } else {
      return;
    }
  }
}

void Lexer::scan(Token& token) {
  skip_blanks();
  const std::size_t begin = at_;
  const std::size_t size = text_.size();
  token.kind = begin == size ? TokenKind::kEnd : kind_of(text_[begin]);
  if (token.kind == TokenKind::kName) {
    std::size_t at = begin + 1;
    while (at < size && is_name_character(text_[at])) ++at;
    at_ = at;
  } else if (token.kind == TokenKind::kNumber || begins_number(text_.substr(begin))) {
    const ScannedNumber scanned = scan_number(text_.substr(begin));
    const bool good = scanned.status == ScannedNumber::Status::kNumber;
    token.kind = good ? TokenKind::kNumber : TokenKind::kInvalid;
    token.number = scanned.value;
    at_ += scanned.length;
  } else if (token.kind < TokenKind::kAssign) {
    ++at_;
  } else if (token.kind != TokenKind::kEnd) {
    token.kind = scan_symbol();
  }
  token.span = {static_cast<std::uint32_t>(begin), static_cast<std::uint32_t>(at_)};
}

TokenKind Lexer::scan_symbol() {
  const TokenKind kind = kind_of(text_[at_]);
  ++at_;
  if (kind == TokenKind::kInvalid) {
    // One complaint for a stretch of rubbish, not one for each of its bytes.
    while (at_ < text_.size() && is_foreign(text_[at_])) ++at_;
    return kind;
  }
  if (at_ == text_.size() || text_[at_] != '=') return kind;
  const TokenKind with_equals = kind == TokenKind::kGreater  ? TokenKind::kGreaterEqual
                                : kind == TokenKind::kLess   ? TokenKind::kLessEqual
                                : kind == TokenKind::kAssign ? TokenKind::kEqual
                                                             : kind;
  if (with_equals != kind) ++at_;
  return with_equals;
}

LanguageError Lexer::unexpected(const std::string& expected) const {
  const Span span = current().span;
  if (current().kind == TokenKind::kEnd) {
    return {{last_end_, last_end_}, "expected " + expected + ", found the end of the text"};
  }
  const std::string_view bytes = text(span);
  const std::string advice(advice_on_sign(text_, span.begin));
  if (current().kind == TokenKind::kInvalid) return {span, complaint(bytes) + advice};
  return {span, "expected " + expected + ", found " + in_quotes(bytes) + advice};
}

}  // namespace sdpsol
