// Two ways to the same value: random expressions are read as text, and computed
// independently with plain numbers at random points of the unknowns.
#include <gtest/gtest.h>

#include <charconv>
#include <cmath>
#include <random>
#include <string>
#include <utility>
#include <vector>

#include "solver/language/read_text.h"

namespace sdpsol {
namespace {

struct Dense {
  int rows = 1;
  int columns = 1;
  std::vector<double> values{0.0};
  /// Bounds |entry| summed over everything that was added up for it.
  std::vector<double> sizes{0.0};

  Dense(int m, int n)
      : rows(m),
        columns(n),
        values(static_cast<std::size_t>(m) * static_cast<std::size_t>(n)),
        sizes(static_cast<std::size_t>(m) * static_cast<std::size_t>(n)) {}
  std::size_t at(int i, int j) const {
    const int position = i * columns + j;
    return static_cast<std::size_t>(position);
  }
};

struct Sample {
  std::string text;
  bool varies = false;  ///< holds variables
  std::vector<Dense> at_points;
};

constexpr int kPoints = 3;

// Unknowns: x 0; S(2,2) symmetric 1 to 3; d(2,2) diagonal 4, 5; v(3,1) 6 to 8; W(2,3) 9 to 14.
constexpr int kUnknowns = 15;
const char* const kDeclarations =
    "variable x, S(2,2) symmetric, d(2,2) diagonal, v(3,1), W(2,3);\n";

class Generator {
 public:
  explicit Generator(unsigned seed) : random_(seed) {
    for (auto& point : points_) {
      for (double& value : point) value = std::uniform_real_distribution<double>(-3, 3)(random_);
    }
  }

  /// A random expression of the given shape.
  Sample expression(int rows, int columns, int depth, bool may_vary);
  int pick(int n) { return std::uniform_int_distribution<int>(0, n - 1)(random_); }
  const std::vector<double>& point(int p) const { return points_[static_cast<std::size_t>(p)]; }

 private:
  Sample leaf(int rows, int columns, bool may_vary);
  Sample number();
  Sample literal_matrix(int rows, int columns);
  Sample variable(const char* name, int rows, int columns, const std::vector<int>& unknowns);
  Sample sum(int rows, int columns, int depth, bool may_vary);
  Sample product(int rows, int columns, int depth, bool may_vary);
  Sample blocks(int rows, int columns, int depth, bool may_vary);
  Sample reduction(int depth, bool may_vary);
  template <class Combine>
  static Sample combined(std::string text, int rows, int columns, const Sample& a, const Sample& b,
                         Combine combine);
  std::string sign(char c) { return std::string(pick(2) == 0 ? "" : " ") + c; }

