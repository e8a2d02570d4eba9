#include "solver/language/affine_matrix.h"

#include <gtest/gtest.h>

#include <map>
#include <random>
#include <tuple>
#include <vector>

namespace sdpsol {
namespace {

using Terms = std::vector<AffineTerm>;

TEST(CollectTerms, SortsByRowColumnAndUnknown) {
  AffineMatrix matrix{2, 2, {{1, 0, 3, 5, 5}, {0, 1, 2, 4, 4}, {0, 1, kConstant, 3, 3}}};
  collect_terms(matrix);
  EXPECT_EQ(matrix.terms, (Terms{{0, 1, kConstant, 3, 3}, {0, 1, 2, 4, 4}, {1, 0, 3, 5, 5}}));
}

TEST(CollectTerms, KeepsWhatCancelsForItsMagnitude) {
  AffineMatrix matrix{1, 1, {{0, 0, 0, 2, 2}, {0, 0, 0, -2, 2}}};
  collect_terms(matrix);
  EXPECT_EQ(matrix.terms, (Terms{{0, 0, 0, 0, 4}}));
}

TEST(CollectTerms, TakesAMatrixWithoutTerms) {
  AffineMatrix matrix{3, 3, {}};
  collect_terms(matrix);
  EXPECT_TRUE(matrix.terms.empty());
}

TEST(CollectTerms, AgreesWithAMapOnRandomTerms) {
  std::mt19937 random(7);
  for (int round = 0; round < 200; ++round) {
    std::uniform_int_distribution<std::int32_t> index(0, 4);
    std::uniform_int_distribution<int> value(-3, 3);
    AffineMatrix matrix{5, 5, {}};
    std::map<std::tuple<int, int, int>, std::pair<double, double>> expected;
    const int count = std::uniform_int_distribution<int>(0, 60)(random);
    for (int i = 0; i < count; ++i) {
      const AffineTerm term{index(random), index(random), index(random) - 1,
                            static_cast<double>(value(random)), 3};
      matrix.terms.push_back(term);
      auto& sum = expected[{term.row, term.column, term.unknown}];
      sum.first += term.value;
      sum.second += term.magnitude;
    }
    collect_terms(matrix);
    Terms terms;
    for (const auto& [key, sum] : expected) {
      const auto& [row, column, unknown] = key;
      terms.push_back({row, column, unknown, sum.first, sum.second});
    }
    ASSERT_EQ(matrix.terms, terms);
  }
}

TEST(CollectTerms, WhatCancelsLeavesWhatStandsBeside) {
  AffineMatrix matrix{1, 1, {{0, 0, 0, 1e20, 1e20}, {0, 0, 0, 1, 1}, {0, 0, 0, -1e20, 1e20}}};
  collect_terms(matrix);
  ASSERT_EQ(matrix.terms.size(), 1U);
  EXPECT_EQ(matrix.terms[0], (AffineTerm{0, 0, 0, 1, 2e20}));
}

}  // namespace
}  // namespace sdpsol
