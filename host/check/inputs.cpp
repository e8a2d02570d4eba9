#include "host/check/inputs.h"

#include <algorithm>
#include <cstdint>
#include <limits>
#include <string>
#include <vector>

namespace zelcheck {
namespace {

using zelhost::Port;
using zelhost::PortKind;
using zelhost::Unit;

// Small arrays: floats enough for a few rows, and as many integers as there may be rows.
constexpr std::size_t kFloats = 12;
constexpr std::size_t kIntegers = 3;
constexpr std::size_t kLongArray = 1000;
constexpr std::size_t kLongText = 100'000;

float float_value(Inputs inputs, std::size_t index) {
  using Limits = std::numeric_limits<float>;
  const float sign = index % 2 == 0 ? 1.0F : -1.0F;
  switch (inputs) {
    case Inputs::kZero:
      return 0.0F;
    case Inputs::kHuge:
      return 3e38F;
    case Inputs::kNegative:
      return index % 2 == 0 ? -1.0F : -3e38F;
    case Inputs::kNan:
      return Limits::quiet_NaN();
    case Inputs::kInfinite:
      return sign * Limits::infinity();
    case Inputs::kUnset:
    case Inputs::kOrdinary:
    case Inputs::kUneven:
    case Inputs::kLong:
    case Inputs::kEmptyText:
    case Inputs::kLongText:
    case Inputs::kStrangeText:
      break;
  }
  return 1.0F + static_cast<float>(index % 5) / 4.0F;
}

std::int32_t integer_value(Inputs inputs, std::size_t index) {
  using Limits = std::numeric_limits<std::int32_t>;
  switch (inputs) {
    case Inputs::kZero:
      return 0;
    case Inputs::kHuge:
      return Limits::max();
    case Inputs::kNegative:
      return index % 2 == 0 ? -1 : Limits::min();
    case Inputs::kUnset:
    case Inputs::kOrdinary:
    case Inputs::kUneven:
    case Inputs::kLong:
    case Inputs::kNan:
    case Inputs::kInfinite:
    case Inputs::kEmptyText:
    case Inputs::kLongText:
    case Inputs::kStrangeText:
      break;
  }
  return static_cast<std::int32_t>(index % 3) + 1;
}

std::string text_value(Inputs inputs) {
  switch (inputs) {
    case Inputs::kEmptyText:
      return "";
    case Inputs::kLongText: {
      std::string text;
      while (text.size() < kLongText) text += "a line of a long text\n";
      return text;
    }
    case Inputs::kStrangeText:
      return "\xff\xfe\x80 \xc3( \x01\x1b[m\t%n%s%d";
    case Inputs::kUnset:
    case Inputs::kZero:
    case Inputs::kOrdinary:
    case Inputs::kUneven:
    case Inputs::kLong:
    case Inputs::kHuge:
    case Inputs::kNegative:
    case Inputs::kNan:
    case Inputs::kInfinite:
      break;
  }
  return "text";
}

std::size_t array_length(Inputs inputs, std::size_t usual, std::size_t port) {
  if (inputs == Inputs::kLong) return kLongArray;
  // Neither all the same nor in the order of the ports: 1, 4, 2, 5, 3, 1, ...
  if (inputs == Inputs::kUneven) return 1 + (3 * port) % 5;
  return usual;
}

template <class Element, class Value>
std::vector<Element> array_of(std::size_t length, Inputs inputs, const Value& value) {
  std::vector<Element> array(length);
  std::size_t index = 0;
  for (Element& element : array) element = value(inputs, index++);
  return array;
}

bool is_array(const Port& port) {
  const PortKind kind = port.type().kind;
  return kind == PortKind::kFloatArray || kind == PortKind::kIntegerArray;
}

bool holds_floats(const Port& port) {
  const PortKind kind = port.type().kind;
  return kind == PortKind::kFloats || kind == PortKind::kFloatArray;
}

bool is_text(const Port& port) {
  return port.type().kind == PortKind::kText;
}

}  // namespace

std::string_view name_of(Inputs inputs) {
  switch (inputs) {
    case Inputs::kUnset:
      return "inputs never set";
    case Inputs::kZero:
      return "zeros";
    case Inputs::kOrdinary:
      return "ordinary inputs";
    case Inputs::kUneven:
      return "arrays of different lengths";
    case Inputs::kLong:
      return "long arrays";
    case Inputs::kHuge:
      return "huge numbers";
    case Inputs::kNegative:
      return "negative numbers";
    case Inputs::kNan:
      return "NaN inputs";
    case Inputs::kInfinite:
      return "infinite numbers";
    case Inputs::kEmptyText:
      return "an empty text";
    case Inputs::kLongText:
      return "a long text";
    case Inputs::kStrangeText:
      return "a text that is no UTF-8";
  }
  return {};
}

bool concern(Inputs inputs, const Unit& unit) {
  const auto& ports = unit.inputs();
  const auto has = [&ports](bool (*what)(const Port&)) {
    return std::any_of(ports.begin(), ports.end(), what);
  };
  switch (inputs) {
    case Inputs::kUnset:
      return !ports.empty();
    case Inputs::kOrdinary:
      return true;
    case Inputs::kZero:
    case Inputs::kHuge:
    case Inputs::kNegative:
      return !std::all_of(ports.begin(), ports.end(), is_text);
    case Inputs::kUneven:
      return std::count_if(ports.begin(), ports.end(), is_array) > 1;
    case Inputs::kLong:
      return has(is_array);
    case Inputs::kNan:
    case Inputs::kInfinite:
      return has(holds_floats);
    case Inputs::kEmptyText:
    case Inputs::kLongText:
    case Inputs::kStrangeText:
      return has(is_text);
  }
  return false;
}

void fill(Unit& unit, Inputs inputs) {
  if (inputs == Inputs::kUnset) return;
  std::size_t number = 0;
  for (Port& port : unit.inputs()) {
    switch (port.type().kind) {
      case PortKind::kFloats:
        port.set(array_of<float>(static_cast<std::size_t>(port.type().count), inputs, float_value));
        break;
      case PortKind::kText:
        port.set(text_value(inputs));
        break;
      case PortKind::kFloatArray:
        port.set(array_of<float>(array_length(inputs, kFloats, number), inputs, float_value));
        break;
      case PortKind::kIntegerArray:
        port.set(
            array_of<std::int32_t>(array_length(inputs, kIntegers, number), inputs, integer_value));
        break;
    }
    ++number;
  }
}

}  // namespace zelcheck