  std::mt19937 random_;
  std::vector<std::vector<double>> points_ =
      std::vector<std::vector<double>>(kPoints, std::vector<double>(kUnknowns));
};

template <class Combine>
Sample Generator::combined(std::string text, int rows, int columns, const Sample& a,
                           const Sample& b, Combine combine) {
  Sample result;
  result.text = std::move(text);
  result.varies = a.varies || b.varies;
  for (std::size_t p = 0; p < kPoints; ++p) {
    Dense value(rows, columns);
    combine(value, a.at_points[p], b.at_points[p]);
    result.at_points.push_back(std::move(value));
  }
  return result;
}

Sample Generator::number() {
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

Sample Generator::literal_matrix(int rows, int columns) {
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

Sample Generator::variable(const char* name, int rows, int columns,
                           const std::vector<int>& unknowns) {
  Sample result;
  result.text = name;
  result.varies = true;
  for (int p = 0; p < kPoints; ++p) {
    Dense value(rows, columns);
    for (std::size_t k = 0; k < unknowns.size(); ++k) {
      if (unknowns[k] < 0) continue;
      value.values[k] = point(p)[static_cast<std::size_t>(unknowns[k])];
      value.sizes[k] = std::abs(value.values[k]);
    }
    result.at_points.push_back(value);
  }
  return result;
}

Sample Generator::leaf(int rows, int columns, bool may_vary) {
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
  if (rows == 1 && columns == 1) return number();
  return literal_matrix(rows, columns);
}

Sample Generator::sum(int rows, int columns, int depth, bool may_vary) {
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

Sample Generator::product(int rows, int columns, int depth, bool may_vary) {
  const bool left_varies = may_vary && pick(2) == 0;
  const bool right_varies = may_vary && !left_varies;
  if (pick(3) == 0) {
    Sample a = expression(rows, columns, depth - 1, may_vary);
    const Sample divisor = number();
    if (divisor.at_points[0].values[0] == 0) return a;
    return combined(a.text + "/" + divisor.text, rows, columns, a, divisor,
                    [](Dense& r, const Dense& left, const Dense& right) {
                      for (std::size_t k = 0; k < r.values.size(); ++k) {
                        r.values[k] = left.values[k] / right.values[0];
                        r.sizes[k] = left.sizes[k] / right.sizes[0];
                      }
                    });
  }
  const int inner = pick(3) + 1;
  const bool scale = inner == 1 && pick(2) == 0;
  const Sample a = scale ? expression(1, 1, depth - 1, left_varies)
                         : expression(rows, inner, depth - 1, left_varies);
  const Sample b = scale ? expression(rows, columns, depth - 1, right_varies)
                         : expression(inner, columns, depth - 1, right_varies);
  // 1 x 1 factors are scalars, whatever the other one's shape.
  return combined(a.text + sign('*') + b.text, rows, columns, a, b,
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

Sample Generator::blocks(int rows, int columns, int depth, bool may_vary) {
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

Sample Generator::reduction(int depth, bool may_vary) {
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

Sample Generator::expression(int rows, int columns, int depth, bool may_vary) {
  if (depth == 0) return leaf(rows, columns, may_vary);
  switch (pick(6)) {
    case 0:
      return leaf(rows, columns, may_vary);
    case 1:
    case 2:
      return sum(rows, columns, depth, may_vary);
    case 3:
      if (rows > 1 || columns > 1) return blocks(rows, columns, depth, may_vary);
      return reduction(depth, may_vary);
    case 4: {
      const Sample a = leaf(rows, columns, may_vary);
      return combined("(+ -" + a.text + ")", rows, columns, a, a,
                      [](Dense& r, const Dense& from, const Dense&) {
                        for (std::size_t k = 0; k < r.values.size(); ++k) {
                          r.values[k] = -from.values[k];
                          r.sizes[k] = from.sizes[k];
                        }
                      });
    }
    default:
      return product(rows, columns, depth, may_vary);
  }
}

class RandomExpressions : public testing::TestWithParam<unsigned> {};

TEST_P(RandomExpressions, AgreeWithPlainNumbers) {
  Generator generator(GetParam());
  int with_terms = 0;
  for (int round = 0; round < 250; ++round) {
    const int rows = 1 + generator.pick(3);
    const int columns = 1 + generator.pick(3);
    const Sample sample = generator.expression(rows, columns, 1 + generator.pick(4), true);
    const ReadText read = read_text(kDeclarations + ("E = " + sample.text + ";\nE == zeros(") +
                                    std::to_string(rows) + "," + std::to_string(columns) + ");");
    ASSERT_TRUE(read.model) << read.report << sample.text;
    const AffineMatrix value =
        written_out(read.model->conditions.at(0).difference, read.model->forms);
    ASSERT_EQ(value.rows, rows) << sample.text;
    ASSERT_EQ(value.columns, columns) << sample.text;
    with_terms += value.terms.empty() ? 0 : 1;

    for (int p = 0; p < kPoints; ++p) {
      const Dense& expected = sample.at_points[static_cast<std::size_t>(p)];
      Dense actual(rows, columns);
      for (const AffineTerm& term : value.terms) {
        const double unknown = term.unknown == kConstant
                                   ? 1
                                   : generator.point(p)[static_cast<std::size_t>(term.unknown)];
        actual.values[actual.at(term.row, term.column)] += term.value * unknown;
        actual.sizes[actual.at(term.row, term.column)] += term.magnitude * std::abs(unknown);
      }
      for (std::size_t k = 0; k < expected.values.size(); ++k) {
        ASSERT_NEAR(actual.values[k], expected.values[k], 1e-13 * expected.sizes[k])
            << sample.text << "\nentry " << k;
        ASSERT_NEAR(actual.sizes[k], expected.sizes[k], 1e-12 * expected.sizes[k])
            << sample.text << "\nentry " << k;
      }
    }
  }
  EXPECT_GT(with_terms, 200);
}

INSTANTIATE_TEST_SUITE_P(Seeds, RandomExpressions, testing::Range(1U, 21U));

}  // namespace
}  // namespace sdpsol
