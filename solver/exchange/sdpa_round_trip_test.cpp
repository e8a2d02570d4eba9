// What is written and read again is what it was, to the last bit.
#include <gtest/gtest.h>

#include <string>

#include "solver/exchange/exported_programs.h"
#include "solver/exchange/sdpa_writer.h"
#include "solver/exchange/test_cone_programs.h"
#include "solver/exchange/test_read_sdpa.h"
#include "solver/problem/structure.h"

namespace sdpsol {
namespace {

using testing::problem_in_file;
using testing::RandomConePrograms;
using testing::read_sdpa_text;

void expect_equal(const Problem& actual, const Problem& expected) {
  EXPECT_EQ(actual.unknowns, expected.unknowns);
  EXPECT_EQ(actual.boxed, expected.boxed);
  ASSERT_EQ(actual.objective.has_value(), expected.objective.has_value());
  if (actual.objective) {
    EXPECT_EQ(actual.objective->constant, expected.objective->constant);
    EXPECT_EQ(actual.objective->cost, expected.objective->cost);
  }
  ASSERT_EQ(actual.blocks.size(), expected.blocks.size());
  for (std::size_t b = 0; b < actual.blocks.size(); ++b) {
    EXPECT_EQ(actual.blocks[b].size, expected.blocks[b].size);
    EXPECT_EQ(actual.blocks[b].sense, expected.blocks[b].sense);
    EXPECT_EQ(actual.blocks[b].condition, expected.blocks[b].condition);
    EXPECT_EQ(actual.blocks[b].terms, expected.blocks[b].terms);
  }
}

TEST(SdpaRoundTrip, KeepsEveryBitOfRandomConePrograms) {
  RandomConePrograms programs(1);
  for (int round = 0; round < 1000; ++round) {
    const ConeProgram program = programs.next();
    const std::string text = sdpa_text(program, "round " + std::to_string(round));
    const auto read = read_sdpa_text(text);
    ASSERT_EQ(read.report, "") << text;
    ASSERT_TRUE(read.model.has_value()) << text;
    expect_equal(build_problem(*read.model), problem_in_file(program));
    if (HasFailure()) FAIL() << text;
  }
}

// Whatever a text has become, it is refused with a reason, or means something that
// can be written and read again.
TEST(SdpaRoundTrip, DamagedTextsAreRefusedOrMeanWhatTheySay) {
  RandomConePrograms programs(2);
  constexpr std::string_view kBytes = "0123456789 +-.eDn,(}=\"*\t\r\n\xC3";
  int read_again = 0;
  int refused = 0;
  for (int round = 0; round < 3000; ++round) {
    std::string text = sdpa_text(programs.next(), "a comment");
    for (int changes = programs.uniform(1, 3); changes > 0; --changes) {
      const auto at =
          static_cast<std::size_t>(programs.uniform(0, static_cast<std::int32_t>(text.size()) - 1));
      const char byte = kBytes[static_cast<std::size_t>(
          programs.uniform(0, static_cast<std::int32_t>(kBytes.size()) - 1))];
      switch (programs.uniform(0, 2)) {
        case 0:
          text[at] = byte;
          break;
        case 1:
          text.insert(at, 1, byte);
          break;
        default:
          text.erase(at, 1);
      }
    }
    const auto read = read_sdpa_text(text);
    ASSERT_EQ(read.model.has_value(), read.report.find(": error: ") == std::string::npos) << text;
    if (!read.model) {
      ++refused;
      continue;
    }
    ++read_again;
    const Problem problem = build_problem(*read.model);
    const auto again = read_sdpa_text(sdpa_text(cone_program_of(problem), ""));
    ASSERT_EQ(again.report, "") << text;
    const Problem same = build_problem(*again.model);
    expect_equal(same, problem_in_file(cone_program_of(problem)));
    if (HasFailure()) FAIL() << text;
  }
  EXPECT_GT(read_again, 300);
  EXPECT_GT(refused, 300);
}

}  // namespace
}  // namespace sdpsol
