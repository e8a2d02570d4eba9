#include "host/check/creation_checks.h"

#include <algorithm>
#include <string>
#include <string_view>
#include <vector>

#include "host/check/firing_checks.h"
#include "host/check/instances.h"
#include "host/check/surroundings.h"
#include "host/host.h"

namespace zelcheck {
namespace {

using zelhost::Host;
using zelhost::Icon;
using zelhost::Report;
using zelhost::Unit;

std::vector<std::string> misuses_in(const std::vector<Report>& reports) {
  std::vector<std::string> texts;
  for (const Report& report : reports)
    if (report.kind == Report::Kind::kMisuse) texts.push_back(report.text);
  return texts;
}

// A host with an instance, in which further ones are refused.
class Refusal {
 public:
  Refusal(const Icon& icon, const Notes& notes) : icon_(icon), notes_(notes) {
    create(host_, icon, notes);
    usual_misuse_ = misuses_in(host_.take_reports());
  }

  [[nodiscard]] Host& host() { return host_; }

  // No unit, none built, the error reported, and no misuse on the way.
  void expect(def_unittype* parent, int code) {
    const std::size_t instances = host_.environment().children().size();
    const Unit* const root = host_.create_root(icon_, icon_.presets(), parent);
    if (root != nullptr)
      notes_.complain("create returned a unit");
    else if (host_.environment().children().size() != instances)
      notes_.complain("create returned null, but has built units");

    const std::vector<Report> reports = host_.take_reports();
    for (const std::string& misuse : misuses_in(reports)) {
      // What also happens where there is an instance is another check's.
      if (std::find(usual_misuse_.begin(), usual_misuse_.end(), misuse) == usual_misuse_.end())
        notes_.complain(misuse);
    }
    if (std::none_of(reports.begin(), reports.end(), [code](const Report& report) {
          return report.kind == Report::Kind::kError && report.code == code;
        }))
      notes_.complain("error " + std::to_string(code) + " is not reported (error_msg)");
  }

 private:
  const Icon& icon_;
  const Notes& notes_;
  Host host_;
  std::vector<std::string> usual_misuse_;
};

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

void check_surroundings(const Icon& icon, const Notes& notes) {
  Host host;
  const Surroundings before;
  create(host, icon, notes);
  for (const std::string& change : before.changes()) notes.complain(change);
}

void check_foreign_parent(const Icon& icon, const Notes& notes) {
  Refusal refusal(icon, notes);
  notes.at("with a parent that is null");
  refusal.expect(nullptr, 2);
  notes.at("with a parent that is none of the host's units");
  def_unittype stranger{};
  refusal.expect(&stranger, 2);
}

void check_no_room(const Icon& icon, const Notes& notes) {
  Refusal refusal(icon, notes);
  refusal.host().limit_units(0);
  refusal.expect(refusal.host().environment().record(), 30);
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
