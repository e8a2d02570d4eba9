#include "solver/exchange/exported_programs.h"

#include <gtest/gtest.h>

#include <cmath>
#include <string>

#include "solver/decide/presolve.h"
#include "solver/decide/program.h"
#include "solver/exchange/sdpa_writer.h"
#include "solver/exchange/test_read_sdpa.h"
#include "solver/language/test_read_text.h"
#include "solver/problem/structure.h"

namespace sdpsol {
namespace {

Problem problem_of(const std::string& definition) {
  const ReadText read = read_text(definition);
  EXPECT_EQ(read.report, "");
  return build_problem(read.model.value_or(Model{}));
}

constexpr const char* kDefinition =
    "variable x, y, unused;\n"
    "[1, x; x, 4 - y] > 0;\n"
    "x - 2*y < 3;\n"
    "x + y == 0.5;\n"
    "minimize cost = 3*x + 7;\n";

TEST(ConeProgramOf, IsTheProblemItselfWithoutBoxAndStrictness) {
  EXPECT_EQ(sdpa_text(cone_program_of(problem_of(kDefinition)), ""),
            "3\n"
            "2\n"
            "2 -3\n"
            "3 0 0\n"
            "0 1 1 1 -1\n"
            "0 1 2 2 -4\n"
            "0 2 1 1 -3\n"
            "0 2 2 2 0.5\n"
            "0 2 3 3 -0.5\n"
            "1 1 1 2 1\n"
            "1 2 1 1 -1\n"
            "1 2 2 2 1\n"
            "1 2 3 3 -1\n"
            "2 1 2 2 -1\n"
            "2 2 1 1 2\n"
            "2 2 2 2 1\n"
            "2 2 3 3 -1\n");
}

TEST(ConeProgramOf, HasAnObjectiveOfZerosWhereThereIsNone) {
  EXPECT_EQ(sdpa_text(cone_program_of(problem_of("variable x, y; x > y;")), ""),
            "2\n1\n-1\n0 0\n1 1 1 1 1\n2 1 1 1 -1\n");
}

TEST(ConeProgramOf, LeavesOutWhatHasCancelled) {
  EXPECT_EQ(sdpa_text(cone_program_of(problem_of("variable x; [x, x-x; x-x, 1] > 0;")), ""),
            "1\n1\n2\n0\n0 1 2 2 -1\n1 1 1 1 1\n");
}

TEST(ConeProgramComment, SaysWhatTheFileDoesNot) {
  EXPECT_EQ(cone_program_comment(problem_of(kDefinition)),
            "minimise c'x where x1*F1 + ... + xm*Fm - F0 is positive semidefinite\n"
            "xk is unknown k of the definition; strict inequalities are written as non-strict\n"
            "the objective, as a maximisation, is -7 - c'x\n"
            "left out: |xk| <= 15000 for every k\n");
  EXPECT_EQ(cone_program_comment(problem_of("variable x; x > 0; BIGM = 10;")),
            "minimise c'x where x1*F1 + ... + xm*Fm - F0 is positive semidefinite\n"
            "xk is unknown k of the definition; strict inequalities are written as non-strict\n"
            "no objective: c is 0\n"
            "left out: |xk| <= 10 for every k\n");
}

TEST(ConeProgramComment, NamesNoBoxWhereThereIsNone) {
  const auto read = testing::read_sdpa_text("1\n1\n-1\n1\n1 1 1 1 1\n");
  const Problem problem = build_problem(read.model.value());
  EXPECT_EQ(cone_program_comment(problem).find("left out: |xk|"), std::string::npos);
  EXPECT_EQ(margin_program_comment(problem).find("left out: |v|"), std::string::npos);
}

TEST(MarginProgramOf, AsksForTheLargestMarginUpToOne) {
  // Every unknown has the size 1, so both rows are measured by 1 + 1 + 1 + 1.
  const Problem problem = problem_of("variable x, y, z; x + y + z < 1; x + y + z > -1;");
  EXPECT_EQ(sdpa_text(margin_program_of(problem), ""),
            "4\n"
            "1\n"
            "-3\n"
            "0 0 0 -1\n"
            "0 1 1 1 -0.25\n"
            "0 1 2 2 -0.25\n"
            "0 1 3 3 -1\n"
            "1 1 1 1 -0.25\n"
            "1 1 2 2 0.25\n"
            "2 1 1 1 -0.25\n"
            "2 1 2 2 0.25\n"
            "3 1 1 1 -0.25\n"
            "3 1 2 2 0.25\n"
            "4 1 1 1 -1\n"
            "4 1 2 2 -1\n"
            "4 1 3 3 -1\n");
}

TEST(MarginProgramOf, IsTheFirstQuestionOfTheFirstPhase) {
  const Problem problem = problem_of(kDefinition);
  const Selection selection = select_conditions(problem);
  const Scaling scaling = scale_by_constants(problem);
  const Program asked(problem, selection, scaling, Goal::kMargin);
  EXPECT_EQ(sdpa_text(margin_program_of(problem), ""), sdpa_text(asked.cones(), ""));
  // "unused" is in no condition; the margin is the last unknown.
  EXPECT_EQ(margin_program_of(problem).unknowns, 3);
}

TEST(MarginProgramOf, OfNothingIsTheCapOfTheMarginAlone) {
  EXPECT_EQ(sdpa_text(margin_program_of(problem_of("variable x; minimize c = x;")), ""),
            "1\n1\n-1\n-1\n0 1 1 1 -1\n1 1 1 1 -1\n");
}

}  // namespace
}  // namespace sdpsol
