#include "host/check/instances.h"

#include <algorithm>
#include <iterator>

namespace zelcheck {

using zelhost::Host;
using zelhost::Report;
using zelhost::Unit;

Unit* create(Host& host, const zelhost::Icon& icon, const Notes& notes,
             zelhost::MethodTexts* texts) {
  Unit* const root = host.create_root(icon, icon.presets(), host.environment().record(), texts);
  if (root == nullptr) {
    std::string why = "create returned no unit";
    for (const Report& report : host.take_reports()) why += "; " + report.text;
    notes.complain(why);
  }
  return root;
}

void complain_of_misuse(Host& host, const Notes& notes) {
  for (const Report& report : host.take_reports())
    if (report.kind == Report::Kind::kMisuse) notes.complain(report.text);
}

std::vector<Unit*> units_below(const Unit& root) {
  std::vector<Unit*> units;
  for (Unit* const child : root.children()) {
    units.push_back(child);
    const auto below = units_below(*child);
    units.insert(units.end(), below.begin(), below.end());
  }
  return units;
}

std::vector<Unit*> methods_below(const Unit& root) {
  std::vector<Unit*> methods = units_below(root);
  std::erase_if(methods, [](const Unit* unit) { return !unit->is_method(); });
  return methods;
}

std::string described(const Unit& unit) {
  const Unit* const parent = unit.parent();
  if (parent == nullptr) return "the parent itself";
  if (parent->parent() == nullptr) return "the root";
  if (unit.name.empty()) return "a unit without a name below " + described(*parent);
  return unit.qualified_name();
}

}  // namespace zelcheck
