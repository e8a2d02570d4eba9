// Random expressions, for tests: as text, and their values computed with plain
// numbers at random points of the unknowns, in another way than the reader does.
#pragma once

#include <cstddef>
#include <random>
#include <string>
#include <vector>

namespace sdpsol {

/// A plain matrix, rows * columns numbers row after row.
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

class RandomExpressions {
 public:
  static constexpr int kPoints = 3;

  explicit RandomExpressions(unsigned seed);

  /// A random expression of the given shape. As a factor its text needs no
  /// parentheses, and as an operand of a sum none either.
  Sample expression(int rows, int columns, int depth, bool may_vary);
  /// The value `sample` under a name that statements() assigns.
  Sample named(const Sample& sample);
  /// sample' under the same rules.
  static Sample transposed(const Sample& sample);

  /// The statements that must stand in front of the texts handed out so far: the
  /// declarations and the assignments.
  const std::string& statements() const { return statements_; }
  int pick(int n) { return std::uniform_int_distribution<int>(0, n - 1)(random_); }
  /// The value of unknown `unknown` at point p, as the model numbers unknowns.
  double unknown_at(int p, int unknown) const {
    return points_[static_cast<std::size_t>(p)][static_cast<std::size_t>(unknown)];
  }

 private:
  Sample leaf(int rows, int columns, bool may_vary);
  Sample number();
  Sample literal_matrix(int rows, int columns);
  Sample built_in(int rows, int columns);
  Sample variable(const char* name, int rows, int columns, const std::vector<int>& unknowns);
  Sample sum(int rows, int columns, int depth, bool may_vary);
  Sample product(int rows, int columns, int depth, bool may_vary);
  Sample quotient(int rows, int columns, int depth, bool may_vary);
  Sample scaled(int rows, int columns, int depth, bool may_vary);
  Sample blocks(int rows, int columns, int depth, bool may_vary);
  Sample reduction(int depth, bool may_vary);
  Sample diagonal(int rows, int columns, int depth, bool may_vary);
  Sample negated(const Sample& a);
  Sample with_zero(const Sample& a);
  Sample element(int depth, bool may_vary);
  std::string sign(char c) { return std::string(pick(2) == 0 ? "" : " ") + c; }

  std::mt19937 random_;
  std::vector<std::vector<double>> points_;
  std::string statements_;
  int names_ = 0;
};

}  // namespace sdpsol
