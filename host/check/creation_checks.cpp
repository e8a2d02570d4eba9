#include "host/check/creation_checks.h"

#include <algorithm>
#include <string>
#include <string_view>
#include <vector>

#include "host/check/firing_checks.h"
#include "host/check/instances.h"
#include "host/host.h"

namespace zelcheck {
namespace {

using zelhost::Host;
using zelhost::Icon;
using zelhost::Report;
using zelhost::Unit;

// A creation that must fail: no unit, none built, and the error reported.
void expect_refusal(Host& host, const Icon& icon, def_unittype* parent, int code,
                    const Notes& notes) {
  const Unit* const root = host.create_root(icon, icon.presets(), parent);
  if (root != nullptr) notes.complain("create returned a unit");
  if (root == nullptr && !host.environment().children().empty())
    notes.complain("create returned null, but has built units");
  const std::string wanted = "error " + std::to_string(code) + ": ";
  bool is_reported = false;
  for (const Report& report : host.take_reports()) {
    if (report.kind == Report::Kind::kMisuse)
      notes.complain(report.text);
    else if (report.text.find(wanted) != std::string::npos)
      is_reported = true;
  }
  if (!is_reported)
    notes.complain("error " + std::to_string(code) + " is not reported (error_msg)");
}

// How many units create asks for.
int units_wanted(const Icon& icon, const Notes& notes) {
  Host host;
  int wanted = 0;
  host.observe([&wanted](std::string_view operation, const Unit*) {
    if (operation == "primitive_unit") ++wanted;
  });
  create(host, icon, notes);
  return wanted;
}

struct Event {
  std::string operation;
  const Unit* unit;  // a new unit's parent
};

// The calls that build the tree.
std::vector<Event> building_of(Host& host, const Icon& icon, const Notes& notes,
                               const Unit*& root) {
  constexpr std::string_view kBuilding[] = {
      "primitive_unit", "zel_name_unit", "zel_indicate_export_of_methods", "return_unit", "label"};
  std::vector<Event> events;
  host.observe([&](std::string_view operation, const Unit* unit) {
    if (std::find(std::begin(kBuilding), std::end(kBuilding), operation) != std::end(kBuilding))
      events.push_back({std::string(operation), unit});
  });
  root = create(host, icon, notes);
  host.observe(nullptr);
  return events;
}

// Where the operation was called on the root; complains of all else.
std::vector<std::size_t> calls_on_root(std::string_view operation, const std::vector<Event>& events,
                                       const Unit* root, const Notes& notes) {
  std::vector<std::size_t> calls;
  bool is_called = false;
  for (std::size_t i = 0; i < events.size(); ++i) {
    if (events[i].operation != operation) continue;
    is_called = true;
    if (events[i].unit == root) {
      calls.push_back(i);
    } else {
      notes.complain(std::string(operation) + " is called on " +
                     (events[i].unit == nullptr ? "no unit" : described(*events[i].unit)) +
                     " instead of the root");
    }
  }
  if (!is_called) notes.complain(std::string(operation) + " is not called");
  return calls;
}

}  // namespace

void check_second(const Icon& icon, const Notes& notes) {
  Host host;
  const int answer = icon.definition->second(0, 0, icon.definition, host.environment().record());
  if (answer != 1) notes.complain("it returns " + std::to_string(answer));
}

void check_creation(const Icon& icon, const Notes& notes) {
  Host host;
  const Unit* const root = create(host, icon, notes);
  if (root == nullptr) return;
  if (root->parent() != &host.environment())
    notes.complain("create returned " + described(*root) +
                   ", which is not a child of the parent that it was given");
  state_firings(*root, notes);
  notes.at("when the host frees the instance");
}

void check_operations(const Icon& icon, const Notes& notes) {
  Host host;
  create(host, icon, notes);
  for (const Report& report : host.take_reports()) {
    notes.complain(report.kind == Report::Kind::kMisuse
                       ? report.text
                       : "an error is reported though there is an instance: " + report.text);
  }
}

void check_foreign_parent(const Icon& icon, const Notes& notes) {
  {
    notes.at("with a parent that is null");
    Host host;
    expect_refusal(host, icon, nullptr, 2, notes);
  }
  notes.at("with a parent that is none of the host's units");
  def_unittype stranger{};
  Host host;
  expect_refusal(host, icon, &stranger, 2, notes);
}

void check_no_room(const Icon& icon, const Notes& notes) {
  Host host;
  host.limit_units(0);
  expect_refusal(host, icon, host.environment().record(), 30, notes);
}

void check_little_room(const Icon& icon, const Notes& notes) {
  const int wanted = units_wanted(icon, notes);
  // Each number of units, unless there are very many.
  const int step = std::max(1, wanted / 100);
  for (int count = 1; count < wanted; count += step) {
    notes.at("with room for " + std::to_string(count) + " of " + std::to_string(wanted) + " units");
    Host host;
    host.limit_units(static_cast<std::size_t>(count));
    host.create_root(icon, icon.presets(), host.environment().record());
  }
}

void check_order_of_operations(const Icon& icon, const Notes& notes) {
  Host host;
  const Unit* root = nullptr;
  const std::vector<Event> events = building_of(host, icon, notes, root);
  if (root == nullptr) return;

  const auto returns = calls_on_root("return_unit", events, root, notes);
  if (returns.size() > 1)
    notes.complain("return_unit is called " + std::to_string(returns.size()) + " times");
  const auto first_child = std::find_if(events.begin(), events.end(), [root](const Event& event) {
    return event.operation == "primitive_unit" && event.unit == root;
  });
  if (!returns.empty() && first_child < events.begin() + static_cast<std::ptrdiff_t>(returns[0]))
    notes.complain("return_unit is called after the root was given children");

  const auto labels = calls_on_root("label", events, root, notes);
  if (!labels.empty() && labels.back() + 1 != events.size())
    notes.complain(events.back().operation + " is called after label");
}

}  // namespace zelcheck
