#include "solver/language/variables.h"

#include <algorithm>
#include <cstddef>

namespace sdpsol {

std::int64_t unknown_count(const Variable& variable) {
  const std::int64_t rows = variable.rows;
  switch (variable.shape) {
    case Variable::Shape::kGeneral:
      return rows * variable.columns;
    case Variable::Shape::kSymmetric:
      return rows * (rows + 1) / 2;
    case Variable::Shape::kDiagonal:
      return rows;
  }
  return 0;
}

AffineMatrix variable_value(const Variable& variable) {
  AffineMatrix value{variable.rows, variable.columns, {}};
  const auto push = [&](std::int32_t row, std::int32_t column, std::int32_t index) {
    value.terms.push_back({row, column, variable.first_unknown + index, 1, 1});
  };
  if (variable.shape == Variable::Shape::kDiagonal) {
    for (std::int32_t i = 0; i < variable.rows; ++i) push(i, i, i);
    return value;
  }
  const bool symmetric = variable.shape == Variable::Shape::kSymmetric;
  value.terms.reserve(static_cast<std::size_t>(variable.rows) *
                      static_cast<std::size_t>(variable.columns));
  for (std::int32_t row = 0; row < variable.rows; ++row) {
    for (std::int32_t column = 0; column < variable.columns; ++column) {
      const std::int32_t low = std::max(row, column);
      const std::int32_t high = std::min(row, column);
      push(row, column, symmetric ? low * (low + 1) / 2 + high : row * variable.columns + column);
    }
  }
  return value;
}

std::string shape_text(const Variable& variable) {
  std::string size = std::to_string(variable.rows) + "x" + std::to_string(variable.columns);
  switch (variable.shape) {
    case Variable::Shape::kGeneral:
      return size;
    case Variable::Shape::kSymmetric:
      return size + " symmetric";
    case Variable::Shape::kDiagonal:
      return size + " diagonal";
  }
  return size;
}

}  // namespace sdpsol
