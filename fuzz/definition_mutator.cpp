// Changes of definitions that mostly leave definitions: for the fuzzers that have this file
// among their sources.
#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "fuzz/definition_grammar.h"
#include "fuzz/oracle.h"
#include "solver/language/lexer.h"

// libFuzzer's own change of bytes, which knows the dictionary.
extern "C" std::size_t LLVMFuzzerMutate(std::uint8_t* data, std::size_t size, std::size_t max_size);

namespace fuzz {
namespace {

using sdpsol::Lexer;
using sdpsol::Source;
using sdpsol::Token;
using sdpsol::TokenKind;

std::vector<Token> tokens_of(const Source& source) {
  std::vector<Token> tokens;
  for (Lexer lexer(source); lexer.current().kind != TokenKind::kEnd; lexer.advance())
    tokens.push_back(lexer.current());
  return tokens;
}

/// Where statements begin, and the end of the text.
std::vector<std::size_t> borders_of(const std::vector<Token>& tokens, std::size_t size) {
  std::vector<std::size_t> borders = {0};
  for (const Token& token : tokens)
    if (token.kind == TokenKind::kSemicolon) borders.push_back(token.span.end);
  borders.push_back(size);
  return borders;
}

bool is_relation(TokenKind kind) {
  return kind == TokenKind::kGreater || kind == TokenKind::kGreaterEqual ||
         kind == TokenKind::kLess || kind == TokenKind::kLessEqual || kind == TokenKind::kEqual;
}

/// Something that can stand where `token` stands.
std::string instead_of(const Token& token, std::string_view text, DefinitionGrammar& grammar) {
  if (is_relation(token.kind)) return grammar.relation();
  if (token.kind == TokenKind::kNumber) return grammar.number();
  if (token.kind == TokenKind::kName) {
    switch (grammar.pick(4)) {
      case 0:
        return "(" + grammar.expression(1, 1, 2) + ")";
      case 1:
        return "(" + std::string(text) + ")" + grammar.one_of({"'", "*2", "/3", "(1,1)", "-x"});
      case 2:
        return grammar.one_of({"diag(", "trace(", "sum(", "-(", "(", "[", "eye("}) +
               std::string(text) + grammar.one_of({")", ")", ")", "]"});
      default:
        return grammar.one_of({"x", "y", "z", "u", "P", "D", "X", "A", "b", "C", "t", "BIGM"});
    }
  }
  return grammar.one_of({"+", "-", "*", "/", "'", ",", ";", "(", ")", "[", "]", "="});
}

std::string changed(const std::string& text, DefinitionGrammar& grammar) {
  const Source source("", text);
  const std::vector<Token> tokens = tokens_of(source);
  const std::vector<std::size_t> borders = borders_of(tokens, text.size());
  const std::size_t from = grammar.pick(borders.size() - 1);
  const std::string statement = text.substr(borders[from], borders[from + 1] - borders[from]);
  std::string result = text;
  switch (grammar.pick(9)) {
    case 0:
      return grammar.definition();
    case 1:
      return result.erase(borders[from], statement.size());
    case 2:
      return result.insert(borders[grammar.pick(borders.size())], statement);
    case 3:
    case 4:
      return result.insert(borders[from], "\n" + grammar.statement());
    case 5:
      return std::string(DefinitionGrammar::preamble()) + result;
    default: {
      if (tokens.empty()) return grammar.definition();
      const Token& token = tokens[grammar.pick(tokens.size())];
      const std::size_t length = token.span.end - token.span.begin;
      return result.replace(token.span.begin, length,
                            instead_of(token, text.substr(token.span.begin, length), grammar));
    }
  }
}

}  // namespace

}  // namespace fuzz

/// One change of the text in `data`, as libFuzzer asks for it: a statement that comes,
/// goes, or is said twice; a token for another of its kind; an operand that becomes an
/// expression; a definition that is drawn anew; or any change of bytes.
/// @param max_size how much room there is. @return the size of the text.
extern "C" std::size_t LLVMFuzzerCustomMutator(std::uint8_t* data, std::size_t size,
                                               std::size_t max_size, unsigned seed) {
  fuzz::DefinitionGrammar grammar(seed);
  if (grammar.pick(3) == 0) return LLVMFuzzerMutate(data, size, max_size);
  const std::string text = fuzz::changed(fuzz::text_of(data, size), grammar);
  const std::size_t length = std::min(text.size(), max_size);
  std::copy_n(text.begin(), length, data);
  return length;
}
