#include "solver/exchange/sdpa_writer.h"

#include <gtest/gtest.h>

#include <string>

#include "solver/exchange/test_read_sdpa.h"

namespace sdpsol {
namespace {

constexpr std::int32_t kConstantTerm = ConeProgram::kConstantTerm;

/// maximise y_1 where [1, y_1; y_1, 2 - y_2] >= 0
ConeProgram small_program() {
  ConeProgram program;
  program.unknowns = 2;
  program.objective = {1, 0};
  program.cones.push_back(
      {2, {{0, 0, kConstantTerm, 1}, {1, 1, kConstantTerm, 2}, {0, 1, 0, 1}, {1, 1, 1, -1}}});
  return program;
}

TEST(SdpaText, WritesAMaximisationAsAMinimisationWithTheOppositeConstant) {
  EXPECT_EQ(sdpa_text(small_program(), "one\ntwo"),
            "\"one\n"
            "\"two\n"
            "2\n"
            "1\n"
            "2\n"
            "-1 0\n"
            "0 1 1 1 -1\n"
            "0 1 2 2 -2\n"
            "1 1 1 2 1\n"
            "2 1 2 2 -1\n");
}

TEST(SdpaText, GathersRowsInOneDiagonalBlockBehindTheCones) {
  ConeProgram program = small_program();
  program.cones.insert(program.cones.begin(), {1, {{0, 0, kConstantTerm, 5}, {0, 0, 0, 3}}});
  program.cones.push_back({3, {{0, 2, 0, 7}}});
  program.cones.push_back({1, {{0, 0, 1, 4}}});
  program.equations.push_back({1, {{0, 0, 1, 1}, {0, 0, kConstantTerm, -6}}});
  EXPECT_EQ(sdpa_text(program, ""),
            "2\n"
            "3\n"
            "2 3 -4\n"
            "-1 0\n"
            "0 1 1 1 -1\n"
            "0 1 2 2 -2\n"
            "0 3 1 1 -5\n"
            "0 3 3 3 6\n"
            "0 3 4 4 -6\n"
            "1 1 1 2 1\n"
            "1 2 1 3 7\n"
            "1 3 1 1 3\n"
            "2 1 2 2 -1\n"
            "2 3 2 2 4\n"
            "2 3 3 3 1\n"
            "2 3 4 4 -1\n");
}

TEST(SdpaText, WritesTheShortestNumbersThatReadBackEqual) {
  ConeProgram program;
  program.unknowns = 5;
  program.objective = {-0.1, -1e300, -5e-324, -0.0, -(1.0 / 3)};
  EXPECT_EQ(sdpa_text(program, ""), "5\n1\n-1\n0.1 1e+300 5e-324 0 0.3333333333333333\n");
}

TEST(SdpaText, AddsUpCoefficientsThatShareTheirPlaceAndDropsZeros) {
  ConeProgram program;
  program.unknowns = 1;
  program.objective = {0};
  program.cones.push_back({1, {{0, 0, 0, 1}, {0, 0, kConstantTerm, 0}, {0, 0, 0, 2}}});
  program.cones.push_back({1, {{0, 0, 0, 1}, {0, 0, 0, -1}, {0, 0, kConstantTerm, 4}}});
  EXPECT_EQ(sdpa_text(program, ""), "1\n1\n-2\n0\n0 1 2 2 -4\n1 1 1 1 3\n");
}

TEST(SdpaText, WritesARowWithoutEntriesWhereThereIsNoCone) {
  ConeProgram program;
  EXPECT_EQ(sdpa_text(program, ""), "0\n1\n-1\n\n");
  program.unknowns = 1;
  program.objective = {2};
  EXPECT_EQ(sdpa_text(program, ""), "1\n1\n-1\n-2\n");
}

TEST(SdpaText, NoCommentBreaksTheFormat) {
  const std::string plain = sdpa_text(small_program(), "");
  const struct {
    std::string comment;
    std::string written;
  } cases[] = {
      {"", ""},
      {"\n", "\"\n"},
      {"one\n", "\"one\n"},
      {"one\n\ntwo", "\"one\n\"\n\"two\n"},
      {"one\r\n2\r\n", "\"one\n\"2\n"},
      {"one\r2 3", "\"one\n\"2 3\n"},
      {"\n\r\n", "\"\n\"\n"},
      {std::string("a\0b\fc\vd\x1A\x7F", 9), "\"a b c d  \n"},
      {"\"quoted\" * 7", "\"\"quoted\" * 7\n"},
      {"3 = mDIM", "\"3 = mDIM\n"},
      {"\xC3\xA4", "\"\xC3\xA4\n"},
  };
  for (const auto& [comment, written] : cases) {
    EXPECT_EQ(sdpa_text(small_program(), comment), written + plain);
    EXPECT_EQ(testing::read_sdpa_text(written + plain).report, "");
  }
}

}  // namespace
}  // namespace sdpsol
