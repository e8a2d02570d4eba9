// Values of ports as JSON.
#include "host/literal.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <nlohmann/json.hpp>

#include "host/test_port_types.h"
#include "tests/support/message_of.h"

namespace zelhost {
namespace {

using Floats = std::vector<float>;
using Integers = std::vector<std::int32_t>;

PortValue read(const char* json, PortType type) {
  const Json value = Json::parse(json);
  return read_value({value, "f", "/v"}, type);
}

std::string error_of(const char* json, PortType type) {
  return test_support::message_of<JsonError>([&] { read(json, type); });
}

TEST(ReadValue, TakesANumberOrAListForOneFloat) {
  EXPECT_EQ(read("2.5", kFloat), PortValue(Floats{2.5}));
  EXPECT_EQ(read("[2.5]", kFloat), PortValue(Floats{2.5}));
  EXPECT_EQ(error_of("[1, 2]", kFloat), "f: /v: the port takes 1 float, here are 2");
}

TEST(ReadValue, CountsFixedFloats) {
  EXPECT_EQ(read("[1, 2]", kTwoFloats), PortValue(Floats{1, 2}));
  EXPECT_EQ(error_of("[1, 2, 3]", kTwoFloats), "f: /v: the port takes 2 floats, here are 3");
  EXPECT_EQ(error_of("1", kTwoFloats), "f: /v: the port takes 2 floats: a list, in [ ]");
}

TEST(ReadValue, ReadsRowsOneAfterTheOther) {
  EXPECT_EQ(read("[[1, 2], [3, 4]]", kFloatArray), PortValue(Floats{1, 2, 3, 4}));
  EXPECT_EQ(read("[[[1, 2]], [[3, 4]]]", kFloatArray), PortValue(Floats{1, 2, 3, 4}));
  EXPECT_EQ(read("[]", kFloatArray), PortValue(Floats{}));
  EXPECT_EQ(error_of("[[1, 2], [3]]", kFloatArray),
            "f: /v/1: this row has 1 elements, the first has 2");
  const std::string both = "lists of one depth hold either numbers or rows, not both";
  EXPECT_EQ(error_of("[1, [3]]", kFloatArray), "f: /v/1: " + both);
  EXPECT_EQ(error_of("[[1], 3]", kFloatArray), "f: /v/1: " + both);
  EXPECT_EQ(error_of("[[2], [[1]]]", kFloatArray), "f: /v/1/0: " + both);
  EXPECT_EQ(error_of("[[[2]], [1]]", kFloatArray), "f: /v/1/0: " + both);
  EXPECT_EQ(error_of("[[[[1]]]]", kFloatArray),
            "f: /v/0/0/0: lists are nested too deep; the most is a list of matrices, each a list "
            "of its rows");
}

TEST(ReadValue, WantsMatricesOfOneSize) {
  EXPECT_EQ(error_of("[[[1, 2]], [[3]]]", kFloatArray),
            "f: /v/1/0: this row has 1 elements, the first has 2");
  EXPECT_EQ(error_of("[[[1, 2], [3, 4]], [[5, 6]]]", kFloatArray),
            "f: /v/1: this matrix has 1 rows, the first has 2");
  EXPECT_EQ(read("[[], []]", kFloatArray), PortValue(Floats{}));
  EXPECT_EQ(error_of("[[], [1]]", kFloatArray),
            "f: /v/1: this row has 1 elements, the first has 0");
}

TEST(ReadValue, NamesTheNumberInRowsAndMatrices) {
  const std::string no_number = "this takes a number, or \"nan\", \"inf\", \"-inf\"";
  EXPECT_EQ(error_of("null", kFloat), "f: /v: " + no_number);
  EXPECT_EQ(error_of("[[1, 2, 3], [4, 5, null]]", kFloatArray), "f: /v/1/2: " + no_number);
  EXPECT_EQ(error_of("[[[1], [2], [3]], [[4], [true], [5]]]", kFloatArray),
            "f: /v/1/1/0: " + no_number);
}

TEST(ReadValue, KnowsTheNumbersThatJsonHasNot) {
  const PortValue value = read(R"(["nan", "inf", "-inf"])", kFloatArray);
  const auto& floats = std::get<Floats>(value);
  EXPECT_TRUE(std::isnan(floats[0]));
  EXPECT_EQ(floats[1], std::numeric_limits<float>::infinity());
  EXPECT_EQ(floats[2], -std::numeric_limits<float>::infinity());
  EXPECT_EQ(error_of(R"(["infinity"])", kFloatArray),
            "f: /v/0: this takes a number, or \"nan\", \"inf\", \"-inf\"");
}

TEST(ReadValue, RoundsToSinglePrecisionAndRefusesWhatIsTooLarge) {
  EXPECT_EQ(read("0.1", kFloat), PortValue(Floats{0.1F}));
  EXPECT_EQ(read("1e-60", kFloat), PortValue(Floats{0}));
  EXPECT_EQ(error_of("[1, -1e39]", kFloatArray),
            "f: /v/1: the number is too large for single precision; write \"inf\" if that is "
            "meant");
}

TEST(ReadValue, TakesWholeNumbersForIntegers) {
  EXPECT_EQ(read("[-2147483648, 2147483647, 3.0]", kIntegerArray),
            PortValue(Integers{-2147483647 - 1, 2147483647, 3}));
  for (const char* const bad : {"[1.5]", "[2147483648]", "[-2147483649]", "[\"1\"]", "[true]",
                                "[null]", "[\"nan\"]", "[18446744073709551615]"}) {
    EXPECT_EQ(error_of(bad, kIntegerArray),
              "f: /v/0: this takes a whole number of 32 bits, from -2147483648 to 2147483647")
        << bad;
  }
}

TEST(ReadValue, TakesATextOrItsLines) {
  EXPECT_EQ(read(R"("x>1;")", kText), PortValue("x>1;"));
  EXPECT_EQ(read(R"(["variable x;", "x>1;"])", kText), PortValue("variable x;\nx>1;\n"));
  EXPECT_EQ(error_of("7", kText), "f: /v: this takes a text in quotes, or a list of lines, in [ ]");
  EXPECT_EQ(error_of("[7]", kText), "f: /v/0: this takes a line, as a text in quotes");
}

TEST(ToJson, WritesTheShortestNumbers) {
  EXPECT_EQ(to_json(Floats{0.1F}, kFloat).dump(), "0.1");
  EXPECT_EQ(to_json(Floats{4.4e-06F, 15000, -0.0F}, kFloatArray).dump(), "[4.4e-06,15000.0,-0.0]");
  EXPECT_EQ(to_json(Floats{3.4028235e38F}, kFloatArray).dump(), "[3.4028235e+38]");
  EXPECT_EQ(to_json(Integers{3, -1}, kIntegerArray).dump(), "[3,-1]");
}

TEST(ToJson, WritesTextsAndNoText) {
  EXPECT_EQ(to_json(std::string("a\nb"), kText).dump(), R"("a\nb")");
  EXPECT_EQ(to_json({}, kText).dump(), "null");
}

TEST(ToJson, NamesTheNumbersThatJsonHasNot) {
  const float infinity = std::numeric_limits<float>::infinity();
  EXPECT_EQ(to_json(Floats{std::nanf(""), infinity, -infinity}, kFloatArray).dump(),
            R"(["nan","inf","-inf"])");
}

TEST(ToJson, ReadsBackAsItWas) {
  const Floats floats{1.0F / 3, 1e-45F, 16777217.0F, 3.4028235e38F};
  const Json json = Json::parse(to_json(floats, kFloatArray).dump());
  EXPECT_EQ(read_value({json, "f", ""}, kFloatArray), PortValue(floats));
}

}  // namespace
}  // namespace zelhost
