#include "host/check/check_plugin.h"

#include <map>
#include <utility>
#include <vector>

#include "host/check/child.h"
#include "host/check/creation_checks.h"
#include "host/check/firing_checks.h"
#include "host/check/inputs.h"
#include "host/check/library_checks.h"
#include "host/check/tree_checks.h"

namespace zelcheck {
namespace {

using zelhost::Icon;

struct NamedCheck {
  const char* name;
  void (*function)(const Icon&, const Notes&);
};

// Of an icon that instances can be created from.
constexpr NamedCheck kInstanceChecks[] = {
    {"creating an instance misuses no operation", check_operations},
    {"creating an instance leaves the process as it was", check_surroundings},
    {"a parent that is no unit is refused with error 2", check_foreign_parent},
    {"without room for a unit, error 30 is reported", check_no_room},
    {"too little room for all units does no harm", check_little_room},
    {"return_unit comes before the root's children, label comes last", check_order_of_operations},
    {"the tree is made of named groups and methods", check_tree},
    {"each instance has a user pointer, which all its units share", check_user_pointers},
    {"every method and every port has its text", check_texts},
    {"a second instance is described as the first", check_texts_again},
};

// Of an icon whose methods all work with ordinary inputs.
constexpr NamedCheck kWorkChecks[] = {
    {"the methods work one after the other", check_forwards},
    {"the methods work from last to first, each twice", check_backwards},
    {"a hundred instances work side by side", check_hundred_instances},
    {"the process ends well after the methods have worked", check_end_of_process},
};

// The last one is never left out: it may say how the check ended.
std::string joined(const std::vector<std::string>& complaints) {
  constexpr std::size_t kShown = 20;
  const std::size_t left_out = complaints.size() > kShown ? complaints.size() - kShown : 0;
  std::string text;
  for (std::size_t i = 0; i < complaints.size(); ++i) {
    if (left_out != 0 && i == kShown - 1) {
      text += "; " + std::to_string(left_out) + " more";
      i += left_out;
    }
    text += (i == 0 ? "" : "; ") + complaints[i];
  }
  return text;
}

class Run {
 public:
  Run(std::filesystem::path file, double time_limit, const std::function<void(const Result&)>& tell)
      : file_(std::move(file)), time_limit_(time_limit), tell_(tell) {}

  void all() {
    if (!check("the library loads", [this](const Notes& notes) { check_loads(file_, notes); }))
      return skip("all other checks", "the library does not load");
    if (!check("its records are exported and lead to each other",
               [this](const Notes& notes) { check_records(file_, notes); }))
      return skip("all other checks", "the records are not sound");
    const std::vector<std::string> icons = last_.facts;
    for (icon_ = 0; icon_ < icons.size(); ++icon_) {
      if (icons.size() > 1) prefix_ = "icon " + icons[icon_] + ": ";
      all_of_icon();
    }
  }

 private:
  void all_of_icon() {
    check_icon("every field of the dialog has a label of its own", check_dialog);
    check_icon("the icon's second function returns 1", check_second);
    if (!check_icon("an instance is created", check_creation))
      return skip("all checks of instances", "there is no instance");
    std::vector<Firing> firings;
    for (const std::string& fact : last_.facts) firings.push_back(read_firing(fact));

    for (const NamedCheck& each : kInstanceChecks) check_icon(each.name, each.function);
    const std::string not_working = fire_all(firings);
    for (const NamedCheck& each : kWorkChecks) {
      if (not_working.empty())
        check_icon(each.name, each.function);
      else
        skip(each.name, not_working + " did not pass");
    }
  }

  // @return the name of a check with ordinary inputs that did not pass, if there is one.
  std::string fire_all(const std::vector<Firing>& firings) {
    // A method that hangs would take the time limit again and again.
    std::map<std::size_t, std::string> hanging;
    std::string not_working;
    for (const Firing& each : firings) {
      const auto hung = hanging.find(each.method);
      bool passed = false;
      if (hung != hanging.end()) {
        skip(each.name, hung->second + " did not end");
      } else {
        passed = check_icon(each.name, [&each](const Icon& icon, const Notes& notes) {
          check_method(icon, each.method, each.inputs, notes);
        });
        if (last_.hung) hanging.emplace(each.method, each.name);
      }
      if (!passed && each.inputs == Inputs::kOrdinary && not_working.empty())
        not_working = each.name;
    }
    return not_working;
  }

  bool check_icon(const std::string& name,
                  const std::function<void(const Icon&, const Notes&)>& function) {
    return check(prefix_ + name, [&](const Notes& notes) {
      const zelhost::Plugin plugin = zelhost::load_plugin(file_);
      function(plugin.icons.at(icon_), notes);
    });
  }

  // @return whether it is passed.
  bool check(const std::string& name, const std::function<void(const Notes&)>& work) {
    last_ = run_in_child(work, time_limit_);
    const bool passed = last_.complaints.empty();
    tell_({name, passed ? Verdict::kPassed : Verdict::kFailed, joined(last_.complaints),
           last_.output});
    return passed;
  }

  void skip(const std::string& name, const std::string& reason) {
    tell_({prefix_ + name, Verdict::kSkipped, reason, {}});
  }

  std::filesystem::path file_;
  double time_limit_;
  const std::function<void(const Result&)>& tell_;
  ChildEnd last_;
  std::size_t icon_ = 0;
  std::string prefix_;
};

}  // namespace

void check_plugin(const std::filesystem::path& file, double time_limit,
                  const std::function<void(const Result&)>& tell) {
  // The checks run in folders of their own.
  Run(std::filesystem::absolute(file), time_limit, tell).all();
}

}  // namespace zelcheck
