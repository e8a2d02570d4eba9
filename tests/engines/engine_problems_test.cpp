// The stream itself: that numbers mean what they meant, and that what is drawn is what
// its family promises.
#include "tests/engines/engine_problems.h"

#include <gtest/gtest.h>

#include <cmath>
#include <map>
#include <string>

#include "solver/decide/decide.h"
#include "solver/engine/csdp_engine.h"
#include "solver/exchange/exported_programs.h"
#include "solver/exchange/sdpa_writer.h"
#include "tests/engines/definition_text.h"
#include "tests/engines/grasp_problems.h"
#include "tests/engines/matrix_problems.h"

namespace sdpsol::testing {
namespace {

TEST(EngineProblems, AreTheSameForTheSameSeedAndNumber) {
  for (const std::uint64_t index : {0U, 42U, 77U, 1'000'095U}) {
    const std::string text = definition_text(engine_problem(3, index).problem);
    EXPECT_EQ(text, definition_text(engine_problem(3, index).problem));
    EXPECT_NE(text, definition_text(engine_problem(4, index).problem));
    EXPECT_NE(text, definition_text(engine_problem(3, index + kTurn).problem));
  }
}

TEST(EngineProblems, TellNumbersBeyondThirtyTwoBitsApart) {
  constexpr std::uint64_t kFar = kTurn << 32;
  EXPECT_NE(definition_text(engine_problem(1, 0).problem),
            definition_text(engine_problem(1, kFar).problem));
}

TEST(EngineProblems, HoldEveryFamilyInEveryTurn) {
  std::map<std::size_t, int> seen;
  for (std::uint64_t index = 0; index < kTurn; ++index) {
    ++seen[family_of(index)];
    EXPECT_EQ(family_of(index), family_of(index + 7 * kTurn));
  }
  EXPECT_EQ(seen.size(), engine_families().size());
}

TEST(EngineProblems, HoldAllTruthsObjectivesEquationsAndBlocksOfSix) {
  std::map<Truth, int> truths;
  int objectives = 0;
  int equations = 0;
  int largest = 0;
  for (std::uint64_t index = 0; index < 2 * kTurn; ++index) {
    const EngineProblem drawn = engine_problem(1, index);
    ++truths[drawn.truth];
    objectives += drawn.problem.objective ? 1 : 0;
    for (const Block& block : drawn.problem.blocks) {
      equations += block.sense == Sense::kEqual ? 1 : 0;
      largest = std::max(largest, block.size);
    }
    if (drawn.reached && drawn.limit) {
      EXPECT_LE(*drawn.reached, *drawn.limit) << "number " << index;
    }
  }
  EXPECT_GE(truths[Truth::kFeasible], 60);
  EXPECT_GE(truths[Truth::kInfeasible], 60);
  EXPECT_GE(truths[Truth::kUnknown], 5);
  EXPECT_GE(objectives, 60);
  EXPECT_GE(equations, 5);
  EXPECT_EQ(largest, 6);
}

TEST(EngineProblems, InOtherUnitsAreExactlyTheSame) {
  std::mt19937 random(5);
  const auto engine = make_csdp_engine();
  for (int round = 0; round < 20; ++round) {
    EngineProblem drawn = bounded_objective(random);
    const EngineProblem before = drawn;
    change_units(drawn, random);
    for (std::size_t b = 0; b < drawn.problem.blocks.size(); ++b) {
      const auto& terms = drawn.problem.blocks[b].terms;
      for (std::size_t t = 0; t < terms.size(); ++t) {
        const double factor = terms[t].value / before.problem.blocks[b].terms[t].value;
        int exponent = 0;
        EXPECT_EQ(std::frexp(factor, &exponent), 0.5) << "a power of two";
      }
    }
    const Outcome outcome = decide(drawn.problem, *engine, {});
    ASSERT_EQ(outcome.verdict, Verdict::kFeasible) << "round " << round;
    EXPECT_GE(*outcome.bound, *drawn.reached - 1e-9 * std::fabs(*drawn.reached));
    EXPECT_LE(*outcome.objective, *drawn.limit + 1e-9 * std::fabs(*drawn.limit));
  }
}

TEST(DefinitionText, ReadsBackAsTheSameConditions) {
  int compared = 0;
  for (std::uint64_t index = 0; index < kTurn; index += 3) {
    const Problem problem = engine_problem(1, index).problem;
    const std::string family = engine_families()[family_of(index)];
    // Integers fall apart into smaller blocks by chance, and rows may hold nothing.
    if (family == "border of integers" || family == "rows alone") continue;
    const Problem read = problem_of(definition_text(problem));
    EXPECT_EQ(sdpa_text(cone_program_of(read), ""), sdpa_text(cone_program_of(problem), ""))
        << family << ", number " << index;
    EXPECT_EQ(read.big_m, problem.big_m);
    EXPECT_EQ(read.objective.has_value(), problem.objective.has_value());
    ++compared;
  }
  EXPECT_GE(compared, 25);
}

TEST(DefinitionText, WritesEveryRelation) {
  std::mt19937 random(6);
  const std::string text = definition_text(planted_point_and_equations(random).problem);
  EXPECT_NE(text.find(" > 0;\n"), std::string::npos);
  EXPECT_NE(text.find(" == 0;\n"), std::string::npos);
  EXPECT_EQ(text.find("BIGM=15000;\n"), 0U);
}

}  // namespace
}  // namespace sdpsol::testing
