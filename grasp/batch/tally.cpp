#include "grasp/batch/tally.h"

#include <algorithm>
#include <numeric>

#include "grasp/answer.h"

namespace grasp {
namespace {

// The last one is also that of whatever is none of them.
constexpr std::array kVerdicts = {Verdict::kFeasible, Verdict::kInfeasible, Verdict::kUndetermined};

}  // namespace

void Tally::count(std::string_view verdict) {
  const auto* const found =
      std::find_if(kVerdicts.begin(), kVerdicts.end() - 1,
                   [verdict](Verdict each) { return to_string(each) == verdict; });
  ++verdicts_[static_cast<std::size_t>(found - kVerdicts.begin())];
}

std::string Tally::summary() const {
  const std::uint64_t all = std::accumulate(verdicts_.begin(), verdicts_.end(), errors_);
  std::string text = std::to_string(all) + (all == 1 ? " grasp" : " grasps");
  std::string_view between = ": ";
  const auto add = [&](std::uint64_t number, std::string_view what) {
    if (number == 0) return;
    text += between;
    text += std::to_string(number) + " ";
    text += what;
    between = ", ";
  };
  for (std::size_t i = 0; i < kVerdicts.size(); ++i) add(verdicts_[i], to_string(kVerdicts[i]));
  add(errors_, errors_ == 1 ? "line with an error" : "lines with errors");
  return text;
}

}  // namespace grasp
