// What there is to say about a solved definition, gathered once for every form
// in which it is said.
#pragma once

#include <string>
#include <vector>

#include "solver/decide/outcome.h"
#include "solver/language/model.h"
#include "solver/language/source.h"

namespace sdpsol {

/// How far a condition is from being violated at the point which the verdict
/// rests on.
struct ConditionMargin {
  std::uint32_t line = 0;
  double smallest_eigenvalue = 0;  ///< of the difference of its two sides
  double room = 0;                 ///< relative to what was added up; kRoom is asked
};

struct Report {
  const Model* model = nullptr;
  Outcome outcome;
  std::string engine;
  std::size_t rows = 0;
  std::size_t matrices = 0;
  std::int32_t largest_matrix = 0;
  std::vector<std::uint32_t> reason_lines;  ///< lines that the reason speaks of
  std::vector<ConditionMargin> margins;     ///< the tightest first; only with kFeasible
  double gap = 0;                           ///< bound - objective, with an objective
  bool gap_is_large = false;                ///< more than ABSTOL and RELTOL ask
  std::vector<std::string> warnings;
};

/// @param most_margins how many of the tightest conditions are listed.
Report make_report(const Source& source, const Model& model, const Problem& problem,
                   Outcome outcome, std::string engine, std::size_t most_margins);

}  // namespace sdpsol
