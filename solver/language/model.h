// What a definition says, in the words of its author: variables, conditions,
// objective, parameters. Nothing is solved or simplified here.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "solver/language/affine_matrix.h"
#include "solver/language/forms.h"
#include "solver/language/sense.h"
#include "solver/language/source.h"

namespace sdpsol {

/// A declared variable. Its scalar unknowns are numbered from first_unknown on:
/// a general matrix row after row; a symmetric one its lower triangle row after
/// row; a diagonal one its diagonal.
struct Variable {
  enum class Shape { kGeneral, kSymmetric, kDiagonal };
  std::string name;
  std::int32_t rows = 1;
  std::int32_t columns = 1;
  Shape shape = Shape::kGeneral;
  std::int32_t first_unknown = 0;
  Span declared;
};

/// One relation, brought to the form `difference > 0`, `>= 0` or `== 0`.
struct Condition {
  /// Terms collected; they may refer to forms of the model. For a matrix condition
  /// symmetric, both triangles present.
  AffineMatrix difference;
  Sense sense = Sense::kStrict;
  /// true: difference is positive (semi)definite; false, as in every equation: every
  /// entry on its own.
  bool is_matrix = false;
  Span where;  ///< the relation in the source; its line is named as evidence
};

struct Objective {
  AffineMatrix value;  ///< 1 x 1, terms collected
  bool maximize = true;
  std::string name;
  Span where;
};

struct Parameters {
  double nu = 10;
  double gamma = 100;
  int max_iterations = 100;
  double absolute_tolerance = 4.4e-06;
  double relative_tolerance = 4.4e-06;
  double big_m = 15000;  ///< every unknown obeys |v| <= big_m
  friend bool operator==(const Parameters&, const Parameters&) = default;
};

struct Model {
  std::vector<Variable> variables;  ///< in the order of declaration
  std::int32_t unknown_count = 0;
  std::vector<Condition> conditions;  ///< in the order of the text
  std::vector<Form> forms;            ///< what terms of conditions refer to
  std::optional<Objective> objective;
  Parameters parameters;
  /// Every unknown obeys |v| <= parameters.big_m. Exchange formats know no such
  /// bound; there it only limits an objective that nothing else does.
  bool boxed = true;
};

}  // namespace sdpsol
