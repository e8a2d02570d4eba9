#include "host/check/captured_text.h"

#include <gtest/gtest.h>

#include <string>

namespace zelcheck {
namespace {

// Different in every place.
std::string counted(int lines) {
  std::string text;
  for (int i = 0; i < lines; ++i) text += std::to_string(i) + "\n";
  return text;
}

std::string captured(const std::string& text, std::size_t piece) {
  CapturedText all;
  for (std::size_t i = 0; i < text.size(); i += piece) all.append(text.substr(i, piece));
  return all.text();
}

TEST(CapturedText, KeepsAllOfAShortText) {
  EXPECT_EQ(CapturedText().text(), "");
  const std::string text = counted(600).substr(0, 2000);
  ASSERT_EQ(text.size(), 2000U);
  for (const std::size_t piece : {1U, 7U, 999U, 1000U, 1001U, 2000U})
    EXPECT_EQ(captured(text, piece), text) << piece;
}

TEST(CapturedText, LeavesOutTheMiddleOfALongOne) {
  const std::string text = counted(10'000);
  const std::string expected = text.substr(0, 1000) + "\n... " +
                               std::to_string(text.size() - 2000) + " bytes ...\n" +
                               text.substr(text.size() - 1000);
  for (const std::size_t piece : {1U, 7U, 999U, 1000U, 1001U, 20'000U, 100'000U})
    EXPECT_EQ(captured(text, piece), expected) << piece;
}

}  // namespace
}  // namespace zelcheck
