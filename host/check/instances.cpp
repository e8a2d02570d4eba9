#include "host/check/instances.h"

#include <algorithm>
#include <string_view>

#include "host/check/surroundings.h"

namespace zelcheck {

using zelhost::Host;
using zelhost::Report;
using zelhost::Unit;

namespace {

std::string why_no_unit(const std::vector<Report>& reports) {
  // The host's own word for what create returned.
  constexpr std::string_view kCreate = "create: it ";
  std::string why = "create returned null";
  std::string said;
  for (const Report& report : reports) {
    if (report.text.rfind(kCreate, 0) == 0)
      why = "create " + report.text.substr(kCreate.size());
    else
      said += "; " + report.text;
  }
  return why + said;
}

}  // namespace

Unit* create(Host& host, const zelhost::Icon& icon, const Notes& notes,
             zelhost::MethodTexts* texts) {
  ForkWatch watch;
  Unit* const root = host.create_root(icon, icon.presets(), host.environment().record(), texts);
  if (watch.is_back_twice()) notes.complain("create forked and came back in both processes");
  if (root == nullptr) notes.complain(why_no_unit(host.take_reports()));
  return root;
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
