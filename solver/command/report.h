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
  std::size_t condition = 0;  ///< index into Model::conditions
  std::uint32_t line = 0;
  double smallest_eigenvalue = 0;  ///< of the difference of its two sides
  double room = 0;                 ///< relative to what was added up; kRoom is asked
};

/// How well an equality holds at that point.
struct EquationResidual {
  std::size_t condition = 0;
  double largest = 0;  ///< |difference|, the worst of its entries
  /// A point where all equalities hold exactly is no further away, in any unknown
  /// that this one speaks of.
  double distance = 0;
};

/// What the parts of a run took, in seconds.
struct Times {
  double reading = 0;    ///< the file, and the text
  double structure = 0;  ///< from the text's conditions to the problem
  double engine = 0;
  double checking = 0;  ///< all that is not the engine between problem and verdict
  double total = 0;     ///< from the start of the run until the results were put in words
};

struct Report {
  const Model* model = nullptr;
  const Source* source = nullptr;
  const Problem* problem = nullptr;
  Outcome outcome;
  std::size_t rows = 0;
  std::size_t matrices = 0;
  std::int32_t largest_matrix = 0;
  std::vector<std::uint32_t> reason_lines;  ///< lines that the reason speaks of
  std::vector<ConditionMargin> margins;     ///< the tightest first; only with kFeasible
  std::vector<EquationResidual> residuals;  ///< only with kFeasible
  double gap = 0;                           ///< bound - objective, with an objective
  bool gap_is_large = false;                ///< more than ABSTOL and RELTOL ask
  std::vector<std::string> warnings;
  Times times;
};

/// Keeps references to all but the outcome.
Report make_report(const Source& source, const Model& model, const Problem& problem,
                   Outcome outcome);

/// True if the bound of the objective holds for points with |v| <= bound_reach only,
/// although the problem has no box.
bool has_reach(const Report& report);

/// Entries of a variable, row after row, at a point of all unknowns.
std::vector<double> values_of(const Variable& variable, const std::vector<double>& point);

}  // namespace sdpsol
