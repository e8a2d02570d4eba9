#include "examples/report.h"

#include <gtest/gtest.h>

namespace examples {
namespace {

const Grasp kGrasp = {.title = "",
                      .types = {3, 3, 1},
                      .friction = {0.5, 0.8, 0},
                      .bounds = {-6, 6, -6, 6, 0, 10, -6, 6, -6, 6, 0, 10, 0, 4.5},
                      .base = std::vector<double>(7),
                      .individual = {2, 0},
                      .point = 2};

const Answer kAnswer = {.verdict = Verdict::kFeasible,
                        .error_code = 0,
                        .objective = 6.25,
                        .values = {{"epsilon0", 2.5}, {"epsilon1", 4}, {"epsilon2", 3}},
                        .forces = {3, 4, 10, -0.000001, 0.6, 5, 4},
                        .handed_back = {}};

const std::string kTable =
    "    contact          tangential 1          tangential 2                normal   friction "
    "used\n"
    "          0    3.00000 in [-6, 6]    4.00000 in [-6, 6]   10.00000 in [0, 10]         100.0 "
    "%\n"
    "          1    0.00000 in [-6, 6]    0.60000 in [-6, 6]    5.00000 in [0, 10]          15.0 "
    "%\n"
    "          2                     -                     -   4.00000 in [0, 4.5]    "
    "frictionless\n";

TEST(Report, Exists) {
  EXPECT_EQ(report(kGrasp, Question::kExists, kAnswer),
            "Is there an internal force?\n"
            "  yes\n" +
                kTable);
}

TEST(Report, Individual) {
  EXPECT_EQ(report(kGrasp, Question::kIndividual, kAnswer),
            "How hard can the chosen contacts press (2, 0)?\n"
            "  objective 6.250000 = (epsilon2 3.00000 + normal force of contact 0 10.00000) / 2\n" +
                kTable);
}

TEST(Report, FrictionAndAllNameTheirDivisor) {
  EXPECT_EQ(report(kGrasp, Question::kFriction, kAnswer),
            "How large can the margins of the contacts with friction be?\n"
            "  objective 6.250000 = (epsilon0 2.50000 + epsilon1 4.00000) / 2, the divisor being "
            "the number of contacts minus one\n" +
                kTable);
  EXPECT_EQ(report(kGrasp, Question::kAll, kAnswer),
            "How large can the margins of all contacts be?\n"
            "  objective 6.250000 = (epsilon0 2.50000 + epsilon1 4.00000) / 2 + epsilon2 3.00000, "
            "the divisor being the number of contacts minus one\n" +
                kTable);
}

TEST(Report, FrictionAndAllOfContactsOfOneKind) {
  const std::string remark = ", the divisor being the number of contacts minus one\n";
  const auto objective = [](const Grasp& grasp, Question question) {
    const std::string text = report(grasp, question, kAnswer);
    const auto start = text.find('\n') + 1;
    return text.substr(start, text.find('\n', start) + 1 - start);
  };
  Grasp grasp = kGrasp;
  grasp.types = {3, 3};
  EXPECT_EQ(objective(grasp, Question::kAll),
            "  objective 6.250000 = (epsilon0 2.50000 + epsilon1 4.00000) / 1" + remark);
  grasp.types = {1, 1, 1};
  EXPECT_EQ(objective(grasp, Question::kFriction), "  objective 6.250000 = (0) / 2" + remark);
  EXPECT_EQ(objective(grasp, Question::kAll),
            "  objective 6.250000 = (0) / 2 + epsilon0 2.50000 + epsilon1 4.00000 + epsilon2 "
            "3.00000" +
                remark);
}

TEST(Report, Point) {
  EXPECT_EQ(report(kGrasp, Question::kPoint, kAnswer),
            "How large can the margin of contact 2 be?\n"
            "  objective 6.250000 = epsilon, the margin of contact 2\n" +
                kTable);
}

TEST(Report, VerdictsWithoutForces) {
  Answer answer;
  const auto text = [&answer] { return report(kGrasp, Question::kPoint, answer); };
  answer.verdict = Verdict::kInfeasible;
  EXPECT_EQ(text(),
            "How large can the margin of contact 2 be?\n"
            "  no, none exists (INFEASIBLE)\n");
  answer.verdict = Verdict::kUndetermined;
  EXPECT_EQ(text(),
            "How large can the margin of contact 2 be?\n"
            "  not answered: feasibility cannot be determined\n");
  answer.verdict = Verdict::kFailed;
  answer.error_code = 2;
  EXPECT_EQ(text(),
            "How large can the margin of contact 2 be?\n"
            "  not answered: the run failed with code 2\n");
}

TEST(Report, Lmi) {
  Lmi lmi;
  lmi.matrices.resize(3);
  Answer answer = {.verdict = Verdict::kFeasible,
                   .error_code = 0,
                   .objective = 1,
                   .values = {{"x1", 0.5}, {"x2", -2}},
                   .forces = {},
                   .handed_back = {}};
  EXPECT_EQ(report(lmi, answer),
            "Is there an x with P0 + x1*P1 + x2*P2 > 0?\n"
            "  yes: x1 = 0.5, x2 = -2\n");
  lmi.strict = false;
  answer.verdict = Verdict::kInfeasible;
  EXPECT_EQ(report(lmi, answer),
            "Is there an x with P0 + x1*P1 + x2*P2 >= 0?\n"
            "  no, none exists (INFEASIBLE)\n");
}

}  // namespace
}  // namespace examples
