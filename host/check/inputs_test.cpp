#include "host/check/inputs.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdint>
#include <limits>
#include <set>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "host/test_port_types.h"

namespace zelcheck {
namespace {

using zelhost::kFloatArray;
using zelhost::kIntegerArray;
using zelhost::kText;
using zelhost::kThreeFloats;
using zelhost::PortKind;
using zelhost::PortType;
using zelhost::Unit;

using Floats = std::vector<float>;
using Integers = std::vector<std::int32_t>;

Unit unit_with(const std::vector<PortType>& inputs) {
  return Unit(nullptr, inputs, {});
}

std::set<std::string_view> concerning(const Unit& unit) {
  std::set<std::string_view> names;
  for (const Inputs inputs : kAllInputs)
    if (concern(inputs, unit)) names.insert(name_of(inputs));
  return names;
}

template <class Type>
Type filled(Inputs inputs, PortType type) {
  Unit unit = unit_with({type});
  fill(unit, inputs);
  return std::get<Type>(unit.inputs()[0].value());
}

TEST(Inputs, HaveNamesOfTheirOwn) {
  std::set<std::string_view> names;
  for (const Inputs inputs : kAllInputs) names.insert(name_of(inputs));
  EXPECT_EQ(names.size(), kAllInputs.size());
  EXPECT_EQ(names.count(""), 0U);
}

TEST(Inputs, ConcernWhatTheUnitTakes) {
  using Names = std::set<std::string_view>;
  EXPECT_EQ(concerning(unit_with({})), Names{"ordinary inputs"});
  EXPECT_EQ(concerning(unit_with({kText})),
            (Names{"inputs never set", "ordinary inputs", "an empty text", "a long text",
                   "a text that is no UTF-8"}));
  EXPECT_EQ(concerning(unit_with({kThreeFloats})),
            (Names{"inputs never set", "ordinary inputs", "zeros", "huge numbers",
                   "negative numbers", "NaN inputs", "infinite numbers"}));
  EXPECT_EQ(concerning(unit_with({kIntegerArray})),
            (Names{"inputs never set", "ordinary inputs", "zeros", "long arrays", "huge numbers",
                   "negative numbers"}));
  EXPECT_EQ(concerning(unit_with({kFloatArray, kIntegerArray, kText})).size(), kAllInputs.size());
}

TEST(Inputs, HoldTheNumbersThatTheirNamesSay) {
  EXPECT_EQ(filled<Floats>(Inputs::kZero, kThreeFloats), (Floats{0, 0, 0}));
  EXPECT_EQ(filled<Floats>(Inputs::kHuge, kThreeFloats), (Floats{3e38F, 3e38F, 3e38F}));
  EXPECT_EQ(filled<Floats>(Inputs::kNegative, kThreeFloats), (Floats{-1, -3e38F, -1}));
  constexpr float kInfinity = std::numeric_limits<float>::infinity();
  EXPECT_EQ(filled<Floats>(Inputs::kInfinite, kThreeFloats),
            (Floats{kInfinity, -kInfinity, kInfinity}));
  for (const float number : filled<Floats>(Inputs::kNan, kThreeFloats))
    EXPECT_TRUE(std::isnan(number));

  using Limits = std::numeric_limits<std::int32_t>;
  EXPECT_EQ(filled<Integers>(Inputs::kOrdinary, kIntegerArray), (Integers{1, 2, 3}));
  EXPECT_EQ(filled<Integers>(Inputs::kHuge, kIntegerArray),
            (Integers{Limits::max(), Limits::max(), Limits::max()}));
  EXPECT_EQ(filled<Integers>(Inputs::kNegative, kIntegerArray), (Integers{-1, Limits::min(), -1}));
}

TEST(Inputs, HoldArraysOfTheLengthsThatTheirNamesSay) {
  EXPECT_EQ(filled<Floats>(Inputs::kLong, kFloatArray).size(), 1000U);
  EXPECT_EQ(filled<Integers>(Inputs::kLong, kIntegerArray).size(), 1000U);
  Unit unit = unit_with({kFloatArray, kFloatArray, kIntegerArray});
  fill(unit, Inputs::kUneven);
  std::set<int> lengths;
  for (const auto& port : unit.inputs()) lengths.insert(port.length());
  EXPECT_EQ(lengths, (std::set<int>{1, 2, 4}));
}

TEST(Inputs, HoldTheTextsThatTheirNamesSay) {
  EXPECT_EQ(filled<std::string>(Inputs::kEmptyText, kText), "");
  const auto text = filled<std::string>(Inputs::kLongText, kText);
  EXPECT_GE(text.size(), 100'000U);
  EXPECT_LT(text.size(), 101'000U);
  // A byte that never occurs in UTF-8.
  EXPECT_NE(filled<std::string>(Inputs::kStrangeText, kText).find('\xff'), std::string::npos);
}

TEST(Inputs, LeaveAPortAloneThatIsNotToBeSet) {
  Unit unit = unit_with({kText, kFloatArray, kThreeFloats});
  fill(unit, Inputs::kUnset);
  EXPECT_EQ(unit.inputs()[0].value(), zelhost::PortValue());
  EXPECT_EQ(unit.inputs()[1].array(), nullptr);
  EXPECT_EQ(unit.inputs()[2].value(), zelhost::PortValue(Floats{0, 0, 0}));
}

TEST(Inputs, AreSetTogether) {
  Unit unit = unit_with({kText, kFloatArray, kThreeFloats});
  fill(unit, Inputs::kNan);
  EXPECT_EQ(unit.inputs()[0].value(), zelhost::PortValue("text"));
  EXPECT_EQ(unit.inputs()[1].length(), 12);
  EXPECT_TRUE(std::isnan(std::get<Floats>(unit.inputs()[2].value())[0]));
}

}  // namespace
}  // namespace zelcheck
