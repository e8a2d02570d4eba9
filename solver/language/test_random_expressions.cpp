#include "solver/language/test_random_expressions.h"

#include <charconv>
#include <cmath>
#include <utility>

namespace sdpsol {
namespace {

// Unknowns: x 0; S(2,2) symmetric 1 to 3; d(2,2) diagonal 4, 5; v(3,1) 6 to 8; W(2,3) 9 to 14.
constexpr int kUnknowns = 15;
const char* const kDeclarations =
    "variable x, S(2,2) symmetric, d(2,2) diagonal, v(3,1), W(2,3);\n";

template <class Combine>
Sample combined(std::string text, int rows, int columns, const Sample& a, const Sample& b,
                Combine combine) {
  Sample result;
  result.text = std::move(text);
  result.varies = a.varies || b.varies;
  for (std::size_t p = 0; p < RandomExpressions::kPoints; ++p) {
    Dense value(rows, columns);
    combine(value, a.at_points[p], b.at_points[p]);
    result.at_points.push_back(std::move(value));
  }
  return result;
}

int rows_of(const Sample& sample) {
  return sample.at_points[0].rows;
}
int columns_of(const Sample& sample) {
  return sample.at_points[0].columns;
}

}  // namespace

RandomExpressions::RandomExpressions(unsigned seed)
    : random_(seed), points_(kPoints, std::vector<double>(kUnknowns)), statements_(kDeclarations) {
  for (auto& point : points_) {
    for (double& value : point) value = std::uniform_real_distribution<double>(-3, 3)(random_);
  }
}

Sample RandomExpressions::number() {
  static const std::vector<std::string> kNumbers = {"2",     "0.5", "1e-3", "3.25", ".75",
                                                    "1.5E1", "7",   "0",    "0.1",  "12."};
  Sample result;
  result.text = kNumbers[static_cast<std::size_t>(pick(static_cast<int>(kNumbers.size())))];
  Dense value(1, 1);
  std::from_chars(result.text.data(), result.text.data() + result.text.size(), value.values[0]);
  value.sizes[0] = value.values[0];
  result.at_points.assign(kPoints, value);
  return result;
}

Sample RandomExpressions::literal_matrix(int rows, int columns) {
  Sample result;
  Dense value(rows, columns);
  result.text = "[";
  for (int i = 0; i < rows; ++i) {
    for (int j = 0; j < columns; ++j) {
      const Sample entry = number();
      const bool negative = pick(3) == 0;
      if (j > 0) result.text += ",";
      if (i > 0 && j == 0) result.text += ";\n";
      result.text += (negative ? "-" : "") + entry.text;
      value.values[value.at(i, j)] = entry.at_points[0].values[0] * (negative ? -1 : 1);
      value.sizes[value.at(i, j)] = entry.at_points[0].sizes[0];
    }
  }
  result.text += "]";
  result.at_points.assign(kPoints, value);
  return result;
}

Sample RandomExpressions::variable(const char* name, int rows, int columns,
                                   const std::vector<int>& unknowns) {
  Sample result;
  result.text = name;
  result.varies = true;
  for (int p = 0; p < kPoints; ++p) {
    Dense value(rows, columns);
    for (std::size_t k = 0; k < unknowns.size(); ++k) {
      if (unknowns[k] < 0) continue;
      value.values[k] = unknown_at(p, unknowns[k]);
      value.sizes[k] = std::abs(value.values[k]);
    }
    result.at_points.push_back(value);
  }
  return result;
}

Sample RandomExpressions::leaf(int rows, int columns, bool may_vary) {
  if (may_vary && pick(3) > 0) {
    if (rows == 1 && columns == 1) {
      switch (pick(4)) {
        case 0:
          return variable("S(1,2)", 1, 1, {2});
        case 1:
          return variable("v(3, 1)", 1, 1, {8});
        case 2:
          return variable("W(2,1)", 1, 1, {12});
        default:
          return variable("x", 1, 1, {0});
      }
    }
    if (rows == 2 && columns == 2) {
      switch (pick(3)) {
        case 0:
          return variable("d", 2, 2, {4, -1, -1, 5});
        case 1:
          return variable("S'", 2, 2, {1, 2, 2, 3});
        default:
          return variable("S", 2, 2, {1, 2, 2, 3});
      }
    }
    if (rows == 3 && columns == 1) return variable("v", 3, 1, {6, 7, 8});
    if (rows == 1 && columns == 3) return variable("v'", 1, 3, {6, 7, 8});
    if (rows == 2 && columns == 3) return variable("W", 2, 3, {9, 10, 11, 12, 13, 14});
    if (rows == 3 && columns == 2) return variable("W'", 3, 2, {9, 12, 10, 13, 11, 14});
    if (rows == 3 && columns == 3)
      return variable("diag(v)", 3, 3, {6, -1, -1, -1, 7, -1, -1, -1, 8});
  }
  if (pick(4) == 0) return built_in(rows, columns);
  if (rows == 1 && columns == 1) return number();
  return literal_matrix(rows, columns);
}

Sample RandomExpressions::sum(int rows, int columns, int depth, bool may_vary) {
  const Sample a = expression(rows, columns, depth - 1, may_vary);
  const Sample b = expression(rows, columns, depth - 1, may_vary);
  const bool minus = pick(2) == 0;
  // Blanks on both sides or on none: the only ways that brackets allow.
  std::string text =
      "(" + a.text + (pick(2) == 0 ? (minus ? "-" : "+") : (minus ? " - " : " + ")) + b.text + ")";
  return combined(std::move(text), rows, columns, a, b,
                  [&](Dense& r, const Dense& left, const Dense& right) {
                    for (std::size_t k = 0; k < r.values.size(); ++k) {
                      r.values[k] = left.values[k] + (minus ? -1 : 1) * right.values[k];
                      r.sizes[k] = left.sizes[k] + right.sizes[k];
                    }
                  });
}

Sample RandomExpressions::product(int rows, int columns, int depth, bool may_vary) {
  const bool left_varies = may_vary && pick(2) == 0;
  const bool right_varies = may_vary && !left_varies;
  const int inner = pick(3) + 1;
  const bool scale = inner == 1 && pick(2) == 0;
  const Sample a = scale ? expression(1, 1, depth - 1, left_varies)
                         : expression(rows, inner, depth - 1, left_varies);
  const Sample b = scale ? expression(rows, columns, depth - 1, right_varies)
                         : expression(inner, columns, depth - 1, right_varies);
  // 1 x 1 factors are scalars, whatever the other one's shape. Without parentheses the
  // first part of a scalar such as u'*v would meet what stands to the left of it.
  const std::string factor = scale ? "(" + a.text + ")" : a.text;
  return combined(factor + sign('*') + b.text, rows, columns, a, b,
                  [&](Dense& r, const Dense& left, const Dense& right) {
                    for (int i = 0; i < rows; ++i) {
                      for (int j = 0; j < columns; ++j) {
                        const std::size_t k = r.at(i, j);
                        if (scale) {
                          r.values[k] = left.values[0] * right.values[k];
                          r.sizes[k] = left.sizes[0] * right.sizes[k];
                          continue;
                        }
                        for (int m = 0; m < inner; ++m) {
                          r.values[k] += left.values[left.at(i, m)] * right.values[right.at(m, j)];
                          r.sizes[k] += left.sizes[left.at(i, m)] * right.sizes[right.at(m, j)];
                        }
                      }
                    }
                  });
}

Sample RandomExpressions::blocks(int rows, int columns, int depth, bool may_vary) {
  const bool side_by_side = columns > 1 && (rows == 1 || pick(2) == 0);
  const int cut = side_by_side ? 1 + pick(columns - 1) : 1 + pick(rows - 1);
  const Sample a = side_by_side ? expression(rows, cut, depth - 1, may_vary)
                                : expression(cut, columns, depth - 1, may_vary);
  const Sample b = side_by_side ? expression(rows, columns - cut, depth - 1, may_vary)
                                : expression(rows - cut, columns, depth - 1, may_vary);
  return combined("[" + a.text + (side_by_side ? "," : ";") + b.text + "]", rows, columns, a, b,
                  [&](Dense& r, const Dense& first, const Dense& second) {
                    for (int i = 0; i < rows; ++i) {
                      for (int j = 0; j < columns; ++j) {
                        const bool in_first = (side_by_side ? j : i) < cut;
                        const int row = in_first || side_by_side ? i : i - cut;
                        const int column = in_first || !side_by_side ? j : j - cut;
                        const Dense& from = in_first ? first : second;
                        r.values[r.at(i, j)] = from.values[from.at(row, column)];
                        r.sizes[r.at(i, j)] = from.sizes[from.at(row, column)];
                      }
                    }
                  });
}

Sample RandomExpressions::reduction(int depth, bool may_vary) {
  const int size = 1 + pick(3);
  const bool trace = pick(2) == 0;
  const Sample a = expression(size, size, depth - 1, may_vary);
  return combined((trace ? "trace(" : "sum(") + a.text + ")", 1, 1, a, a,
                  [&](Dense& r, const Dense& matrix, const Dense&) {
                    for (int i = 0; i < size; ++i) {
                      for (int j = 0; j < size; ++j) {
                        if (trace && i != j) continue;
                        r.values[0] += matrix.values[matrix.at(i, j)];
                        r.sizes[0] += matrix.sizes[matrix.at(i, j)];
                      }
                    }
                  });
}

// zeros, ones or eye.
Sample RandomExpressions::built_in(int rows, int columns) {
  const bool square = rows == columns;
  const int kind = pick(square ? 3 : 2);
  Sample result;
  Dense value(rows, columns);
  for (int i = 0; i < rows; ++i) {
    for (int j = 0; j < columns; ++j) {
      const bool one = kind == 1 || (kind == 2 && i == j);
      value.values[value.at(i, j)] = value.sizes[value.at(i, j)] = one ? 1 : 0;
    }
  }
  result.text = kind == 0 ? "zeros(" : kind == 1 ? "ones(" : "eye(";
  result.text += std::to_string(rows);
  if (!square || (kind < 2 && pick(2) == 0)) result.text += ", " + std::to_string(columns);
  result.text += ")";
  result.at_points.assign(kPoints, value);
  return result;
}

// By a constant expression that is not near 0.
Sample RandomExpressions::quotient(int rows, int columns, int depth, bool may_vary) {
  Sample a = expression(rows, columns, depth - 1, may_vary);
  const Sample divisor = expression(1, 1, depth - 1, false);
  const Dense& number = divisor.at_points[0];
  if (!(std::abs(number.values[0]) > 1e-3 * number.sizes[0])) return a;
  return combined(a.text + sign('/') + "(" + divisor.text + ")", rows, columns, a, divisor,
                  [](Dense& r, const Dense& left, const Dense& right) {
                    const double size = std::abs(right.values[0]);
                    for (std::size_t k = 0; k < r.values.size(); ++k) {
                      r.values[k] = left.values[k] / right.values[0];
                      r.sizes[k] = left.sizes[k] / size * (right.sizes[0] / size);
                    }
                  });
}

// With the scalar on the right.
Sample RandomExpressions::scaled(int rows, int columns, int depth, bool may_vary) {
  const bool left_varies = may_vary && pick(2) == 0;
  const Sample a = expression(rows, columns, depth - 1, left_varies);
  const Sample scalar = expression(1, 1, depth - 1, may_vary && !left_varies);
  return combined(a.text + sign('*') + "(" + scalar.text + ")", rows, columns, a, scalar,
                  [](Dense& r, const Dense& left, const Dense& right) {
                    for (std::size_t k = 0; k < r.values.size(); ++k) {
                      r.values[k] = left.values[k] * right.values[0];
                      r.sizes[k] = left.sizes[k] * right.sizes[0];
                    }
                  });
}

// A column as the diagonal of a square matrix, or a square matrix from its diagonal.
Sample RandomExpressions::diagonal(int rows, int columns, int depth, bool may_vary) {
  const bool spreads = rows == columns;
  const bool as_row = spreads && pick(2) == 0;
  const Sample a = spreads ? expression(as_row ? 1 : rows, as_row ? rows : 1, depth - 1, may_vary)
                           : expression(rows, rows, depth - 1, may_vary);
  return combined(
      "diag(" + a.text + ")", rows, columns, a, a, [&](Dense& r, const Dense& from, const Dense&) {
        for (int i = 0; i < rows; ++i) {
          const std::size_t to = spreads ? r.at(i, i) : r.at(i, 0);
          const std::size_t source = spreads ? static_cast<std::size_t>(i) : from.at(i, i);
          r.values[to] = from.values[source];
          r.sizes[to] = from.sizes[source];
        }
      });
}

Sample RandomExpressions::negated(const Sample& a) {
  return combined("(+ -" + a.text + ")", rows_of(a), columns_of(a), a, a,
                  [](Dense& r, const Dense& from, const Dense&) {
                    for (std::size_t k = 0; k < r.values.size(); ++k) {
                      r.values[k] = -from.values[k];
                      r.sizes[k] = from.sizes[k];
                    }
                  });
}

Sample RandomExpressions::with_zero(const Sample& a) {
  Sample result = pick(2) == 0 ? a : negated(a);
  result.text = result.text == a.text ? "(" + a.text + " + 0)" : "(0 - " + a.text + ")";
  return result;
}

Sample RandomExpressions::named(const Sample& sample) {
  Sample result = sample;
  result.text = "n" + std::to_string(names_++);
  statements_ += result.text + " = " + sample.text + ";\n";
  return result;
}

Sample RandomExpressions::transposed(const Sample& sample) {
  return combined("(" + sample.text + ")'", columns_of(sample), rows_of(sample), sample, sample,
                  [](Dense& r, const Dense& from, const Dense&) {
                    for (int i = 0; i < r.rows; ++i) {
                      for (int j = 0; j < r.columns; ++j) {
                        r.values[r.at(i, j)] = from.values[from.at(j, i)];
                        r.sizes[r.at(i, j)] = from.sizes[from.at(j, i)];
                      }
                    }
                  });
}

Sample RandomExpressions::element(int depth, bool may_vary) {
  const int rows = 1 + pick(3);
  const int columns = 1 + pick(3);
  const int row = pick(rows);
  const int column = pick(columns);
  const Sample whole = named(expression(rows, columns, depth - 1, may_vary));
  return combined(
      whole.text + "(" + std::to_string(row + 1) + "," + std::to_string(column + 1) + ")", 1, 1,
      whole, whole, [&](Dense& r, const Dense& from, const Dense&) {
        r.values[0] = from.values[from.at(row, column)];
        r.sizes[0] = from.sizes[from.at(row, column)];
      });
}

Sample RandomExpressions::expression(int rows, int columns, int depth, bool may_vary) {
  if (depth == 0) return leaf(rows, columns, may_vary);
  const bool scalar = rows == 1 && columns == 1;
  switch (pick(13)) {
    case 0:
      return leaf(rows, columns, may_vary);
    case 1:
    case 2:
      return sum(rows, columns, depth, may_vary);
    case 3:
      return scalar ? reduction(depth, may_vary) : blocks(rows, columns, depth, may_vary);
    case 4:
      return negated(leaf(rows, columns, may_vary));
    case 5:
      return quotient(rows, columns, depth, may_vary);
    case 6:
      return scaled(rows, columns, depth, may_vary);
    case 7:
      return named(expression(rows, columns, depth - 1, may_vary));
    case 8:
      return transposed(expression(columns, rows, depth - 1, may_vary));
    case 9:
      if (scalar) return element(depth, may_vary);
      if (rows == columns || columns == 1) return diagonal(rows, columns, depth, may_vary);
      return built_in(rows, columns);
    case 10:
      return with_zero(leaf(rows, columns, may_vary));
    default:
      return product(rows, columns, depth, may_vary);
  }
}

}  // namespace sdpsol
