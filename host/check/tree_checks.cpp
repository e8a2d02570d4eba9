#include "host/check/tree_checks.h"

#include <set>
#include <string>

#include "host/check/instances.h"
#include "host/host.h"
#include "host/text.h"

namespace zelcheck {
namespace {

using zelhost::Host;
using zelhost::Icon;
using zelhost::MethodText;
using zelhost::MethodTexts;
using zelhost::Unit;

bool has_ports(const Unit& unit) {
  return !unit.inputs().empty() || !unit.outputs().empty();
}

// Of the root and of groups.
void expect_group(const Unit& unit, const Notes& notes) {
  if (has_ports(unit))
    notes.complain(described(unit) + " has ports but no method function");
  else if (!unit.exports)
    notes.complain(described(unit) +
                   " does not export its methods (zel_indicate_export_of_methods)");
}

bool is_blank(const std::string& text) {
  return zelhost::readable(text).empty();
}

void check_port_texts(const std::string& method, const char* direction, std::size_t ports,
                      const std::map<int, std::string>& texts, const Notes& notes) {
  for (int port = 0; static_cast<std::size_t>(port) < ports; ++port) {
    const auto text = texts.find(port);
    if (text == texts.end() || is_blank(text->second))
      notes.complain("the method " + method + " has no text for its " + direction + " " +
                     std::to_string(port));
  }
  for (const auto& [port, text] : texts)
    if (static_cast<std::size_t>(port) >= ports)
      notes.complain("the method " + method + " has no " + direction + " " + std::to_string(port) +
                     ", which is described");
}

bool are_same(const MethodText& a, const MethodText& b) {
  return a.help == b.help && a.inputs == b.inputs && a.outputs == b.outputs;
}

}  // namespace

void check_tree(const Icon& icon, const Notes& notes) {
  Host host;
  const Unit* const root = create(host, icon, notes);
  if (root == nullptr) return;
  if (root->is_method())
    notes.complain("the root has a method function");
  else
    expect_group(*root, notes);

  std::set<std::string> names;
  for (const Unit* const unit : units_below(*root)) {
    if (unit->name.empty())
      notes.complain("there is " + described(*unit));
    else if (!names.insert(unit->qualified_name()).second)
      notes.complain("two units are named " + unit->qualified_name());
    if (!unit->is_method())
      expect_group(*unit, notes);
    else if (!unit->children().empty())
      notes.complain("the method " + described(*unit) + " has units below it");
  }
  if (methods_below(*root).empty()) notes.complain("there is no method");
}

void check_user_pointers(const Icon& icon, const Notes& notes) {
  Host host;
  const Unit* const root = create(host, icon, notes);
  const Unit* const other = root == nullptr ? nullptr : create(host, icon, notes);
  if (other == nullptr) return;
  const void* const user = root->record()->user;
  if (user == nullptr) notes.complain("the root has no user pointer");
  for (const Unit* const unit : units_below(*root)) {
    if (unit->record()->user == nullptr)
      notes.complain(described(*unit) + " has no user pointer");
    else if (user != nullptr && unit->record()->user != user)
      notes.complain(described(*unit) + " has another user pointer than the root");
  }
  if (user != nullptr && user == other->record()->user)
    notes.complain("two instances have the same user pointer");
}

void check_texts(const Icon& icon, const Notes& notes) {
  Host host;
  MethodTexts texts;
  const Unit* const root = create(host, icon, notes, &texts);
  if (root == nullptr) return;
  for (const Unit* const method : methods_below(*root)) {
    // One without a name is another check's.
    if (method->name.empty()) continue;
    const MethodText text = texts[method->qualified_name()];
    if (is_blank(text.help))
      notes.complain("the method " + described(*method) + " has no help text");
    check_port_texts(described(*method), "input", method->inputs().size(), text.inputs, notes);
    check_port_texts(described(*method), "output", method->outputs().size(), text.outputs, notes);
    texts.erase(method->qualified_name());
  }
  for (const auto& [name, text] : texts)
    notes.complain("there is no method " + name + ", which is described");
}

void check_texts_again(const Icon& icon, const Notes& notes) {
  Host host;
  MethodTexts first;
  MethodTexts second;
  if (create(host, icon, notes, &first) == nullptr) return;
  if (create(host, icon, notes, &second) == nullptr) return;
  for (const auto& [name, text] : first)
    if (second.count(name) == 0 || !are_same(text, second.at(name)))
      notes.complain("the second time " + name + " is described otherwise, or not at all");
  for (const auto& [name, text] : second)
    if (first.count(name) == 0) notes.complain(name + " is described only the second time");
}

}  // namespace zelcheck
