// Network files: refused with a place in the text, or read as a network that means the
// same when the document is written and read again; and the values that it has for ports
// are refused with a place too, or are the document's numbers and the same when they are
// written and read again. No plug-in is loaded.
#include <bit>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "fuzz/json_places.h"
#include "fuzz/memory_file.h"
#include "fuzz/oracle.h"
#include "host/literal.h"
#include "host/network_file.h"

namespace {

using zelhost::Json;
using zelhost::JsonNode;
using zelhost::NetworkFile;
using zelhost::PortKind;
using zelhost::PortType;
using zelhost::PortValue;

constexpr PortType kTypes[] = {{PortKind::kFloats, 1},
                               {PortKind::kFloats, 3},
                               {PortKind::kText, 1},
                               {PortKind::kFloatArray, 1},
                               {PortKind::kIntegerArray, 1}};

Json address(const NetworkFile::MethodAddress& method) {
  return {method.at.pointer(), method.instance, method.method};
}

Json address(const NetworkFile::PortAddress& port) {
  return {address(port.method), port.at.pointer(), port.port};
}

/// Everything that was read.
Json meaning_of(const NetworkFile& network) {
  Json meaning = {network.title, network.notes};
  for (const NetworkFile::Instance& instance : network.instances) {
    Json& all = meaning.emplace_back(
        Json{instance.at.pointer(), instance.name, instance.plugin, instance.icon});
    for (const auto& field : instance.dialog)
      all.push_back({field.at.pointer(), field.field, field.text});
  }
  for (const NetworkFile::Input& input : network.inputs) {
    Json& all = meaning.emplace_back(Json::array());
    for (const auto& method : input.methods) all.push_back(address(method));
    for (const auto& value : input.values) all.push_back({value.port, value.value.value()});
  }
  for (const NetworkFile::Wire& wire : network.wires)
    meaning.push_back({address(wire.from), address(wire.to)});
  for (const NetworkFile::MethodAddress& fired : network.order) meaning.push_back(address(fired));
  return meaning;
}

void require_same(const PortValue& a, const PortValue& b) {
  const auto* const floats = std::get_if<std::vector<float>>(&a);
  if (floats == nullptr) return fuzz::require(a == b, "another value when it is read again");
  const auto& others = std::get<std::vector<float>>(b);
  fuzz::require(floats->size() == others.size(), "another number of floats");
  for (std::size_t i = 0; i < others.size(); ++i) {
    fuzz::require(
        std::bit_cast<std::uint32_t>((*floats)[i]) == std::bit_cast<std::uint32_t>(others[i]),
        "another float when it is read again");
  }
}

/// All numbers, and what stands for numbers, in the order of the text.
void flatten(const Json& value, std::vector<double>& numbers) {
  if (value.is_array()) {
    for (const Json& each : value) flatten(each, numbers);
  } else if (value.is_string()) {
    numbers.push_back(value == "nan" ? std::nan("") : value == "inf" ? HUGE_VAL : -HUGE_VAL);
  } else {
    numbers.push_back(value.get<double>());
  }
}

template <class Number>
void require_numbers_of(const Json& document, const std::vector<Number>& read) {
  std::vector<double> numbers;
  flatten(document, numbers);
  fuzz::require(numbers.size() == read.size(), "another number of numbers than in the text");
  for (std::size_t i = 0; i < read.size(); ++i) {
    const auto number = static_cast<Number>(numbers[i]);
    fuzz::require(number == read[i] || (std::isnan(numbers[i]) && std::isnan(read[i])),
                  "another number than in the text");
  }
}

void require_sound(const JsonNode& node, const std::string& file, std::string_view text) {
  for (const PortType type : kTypes) {
    try {
      const PortValue value = read_value(node, type);
      if (const auto* const floats = std::get_if<std::vector<float>>(&value))
        require_numbers_of(node.value(), *floats);
      if (const auto* const integers = std::get_if<std::vector<std::int32_t>>(&value))
        require_numbers_of(node.value(), *integers);
      const Json written = Json::parse(to_json(value, type).dump());
      require_same(value, read_value(JsonNode(written, "again", ""), type));
    } catch (const zelhost::JsonError& error) {
      fuzz::require_placed(error, file, text);
    }
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string text = fuzz::text_of(data, size);
  const fuzz::MemoryFile file(text);
  NetworkFile network;
  try {
    network = zelhost::read_network(file.path());
  } catch (const zelhost::JsonError& error) {
    fuzz::require_placed(error, file.path(), text);
    return 0;
  }
  for (const NetworkFile::Input& input : network.inputs)
    for (const NetworkFile::Value& value : input.values)
      require_sound(value.value, file.path(), text);
  const fuzz::MemoryFile again(network.document->dump(2));
  fuzz::require(meaning_of(zelhost::read_network(again.path())) == meaning_of(network),
                "another network when it is read again");
  return 0;
}
