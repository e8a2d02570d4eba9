#include "solver/language/scaled_names.h"

#include <cstddef>
#include <cstdint>
#include <string_view>
#include <vector>

#include "solver/language/arithmetic.h"
#include "solver/language/characters.h"
#include "solver/language/limits.h"
#include "solver/language/number.h"

namespace sdpsol {
namespace {

bool is_sign(char byte) {
  return byte == '+' || byte == '-';
}

bool ends_product(char byte) {
  return is_sign(byte) || byte == ';' || byte == ',' || byte == ')' || byte == ']';
}

/// Reads the term at the start of `text` and returns its length, or 0 where it
/// is not as simple as that.
std::size_t read_term(std::string_view text, const SymbolTable& symbols, AffineTerm& term) {
  std::size_t at = 0;
  bool negative = false;
  for (; at < text.size() && is_sign(text[at]); ++at) negative ^= text[at] == '-';
  if (at == text.size() || !is_digit(text[at])) return 0;
  const ScannedNumber number = scan_number(text.substr(at));
  if (number.status != ScannedNumber::Status::kNumber) return 0;
  at += number.length;
  if (at == text.size() || text[at] != '*') return 0;
  const std::size_t name = ++at;
  if (at == text.size() || !is_name_start(text[at])) return 0;
  while (at < text.size() && is_name_character(text[at])) ++at;
  if (at == text.size() || !ends_product(text[at])) return 0;

  const Symbol* const symbol = symbols.find(text.substr(name, at - name));
  if (symbol == nullptr || !is_scalar(symbol->value) || symbol->value.terms.size() != 1) return 0;
  term = {0, 0, kConstant, negative ? -number.value : number.value, number.value};
  return scale_single(term, symbol->value.terms.front()) ? at : 0;
}

}  // namespace

bool append_scaled_names(Lexer& lexer, const SymbolTable& symbols, PartialValue& sum) {
  if (!sum.is_single && !is_scalar(sum.matrix)) return false;
  const std::string_view text = lexer.text();
  const std::uint32_t begin = lexer.current().span.begin;
  std::size_t at = begin;
  std::vector<AffineTerm>& terms = sum.as_matrix().terms;
  AffineTerm term;
  while (at < text.size() && is_sign(text[at]) && terms.size() < kMaxTerms) {
    const std::size_t length = read_term(text.substr(at), symbols, term);
    if (length == 0) break;
    terms.push_back(term);
    at += length;
  }
  if (at == begin) return false;
  lexer.move_to(static_cast<std::uint32_t>(at));
  sum.span.end = lexer.last_end();
  return true;
}

}  // namespace sdpsol
