#include "host/network_file.h"

#include <cmath>
#include <cstdint>
#include <memory>
#include <nlohmann/json.hpp>
#include <set>

namespace zelhost {
namespace {

// A port is named by its number or by its text.
std::string read_port(const JsonNode& node) {
  constexpr std::string_view kWhat = "a port: its text in quotes, or its number from 0";
  const Json& value = node.value();
  if (value.is_string()) return node.text(kWhat);
  const double number = value.is_number() ? value.get<double>() : -1;
  if (number < 0 || number != std::trunc(number)) node.fail("this takes " + std::string(kWhat));
  // As one writes it: this may be 1.0 or -0. No method has so many ports that it matters
  // how a larger number is written.
  constexpr double kHuge = 1e15;
  return number < kHuge ? std::to_string(static_cast<std::uint64_t>(number)) : value.dump();
}

NetworkFile::MethodAddress read_method(const JsonNode& node, const std::vector<JsonNode>& parts) {
  return {node, parts[0].text("the name of an instance"), parts[1].text("the name of a method")};
}

NetworkFile::MethodAddress read_firing(const JsonNode& node) {
  const auto parts = node.elements("an instance and a method");
  if (parts.size() != 2) node.fail("this takes two texts: an instance and a method");
  return read_method(node, parts);
}

NetworkFile::PortAddress read_port_address(const JsonNode& node) {
  const auto parts = node.elements("an instance, a method and a port");
  if (parts.size() != 3) node.fail("this takes three things: an instance, a method and a port");
  return {read_method(node, parts), parts[2], read_port(parts[2])};
}

NetworkFile::Instance read_instance(const std::string& name, const JsonNode& node) {
  node.expect_keys({"plugin", "icon"}, {"dialog"});
  NetworkFile::Instance instance{node,
                                 name,
                                 node.member("plugin").text("the name of a plug-in"),
                                 node.member("icon").text("the name of an icon"),
                                 {}};
  if (node.has("dialog")) {
    for (const auto& [field, text] : node.member("dialog").members("the fields of the dialog"))
      instance.dialog.push_back({text, field, text.text("the text of a field")});
  }
  return instance;
}

NetworkFile::Input read_input(const JsonNode& node) {
  node.expect_keys({"instance", "methods", "values"});
  const std::string instance = node.member("instance").text("the name of an instance");
  NetworkFile::Input input;
  std::set<std::string> names;
  for (const JsonNode& method : node.member("methods").elements("the names of methods")) {
    input.methods.push_back({method, instance, method.text("the name of a method")});
    if (!names.insert(input.methods.back().method).second)
      method.fail("this method stands here twice");
  }
  for (const auto& [port, value] : node.member("values").members("values by the port they are for"))
    input.values.push_back({port, value});
  return input;
}

}  // namespace

NetworkFile read_network(const std::filesystem::path& file) {
  NetworkFile network;
  network.path = file;
  network.document = std::make_shared<const Json>(read_json(file));
  const JsonNode top(*network.document, file.string(), "");
  top.expect_keys({"instances", "order"}, {"title", "notes", "inputs", "wires"});

  if (top.has("title")) {
    const JsonNode title = top.member("title");
    network.title = title.text("a title");
    if (network.title.find_first_of("\n\r") != std::string::npos)
      title.fail("a title is one line; there are \"notes\" for more");
  }
  if (top.has("notes")) {
    for (const JsonNode& line : top.member("notes").elements("lines of text"))
      network.notes.push_back(line.text("a line"));
  }
  for (const auto& [name, node] : top.member("instances").members("instances by their names"))
    network.instances.push_back(read_instance(name, node));
  if (top.has("inputs")) {
    for (const JsonNode& node : top.member("inputs").elements("inputs"))
      network.inputs.push_back(read_input(node));
  }
  if (top.has("wires")) {
    for (const JsonNode& node : top.member("wires").elements("wires")) {
      node.expect_keys({"from", "to"});
      network.wires.push_back(
          {read_port_address(node.member("from")), read_port_address(node.member("to"))});
    }
  }
  const JsonNode order = top.member("order");
  for (const JsonNode& node : order.elements("what to fire: pairs of an instance and a method")) {
    network.order.push_back(read_firing(node));
  }
  if (network.order.empty()) order.fail("nothing is fired; name a method at least");
  return network;
}

}  // namespace zelhost
