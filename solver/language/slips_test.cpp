// One slip is one error. Every good definition is spoilt in one place, in each way and
// each place that there is: the report must hold exactly one error, where the text has not
// by chance become another good one. A slip that hides which name is defined, or where a
// matrix begins, may be two.
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <functional>
#include <iterator>
#include <string>
#include <vector>

#include "solver/language/lexer.h"
#include "solver/language/reader.h"

namespace sdpsol {
namespace {

namespace fs = std::filesystem;

struct Definition {
  std::string name;
  std::string text;
  std::vector<Token> tokens;
};

std::vector<Definition> good_definitions() {
  std::vector<Definition> found;
  for (const auto& entry :
       fs::directory_iterator(fs::path(SDPSOL_SOURCE_DIR) / "tests" / "definitions" / "good")) {
    if (entry.path().extension() != ".def") continue;
    std::ifstream file(entry.path(), std::ios::binary);
    Definition definition{entry.path().stem().string(),
                          {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()},
                          {}};
    const Source source(definition.name, definition.text);
    for (Lexer lexer(source); lexer.current().kind != TokenKind::kEnd; lexer.advance()) {
      definition.tokens.push_back(lexer.current());
    }
    found.push_back(std::move(definition));
  }
  return found;
}

// The text with `with` in the place of a token.
std::string replaced(const Definition& definition, const Token& token, const std::string& with) {
  std::string text = definition.text;
  return text.replace(token.span.begin, token.span.end - token.span.begin, with);
}

// Returns whether there is an error.
bool expect_few_errors(const Definition& definition, const Token& slip, std::string text,
                       std::size_t most = 1) {
  const Source source(definition.name, std::move(text));
  Diagnostics diagnostics;
  const auto model = read_definition(source, diagnostics);
  EXPECT_LE(diagnostics.error_count(), most)
      << "slip at line " << source.place(slip.span.begin).line << "\n"
      << diagnostics.render(source);
  EXPECT_EQ(model.has_value(), diagnostics.error_count() == 0);
  return !model.has_value();
}

bool ends_line(const Definition& definition, const Token& token) {
  const std::size_t next = definition.text.find_first_not_of(" \t\r", token.span.end);
  return next == std::string::npos || definition.text[next] == '\n';
}

// Calls back for each token, with the number of brackets that are open before it.
void for_each_token(const Definition& definition,
                    const std::function<void(std::size_t index, int brackets)>& call) {
  int brackets = 0;
  for (std::size_t i = 0; i < definition.tokens.size(); ++i) {
    const TokenKind kind = definition.tokens[i].kind;
    if (kind == TokenKind::kCloseBracket || kind == TokenKind::kCloseParenthesis) --brackets;
    call(i, brackets);
    if (kind == TokenKind::kOpenBracket || kind == TokenKind::kOpenParenthesis) ++brackets;
  }
}

// Returns how many of the spoilt texts are in error.
int spoil(TokenKind kind, const std::string& with, std::size_t most = 1) {
  int count = 0;
  for (const Definition& definition : good_definitions()) {
    for (const Token& token : definition.tokens) {
      if (token.kind != kind) continue;
      count +=
          expect_few_errors(definition, token, replaced(definition, token, with), most) ? 1 : 0;
    }
  }
  return count;
}

TEST(OneSlip, AMissingSemicolonIsOneError) {
  // Of those that end a line: in a line "x > 1; -y > 2" is another text without it.
  int count = 0;
  for (const Definition& definition : good_definitions()) {
    for_each_token(definition, [&](std::size_t i, int brackets) {
      const Token& token = definition.tokens[i];
      if (token.kind != TokenKind::kSemicolon || brackets > 0 || !ends_line(definition, token))
        return;
      count += expect_few_errors(definition, token, replaced(definition, token, "")) ? 1 : 0;
    });
  }
  EXPECT_GT(count, 200);
}

TEST(OneSlip, AMissingBracketIsOneError) {
  EXPECT_GT(spoil(TokenKind::kCloseBracket, ""), 30);
  EXPECT_GT(spoil(TokenKind::kOpenBracket, "", 2), 30);
}

TEST(OneSlip, AMissingParenthesisIsOneError) {
  EXPECT_GT(spoil(TokenKind::kCloseParenthesis, ""), 50);
  EXPECT_GT(spoil(TokenKind::kOpenParenthesis, "", 2), 50);
}

TEST(OneSlip, AForeignCharacterIsOneError) {
  EXPECT_GT(spoil(TokenKind::kPlus, "?"), 50);
  EXPECT_GT(spoil(TokenKind::kNumber, "?"), 200);
  EXPECT_GT(spoil(TokenKind::kGreater, "?"), 50);
  EXPECT_GT(spoil(TokenKind::kName, "?", 2), 200);
}

TEST(OneSlip, ANumberThatIsNoneIsOneError) {
  EXPECT_GT(spoil(TokenKind::kNumber, "1e999"), 200);
  EXPECT_GT(spoil(TokenKind::kNumber, "nan"), 200);
}

TEST(OneSlip, AMissingOperandOrRelationIsOneError) {
  EXPECT_GT(spoil(TokenKind::kNumber, ""), 100);
  EXPECT_GT(spoil(TokenKind::kGreater, ""), 50);
  EXPECT_GT(spoil(TokenKind::kStar, ""), 50);
}

TEST(OneSlip, AnUndefinedNameIsOneError) {
  EXPECT_GT(spoil(TokenKind::kName, "undefined_"), 200);
}

}  // namespace
}  // namespace sdpsol
