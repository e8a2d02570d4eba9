#include "host/check/firing_checks.h"

#ifdef SDPSOL_SANITIZE
#include <sanitizer/lsan_interface.h>
#endif

#include <cstdlib>
#include <iterator>
#include <map>
#include <nlohmann/json.hpp>
#include <sstream>
#include <string>
#include <vector>

#include "host/check/arrays.h"
#include "host/check/instances.h"
#include "host/check/surroundings.h"
#include "host/host.h"
#include "host/literal.h"

namespace zelcheck {
namespace {

using zelhost::Host;
using zelhost::Icon;
using zelhost::Json;
using zelhost::Port;
using zelhost::Report;
using zelhost::Unit;

// As JSON, where NaN is the same as NaN.
Json values_of(const std::deque<Port>& ports) {
  Json values = Json::array();
  for (const Port& port : ports) values.push_back(to_json(port.value(), port.type()));
  return values;
}

// @return whether there was nothing to complain of.
bool fire(Host& host, Unit& method, const Notes& notes) {
  std::vector<std::string> complaints;
  const Json before = values_of(method.inputs());
  const Surroundings surroundings;
  ForkWatch watch;
  const int status = host.fire(method);
  if (watch.is_back_twice()) complaints.emplace_back("it forked and came back in both processes");
  if (status != 0) complaints.push_back("returned " + std::to_string(status));
  for (const Report& report : host.take_reports())
    if (report.kind == Report::Kind::kMisuse) complaints.push_back(report.text);
  for (const std::string& change : surroundings.changes()) complaints.push_back(change);
  const std::vector<std::string> unsound = unsound_arrays(method.outputs());
  complaints.insert(complaints.end(), unsound.begin(), unsound.end());
  for (const std::string& complaint : complaints) notes.complain(complaint);
  // All of it is read: what the plug-in handed over may be no memory of its own.
  if (unsound.empty()) values_of(method.outputs());
  if (values_of(method.inputs()) == before) return complaints.empty();
  notes.complain("it changed its inputs");
  return false;
}

bool fire_ordinarily(Host& host, Unit& method, const Notes& notes) {
  fill(method, Inputs::kOrdinary);
  return fire(host, method, notes);
}

}  // namespace

void state_firings(const Unit& root, const Notes& notes) {
  std::size_t number = 0;
  for (const Unit* const method : methods_below(root)) {
    for (const Inputs inputs : kAllInputs) {
      if (!concern(inputs, *method)) continue;
      const std::string with = " with " + std::string(name_of(inputs));
      notes.fact(std::to_string(number) + " " + std::to_string(static_cast<int>(inputs)) + " " +
                 described(*method) + (method->inputs().empty() ? ", which has no inputs" : with));
    }
    ++number;
  }
}

Firing read_firing(const std::string& fact) {
  std::istringstream words(fact);
  Firing firing;
  int inputs = 0;
  words >> firing.method >> inputs;
  firing.inputs = static_cast<Inputs>(inputs);
  words.get();
  firing.name.assign(std::istreambuf_iterator<char>(words), {});
  return firing;
}

void check_method(const Icon& icon, std::size_t method, Inputs inputs, const Notes& notes) {
  Host host;
  const Unit* const root = create(host, icon, notes);
  if (root == nullptr) return;
  host.take_reports();
  const std::vector<Unit*> methods = methods_below(*root);
  if (method >= methods.size()) return notes.complain("this instance has fewer methods");
  fill(*methods[method], inputs);
  if (fire(host, *methods[method], notes)) {
    // The host frees the arrays of the first time.
    notes.at("the second time");
    fire(host, *methods[method], notes);
  }
  notes.at("when the host frees the instance");
}

void check_forwards(const Icon& icon, const Notes& notes) {
  Host host;
  const Unit* const root = create(host, icon, notes);
  if (root == nullptr) return;
  host.take_reports();
  for (Unit* const method : methods_below(*root)) {
    notes.at(described(*method));
    fire_ordinarily(host, *method, notes);
  }
}

void check_backwards(const Icon& icon, const Notes& notes) {
  Host host;
  const Unit* const root = create(host, icon, notes);
  if (root == nullptr) return;
  host.take_reports();
  std::vector<Unit*> methods = methods_below(*root);
  for (; !methods.empty(); methods.pop_back()) {
    notes.at(described(*methods.back()));
    if (!fire_ordinarily(host, *methods.back(), notes)) return;
    notes.at(described(*methods.back()) + ", the second time");
    fire(host, *methods.back(), notes);
  }
}

void check_hundred_instances(const Icon& icon, const Notes& notes) {
  constexpr int kInstances = 100;
  Host host;
  std::map<const void*, int> users;
  std::vector<const Unit*> roots;
  for (int number = 1; number <= kInstances; ++number) {
    notes.at("instance " + std::to_string(number));
    roots.push_back(create(host, icon, notes));
    if (roots.back() == nullptr) return;
    const auto [user, is_new] = users.emplace(roots.back()->record()->user, number);
    if (!is_new) {
      notes.complain("it has the user pointer of instance " + std::to_string(user->second));
      return;
    }
  }
  host.take_reports();
  for (const int number : {1, kInstances}) {
    for (Unit* const method : methods_below(*roots[static_cast<std::size_t>(number) - 1])) {
      notes.at("instance " + std::to_string(number) + ", " + described(*method));
      fire_ordinarily(host, *method, notes);
    }
  }
  notes.at("when the host frees the instances");
}

void check_end_of_process(const Icon& icon, const Notes& notes) {
#ifdef SDPSOL_SANITIZE
  // No plug-in is told that an instance ends: what it has made for one is no leak.
  __lsan_disable();
#endif
  {
    Host host;
    const Unit* const root = create(host, icon, notes);
    if (root == nullptr) return;
    for (Unit* const method : methods_below(*root)) {
      fill(*method, Inputs::kOrdinary);
      host.fire(*method);
    }
  }
  notes.at("at the end of the process");
  notes.done();
  std::exit(0);
}

}  // namespace zelcheck
