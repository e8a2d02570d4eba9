// The command grasp_questions as a reader runs it: what it prints and how it ends.
#include <gtest/gtest.h>
#include <sys/wait.h>

#include <array>
#include <cstdio>
#include <sstream>
#include <string>
#include <vector>

namespace {

const std::string kSolver = SDPSOL_BIN_DIR "/sdpsol";
const std::string kExamples = SDPSOL_SOURCE_DIR "/examples/";

struct Ended {
  int exit_code = -1;
  std::string output;
};

// Standard output and error of the command together.
Ended grasp_questions(const std::string& arguments) {
  const std::string line = std::string(GRASP_QUESTIONS) + " " + arguments + " 2>&1";
  std::FILE* const pipe = popen(line.c_str(), "r");
  if (pipe == nullptr) return {};
  Ended ended;
  std::array<char, 4096> buffer = {};
  for (std::size_t size = 0; (size = std::fread(buffer.data(), 1, buffer.size(), pipe)) > 0;)
    ended.output.append(buffer.data(), size);
  const int status = pclose(pipe);
  if (WIFEXITED(status)) ended.exit_code = WEXITSTATUS(status);
  return ended;
}

std::vector<double> objectives(const std::string& output) {
  std::vector<double> found;
  std::istringstream lines(output);
  const std::string key = "  objective ";
  for (std::string line; std::getline(lines, line);)
    if (line.rfind(key, 0) == 0) found.push_back(std::stod(line.substr(key.size())));
  return found;
}

TEST(GraspQuestions, PrintsTheAnswersOfAGraspThatSlips) {
  const Ended ended = grasp_questions(kSolver + " " + kExamples + "wedge_slips.grasp");
  EXPECT_EQ(ended.exit_code, 0);
  EXPECT_EQ(ended.output,
            "== wedge_slips.grasp: the same wedge with fingers that are too smooth\n"
            "   2 contacts, 6 force components, a nullspace of dimension 1\n"
            "\n"
            "Is there an internal force?\n"
            "  no, none exists (INFEASIBLE)\n"
            "\n"
            "How hard can the chosen contacts press (0, 1)?\n"
            "  no, none exists (INFEASIBLE)\n"
            "\n"
            "How large can the margins of the contacts with friction be?\n"
            "  no, none exists (INFEASIBLE)\n"
            "\n"
            "How large can the margins of all contacts be?\n"
            "  no, none exists (INFEASIBLE)\n"
            "\n"
            "How large can the margin of contact 0 be?\n"
            "  no, none exists (INFEASIBLE)\n"
            "\n");
}

// The values of demo_test.cpp, in the order of questions and files.
TEST(GraspQuestions, PrintsTheOptimaOfTheOthers) {
  const Ended ended = grasp_questions(
      kSolver + " " + kExamples + "box_pinch.grasp " + kExamples + "wedge_holds.grasp " +
      kExamples + "roller_support.grasp " + kExamples + "four_fingers.grasp " + kExamples +
      "oscillator_damped.lmi " + kExamples + "oscillator_excited.lmi");
  EXPECT_EQ(ended.exit_code, 0);
  const std::vector<double> paper = {8,  10.4,     10.4,     6.4,  //
                                     10, 5,        5,        2.5,  //
                                     7,  5,        7.5,      4,    //
                                     15, 17.0 / 3, 17.0 / 3, 10.2375};
  const std::vector<double> printed = objectives(ended.output);
  ASSERT_EQ(printed.size(), paper.size()) << ended.output;
  for (std::size_t i = 0; i < paper.size(); ++i) EXPECT_NEAR(printed[i], paper[i], 1e-5) << i;

  EXPECT_NE(ended.output.find("Is there an x with P0 + x1*P1 + x2*P2 + x3*P3 > 0?\n  yes: x1 = "),
            std::string::npos);
  EXPECT_NE(ended.output.find("Is there an x with P0 + x1*P1 + x2*P2 + x3*P3 > 0?\n"
                              "  no, none exists (INFEASIBLE)\n"),
            std::string::npos);
}

TEST(GraspQuestions, SaysWhenTheCommandIsNotThere) {
  const Ended ended = grasp_questions("/nowhere/sdpsol " + kExamples + "oscillator_damped.lmi");
  EXPECT_EQ(ended.exit_code, 1);
  EXPECT_NE(ended.output.find("callsdpsol NOT successful"), std::string::npos);
  EXPECT_NE(ended.output.find("  not answered: the run failed with code 2\n"), std::string::npos);
}

TEST(GraspQuestions, SaysWhenItIsUsedWrongly) {
  const Ended none = grasp_questions("");
  EXPECT_EQ(none.exit_code, 2);
  EXPECT_EQ(none.output, "usage: grasp_questions SDPSOL FILE...\n");
  const Ended missing = grasp_questions(kSolver + " /nowhere/a.grasp");
  EXPECT_EQ(missing.exit_code, 3);
  EXPECT_EQ(missing.output, "grasp_questions: a.grasp: cannot be read\n");
}

}  // namespace
