#include "host/literal.h"

#include <array>
#include <charconv>
#include <cmath>
#include <limits>
#include <nlohmann/json.hpp>
#include <optional>

namespace zelhost {
namespace {

// No value needs more than matrices in a list.
constexpr int kDeepest = 3;

// The numbers in a list of lists, row after row, each with its place.
void flatten(const JsonNode& node, int depth, std::vector<JsonNode>& numbers) {
  if (!node.value().is_array()) {
    numbers.push_back(node);
    return;
  }
  if (depth == kDeepest)
    node.fail("lists are nested too deep; the most is a list of matrices, each a list of its rows");
  const auto elements = node.elements("numbers");
  for (const JsonNode& element : elements) {
    if (element.value().is_array() != elements.front().value().is_array())
      element.fail("a list holds either numbers or rows, not both");
    if (element.value().is_array() && element.value().size() != elements.front().value().size())
      element.fail("this row has " + std::to_string(element.value().size()) +
                   " elements, the first has " + std::to_string(elements.front().value().size()));
    flatten(element, depth + 1, numbers);
  }
}

std::optional<float> special_float(const Json& value) {
  if (!value.is_string()) return {};
  const auto& text = value.get_ref<const std::string&>();
  if (text == "nan") return std::numeric_limits<float>::quiet_NaN();
  if (text == "inf") return std::numeric_limits<float>::infinity();
  if (text == "-inf") return -std::numeric_limits<float>::infinity();
  return {};
}

float read_float(const JsonNode& node) {
  if (const auto special = special_float(node.value())) return *special;
  if (!node.value().is_number()) node.fail("this takes a number, or \"nan\", \"inf\", \"-inf\"");
  const auto number = node.value().get<double>();
  const auto narrow = static_cast<float>(number);
  if (std::isinf(narrow))
    node.fail("the number is too large for single precision; write \"inf\" if that is meant");
  return narrow;
}

std::int32_t read_integer(const JsonNode& node) {
  using Limits = std::numeric_limits<std::int32_t>;
  const Json& value = node.value();
  const double number = value.is_number() ? value.get<double>() : 0.5;
  if (number != std::trunc(number) || number < Limits::min() || number > Limits::max())
    node.fail("this takes a whole number of 32 bits, from -2147483648 to 2147483647");
  return static_cast<std::int32_t>(number);
}

std::vector<JsonNode> read_list(const JsonNode& node, PortType type) {
  const bool single = type == PortType{PortKind::kFloats, 1};
  if (!node.value().is_array() && !single)
    node.fail("the port takes " + to_string(type) + ": a list, in [ ]");
  std::vector<JsonNode> numbers;
  flatten(node, 0, numbers);
  return numbers;
}

PortValue read_text(const JsonNode& node) {
  if (node.value().is_string()) return node.text("a text");
  if (!node.value().is_array())
    node.fail("this takes a text in quotes, or a list of lines, in [ ]");
  std::string text;
  for (const JsonNode& line : node.elements("lines")) text += line.text("a line") + "\n";
  return text;
}

Json float_to_json(float number) {
  if (std::isnan(number)) return "nan";
  if (std::isinf(number)) return number > 0 ? "inf" : "-inf";
  std::array<char, 32> digits;
  const char* const end = std::to_chars(digits.data(), digits.data() + 32, number).ptr;
  // The double nearest to those digits is written with the same digits again.
  double shortest = 0;
  std::from_chars(digits.data(), end, shortest);
  return shortest;
}

}  // namespace

PortValue read_value(const JsonNode& node, PortType type) {
  if (type.kind == PortKind::kText) return read_text(node);
  const auto numbers = read_list(node, type);
  if (type.kind == PortKind::kIntegerArray) {
    std::vector<std::int32_t> integers;
    integers.reserve(numbers.size());
    for (const JsonNode& number : numbers) integers.push_back(read_integer(number));
    return integers;
  }
  if (type.kind == PortKind::kFloats && numbers.size() != static_cast<std::size_t>(type.count))
    node.fail("the port takes " + to_string(type) + ", here are " + std::to_string(numbers.size()));
  std::vector<float> floats;
  floats.reserve(numbers.size());
  for (const JsonNode& number : numbers) floats.push_back(read_float(number));
  return floats;
}

Json to_json(const PortValue& value, PortType type) {
  if (const auto* const text = std::get_if<std::string>(&value)) return *text;
  if (const auto* const integers = std::get_if<std::vector<std::int32_t>>(&value)) return *integers;
  const auto* const floats = std::get_if<std::vector<float>>(&value);
  if (floats == nullptr) return nullptr;
  if (type == PortType{PortKind::kFloats, 1}) return float_to_json(floats->front());
  Json list = Json::array();
  for (const float number : *floats) list.push_back(float_to_json(number));
  return list;
}

}  // namespace zelhost
