#include "solver/check/null_vectors.h"

#include <gtest/gtest.h>

#include <Eigen/Core>
#include <random>

#include "solver/dense/subspaces.h"
#include "solver/problem/test_problem.h"

namespace sdpsol {
namespace {

using testing::Form;
using testing::kX;
using testing::ProblemBuilder;

Block matrix(std::int32_t size, const std::vector<Form>& upper) {
  return ProblemBuilder(2).matrix(Sense::kNonStrict, size, upper).build().blocks[0];
}

TEST(NullVectors, OneDirectionIsStruckOut) {
  // [x,x;x,x]
  const NullSplit split = split_null_vectors(matrix(2, {kX, kX, kX}));
  ASSERT_TRUE(split.found);
  EXPECT_EQ(split.rest.size, 1);
  ASSERT_EQ(split.rest.terms.size(), 1U);
  EXPECT_EQ(split.rest.terms[0], (AffineTerm{0, 0, 0, 1, 1}));
}

TEST(NullVectors, UnequalWeightsAreFound) {
  // [4x,2x;2x,x]: (1,-2)
  EXPECT_TRUE(split_null_vectors(matrix(2, {{0, {{0, 4}}}, {0, {{0, 2}}}, kX})).found);
}

TEST(NullVectors, AConstantThatDoesNotShareTheDirectionKeepsItAlive) {
  EXPECT_FALSE(split_null_vectors(matrix(2, {kX, kX, {1, {{0, 1}}}})).found);
}

TEST(NullVectors, AlmostIsNotEnough) {
  for (const double by : {1e-6, 1e-12, 0x1p-52}) {
    EXPECT_FALSE(split_null_vectors(matrix(2, {kX, kX, {0, {{0, 1 + by}}}})).found) << by;
    EXPECT_FALSE(split_null_vectors(matrix(2, {kX, kX, {0, {{0, 1}, {1, by}}}})).found) << by;
  }
}

TEST(NullVectors, AMatrixOfZerosLeavesNothing) {
  const NullSplit split = split_null_vectors(matrix(2, {{}, {}, {}}));
  ASSERT_TRUE(split.found);
  EXPECT_EQ(split.rest.size, 0);
  EXPECT_TRUE(split.rest.terms.empty());
}

TEST(NullVectors, ARowIsLeftAlone) {
  EXPECT_FALSE(split_null_vectors(matrix(1, {{}})).found);
}

TEST(NullVectors, WhatIsLeftHasTheRankOfTheWhole) {
  // x * (V*D*V') + y * (V*E*V') with V a column of small integers per rank, the
  // first `rank` rows of it the identity.
  std::mt19937 random(5);
  const auto uniform = [&](int from, int to) {
    return std::uniform_int_distribution<int>(from, to)(random);
  };
  for (int round = 0; round < 500; ++round) {
    const int rank = uniform(1, 3);
    const int size = rank + uniform(1, 3);
    Eigen::MatrixXd v = Eigen::MatrixXd::NullaryExpr(size, rank, [&] { return uniform(-3, 3); });
    v.topRows(rank).setIdentity();
    Eigen::MatrixXd d = Eigen::MatrixXd::Zero(rank, rank);
    Eigen::MatrixXd e = d;
    for (int i = 0; i < rank; ++i) {
      d(i, i) = uniform(1, 5);
      e(i, i) = uniform(1, 5);
    }
    const Eigen::MatrixXd f = v * d * v.transpose();
    const Eigen::MatrixXd g = v * e * v.transpose();
    std::vector<Form> upper;
    for (int i = 0; i < size; ++i) {
      for (int j = i; j < size; ++j) upper.push_back({0, {{0, f(i, j)}, {1, g(i, j)}}});
    }
    const NullSplit split = split_null_vectors(matrix(size, upper));
    // Fractions that doubles cannot hold are not found; halves, quarters are.
    if (!split.found) continue;
    ASSERT_GE(split.rest.size, rank);
    Eigen::MatrixXd rest = Eigen::MatrixXd::Zero(split.rest.size, split.rest.size);
    for (const AffineTerm& t : split.rest.terms) {
      if (t.unknown == 0) rest(t.row, t.column) = rest(t.column, t.row) = t.value;
    }
    ASSERT_EQ(order_columns(rest, 1e-12).rank, rank);
  }
}

}  // namespace
}  // namespace sdpsol
