#include "solver/language/symmetry.h"

#include <gtest/gtest.h>

#include <vector>

namespace sdpsol {
namespace {

using Terms = std::vector<AffineTerm>;
using Grade = Symmetry::Grade;

TEST(Symmetrize, LeavesASymmetricMatrixAlone) {
  const Terms terms{{0, 0, 1, 2, 2}, {0, 1, kConstant, 3, 3}, {1, 0, kConstant, 3, 3}};
  AffineMatrix matrix{2, 2, terms};
  EXPECT_EQ(symmetrize(matrix).grade, Grade::kExact);
  EXPECT_EQ(matrix.terms, terms);
}

TEST(Symmetrize, TakesTheMeanOfWhatDiffersInTheLastDigit) {
  AffineMatrix matrix{2, 2, {{0, 0, 4, 1, 1}, {0, 1, 4, 0.5, 0.5}, {1, 0, 4, 0.500008, 0.7}}};
  const Symmetry symmetry = symmetrize(matrix);
  EXPECT_EQ(symmetry.grade, Grade::kRounded);
  EXPECT_EQ(symmetry.unknown, 4);
  EXPECT_EQ(symmetry.row, 0);
  EXPECT_EQ(symmetry.column, 1);
  EXPECT_EQ(symmetry.upper, 0.5);
  EXPECT_EQ(symmetry.lower, 0.500008);
  ASSERT_EQ(matrix.terms.size(), 3U);
  EXPECT_DOUBLE_EQ(matrix.terms[1].value, 0.500004);
  EXPECT_EQ(matrix.terms[1].value, matrix.terms[2].value);
  EXPECT_DOUBLE_EQ(matrix.terms[1].magnitude, 0.6);
  EXPECT_EQ(matrix.terms[1].magnitude, matrix.terms[2].magnitude);
}

TEST(Symmetrize, FillsInAMirroredTermThatIsMissing) {
  AffineMatrix matrix{2, 2, {{0, 0, kConstant, 1, 1}, {1, 0, kConstant, 2e-6, 2e-6}}};
  EXPECT_EQ(symmetrize(matrix).grade, Grade::kRounded);
  EXPECT_EQ(matrix.terms, (Terms{{0, 0, kConstant, 1, 1},
                                 {0, 1, kConstant, 1e-6, 1e-6},
                                 {1, 0, kConstant, 1e-6, 1e-6}}));
}

TEST(Symmetrize, EqualisesMagnitudesWithoutAWord) {
  AffineMatrix matrix{2, 2, {{0, 1, 0, 1, 3}, {1, 0, 0, 1, 1}}};
  EXPECT_EQ(symmetrize(matrix).grade, Grade::kExact);
  EXPECT_EQ(matrix.terms, (Terms{{0, 1, 0, 1, 2}, {1, 0, 0, 1, 2}}));
}

TEST(Symmetrize, TakesRoundingForNoDifference) {
  // 0.1 + 0.2 - 0.3, added up in two orders: nothing else is left of the unknown.
  AffineMatrix matrix{2, 2, {{0, 1, 0, 5.6e-17, 0.6}, {1, 0, 0, -2.8e-17, 0.6}}};
  EXPECT_EQ(symmetrize(matrix).grade, Grade::kExact);
  EXPECT_EQ(matrix.terms[0].value, matrix.terms[1].value);
  EXPECT_DOUBLE_EQ(matrix.terms[0].value, 1.4e-17);
  // Without the cancellation it is a difference.
  AffineMatrix small{2, 2, {{0, 1, 0, 5.6e-17, 5.6e-17}, {1, 0, 0, -2.8e-17, 2.8e-17}}};
  EXPECT_EQ(symmetrize(small).grade, Grade::kBroken);
}

TEST(Symmetrize, NamesTheWorstPairAndKeepsTheMatrix) {
  const Terms terms{{0, 1, 0, 1, 1}, {0, 1, 1, 100, 100}, {1, 0, 0, 1.1, 1.1}, {1, 0, 1, 101, 101}};
  AffineMatrix matrix{2, 2, terms};
  const Symmetry symmetry = symmetrize(matrix);
  EXPECT_EQ(symmetry.grade, Grade::kBroken);
  EXPECT_EQ(symmetry.unknown, 0);
  EXPECT_EQ(symmetry.upper, 1);
  EXPECT_EQ(symmetry.lower, 1.1);
  EXPECT_EQ(matrix.terms, terms);
}

TEST(Symmetrize, DrawsTheLineAtTheFifthDigit) {
  const auto grade_at = [](double difference) {
    AffineMatrix matrix{2, 2, {{0, 1, 0, 1, 1}, {1, 0, 0, 1 - difference, 1}}};
    return symmetrize(matrix).grade;
  };
  EXPECT_EQ(grade_at(0.99e-5), Grade::kRounded);
  EXPECT_EQ(grade_at(1.01e-5), Grade::kBroken);
}

TEST(Symmetrize, MeasuresAgainstTheLargestEntryOfTheSameUnknown) {
  // 1e-5 of the constant part is far more than 1e-5 of unknown 0.
  AffineMatrix matrix{2, 2, {{0, 0, kConstant, 1000, 1000}, {0, 1, 0, 1, 1}, {1, 0, 0, 1.001, 1}}};
  EXPECT_EQ(symmetrize(matrix).grade, Grade::kBroken);
}

}  // namespace
}  // namespace sdpsol
