#include "examples/questions.h"

#include <gtest/gtest.h>

#include <fstream>

namespace examples {
namespace {

// A stand-in for the command, in a folder whose name the shell would take apart.
class FakeCommand {
 public:
  // `script` sees the result file's name as $3.
  explicit FakeCommand(const std::string& script) {
    std::filesystem::create_directories(folder_);
    std::ofstream(path_) << "#!/bin/sh\n" << script << "\n";
    std::filesystem::permissions(path_, std::filesystem::perms::owner_all);
  }

  [[nodiscard]] Answer ask(const Grasp& grasp, Question question) const {
    sdpsol_wrapper solver = work_.solver(path_.string());
    return examples::ask(solver, grasp, question);
  }

 private:
  WorkingFolder work_;
  std::filesystem::path folder_ =
      std::filesystem::path(work_.solver("").definitionFile).parent_path() / "it's here";
  std::filesystem::path path_ = folder_ / "fake command";
};

const Grasp kGrasp = {.title = "",
                      .types = {3, 1},
                      .friction = {0.5, 0},
                      .bounds = {-1, 1, -1, 1, 0, 9, 0, 9},
                      .base = {0, 1, 0, 0, 2, 0, 0, 3},
                      .individual = {0},
                      .point = 0};

std::string printing(const std::string& result) {
  return "cat >\"$3\" <<'END'\n" + result + "END";
}

TEST(Ask, ComputesForcesFromTheCoordinates) {
  const FakeCommand command(
      printing("*** Objective value\nobjective = 2.5\n\n*** Variables\n"
               "epsilon0 = 0.25\n\nz0 = 4\n\nz1 = 0.5\n\n"));
  const Answer answer = command.ask(kGrasp, Question::kFriction);
  EXPECT_EQ(answer.verdict, Verdict::kFeasible);
  EXPECT_EQ(answer.error_code, 0);
  EXPECT_EQ(answer.objective, 2.5);
  EXPECT_EQ(answer.values.at("epsilon0"), 0.25);
  EXPECT_EQ(answer.forces, (std::vector{0.5, 0.0, 8.0, 1.5}));
  // The first values of the result, one per contact, whatever they belong to.
  EXPECT_EQ(answer.handed_back, (std::vector{0.25, 4.0}));
}

TEST(Ask, TellsInfeasibleUndeterminedAndFailedApart) {
  const std::string rest = "\n*** Objective value\nNO OBJECTIVE.\n\n*** Variables\n\n";
  const auto verdict = [](const std::string& script) {
    const Answer answer = FakeCommand(script).ask(kGrasp, Question::kExists);
    EXPECT_TRUE(answer.forces.empty());
    return answer.verdict;
  };
  EXPECT_EQ(verdict(printing("INFEASIBLE\n" + rest)), Verdict::kInfeasible);
  EXPECT_EQ(verdict(printing("FEASIBILITY CANNOT BE DETERMINED\n" + rest)), Verdict::kUndetermined);
  testing::internal::CaptureStdout();
  EXPECT_EQ(verdict("exit 1"), Verdict::kFailed);
  EXPECT_NE(testing::internal::GetCapturedStdout().find("callsdpsol NOT successful"),
            std::string::npos);
}

TEST(Askable, NotWhereTheObjectiveWouldBeDividedByZero) {
  Grasp one = kGrasp;
  one.types = {3};
  for (const Question question : kQuestions) {
    EXPECT_TRUE(askable(kGrasp, question));
    EXPECT_EQ(askable(one, question),
              question != Question::kFriction && question != Question::kAll);
  }
}

TEST(WorkingFolder, IsGoneWithTheObject) {
  std::filesystem::path folder;
  {
    const WorkingFolder work;
    const auto solver = work.solver("true");
    folder = std::filesystem::path(solver.definitionFile).parent_path();
    EXPECT_EQ(std::filesystem::path(solver.resultFile).parent_path(), folder);
    std::ofstream(solver.resultFile) << "something";
    EXPECT_TRUE(std::filesystem::exists(solver.resultFile));
  }
  EXPECT_FALSE(std::filesystem::exists(folder));
}

}  // namespace
}  // namespace examples
