// A network as its file describes it, before any plug-in is loaded. docs/networks.md
// describes the format.
#pragma once

#include <filesystem>
#include <memory>
#include <string>
#include <vector>

#include "host/json_reader.h"

namespace zelhost {

struct NetworkFile {
  /// What an instance's dialog is filled in with: a field's label, and its text.
  struct DialogText {
    JsonNode at;
    std::string field;
    std::string text;
  };
  struct Instance {
    JsonNode at;
    std::string name;
    std::string plugin;
    std::string icon;
    std::vector<DialogText> dialog;
  };
  struct MethodAddress {
    JsonNode at;
    std::string instance;
    std::string method;
  };
  struct Value {
    std::string port;
    JsonNode value;
  };
  /// Values for inputs, which stay for the whole run: each of the methods gets them all.
  struct Input {
    std::vector<MethodAddress> methods;
    std::vector<Value> values;
  };
  struct PortAddress {
    MethodAddress method;
    JsonNode at;
    std::string port;
  };
  struct Wire {
    PortAddress from;
    PortAddress to;
  };

  std::filesystem::path path;
  /// What the places in the others refer to.
  std::shared_ptr<const Json> document;
  std::string title;
  std::vector<std::string> notes;
  std::vector<Instance> instances;
  std::vector<Input> inputs;
  std::vector<Wire> wires;
  std::vector<MethodAddress> order;
};

/// Reads a network file and checks all that can be checked without the plug-ins:
/// that every key is known and every value of its kind.
/// @throws JsonError; std::system_error if the file cannot be read.
NetworkFile read_network(const std::filesystem::path& file);

}  // namespace zelhost
