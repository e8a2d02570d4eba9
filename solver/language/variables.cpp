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

std::optional<std::int32_t> unknown_in_entry(const Variable& variable, std::int32_t row,
                                             std::int32_t column) {
  switch (variable.shape) {
    case Variable::Shape::kGeneral:
      return row * variable.columns + column;
    case Variable::Shape::kSymmetric: {
      const std::int32_t low = std::max(row, column);
      return low * (low + 1) / 2 + std::min(row, column);
    }
    case Variable::Shape::kDiagonal:
      if (row == column) return row;
      break;
  }
  return std::nullopt;
}

AffineMatrix variable_value(const Variable& variable) {
  AffineMatrix value{variable.rows, variable.columns, {}};
  const auto push = [&](std::int32_t row, std::int32_t column) {
    const std::int32_t unknown =
        variable.first_unknown + unknown_in_entry(variable, row, column).value_or(0);
    value.terms.push_back({row, column, unknown, 1, 1});
  };
  // Not entry by entry: its diagonal may be a thousandth of a percent of a matrix.
  // Not entry by entry: beside it there may be a thousand times as many zeros.
  if (variable.shape == Variable::Shape::kDiagonal) {
    for (std::int32_t i = 0; i < variable.rows; ++i) push(i, i);
    return value;
  }
  value.terms.reserve(static_cast<std::size_t>(variable.rows) *
                      static_cast<std::size_t>(variable.columns));
  for (std::int32_t row = 0; row < variable.rows; ++row) {
    for (std::int32_t column = 0; column < variable.columns; ++column) push(row, column);
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
