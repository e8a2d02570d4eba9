#include "grasp/reason.h"

#include <gtest/gtest.h>

#include "grasp/test_grasps.h"

namespace grasp {
namespace {

// Contact 0 "thumb" owns x0 to x2, contact 1 x3, contact 2 "ring" x4 to x6.
Grasp three() {
  return grasp_of({named(contact_at({-1, 0, 0}, {1, 0, 0}), "thumb"),
                   contact_at({1, 0, 0}, {-1, 0, 0}, ContactType::kFrictionless),
                   named(contact_at({0, 1, 0}, {0, -1, 0}), "ring")});
}

// As the unit writes it for the question "all", shortened.
constexpr std::string_view kDefinition =
    "variable epsilon0;\n"                            // 1
    "variable epsilon1;\n"                            // 2
    "BIGM=300000;\n"                                  // 3
    "variable z0;\n"                                  // 4
    "x0=1*z0;\n"                                      // 5
    "P0=[\n"                                          // 6
    "x2*0.5,0,x0;\n"                                  // 7
    "];\n"                                            // 8
    "x0>-10;\n"                                       // 9
    "x0<10;\n"                                        // 10
    "x2>0;\n"                                         // 11
    "x3<1.5e+06;\n"                                   // 12
    "x5<2;\n"                                         // 13
    "x6>1e-05;\n"                                     // 14
    "epsilon0>0;\n"                                   // 15
    "epsilon1>0;\n"                                   // 16
    "epsilon>0;\n"                                    // 17
    "[P0,zeros(3,4);\n"                               // 18
    "zeros(1,3),P1,zeros(1,3);\n"                     // 19
    "x7>0;\n"                                         // 20
    "maximize objective=((0+epsilon0)/2)+epsilon1;";  // 21

std::string explained(const std::string& reason) {
  return explain(reason, kDefinition, three());
}

TEST(ReadHeading, TakesTheVerdictTheLineBehindItAndTheWarnings) {
  const Heading found = read_heading(
      "sdpsol 0.1.0\n2 variables\nFEASIBLE\nroom 0.5\nwarning: the objective is limited only by "
      "BIGM\nwarning: second\n*** Objective value\nobjective = 1.0\n\n*** Variables\nz0 = 1.0\n\n");
  EXPECT_EQ(found.verdict, Verdict::kFeasible);
  EXPECT_EQ(found.reason, "");
  EXPECT_EQ(found.warnings,
            (std::vector<std::string>{"the objective is limited only by BIGM", "second"}));
  const Heading none =
      read_heading("sdpsol 0.1.0\nINFEASIBLE\nwhy, line 3\n\n*** Objective value\n");
  EXPECT_EQ(none.verdict, Verdict::kInfeasible);
  EXPECT_EQ(none.reason, "why, line 3");
  EXPECT_TRUE(none.warnings.empty());
  const Heading unclear = read_heading(
      "sdpsol 0.1.0\nFEASIBILITY CANNOT BE DETERMINED\nbecause\n*** Objective value\n");
  EXPECT_EQ(unclear.verdict, Verdict::kUndetermined);
  EXPECT_EQ(unclear.reason, "because");
}

TEST(ReadHeading, LooksAtNothingBehindTheHeadingAndAtWholeLines) {
  const Heading heading = read_heading(
      "it is INFEASIBLE\n*** Objective value\nFEASIBLE\nwarning: no\n*** Variables\nINFEASIBLE\n");
  EXPECT_EQ(heading.verdict, Verdict::kUndetermined);
  EXPECT_EQ(heading.reason, "");
  EXPECT_TRUE(heading.warnings.empty());
  EXPECT_EQ(read_heading("").verdict, Verdict::kUndetermined);
  EXPECT_EQ(read_heading("INFEASIBLE").verdict, Verdict::kInfeasible);
  EXPECT_EQ(read_heading("INFEASIBLE").reason, "");
}

TEST(Explain, PutsTheConditionsOfTheGraspInPlaceOfLines) {
  EXPECT_EQ(explained("the conditions contradict each other, lines 9, 10, 11, 12"),
            "for forces that balance, the conditions contradict each other: "
            "tangential force 1 of thumb above -10 N, "
            "tangential force 1 of thumb below 10 N, normal force of thumb above 0 N, normal force "
            "of 1 below 1.5e+06 N");
  EXPECT_EQ(explained("two bounds exclude each other, lines 13, 14"),
            "for forces that balance, two bounds exclude each other: tangential force 2 of ring "
            "below 2 N, normal force of "
            "ring above 1e-05 N");
  EXPECT_EQ(explained("the conditions contradict each other, lines 15, 16, 17, 18"),
            "for forces that balance, the conditions contradict each other: the cones, "
            "margin of thumb above 0, margin of 1 above 0, margin above 0");
  EXPECT_EQ(explained("a diagonal entry is 0 for every value of the variables, line 18"),
            "a diagonal entry is 0 for every value of the variables: the cones");
}

TEST(Explain, NamesAConditionOnceAndSaysThatThereAreMore) {
  EXPECT_EQ(explained("the conditions contradict each other, lines 9, 9, 11, ..."),
            "for forces that balance, the conditions contradict each other: "
            "tangential force 1 of thumb above -10 N, normal force of thumb above 0 N, and more");
}

TEST(Explain, KeepsAReasonWithoutLines) {
  EXPECT_EQ(explained("the engine was stopped"), "the engine was stopped");
  EXPECT_EQ(explained(""), "");
  EXPECT_EQ(explained("it lies, as lines do"), "it lies, as lines do");
  EXPECT_EQ(explained("it lies, lines of it"), "it lies, lines of it");
}

TEST(Explain, LeavesOutLinesThatAreNoConditionOfTheGrasp) {
  for (const char* line : {"0", "1", "3", "5", "6", "7", "8", "19", "20", "21", "22", "99"})
    EXPECT_EQ(explained("no, line " + std::string(line)), "no") << line;
}

TEST(Explain, SaysWhatBorderlineMeansForAGrasp) {
  EXPECT_EQ(explained("borderline: no point has more room than 4.4e-6, lines 9, 10"),
            "borderline: no internal force beyond the precision of the data");
  EXPECT_EQ(kBorderline, "borderline: no internal force beyond the precision of the data");
}

TEST(Explain, SaysHowFarTheUnitLooks) {
  EXPECT_EQ(
      explained("no point with |v| <= BIGM, lines 9, 10"),
      "no forces up to about 2e5 N, which is as far as the unit looks; try forces in a larger "
      "unit");
  EXPECT_EQ(explain_warning("the objective is limited only by BIGM"),
            "the objective is limited only by how far the unit looks, up to forces of about 2e5 N; "
            "with forces in a larger unit it may be larger");
  EXPECT_EQ(explain_warning("something else"), "something else");
}

}  // namespace
}  // namespace grasp
