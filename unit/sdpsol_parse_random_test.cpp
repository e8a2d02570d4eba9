// Random result texts: well-formed ones whose contents are known, and broken
// ones read by a second, slow parser.
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <random>
#include <string>
#include <string_view>
#include <vector>

#include "unit/sdpsol_wrapper.h"
#include "unit/test_readings.h"

namespace {

using unit_test::by_driver;
using unit_test::by_reference;
using unit_test::Reading;
using Random = std::mt19937_64;

std::string pick(Random& random, std::initializer_list<std::string_view> choices) {
  return std::string(choices.begin()[random() % choices.size()]);
}

double random_value(Random& random) {
  const double mantissa = static_cast<double>(random() >> 11) * 0x1p-53 - 0.5;
  return mantissa * std::pow(10.0, static_cast<double>(random() % 40) - 20.0);
}

std::string shortest(double value) {
  std::array<char, 32> digits;
  return {digits.data(), std::to_chars(digits.data(), digits.data() + 32, value).ptr};
}

std::string random_name(Random& random) {
  std::string name;
  const std::size_t length = 1 + random() % 20;
  for (std::size_t i = 0; i < length; ++i) {
    name += "abcxyzXYZ0189_epsilon"[random() % 21];
  }
  return name;
}

struct KnownText {
  std::string text;
  sdpsol_wrapper::result expected;
};

void add_scalar(KnownText& known, Random& random) {
  const std::string name = random_name(random);
  const double value = random_value(random);
  known.text += name + " = " + shortest(value) + "\n\n";
  known.expected.variableNames.push_back(name);
  known.expected.variableValues.push_back(value);
}

void add_matrix(KnownText& known, Random& random) {
  const std::string name = random_name(random);
  const std::string indent = pick(random, {"  ", "   ", "      "});
  known.text += name + " =\n[\n";
  const std::size_t elements = 1 + random() % 20;
  for (std::size_t k = 0; k < elements; ++k) {
    const double value = random_value(random);
    known.text += indent + shortest(value) + ",\n";
    known.expected.variableNames.push_back(name + "_" + std::to_string(k));
    known.expected.variableValues.push_back(value);
  }
  known.text += "]\n\n";
}

KnownText known_text(Random& random) {
  KnownText known;
  known.expected.errorCode = 100;
  known.expected.feasible = true;
  for (std::size_t line = random() % 4; line > 0; --line) {
    known.text += pick(random, {"solved in 3 steps\n", "\n", "a = 7, b,]\n", "margin=1\n"});
  }
  if (random() % 3 == 0) {
    known.text += pick(random, {"INFEASIBLE\n", "FEASIBILITY CANNOT BE DETERMINED, sorry\n"});
    known.expected.feasible = false;
  }
  known.text += "*** Objective value\n";
  if (random() % 2 == 0) {
    known.text += "NO OBJECTIVE.\n\n";
  } else {
    known.expected.objectiveValue = random_value(random);
    known.text += "objective = " + shortest(known.expected.objectiveValue) + "\n\n";
  }
  known.text += "*** Variables\n";
  for (std::size_t entry = random() % 12; entry > 0; --entry) {
    if (random() % 2 == 0) {
      add_scalar(known, random);
    } else {
      add_matrix(known, random);
    }
  }
  known.expected.valueCount = static_cast<int>(known.expected.variableValues.size());
  return known;
}

void expect_equal(const sdpsol_wrapper::result& a, const sdpsol_wrapper::result& b) {
  EXPECT_EQ(a.errorCode, b.errorCode);
  EXPECT_EQ(a.feasible, b.feasible);
  EXPECT_EQ(a.objectiveValue, b.objectiveValue);
  EXPECT_EQ(a.variableNames, b.variableNames);
  EXPECT_EQ(a.variableValues, b.variableValues);
  EXPECT_EQ(a.valueCount, b.valueCount);
}

// Both lists of a circle are the beginning of one endless list.
void cut_to_common_length(sdpsol_wrapper::result& a, sdpsol_wrapper::result& b) {
  const std::size_t common = std::min(a.variableValues.size(), b.variableValues.size());
  for (sdpsol_wrapper::result* one : {&a, &b}) {
    one->variableNames.resize(common);
    one->variableValues.resize(common);
    one->valueCount = static_cast<int>(common);
  }
}

// How often each way of ending came up, so that a test knows it saw them all.
struct Endings {
  int good = 0;
  int circle = 0;
  int thrown = 0;
};

void compare(const std::string& text, Endings& endings) {
  Reading ours = by_driver(text);
  Reading reference = by_reference(text);
  ASSERT_EQ(ours.code, reference.code) << text;
  ASSERT_EQ(ours.error, reference.error) << text;
  ASSERT_EQ(ours.last.variableNames.size(), ours.last.variableValues.size()) << text;
  if (ours.code == 1) cut_to_common_length(ours.last, reference.last);
  expect_equal(ours.last, reference.last);
  ASSERT_FALSE(::testing::Test::HasFailure()) << text;
  ++(ours.code == 0 ? endings.good : ours.code == 1 ? endings.circle : endings.thrown);
}

void mutate(std::string& text, Random& random) {
  const std::size_t at = random() % (text.size() + 1);
  switch (random() % 6) {
    case 0:
      text.erase(at, 1 + random() % 3);
      break;
    case 1:
      text.insert(at, pick(random, {"=", " = ", "\n", ",", "]", "Variable", " ", "\n\n", "=\n"}));
      break;
    case 2:
      text.resize(at);
      break;
    case 3:
      text.insert(at, text.substr(random() % (text.size() + 1), random() % 30));
      break;
    case 4:
      if (at < text.size()) text[at] = "=\n,] 1eV"[random() % 8];
      break;
    default:
      text.erase(0, random() % 40);
      break;
  }
}

TEST(RandomResults, AreReadAsTheyWereWritten) {
  Random random(21);
  for (int i = 0; i < 3000; ++i) {
    const KnownText known = known_text(random);
    const Reading outcome = by_driver(known.text);
    ASSERT_EQ(outcome.code, 0) << known.text;
    expect_equal(outcome.last, known.expected);
    ASSERT_FALSE(HasFailure()) << known.text;
  }
}

TEST(RandomResults, AreReadTheSameBySecondParserWhenBroken) {
  Random random(22);
  Endings endings;
  for (int i = 0; i < 30000; ++i) {
    std::string text = known_text(random).text;
    for (std::size_t changes = 1 + random() % 4; changes > 0; --changes) mutate(text, random);
    compare(text, endings);
    if (HasFatalFailure()) return;
  }
  EXPECT_GT(endings.good, 1000);
  EXPECT_GT(endings.circle, 100);
  EXPECT_GT(endings.thrown, 100);
}

TEST(RandomResults, AreReadTheSameBySecondParserWhenMadeOfPieces) {
  Random random(23);
  Endings endings;
  for (int i = 0; i < 60000; ++i) {
    std::string text;
    for (std::size_t pieces = random() % 25; pieces > 0; --pieces) {
      text += pick(random, {"=", " = ", "\n", ",", "]", "Variable\n", "*** Objective value\n", "x",
                            "NO OBJECTIVE.\n", "12", "-.5e1", "    ", "X =\n[\n  1,\n]\n\n", " =\n",
                            "INFEASIBLE"});
    }
    compare(text, endings);
    if (HasFatalFailure()) return;
  }
  EXPECT_GT(endings.good, 1000);
  EXPECT_GT(endings.circle, 1000);
  EXPECT_GT(endings.thrown, 1000);
}

TEST(RandomResults, AreReadTheSameBySecondParserForEveryShortText) {
  constexpr std::string_view kAlphabet = "=\n,]1 ";
  Endings endings;
  for (std::size_t length = 0; length <= 6; ++length) {
    std::string text(length, kAlphabet.front());
    for (;;) {
      compare(text, endings);
      if (HasFatalFailure()) return;
      std::size_t place = 0;
      while (place < length && text[place] == kAlphabet.back()) text[place++] = kAlphabet.front();
      if (place == length) break;
      text[place] = kAlphabet[kAlphabet.find(text[place]) + 1];
    }
  }
  EXPECT_GT(endings.good, 0);
  EXPECT_GT(endings.circle, 0);
  EXPECT_GT(endings.thrown, 0);
}

}  // namespace
