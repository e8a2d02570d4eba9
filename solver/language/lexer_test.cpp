#include "solver/language/lexer.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace sdpsol {
namespace {

std::vector<std::string> words(const std::string& text) {
  const Source source("t.def", text);
  std::vector<std::string> result;
  for (Lexer lexer(source); lexer.current().kind != TokenKind::kEnd; lexer.advance()) {
    result.emplace_back(lexer.text(lexer.current().span));
  }
  return result;
}

std::vector<TokenKind> kinds(const std::string& text) {
  const Source source("t.def", text);
  std::vector<TokenKind> result;
  for (Lexer lexer(source); lexer.current().kind != TokenKind::kEnd; lexer.advance()) {
    result.push_back(lexer.current().kind);
  }
  return result;
}

using Words = std::vector<std::string>;

TEST(Lexer, CutsWhatTheHostWrites) {
  EXPECT_EQ(words("x0=0.5*z0+-1*z1;\n"),
            (Words{"x0", "=", "0.5", "*", "z0", "+", "-", "1", "*", "z1", ";"}));
  EXPECT_EQ(words("[P0]>0;"), (Words{"[", "P0", "]", ">", "0", ";"}));
}

TEST(Lexer, TellsRelationsFromAssignment) {
  EXPECT_EQ(kinds("> >= < <= == ="),
            (std::vector<TokenKind>{TokenKind::kGreater, TokenKind::kGreaterEqual, TokenKind::kLess,
                                    TokenKind::kLessEqual, TokenKind::kEqual, TokenKind::kAssign}));
  EXPECT_EQ(words("a>==b"), (Words{"a", ">=", "=", "b"}));
  EXPECT_EQ(words("a===b"), (Words{"a", "==", "=", "b"}));
  EXPECT_EQ(words("a=+=b"), (Words{"a", "=", "+", "=", "b"}));
}

TEST(Lexer, SkipsBlanksCommentsAndAByteOrderMark) {
  EXPECT_EQ(words("\xEF\xBB\xBF"
                  "a\t% all of this; \xC3\xA4\r\n\f\vb % to the end"),
            (Words{"a", "b"}));
  EXPECT_TRUE(words(" \n % nothing").empty());
}

TEST(Lexer, GathersAStretchOfForeignBytes) {
  EXPECT_EQ(words("a \x01\x02#$ b"), (Words{"a", "\x01\x02#$", "b"}));
  EXPECT_EQ(kinds("\"x"), (std::vector<TokenKind>{TokenKind::kInvalid, TokenKind::kName}));
}

TEST(Lexer, KnowsTheTokenAheadAndWhereTheLastOneEnded) {
  const Source source("t.def", "ab = 3");
  Lexer lexer(source);
  EXPECT_EQ(lexer.last_end(), 0U);
  EXPECT_EQ(lexer.ahead().kind, TokenKind::kAssign);
  lexer.advance();
  EXPECT_EQ(lexer.last_end(), 2U);
  EXPECT_EQ(lexer.ahead().number, 3.0);
  lexer.advance();
  lexer.advance();
  EXPECT_EQ(lexer.current().kind, TokenKind::kEnd);
  lexer.advance();
  EXPECT_EQ(lexer.current().kind, TokenKind::kEnd);
}

TEST(Lexer, SaysWhatItFoundInsteadOfTheExpected) {
  const auto message = [](const std::string& text) {
    const Source source("t.def", text);
    return std::string(Lexer(source).unexpected("a value").what());
  };
  EXPECT_EQ(message(")"), "expected a value, found ')'");
  EXPECT_EQ(message(""), "expected a value, found the end of the text");
  EXPECT_EQ(message("1e999"), "'1e999' is too large for a number, the largest is about 1.8e308");
  EXPECT_EQ(message("3x"), "'3x' is not a number; a product is written 3*x");
  EXPECT_EQ(message("3e"), "'3e' is not a number");
  EXPECT_EQ(message("\x80"), "unexpected '?'");
  EXPECT_EQ(message("\xC3\xA4"), "unexpected '\xC3\xA4'");
}

}  // namespace
}  // namespace sdpsol
