// Reports as they come out of a run, put together by hand.
#pragma once

#include <utility>

#include "solver/command/report.h"
#include "solver/language/variables.h"

namespace sdpsol {

inline Variable test_variable(Model& model, std::string name, std::int32_t rows = 1,
                              std::int32_t columns = 1,
                              Variable::Shape shape = Variable::Shape::kGeneral) {
  Variable variable;
  variable.name = std::move(name);
  variable.rows = rows;
  variable.columns = columns;
  variable.shape = shape;
  variable.first_unknown = model.unknown_count;
  model.unknown_count += static_cast<std::int32_t>(unknown_count(variable));
  return variable;
}

/// The variables z (scalar), G (general, 2 x 3), S (symmetric, 3 x 3),
/// D (diagonal, 2 x 2) and one (1 x 1), with the values of test_point().
inline Model model_of_all_shapes() {
  Model model;
  for (auto [name, rows, columns, shape] : {std::tuple{"z", 1, 1, Variable::Shape::kGeneral},
                                            std::tuple{"G", 2, 3, Variable::Shape::kGeneral},
                                            std::tuple{"S", 3, 3, Variable::Shape::kSymmetric},
                                            std::tuple{"D", 2, 2, Variable::Shape::kDiagonal},
                                            std::tuple{"one", 1, 1, Variable::Shape::kSymmetric}}) {
    model.variables.push_back(test_variable(model, name, rows, columns, shape));
  }
  model.conditions.resize(3);
  return model;
}

inline std::vector<double> point_of_all_shapes() {
  return {-0.1,                                            // z
          1,        2.5,  -3e-10, 1e300, 5e-324, 1.0 / 3,  // G
          11,       21,   22,     31,    32,     33.25,    // S
          -0.0,     1e22,                                  // D
          0.1 + 0.2};                                      // one
}

/// A feasible report of the model, without an objective.
inline Report feasible_report(const Model& model, std::vector<double> point) {
  Report report;
  report.model = &model;
  report.outcome.engine = "csdp";
  report.outcome.verdict = Verdict::kFeasible;
  report.outcome.interior = point;
  report.outcome.point = std::move(point);
  report.outcome.iterations = 7;
  report.rows = 2;
  report.matrices = 1;
  report.largest_matrix = 12;
  report.margins = {{.line = 4, .smallest_eigenvalue = 0.125, .room = 0.0123456},
                    {.line = 12, .smallest_eigenvalue = 1234.5678, .room = 1}};
  return report;
}

}  // namespace sdpsol
