// Two ways to the same value: random expressions are read as text, and computed
// independently with plain numbers at random points of the unknowns.
#include <gtest/gtest.h>

#include <cmath>
#include <string>
#include <vector>

#include "solver/language/test_random_expressions.h"
#include "solver/language/test_read_text.h"

namespace sdpsol {
namespace {

// `factor` times the sample is what the matrix is at every point.
void expect_equal(const AffineMatrix& matrix, const Sample& sample, double factor,
                  const RandomExpressions& random) {
  for (int p = 0; p < RandomExpressions::kPoints; ++p) {
    const Dense& expected = sample.at_points[static_cast<std::size_t>(p)];
    ASSERT_EQ(matrix.rows, expected.rows);
    ASSERT_EQ(matrix.columns, expected.columns);
    Dense actual(matrix.rows, matrix.columns);
    for (const AffineTerm& term : matrix.terms) {
      const double unknown = term.unknown == kConstant ? 1 : random.unknown_at(p, term.unknown);
      actual.values[actual.at(term.row, term.column)] += term.value * unknown;
      actual.sizes[actual.at(term.row, term.column)] += term.magnitude * std::abs(unknown);
    }
    for (std::size_t k = 0; k < expected.values.size(); ++k) {
      ASSERT_NEAR(actual.values[k], factor * expected.values[k], 1e-13 * expected.sizes[k])
          << "entry " << k;
      ASSERT_NEAR(actual.sizes[k], expected.sizes[k], 1e-12 * expected.sizes[k]) << "entry " << k;
    }
  }
}

class RandomTexts : public testing::TestWithParam<unsigned> {};

TEST_P(RandomTexts, HaveTheValueOfPlainNumbers) {
  int with_terms = 0;
  for (unsigned round = 0; round < 250; ++round) {
    RandomExpressions random(1000 * GetParam() + round);
    const int rows = 1 + random.pick(3);
    const int columns = 1 + random.pick(3);
    const Sample sample = random.expression(rows, columns, 1 + random.pick(4), true);
    const std::string text = random.statements() + "E = " + sample.text + ";\nE == zeros(" +
                             std::to_string(rows) + "," + std::to_string(columns) + ");";
    const ReadText read = read_text(text);
    ASSERT_TRUE(read.model) << read.report << text;
    const AffineMatrix value =
        written_out(read.model->conditions.at(0).difference, read.model->forms);
    with_terms += value.terms.empty() ? 0 : 1;
    expect_equal(value, sample, 1, random);
    ASSERT_FALSE(HasFatalFailure()) << text;
  }
  EXPECT_GT(with_terms, 150);
}

// One side of a random relation; scalars and 0 stand where they are allowed to.
struct Side {
  std::string text;
  Sample value;  ///< as large as the relation
  bool stretched = false;
};

Side side(RandomExpressions& random, int rows, int columns, bool symmetric, bool may_stretch) {
  const bool vector = rows == 1 || columns == 1;
  const int kind = random.pick(4);
  if (may_stretch && (kind == 0 || (kind == 1 && vector))) {
    const bool zero = kind == 0;
    Sample scalar =
        zero ? Sample{"0", false, std::vector<Dense>(RandomExpressions::kPoints, Dense(1, 1))}
             : random.expression(1, 1, 2, true);
    Sample spread = scalar;
    for (Dense& value : spread.at_points) {
      Dense full(rows, columns);
      full.values.assign(full.values.size(), value.values[0]);
      full.sizes.assign(full.sizes.size(), value.sizes[0]);
      value = full;
    }
    return {scalar.text, spread, true};
  }
  const Sample half = random.expression(rows, columns, 1 + random.pick(3), true);
  if (!symmetric) return {half.text, half, false};
  const Sample name = random.named(half);
  const Sample mirrored = RandomExpressions::transposed(name);
  Sample whole = name;
  for (std::size_t p = 0; p < whole.at_points.size(); ++p) {
    for (std::size_t k = 0; k < whole.at_points[p].values.size(); ++k) {
      whole.at_points[p].values[k] += mirrored.at_points[p].values[k];
      whole.at_points[p].sizes[k] += mirrored.at_points[p].sizes[k];
    }
  }
  return {name.text + " + " + name.text + "'", whole, false};
}

Sample difference(const Sample& a, const Sample& b) {
  Sample result = a;
  for (std::size_t p = 0; p < a.at_points.size(); ++p) {
    for (std::size_t k = 0; k < a.at_points[p].values.size(); ++k) {
      result.at_points[p].values[k] -= b.at_points[p].values[k];
      result.at_points[p].sizes[k] += b.at_points[p].sizes[k];
    }
  }
  return result;
}

struct Sign {
  const char* text;
  Sense sense;
  double factor;  ///< of left - right in the condition
};

TEST_P(RandomTexts, RelateWhatStandsNextToEachSign) {
  using Sense = Sense;
  const std::vector<Sign> signs = {{">", Sense::kStrict, 1},
                                   {">=", Sense::kNonStrict, 1},
                                   {"<", Sense::kStrict, -1},
                                   {"<=", Sense::kNonStrict, -1},
                                   {"==", Sense::kEqual, 1}};
  for (unsigned round = 0; round < 100; ++round) {
    RandomExpressions random(1000 * GetParam() + round);
    const int rows = 1 + random.pick(3);
    const int columns = 1 + random.pick(3);
    const bool vector = rows == 1 || columns == 1;
    const bool symmetric = !vector && rows == columns;
    std::vector<Side> sides = {side(random, rows, columns, symmetric, true)};
    std::vector<Sign> used;
    std::string chain = sides[0].text;
    for (int links = 1 + random.pick(3); links > 0; --links) {
      // Of two scalars next to each other the relation would be one of scalars.
      Side next = side(random, rows, columns, symmetric, !sides.back().stretched);
      used.push_back(!vector && !symmetric ? signs[4]
                                           : signs[static_cast<std::size_t>(random.pick(5))]);
      chain += std::string(" ") + used.back().text + "\n " + next.text;
      sides.push_back(std::move(next));
    }
    const std::string text = random.statements() + chain + ";";
    const ReadText read = read_text(text);
    ASSERT_TRUE(read.model) << read.report << text;
    ASSERT_EQ(read.model->conditions.size(), used.size()) << text;
    for (std::size_t i = 0; i < used.size(); ++i) {
      const Condition& condition = read.model->conditions[i];
      EXPECT_EQ(condition.sense, used[i].sense) << text;
      EXPECT_EQ(condition.is_matrix, symmetric && used[i].sense != Sense::kEqual) << text;
      expect_equal(written_out(condition.difference, read.model->forms),
                   difference(sides[i].value, sides[i + 1].value), used[i].factor, random);
      ASSERT_FALSE(HasFatalFailure()) << text;
    }
  }
}

INSTANTIATE_TEST_SUITE_P(Seeds, RandomTexts, testing::Range(1U, 21U));

}  // namespace
}  // namespace sdpsol
