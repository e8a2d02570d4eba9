#include "host/network.h"

#include <algorithm>
#include <charconv>
#include <exception>
#include <functional>
#include <optional>

#include "host/literal.h"
#include "host/text.h"

namespace zelhost {
namespace {

// "a, b, c" of the names of things.
template <class Things, class Name>
std::string listed(const Things& things, const Name& name) {
  std::string list;
  for (const auto& thing : things)
    list += (list.empty() ? "\"" : ", \"") + std::string(name(thing)) + "\"";
  return list.empty() ? "none" : list;
}

// A number as one writes it: "01" is none.
std::optional<std::size_t> as_number(const std::string& text) {
  std::size_t number = 0;
  const char* const end = text.data() + text.size();
  const auto read = std::from_chars(text.data(), end, number);
  if (read.ec != std::errc() || read.ptr != end || std::to_string(number) != text) return {};
  return number;
}

// "3: 0 "a", 1 "b", 2" of the ports of a method.
std::string listed_ports(std::size_t count, const std::map<int, std::string>& texts) {
  std::string list = std::to_string(count);
  for (std::size_t i = 0; i < count; ++i) {
    const auto text = texts.find(static_cast<int>(i));
    list += (i == 0 ? ": " : ", ") + std::to_string(i);
    if (text != texts.end()) list += " \"" + text->second + "\"";
  }
  return list;
}

// The place of a port among a method's inputs or outputs, by its text or number.
std::size_t find_port(const JsonNode& at, const std::string& port, std::size_t count,
                      const std::map<int, std::string>& texts, const Method& method,
                      const std::string& direction) {
  if (count == 0) at.fail(method.name + " has no " + direction + "s");
  // A plug-in may describe a port that the method has not.
  const auto has_text = [&port, count](const auto& entry) {
    return static_cast<std::size_t>(entry.first) < count && trimmed(entry.second) == trimmed(port);
  };
  const auto by_text = std::count_if(texts.begin(), texts.end(), has_text);
  if (by_text > 1)
    at.fail(method.name + " has several " + direction + "s \"" + port + "\"; take its number");
  if (by_text == 1)
    return static_cast<std::size_t>(std::find_if(texts.begin(), texts.end(), has_text)->first);
  const auto number = as_number(port);
  if (!number || *number >= count)
    at.fail(method.name + " has no " + direction + " \"" + port + "\"; it has " +
            listed_ports(count, texts));
  return *number;
}

std::vector<std::string> fill_in(const NetworkFile::Instance& instance, const Icon& icon) {
  std::vector<std::string> texts = icon.presets();
  for (const auto& entry : instance.dialog) {
    const auto field =
        std::find_if(icon.fields.begin(), icon.fields.end(),
                     [&entry](const DialogField& each) { return each.label == entry.field; });
    if (field == icon.fields.end())
      entry.at.fail("the dialog of " + icon.name + " has no field \"" + entry.field +
                    "\"; its fields are " +
                    listed(icon.fields, [](const DialogField& each) { return each.label; }));
    texts[static_cast<std::size_t>(field - icon.fields.begin())] = entry.text;
  }
  return texts;
}

}  // namespace

Network::Network(Host& host, const NetworkFile& file,
                 const std::vector<std::filesystem::path>& plugin_folders)
    : host_(host) {
  create_instances(file, plugin_folders);
  set_inputs(file);
  lay_wires(file);
  for (const auto& entry : file.order) steps_.push_back({entry.instance, find_method(entry)});
}

void Network::fire(const Step& step) {
  Unit& unit = *step.method.unit;
  const auto [first, last] = wires_.equal_range(&unit);
  std::for_each(first, last,
                [](const auto& wire) { wire.second.to->set(wire.second.from->value()); });
  int status = 0;
  try {
    status = host_.fire(unit);
  } catch (const std::exception& error) {
    throw MethodError(step.instance + ", " + step.method.name +
                      ": the method threw: " + error.what());
  } catch (...) {
    throw MethodError(step.instance + ", " + step.method.name + ": the method threw");
  }
  if (status != 0)
    throw MethodError(step.instance + ", " + step.method.name + ": the method returned " +
                      std::to_string(status));
}

void Network::create_instances(const NetworkFile& file,
                               const std::vector<std::filesystem::path>& folders) {
  const auto base = file.path.parent_path();
  std::vector<std::filesystem::path> places = {base.empty() ? "." : base};
  places.insert(places.end(), folders.begin(), folders.end());
  for (const auto& entry : file.instances) {
    const Plugin& plugin = load(entry, base, places);
    const Icon* const icon = plugin.find(entry.icon);
    if (icon == nullptr)
      entry.at.member("icon").fail(
          "the plug-in has no icon \"" + entry.icon + "\"; its icons are " +
          listed(plugin.icons, [](const Icon& each) { return each.name; }));
    try {
      instances_.emplace(entry.name, host_.create(*icon, fill_in(entry, *icon)));
    } catch (const CreationError& error) {
      throw CreationError(entry.at.place() + ": " + error.what());
    }
  }
}

const Plugin& Network::load(const NetworkFile::Instance& instance,
                            const std::filesystem::path& base,
                            const std::vector<std::filesystem::path>& places) {
  std::string place = instance.at.member("plugin").place() + ": ";
  try {
    // The file's own name stays as it was found: a library of another name behind a
    // link has other records, for all that the plug-in's name says.
    const auto found = find_plugin(instance.plugin, base, places);
    const auto path = std::filesystem::weakly_canonical(found.parent_path()) / found.filename();
    const auto known = plugins_.find(path);
    if (known != plugins_.end()) return known->second;
    place += "the plug-in cannot be used: ";
    return plugins_.emplace(path, load_plugin(path)).first->second;
  } catch (const PluginError& error) {
    throw PluginError(place + error.what());
  }
}

void Network::set_inputs(const NetworkFile& file) {
  for (const auto& input : file.inputs) {
    for (const auto& address : input.methods) {
      const Method& method = find_method(address);
      for (const auto& value : input.values) set_input(method, value);
    }
  }
}

void Network::set_input(const Method& method, const NetworkFile::Value& value) {
  auto& ports = method.unit->inputs();
  Port& port =
      ports[find_port(value.value, value.port, ports.size(), method.text.inputs, method, "input")];
  claim(value.value, &port);
  port.set(read_value(value.value, port.type()));
}

void Network::lay_wires(const NetworkFile& file) {
  for (const auto& wire : file.wires) {
    const Method& source = find_method(wire.from.method);
    const Method& target = find_method(wire.to.method);
    const auto& outputs = source.unit->outputs();
    auto& inputs = target.unit->inputs();
    const Port& from = outputs[find_port(wire.from.at, wire.from.port, outputs.size(),
                                         source.text.outputs, source, "output")];
    Port& to = inputs[find_port(wire.to.at, wire.to.port, inputs.size(), target.text.inputs, target,
                                "input")];
    if (from.type() != to.type())
      wire.to.at.fail("this input takes " + to_string(to.type()) + ", the output gives " +
                      to_string(from.type()));
    claim(wire.to.at, &to);
    wires_.emplace(target.unit, Wire{&from, &to});
  }
}

const Method& Network::find_method(const NetworkFile::MethodAddress& address) const {
  const auto found = instances_.find(address.instance);
  if (found == instances_.end())
    address.at.fail("there is no instance \"" + address.instance + "\"; there are " +
                    listed(instances_, [](const auto& each) { return each.first; }));
  const Method* const method = found->second.find(address.method);
  if (method == nullptr)
    address.at.fail("\"" + address.instance + "\" has no method \"" + address.method +
                    "\"; it has " +
                    listed(found->second.methods(), [](const Method& each) { return each.name; }));
  return *method;
}

void Network::claim(const JsonNode& at, const Port* port) {
  const auto [entry, is_new] = filled_by_.emplace(port, at.pointer());
  if (!is_new) at.fail("this input is filled already, at " + entry->second);
}

}  // namespace zelhost
