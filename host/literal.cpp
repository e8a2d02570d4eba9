#include "host/literal.h"

#include <array>
#include <charconv>
#include <cmath>
#include <limits>
#include <nlohmann/json.hpp>
#include <optional>
#include <stdexcept>
#include <string>
#include <vector>

namespace zelhost {
namespace {

// No value needs more than matrices in a list.
constexpr std::size_t kDeepest = 3;

// What is wrong with JSON in a number's stead; what() says what would be right.
class NoNumber : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

// The numbers of a value, row after row. There may be millions of them: a place is
// made up only for an error.
class Numbers {
 public:
  /// @throws JsonError if lists of the same depth are not equally long.
  explicit Numbers(const JsonNode& node) : node_(node) { walk(node.value(), 0); }

  [[nodiscard]] std::size_t count() const { return numbers_.size(); }

  /// All of them, each as `read` makes it of its JSON.
  /// @throws JsonError at the number for which `read` throws NoNumber.
  template <class Number, class Read>
  [[nodiscard]] std::vector<Number> all(const Read& read) const {
    std::vector<Number> numbers;
    numbers.reserve(numbers_.size());
    try {
      for (const Json* const number : numbers_) numbers.push_back(read(*number));
    } catch (const NoNumber& error) {
      at(numbers.size()).fail(error.what());
    }
    return numbers;
  }

 private:
  // Lists of one depth are all like the first of them.
  struct Level {
    std::size_t length = 0;
    bool holds_lists = false;
  };

  void walk(const Json& value, std::size_t depth) {
    if (!value.is_array()) return numbers_.push_back(&value);
    if (depth == kDeepest)
      here(depth).fail(
          "lists are nested too deep; the most is a list of matrices, each a list of its rows");
    if (depth == levels_.size())
      levels_.push_back({value.size(), !value.empty() && value.front().is_array()});
    const Level level = levels_[depth];
    if (value.size() != level.length) {
      const std::string things = level.holds_lists ? " rows" : " elements";
      here(depth).fail((level.holds_lists ? "this matrix has " : "this row has ") +
                       std::to_string(value.size()) + things + ", the first has " +
                       std::to_string(level.length));
    }
    for (std::size_t i = 0; i < value.size(); ++i) {
      place_[depth] = i;
      if (value[i].is_array() != level.holds_lists)
        here(depth + 1).fail("lists of one depth hold either numbers or rows, not both");
      walk(value[i], depth + 1);
    }
  }

  // The node that the first so many numbers of place_ lead to.
  [[nodiscard]] JsonNode here(std::size_t depth) const {
    JsonNode node = node_;
    for (std::size_t i = 0; i < depth; ++i) node = node.element(place_[i]);
    return node;
  }

  // The node of one of the numbers.
  [[nodiscard]] JsonNode at(std::size_t number) const {
    std::size_t below = numbers_.size();
    JsonNode node = node_;
    for (const Level& level : levels_) {
      below /= level.length;
      node = node.element(number / below);
      number %= below;
    }
    return node;
  }

  const JsonNode& node_;
  std::vector<const Json*> numbers_;
  std::vector<Level> levels_;
  // Where the walk is.
  std::array<std::size_t, kDeepest> place_{};
};

std::optional<float> special_float(const Json& value) {
  if (!value.is_string()) return {};
  const auto& text = value.get_ref<const std::string&>();
  if (text == "nan") return std::numeric_limits<float>::quiet_NaN();
  if (text == "inf") return std::numeric_limits<float>::infinity();
  if (text == "-inf") return -std::numeric_limits<float>::infinity();
  return {};
}

float read_float(const Json& value) {
  if (const auto special = special_float(value)) return *special;
  if (!value.is_number()) throw NoNumber("this takes a number, or \"nan\", \"inf\", \"-inf\"");
  const auto narrow = static_cast<float>(value.get<double>());
  if (std::isinf(narrow))
    throw NoNumber("the number is too large for single precision; write \"inf\" if that is meant");
  return narrow;
}

std::int32_t read_integer(const Json& value) {
  using Limits = std::numeric_limits<std::int32_t>;
  const double number = value.is_number() ? value.get<double>() : 0.5;
  if (number != std::trunc(number) || number < Limits::min() || number > Limits::max())
    throw NoNumber("this takes a whole number of 32 bits, from -2147483648 to 2147483647");
  return static_cast<std::int32_t>(number);
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
  return shortest(number);
}

}  // namespace

double shortest(float number) {
  std::array<char, 32> digits;
  const auto written = std::to_chars(digits.data(), digits.data() + digits.size(), number);
  double same_digits = number;
  std::from_chars(digits.data(), written.ptr, same_digits);
  return same_digits;
}

PortValue read_value(const JsonNode& node, PortType type) {
  if (type.kind == PortKind::kText) return read_text(node);
  const bool is_single = type == PortType{PortKind::kFloats, 1};
  if (!node.value().is_array() && !is_single)
    node.fail("the port takes " + to_string(type) + ": a list, in [ ]");
  const Numbers numbers(node);
  if (type.kind == PortKind::kIntegerArray) return numbers.all<std::int32_t>(read_integer);
  if (type.kind == PortKind::kFloats && numbers.count() != static_cast<std::size_t>(type.count))
    node.fail("the port takes " + to_string(type) + ", here are " +
              std::to_string(numbers.count()));
  return numbers.all<float>(read_float);
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
