// Texts of others on a terminal.
#include "host/text.h"

#include <gtest/gtest.h>

namespace zelhost {
namespace {

using namespace std::string_view_literals;

TEST(OnOneLine, LeavesTextsAsTheyAre) {
  EXPECT_EQ(on_one_line(""), "");
  EXPECT_EQ(on_one_line("a~ \u00E4 \u20AC \U0001F600"), "a~ \u00E4 \u20AC \U0001F600");
}

TEST(OnOneLine, TakesLineBreaksAndControlCharactersAway) {
  EXPECT_EQ(on_one_line("a\nb\r\tc"), "a b??c");
  EXPECT_EQ(on_one_line("\033[31m\x7F\0x"sv), "?[31m??x");
  // Those of eight bits, which some terminals obey too.
  EXPECT_EQ(on_one_line("\u0080\u009B1m\u00A0"), "??1m\u00A0");
}

TEST(OnOneLine, TakesAwayWhatIsNoUtf8) {
  EXPECT_EQ(on_one_line("a\xFF\x9Bz"), "a??z");
  // Cut off, too long for what they say, a surrogate, beyond the last character.
  EXPECT_EQ(on_one_line("\xE2\x82"), "??");
  EXPECT_EQ(on_one_line("\xE2\x82z"), "??z");
  EXPECT_EQ(on_one_line("\xC0\x8A"), "??");
  EXPECT_EQ(on_one_line("\xE0\x80\x8A"), "???");
  EXPECT_EQ(on_one_line("\xED\xA0\x80"), "???");
  EXPECT_EQ(on_one_line("\xF4\x90\x80\x80"), "????");
}

TEST(OnOneLine, CutsBetweenCharacters) {
  EXPECT_EQ(on_one_line("abcd", 4), "abcd");
  EXPECT_EQ(on_one_line("abcde", 4), "abcd...");
  EXPECT_EQ(on_one_line("abc\u20AC", 4), "abc...");
}

}  // namespace
}  // namespace zelhost
