#include "unit/sdpsol_text.h"

#include <gtest/gtest.h>

#include <bit>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <ctime>
#include <limits>
#include <locale>
#include <random>
#include <sstream>
#include <string>

namespace {

using sdpsol_internal::append;
using sdpsol_internal::read_number;

constexpr double kMax = std::numeric_limits<double>::max();
constexpr double kInfinity = std::numeric_limits<double>::infinity();

std::string written(double number) {
  std::string text;
  append(text, number);
  return text;
}

std::string written_by_stream(double number) {
  std::ostringstream stream;
  stream.imbue(std::locale::classic());
  stream << number;
  return stream.str();
}

double read_by_stream(const std::string& text) {
  std::istringstream stream(text);
  stream.imbue(std::locale::classic());
  double number = 0.0;
  stream >> number;
  return number;
}

// Also tells 0 from -0.
std::uint64_t bits(double number) {
  return std::bit_cast<std::uint64_t>(number);
}

TEST(WriteNumber, KeepsSixSignificantDigits) {
  EXPECT_EQ(written(1.0), "1");
  EXPECT_EQ(written(0.5), "0.5");
  EXPECT_EQ(written(-0.25), "-0.25");
  EXPECT_EQ(written(3.43119587), "3.4312");
  EXPECT_EQ(written(123456.5), "123456");
  EXPECT_EQ(written(0.0001), "0.0001");
}

TEST(WriteNumber, TurnsToExponentsForLargeAndTinyNumbers) {
  EXPECT_EQ(written(1.2e6), "1.2e+06");
  EXPECT_EQ(written(1.5e6), "1.5e+06");
  EXPECT_EQ(written(0.0000001), "1e-07");
  EXPECT_EQ(written(4.4e-6), "4.4e-06");
  EXPECT_EQ(written(1e100), "1e+100");
  EXPECT_EQ(written(999999.5), "1e+06");
}

TEST(WriteNumber, WritesWhatIsNoFiniteNumberAsAStreamDoes) {
  EXPECT_EQ(written(kInfinity), "inf");
  EXPECT_EQ(written(-kInfinity), "-inf");
  EXPECT_EQ(written(std::copysign(std::nan(""), 1.0)), "nan");
  EXPECT_EQ(written(std::copysign(std::nan(""), -1.0)), "-nan");
  EXPECT_EQ(written(-0.0), "-0");
}

TEST(WriteNumber, WritesIntegersInPlainDecimal) {
  std::string text;
  append(text, -7, " ", 1234567, " ", std::uint32_t{4294967295}, " ",
         std::uint64_t{18446744073709551615U});
  EXPECT_EQ(text, "-7 1234567 4294967295 18446744073709551615");
}

TEST(WriteNumber, AgreesWithTheStreamForRandomNumbers) {
  std::mt19937_64 random(11);
  for (int i = 0; i < 100000; ++i) {
    const double any = std::bit_cast<double>(random());
    const double everyday =
        static_cast<double>(static_cast<std::int64_t>(random() % 2000001) - 1000000) /
        std::pow(10.0, static_cast<double>(random() % 12));
    ASSERT_EQ(written(any), written_by_stream(any));
    ASSERT_EQ(written(everyday), written_by_stream(everyday));
  }
}

TEST(ReadNumber, ReadsDecimalNumbers) {
  EXPECT_EQ(read_number("2.5"), 2.5);
  EXPECT_EQ(read_number("-3"), -3.0);
  EXPECT_EQ(read_number("+.5"), 0.5);
  EXPECT_EQ(read_number("5."), 5.0);
  EXPECT_EQ(read_number("1.5e-03"), 1.5e-3);
  EXPECT_EQ(read_number("1.E2"), 100.0);
  EXPECT_EQ(bits(read_number("-0")), bits(-0.0));
}

TEST(ReadNumber, SkipsWhiteSpaceInFront) {
  EXPECT_EQ(read_number(" \t\n\v\f\r7"), 7.0);
  EXPECT_EQ(read_number("\n  -1.25e1"), -12.5);
}

TEST(ReadNumber, IgnoresWhatFollowsTheNumber) {
  EXPECT_EQ(read_number("1,5"), 1.0);
  EXPECT_EQ(read_number("1.2.3"), 1.2);
  EXPECT_EQ(read_number("1e5e5"), 1e5);
  EXPECT_EQ(read_number("1e2.5"), 100.0);
  EXPECT_EQ(read_number("3x"), 3.0);
  EXPECT_EQ(read_number(std::string_view("4\0005", 3)), 4.0);
  EXPECT_EQ(read_number("0x1p3"), 0.0);
  EXPECT_EQ(read_number("12 13"), 12.0);
}

TEST(ReadNumber, GivesZeroForWhatIsNoNumber) {
  for (const char* text :
       {"", " ", ".", "-", "+", "+-5", "--1", "-+1", "e5", ".e5", "abc", "\x80 1", "[", "x1"}) {
    EXPECT_EQ(bits(read_number(text)), bits(0.0)) << text;
  }
  EXPECT_EQ(bits(read_number(std::string_view("\0001", 2))), bits(0.0));
}

TEST(ReadNumber, GivesZeroForAnExponentWithoutDigits) {
  for (const char* text : {"1e", "1E", "1e+", "1e-", "2.5e ", "1ex", "1e+-5", "7e.5"}) {
    EXPECT_EQ(bits(read_number(text)), bits(0.0)) << text;
  }
}

// A hundred readings that copied their text would take ten times as long as ten copies.
TEST(ReadNumber, CostsTheNumberAndNotWhatFollowsIt) {
  const std::string rest(std::size_t{1} << 24, ';');
  const std::clock_t start = std::clock();
  for (int i = 0; i < 10; ++i) EXPECT_EQ(std::string(rest).size(), rest.size());
  const std::clock_t ten_copies = std::clock() - start;
  for (const char* number : {"1", "1e", "1e999"}) {
    const std::string text = number + rest;
    const std::clock_t read_from = std::clock();
    for (int i = 0; i < 100; ++i) read_number(text);
    EXPECT_LE(std::clock() - read_from, ten_copies) << number;
  }
}

TEST(ReadNumber, ReadsNoNumbersSpelledInLetters) {
  for (const char* text : {"inf", "-inf", "+inf", "infinity", "nan", "-nan", "NaN", "INF"}) {
    EXPECT_EQ(bits(read_number(text)), bits(0.0)) << text;
  }
}

TEST(ReadNumber, LeavesTheLargestNumberAfterAnOverflow) {
  EXPECT_EQ(read_number("1e999"), kMax);
  EXPECT_EQ(read_number("-1e999"), -kMax);
  EXPECT_EQ(read_number("1e99999999999999999999"), kMax);
}

TEST(ReadNumber, UnderflowsToZeroThroughTheSmallestNumbers) {
  EXPECT_EQ(read_number("5e-324"), 5e-324);
  EXPECT_EQ(read_number("2.2250738585072011e-308"), 2.2250738585072011e-308);
  EXPECT_EQ(bits(read_number("1e-999")), bits(0.0));
  EXPECT_EQ(bits(read_number("-1e-999")), bits(-0.0));
}

TEST(ReadNumber, RoundsVeryLongDigitStringsCorrectly) {
  const std::string halfway = "9007199254740993";
  EXPECT_EQ(read_number(halfway), 9007199254740992.0);
  EXPECT_EQ(read_number(halfway + "." + std::string(2000, '0') + "1"), 9007199254740994.0);
  EXPECT_EQ(read_number("0." + std::string(400, '0') + "1e401"), 1.0);
}

TEST(ReadNumber, AgreesWithTheStreamForRandomTexts) {
  const std::string_view alphabets[] = {"+-0123456789.eE", "01.e-+ ", "infaINF+-0x1pP.e",
                                        "0123.eE+- \t\n\v\f\rxX,;'_\x80\xff"};
  std::mt19937_64 random(12);
  for (int i = 0; i < 300000; ++i) {
    const std::string_view alphabet = alphabets[random() % 4];
    std::string text;
    const std::size_t length = i % 100 == 0 ? random() % 400 : random() % 12;
    for (std::size_t k = 0; k < length; ++k) text += alphabet[random() % alphabet.size()];
    ASSERT_EQ(bits(read_number(text)), bits(read_by_stream(text))) << text;
  }
}

TEST(ReadNumber, ReadsEveryShortTextAsTheStreamDoes) {
  constexpr std::string_view kAlphabet = "05.e+- x";
  for (std::size_t length = 0; length <= 5; ++length) {
    std::string text(length, kAlphabet.front());
    for (;;) {
      ASSERT_EQ(bits(read_number(text)), bits(read_by_stream(text))) << text;
      std::size_t place = 0;
      while (place < length && text[place] == kAlphabet.back()) text[place++] = kAlphabet.front();
      if (place == length) break;
      text[place] = kAlphabet[kAlphabet.find(text[place]) + 1];
    }
  }
}

}  // namespace
