#include "solver/exchange/sdpa_scanner.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <string>
#include <vector>

namespace sdpsol {
namespace {

using Status = ScannedNumber::Status;

std::vector<std::string> words(std::string_view text) {
  std::vector<std::string> found;
  SdpaScanner scanner(text);
  while (scanner.next()) found.emplace_back(scanner.word());
  return found;
}

TEST(SdpaScanner, SeparatesAtBlanksCommasParenthesesAndBraces) {
  EXPECT_EQ(words(" {(1,+2)\t3}\r\n4,,5 "), (std::vector<std::string>{"1", "+2", "3", "4", "5"}));
}

TEST(SdpaScanner, TakesAnEqualsSignForAWord) {
  EXPECT_EQ(words("3=mDIM"), (std::vector<std::string>{"3", "=", "mDIM"}));
}

TEST(SdpaScanner, PassesOverLinesThatBeginWithAMark) {
  EXPECT_EQ(words("\"a 1\n* b 2\n3 * 4\n  \"c"), (std::vector<std::string>{"3", "*", "4"}));
}

TEST(SdpaScanner, PassesOverAByteOrderMarkAndNothingElseOfItsKind) {
  EXPECT_EQ(words("\xEF\xBB\xBF\"a\n1"), (std::vector<std::string>{"1"}));
  EXPECT_EQ(words("1 \xEF\xBB\xBF"), (std::vector<std::string>{"1", "\xEF\xBB\xBF"}));
}

TEST(SdpaScanner, StaysInItsLineWhereAsked) {
  SdpaScanner scanner("1 2\n3");
  EXPECT_TRUE(scanner.next());
  EXPECT_TRUE(scanner.next_on_line());
  EXPECT_FALSE(scanner.next_on_line());
  EXPECT_FALSE(scanner.next_on_line());
  EXPECT_EQ(scanner.word(), "2");
  EXPECT_TRUE(scanner.next());
  EXPECT_EQ(scanner.span(), (Span{4, 5}));
  EXPECT_FALSE(scanner.next());
}

TEST(SdpaScanner, SkipsTheRestOfALine) {
  SdpaScanner scanner("1 two\n\"three\n4");
  EXPECT_TRUE(scanner.next());
  scanner.skip_line();
  EXPECT_TRUE(scanner.next());
  EXPECT_EQ(scanner.word(), "4");
}

TEST(SdpaScanner, FindsTheEndOfWhatCanBeSeen) {
  EXPECT_EQ(SdpaScanner("1 2 \r\n\t\n").end_of_text(), (Span{3, 3}));
  EXPECT_EQ(SdpaScanner(" \n").end_of_text(), (Span{0, 0}));
}

TEST(ScanWhole, ReadsSignedNumbers) {
  EXPECT_EQ(scan_whole("0"), 0);
  EXPECT_EQ(scan_whole("+12"), 12);
  EXPECT_EQ(scan_whole("-007"), -7);
}

TEST(ScanWhole, SaturatesBeyond64Bits) {
  EXPECT_EQ(scan_whole("9223372036854775808"), std::numeric_limits<std::int64_t>::max());
  EXPECT_EQ(scan_whole("-9223372036854775809"), std::numeric_limits<std::int64_t>::min());
}

TEST(ScanWhole, TakesNothingElse) {
  for (const char* word : {"", "+", "-", "+-1", "--1", "1.", "1.0", "1e0", "0x1", "a", "1a"}) {
    EXPECT_EQ(scan_whole(word), std::nullopt) << word;
  }
}

TEST(ScanReal, ReadsWhatProgramsWrite) {
  const struct {
    const char* word;
    double value;
  } cases[] = {
      {"0", 0},
      {"+1.0e+00", 1},
      {"-1.", -1},
      {".5", 0.5},
      {"-.5E1", -5},
      {"1.0D+3", 1000},
      {"1d-2", 0.01},
      {"1.D3", 1000},
      {"2.5+100", 2.5e100},
      {"-0.25-101", -2.5e-102},
      {"1.-300", 1e-300},
      {"3.190383014044817500e-01", 0.31903830140448175},
      {"1e-400", 0},
      {"-0.0000001D-400", 0},
      {"0e999", 0},
  };
  for (const auto& [word, value] : cases) {
    const ScannedNumber scanned = scan_real(word);
    EXPECT_EQ(scanned.status, Status::kNumber) << word;
    EXPECT_EQ(scanned.value, value) << word;
    EXPECT_EQ(scanned.length, std::string_view(word).size()) << word;
  }
}

TEST(ScanReal, KeepsTheSignOfZero) {
  EXPECT_TRUE(std::signbit(scan_real("-0.0").value));
}

TEST(ScanReal, TellsWhatIsTooLarge) {
  for (const char* word : {"1e309", "-1D309", "1.0+999", "99999e99999999999999999999"}) {
    EXPECT_EQ(scan_real(word).status, Status::kOverflow) << word;
  }
}

TEST(ScanReal, TakesNothingElse) {
  for (const char* word :
       {"",     "+",   ".",       "-.",     "e5",    "1e",     "1D",     "1.0+", "--1",
        "+-1",  "1-3", "1.0-1.0", "1e5d3",  "1d5e3", "1.0DD2", "1.2.3",  "0x1",  "1_000",
        "1.0f", "nan", "inf",     "1.#INF", "%",     "1e5-3",  "1.5e+-3"}) {
    EXPECT_EQ(scan_real(word).status, Status::kMalformed) << word;
  }
}

TEST(IsNanOrInfinity, KnowsTheWordsInAnyCaseAndWithASign) {
  for (const char* word : {"nan", "NaN", "-nan", "inf", "+Inf", "-INFINITY"}) {
    EXPECT_TRUE(is_nan_or_infinity(word)) << word;
  }
  for (const char* word : {"", "-", "in", "info", "n", "1", "NAN1"}) {
    EXPECT_FALSE(is_nan_or_infinity(word)) << word;
  }
}

TEST(ResemblesNumber, GoesByTheBeginning) {
  for (const char* word : {"1", "-1", "+.5", "2x", "nan", "1.2.3"}) {
    EXPECT_TRUE(resembles_number(word)) << word;
  }
  for (const char* word : {"", "-", "=", "mDIM", "x1", "-x", "."}) {
    EXPECT_FALSE(resembles_number(word)) << word;
  }
}

}  // namespace
}  // namespace sdpsol
