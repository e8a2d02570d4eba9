// What files become is told by the files of tests/exchange; here is what a dump
// does not show.
#include "solver/exchange/sdpa_reader.h"

#include <gtest/gtest.h>

#include <string>

#include "solver/exchange/test_read_sdpa.h"
#include "solver/language/limits.h"
#include "solver/problem/structure.h"

namespace sdpsol {
namespace {

using testing::read_sdpa_text;

Model model_of(const std::string& text) {
  const auto read = read_sdpa_text(text);
  EXPECT_EQ(read.report, "");
  EXPECT_TRUE(read.model.has_value());
  return read.model.value_or(Model{});
}

std::string repeated(const std::string& piece, int times) {
  std::string text;
  for (int i = 0; i < times; ++i) text += piece;
  return text;
}

TEST(ReadSdpa, HasNoBoxAndTheParametersThatEveryFileHas) {
  const Model model = model_of("1\n1\n-1\n1\n1 1 1 1 1\n");
  EXPECT_FALSE(model.boxed);
  EXPECT_EQ(model.parameters, Parameters{});
  EXPECT_FALSE(build_problem(model).boxed);
}

TEST(ReadSdpa, MinimisesAlsoAnObjectiveOfZeros) {
  const Model model = model_of("1\n1\n-1\n0\n1 1 1 1 1\n");
  ASSERT_TRUE(model.objective.has_value());
  EXPECT_FALSE(model.objective->maximize);
  EXPECT_TRUE(model.objective->value.terms.empty());
  EXPECT_EQ(model.objective->value.rows, 1);
  EXPECT_EQ(model.objective->value.columns, 1);
}

TEST(ReadSdpa, GivesEveryCoefficientTheSizeOfItsValue) {
  const Model model = model_of("1\n2\n2 -1\n-4\n0 1 1 2 3\n1 1 2 2 -5\n0 2 1 1 -7\n");
  const std::vector<AffineTerm> matrix = {
      {0, 1, kConstant, -3, 3}, {1, 0, kConstant, -3, 3}, {1, 1, 0, -5, 5}};
  EXPECT_EQ(model.conditions.at(0).difference.terms, matrix);
  EXPECT_EQ(model.conditions.at(1).difference.terms,
            (std::vector<AffineTerm>{{0, 0, kConstant, 7, 7}}));
  EXPECT_EQ(model.objective->value.terms, (std::vector<AffineTerm>{{0, 0, 0, -4, 4}}));
}

TEST(ReadSdpa, NamesABlockByItsFirstEntryInTheText) {
  const std::string text = "1\n2\n2 -1\n1\n1 1 2 2 5\n0 1 1 1 7\n";
  const Model model = model_of(text);
  const auto words = [&](Span span) { return text.substr(span.begin, span.end - span.begin); };
  EXPECT_EQ(words(model.conditions.at(0).where), "1 1 2 2 5");
  EXPECT_EQ(words(model.conditions.at(1).where), "-1");
}

TEST(ReadSdpa, LeavesTermsAsCollectingThemWould) {
  const Model model =
      model_of("2\n2\n3 -2\n0 1\n2 1 3 1 1\n1 1 2 3 2\n1 2 2 2 3\n0 1 1 1 4\n2 1 1 1 5\n");
  for (const Condition& condition : model.conditions) {
    AffineMatrix collected = condition.difference;
    collect_terms(collected);
    EXPECT_EQ(collected.terms, condition.difference.terms);
  }
}

TEST(ReadSdpa, BlocksWithoutEntriesAreRowsWithoutTerms) {
  const Problem problem = build_problem(model_of("1\n3\n2 -2 1\n1\n1 3 1 1 1\n"));
  ASSERT_EQ(problem.blocks.size(), 5U);
  for (std::size_t b = 0; b < problem.blocks.size(); ++b) {
    EXPECT_EQ(problem.blocks[b].size, 1);
    EXPECT_EQ(problem.blocks[b].sense, Sense::kNonStrict);
    EXPECT_EQ(problem.blocks[b].terms.size(), b == 4 ? 1U : 0U);
  }
}

TEST(ReadSdpa, TakesTheLargestSizes) {
  const auto text = [](int rest) {
    return "1\n3\n10000 -989999 -" + std::to_string(rest) + "\n1\n1 1 10000 10000 1\n";
  };
  EXPECT_EQ(build_problem(model_of(text(1))).blocks.size(), 1'000'000U);
  EXPECT_EQ(read_sdpa_text(text(2)).report,
            "t.dat-s:3:15: error: with this block all blocks together have 1000001 rows; at most "
            "1000000 are allowed\n"
            "    3 | 10000 -989999 -2\n"
            "      |               ^~\n");
}

TEST(ReadSdpa, ClaimedSizesNeedNoMemory) {
  EXPECT_EQ(read_sdpa_text("1000000 \n1\n-1\n1\n").report,
            "t.dat-s:4:2: error: expected number 2 of the objective, which has 1000000 numbers, "
            "found the end of the text\n"
            "    4 | 1\n"
            "      |  ^\n");
}

TEST(ReadSdpa, NeverReportsMoreErrorsThanAreKept) {
  for (const std::string& text :
       {"1\n30\n" + repeated("0 ", 40) + "\n1\n", "30\n1\n1\n" + repeated("x ", 30) + "1\n",
        "1\n1\n1\n1\n" + repeated("0 1 1 1\n", 30), "1\n1\n1\n1\n" + repeated("0 1 1 1 1\n", 30)}) {
    const Source source("t.dat-s", text);
    Diagnostics diagnostics;
    EXPECT_FALSE(read_sdpa(source, diagnostics).has_value());
    EXPECT_EQ(diagnostics.error_count(), Diagnostics::kMaxErrors);
  }
}

}  // namespace
}  // namespace sdpsol
