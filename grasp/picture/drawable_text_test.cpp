#include "grasp/picture/drawable_text.h"

#include <gtest/gtest.h>

#include <string>

namespace grasp::picture {
namespace {

std::string as_xml(std::string_view text) {
  return xml_text(drawable(text));
}

TEST(Drawable, KeepsTextOfAnyScript) {
  const std::string text = "Zeigefinger \u00e4\u00df \u03bc \u5de6 \U0001F44D";
  EXPECT_EQ(as_xml(text), text);
}

TEST(Drawable, WritesWhatXmlReservesAsEntities) {
  EXPECT_EQ(as_xml("<a & \"b\">"), "&lt;a &amp; &quot;b&quot;&gt;");
}

TEST(Drawable, ReplacesControlsAndMakesBlanksOfTabsAndLineEnds) {
  EXPECT_EQ(as_xml(std::string_view("a\0b\x1b\x7f", 5)), "a\ufffdb\ufffd\ufffd");
  EXPECT_EQ(as_xml("a\tb\nc\rd"), "a b c d");
  EXPECT_EQ(as_xml("a\u0085b"), "a\ufffdb");
}

TEST(Drawable, ReplacesWhatIsNoUtf8) {
  EXPECT_EQ(as_xml("a\xff"), "a\ufffd");
  EXPECT_EQ(as_xml("\x80x"), "\ufffdx");
  EXPECT_EQ(as_xml("cut \xe2\x82"), "cut \ufffd\ufffd");
  EXPECT_EQ(as_xml("\xc0\xaf"), "\ufffd\ufffd") << "overlong";
  EXPECT_EQ(as_xml("\xe0\x80\xaf"), "\ufffd\ufffd\ufffd") << "overlong";
}

TEST(Drawable, ReplacesCharactersThatXmlForbids) {
  EXPECT_EQ(as_xml("\xed\xa0\x80"), "\ufffd") << "a surrogate";
  EXPECT_EQ(as_xml("\xef\xbf\xbe"), "\ufffd") << "U+FFFE";
  EXPECT_EQ(as_xml("\xf4\x90\x80\x80"), "\ufffd") << "above U+10FFFF";
}

TEST(Drawable, ReplacesMarksThatTurnTheTextAround) {
  EXPECT_EQ(as_xml("a\u202eb"), "a\ufffdb");
}

TEST(TextWidth, CountsBoldTextAndSquareCharactersAsWider) {
  EXPECT_LT(text_width(U"iii", false), text_width(U"MMM", false));
  EXPECT_LT(text_width(U"palm", false), text_width(U"palm", true));
  EXPECT_GE(text_width(U"\u5de6\u53f3", false), 2);
  EXPECT_EQ(text_width(U"", true), 0);
}

TEST(Cut, LeavesWhatFitsAndEndsTheRestInAnEllipsis) {
  EXPECT_EQ(cut(U"index", 8, true), U"index");
  const std::u32string text = cut(U"a very long name of a contact", 8, true);
  EXPECT_EQ(text.back(), U'\u2026');
  EXPECT_EQ(text.substr(0, 6), U"a very");
  EXPECT_LE(text_width(text, true), 8);
}

TEST(Wrap, BreaksAtBlanks) {
  const std::vector<std::u32string> lines = wrap(U"no force  balances here", 7, 9);
  EXPECT_EQ(lines, (std::vector<std::u32string>{U"no force ", U"balances", U"here"}));
}

TEST(Wrap, BreaksAWordThatIsWiderThanALine) {
  const std::vector<std::u32string> lines = wrap(std::u32string(30, U'x'), 6.1, 9);
  EXPECT_EQ(lines, std::vector<std::u32string>(3, std::u32string(10, U'x')));
}

TEST(Wrap, EndsInAnEllipsisWhereLinesRunOut) {
  const std::vector<std::u32string> lines = wrap(U"one two three four five six seven", 5, 2);
  ASSERT_EQ(lines.size(), 2U);
  EXPECT_EQ(lines[1].back(), U'\u2026');
}

TEST(Wrap, MakesNoLinesOfNothing) {
  EXPECT_TRUE(wrap(U"  ", 5, 2).empty());
}

}  // namespace
}  // namespace grasp::picture
