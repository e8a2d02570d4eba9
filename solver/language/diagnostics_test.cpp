#include "solver/language/diagnostics.h"

#include <gtest/gtest.h>

#include <string>

#include "solver/language/excerpt.h"

namespace sdpsol {
namespace {

TEST(Diagnostics, ShowsPlaceLineMarksAndNotes) {
  const Source source("lyapunov.def", "variable P(3,3);\nF = A*Q + P;\n");
  Diagnostics diagnostics;
  diagnostics.add({Diagnostic::Severity::kError,
                   {25, 26},
                   "'+' needs equal shapes: left is 2x2, right is 3x3",
                   {{21, 24}, {27, 28}},
                   {{{9, 10}, "'P' is declared 3x3 here"}}});
  EXPECT_EQ(diagnostics.render(source),
            "lyapunov.def:2:9: error: '+' needs equal shapes: left is 2x2, right is 3x3\n"
            "    2 | F = A*Q + P;\n"
            "      |     ~~~ ^ ~\n"
            "lyapunov.def:1:10: note: 'P' is declared 3x3 here\n");
}

TEST(Diagnostics, CountsNotesThatNobodyWouldRead) {
  const Source source("t.def", "x");
  Diagnostics diagnostics;
  const Diagnostic note{Diagnostic::Severity::kNote, {0, 1}, "seen", {}, {}};
  for (std::size_t i = 0; i < Diagnostics::kMaxNotes + 3; ++i) diagnostics.add(note);
  EXPECT_EQ(diagnostics.all().size(), Diagnostics::kMaxNotes);
  EXPECT_EQ(diagnostics.error_count(), 0U);
  const std::string text = diagnostics.render(source);
  EXPECT_NE(text.find("t.def: note: 3 more notes are not shown\n"), std::string::npos);
}

TEST(Diagnostics, ExplainsAnEarlierErrorLater) {
  const Source source("t.def", "ab");
  Diagnostics diagnostics;
  const std::size_t at = diagnostics.add({Diagnostic::Severity::kError, {0, 1}, "wrong", {}, {}});
  diagnostics.explain(at, {{1, 2}, "here"});
  diagnostics.explain(Diagnostics::kNowhere, {{1, 2}, "nowhere"});
  EXPECT_EQ(diagnostics.render(source),
            "t.def:1:1: error: wrong\n"
            "    1 | ab\n"
            "      | ^\n"
            "t.def:1:2: note: here\n");
}

TEST(Excerpt, MarksThePlaceBehindTheLastCharacter) {
  const Source source("t.def", "x = 1\r\ny");
  EXPECT_EQ(excerpt(source, {5, 5}, {}),
            "    1 | x = 1\n"
            "      |      ^\n");
}

TEST(Excerpt, KeepsColumnsUnderTabsAndWideCharacters) {
  const Source source("t.def", "\t\xC3\xA4 \x01\xFF? x");
  EXPECT_EQ(excerpt(source, {8, 9}, {{3, 4}}),
            "    1 |  \xC3\xA4 ??? x\n"
            "      |   ~    ^\n");
}

TEST(Excerpt, ShowsAWindowOfALongLine) {
  const Source source("t.def", std::string(5000, 'a') + "B" + std::string(5000, 'c'));
  EXPECT_EQ(excerpt(source, {5000, 5001}, {{0, 5000}}),
            "    1 | ..." + std::string(60, 'a') + "B" + std::string(39, 'c') + "...\n" +
                "      |    " + std::string(60, '~') + "^\n");
}

TEST(Excerpt, ShowsTheBeginningRatherThanDotsInstead) {
  const Source source("t.def", std::string(63, 'a') + "B" + std::string(36, 'c'));
  EXPECT_EQ(excerpt(source, {63, 64}, {}),
            "    1 | " + std::string(source.text()) + "\n      | " + std::string(63, ' ') + "^\n");
}

TEST(Excerpt, DoesNotCutAWideCharacterInTwo) {
  std::string line;
  for (int i = 0; i < 100; ++i) line += "\xC3\xA4";
  const Source source("t.def", line + "x");
  const std::string text = excerpt(source, {200, 201}, {});
  EXPECT_EQ(text.find('?'), std::string::npos) << text;
}

// Bytes with the look of UTF-8 that decode to nothing would garble a terminal.
TEST(PrintableLength, TakesWellFormedCharactersOnly) {
  EXPECT_EQ(printable_length("x"), 1U);
  EXPECT_EQ(printable_length("\xC3\xA4"), 2U);
  EXPECT_EQ(printable_length("\xE0\xA4\xB6"), 3U);
  EXPECT_EQ(printable_length("\xED\x9F\xBF"), 3U);
  EXPECT_EQ(printable_length("\xF0\x90\x80\x80"), 4U);
  EXPECT_EQ(printable_length("\xF4\x8F\xBF\xBF"), 4U);
  EXPECT_EQ(printable_length("\xC2\x85"), 0U) << "control character";
  EXPECT_EQ(printable_length("\xC1\xBF"), 0U) << "overlong";
  EXPECT_EQ(printable_length("\xE0\x90\xB6"), 0U) << "overlong";
  EXPECT_EQ(printable_length("\xF0\x8F\xBF\xBF"), 0U) << "overlong";
  EXPECT_EQ(printable_length("\xED\xA0\x80"), 0U) << "half of a pair";
  EXPECT_EQ(printable_length("\xF4\x90\x80\x80"), 0U) << "beyond the last character";
  EXPECT_EQ(printable_length("\xE2\x82"), 0U) << "cut off";
}

TEST(InQuotes, CutsLongTextsAndHidesControlBytes) {
  EXPECT_EQ(in_quotes("P1"), "'P1'");
  EXPECT_EQ(in_quotes(std::string(41, 'x')), "'" + std::string(40, 'x') + "...'");
  EXPECT_EQ(in_quotes("a\nb\x7F"), "'a?b?'");
}

TEST(Source, CountsLinesAndColumnsFromOne) {
  const Source source("t.def", "ab\n\ncd");
  EXPECT_EQ(source.place(0), (Place{1, 1}));
  EXPECT_EQ(source.place(2), (Place{1, 3}));
  EXPECT_EQ(source.place(3), (Place{2, 1}));
  EXPECT_EQ(source.place(6), (Place{3, 3}));
  EXPECT_EQ(source.line(1), "ab");
  EXPECT_EQ(source.line(2), "");
  EXPECT_EQ(source.line(3), "cd");
  EXPECT_EQ(source.line(4), "");
  EXPECT_EQ(source.line(0), "");
}

}  // namespace
}  // namespace sdpsol
