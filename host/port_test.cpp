// Ports: what they hold, and what plug-ins see of it.
#include "host/port.h"

#include <gtest/gtest.h>

#include <cstring>
#include <stdexcept>

#include "host/test_port_types.h"

namespace zelhost {
namespace {

using Floats = std::vector<float>;
using Integers = std::vector<std::int32_t>;

zel_element element(Port& port, std::size_t i = 0) {
  return port.record()->elements[i];
}

TEST(PortType, IsNamedAsUsersSayIt) {
  EXPECT_EQ(to_string({PortKind::kFloats, 1}), "1 float");
  EXPECT_EQ(to_string(kThreeFloats), "3 floats");
  EXPECT_EQ(to_string(kText), "text");
  EXPECT_EQ(to_string(kFloatArray), "float array");
  EXPECT_EQ(to_string(kIntegerArray), "integer array");
}

TEST(Port, StartsWithZerosNoTextAndEmptyArrays) {
  EXPECT_EQ(Port(kThreeFloats).value(), PortValue(Floats{0, 0, 0}));
  EXPECT_EQ(Port(kText).value(), PortValue());
  EXPECT_EQ(Port(kFloatArray).value(), PortValue(Floats{}));
  EXPECT_EQ(Port(kIntegerArray).value(), PortValue(Integers{}));
}

TEST(Port, GivesEachFixedFloatAnElementOfItsOwn) {
  Port port(kThreeFloats);
  port.set(Floats{1, 2, 3});
  EXPECT_EQ(*static_cast<float*>(element(port, 2).value), 3.0F);
  *static_cast<float*>(element(port, 1).value) = 7.0F;
  EXPECT_EQ(port.value(), PortValue(Floats{1, 7, 3}));
}

TEST(Port, KeepsItsElementsWhereTheyAreWhenItIsSet) {
  Port port(kThreeFloats);
  const void* const before = element(port).value;
  port.set(Floats{1, 2, 3});
  EXPECT_EQ(element(port).value, before);
}

TEST(Port, ShowsItsTextAsTheElementItself) {
  Port port(kText);
  EXPECT_EQ(element(port).value, nullptr);
  port.set(std::string("x>1;"));
  EXPECT_STREQ(static_cast<const char*>(element(port).value), "x>1;");
  port.set(std::string());
  ASSERT_NE(element(port).value, nullptr);
  EXPECT_EQ(std::strlen(static_cast<const char*>(element(port).value)), 0U);
  port.set(std::monostate());
  EXPECT_EQ(element(port).value, nullptr);
}

TEST(Port, KeepsACopyOfATextThatIsPublished) {
  Port port(kText);
  port.keep_text();
  EXPECT_EQ(port.value(), PortValue());
  char text[] = "first";
  port.record()->elements[0].value = text;
  port.keep_text();
  text[0] = 'F';
  EXPECT_EQ(port.value(), PortValue("first"));
  port.keep_text();
  EXPECT_EQ(port.value(), PortValue("first"));
  // A part of the copy itself.
  port.record()->elements[0].value = static_cast<char*>(element(port).value) + 2;
  port.keep_text();
  EXPECT_EQ(port.value(), PortValue("rst"));
  port.record()->elements[0].value = text;
  port.restore_text();
  EXPECT_EQ(port.value(), PortValue("rst"));
  port.record()->elements[0].value = nullptr;
  port.keep_text();
  EXPECT_EQ(port.value(), PortValue());
}

TEST(Port, ShowsAnArrayThroughItsRecord) {
  Port port(kIntegerArray);
  port.set(Integers{3, 1});
  const auto* const array = static_cast<const zel_dyn_array*>(element(port).value);
  EXPECT_EQ(static_cast<const std::int32_t*>(array->data)[1], 1);
  EXPECT_EQ(port.length(), 2);
}

// That the former elements are freed, and with the right delete, is what the
// address sanitizer sees here.
TEST(Port, TakesArraysAndFreesThoseFromBefore) {
  Port port(kFloatArray);
  port.take(new float[2]{1, 2}, 2);
  port.take(new float[3]{4, 5, 6}, 3);
  EXPECT_EQ(port.value(), PortValue(Floats{4, 5, 6}));
  port.take(nullptr, 0);
  EXPECT_EQ(port.value(), PortValue(Floats{}));
  EXPECT_EQ(port.array(), nullptr);
}

TEST(Port, RefusesValuesOfAnotherType) {
  Port floats(kThreeFloats);
  EXPECT_THROW(floats.set(Floats{1, 2}), std::invalid_argument);
  EXPECT_THROW(floats.set(Integers{1, 2, 3}), std::invalid_argument);
  EXPECT_THROW(Port(kText).set(Floats{}), std::invalid_argument);
  EXPECT_THROW(Port(kFloatArray).set(Integers{}), std::invalid_argument);
  EXPECT_THROW(Port(kIntegerArray).set(Floats{}), std::invalid_argument);
  EXPECT_EQ(floats.value(), PortValue(Floats{0, 0, 0}));
}

}  // namespace
}  // namespace zelhost
