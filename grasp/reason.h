// What the solver says about a definition, as what it says about the grasp.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "grasp/answer.h"
#include "grasp/grasp.h"

namespace grasp {

/// What is said where internal forces may exist or not for all the data can tell.
constexpr std::string_view kBorderline =
    "borderline: no internal force beyond the precision of the data";

/// The heading of a result file.
struct Heading {
  Verdict verdict = Verdict::kUndetermined;
  /// The line that follows the verdict, where forces were not found.
  std::string reason;
  std::vector<std::string> warnings;
};

/// @param result the text of a result file; docs/result-file.md describes it.
Heading read_heading(std::string_view result);

/// What the solver warns of, where it speaks of the definition's parameters: as what that
/// means for forces.
std::string explain_warning(const std::string& warning);

/// The reason with the conditions of the grasp in place of the lines of the definition
/// at its end: "..., lines 24, 33" becomes "...: normal force of thumb above 0 N, the cones".
/// @param definition the text those lines are of.
std::string explain(const std::string& reason, std::string_view definition, const Grasp& grasp);

}  // namespace grasp
