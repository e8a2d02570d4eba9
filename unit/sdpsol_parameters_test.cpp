#include <gtest/gtest.h>

#include <limits>
#include <string>

#include "unit/sdpsol_wrapper.h"
#include "unit/test_support.h"

namespace {

const std::string kDefaults =
    "NU=10;\n"
    "GAMMA=100;\n"
    "MAXITER=100;\n"
    "ABSTOL=4.4e-06;\n"
    "RELTOL=4.4e-06;\n"
    "BIGM=15000;\n";

std::string with_defaults(const std::string& definition) {
  sdpsol_wrapper driver("sdpsol", "sdpsol.in", "sdpsol.out");
  driver.definition = definition;
  driver.setParameters(driver.getDefaultParameters());
  return driver.definition;
}

TEST(DefaultParameters, AreTheSixFixedValues) {
  const sdpsol_wrapper::parameters p =
      sdpsol_wrapper("sdpsol", "sdpsol.in", "sdpsol.out").getDefaultParameters();
  EXPECT_EQ(p.NU, 10.0);
  EXPECT_EQ(p.GAMMA, 100.0);
  EXPECT_EQ(p.MAXITER, 100);
  EXPECT_EQ(p.ABSTOL, 0.0000044);
  EXPECT_EQ(p.RELTOL, 0.0000044);
  EXPECT_EQ(p.BIGM, 15000.0);
}

TEST(DefaultParameters, DoNotDependOnTheDefinition) {
  sdpsol_wrapper driver("sdpsol", "sdpsol.in", "sdpsol.out");
  driver.definition = "NU=77;\n";
  EXPECT_EQ(driver.getDefaultParameters().NU, 10.0);
  EXPECT_EQ(driver.definition, "NU=77;\n");
}

TEST(SetParameters, MakesAnEmptyDefinitionTheBlockAlone) {
  EXPECT_EQ(with_defaults(""), kDefaults);
}

TEST(SetParameters, KeepsOtherTextBehindTheBlock) {
  EXPECT_EQ(with_defaults("variable x;\nx>1;"), kDefaults + "variable x;\nx>1;");
}

TEST(SetParameters, CutsAnAssignmentOnItsOwnLineWithItsLineBreak) {
  EXPECT_EQ(with_defaults("NU=5;\nx=1;\n"), kDefaults + "x=1;\n");
  EXPECT_EQ(with_defaults("x=1;\nNU=5;\ny=1;\n"), kDefaults + "x=1;\ny=1;\n");
}

TEST(SetParameters, CutsAnAssignmentThatEndsTheText) {
  EXPECT_EQ(with_defaults("NU=5;"), kDefaults);
  EXPECT_EQ(with_defaults("x=1;\nNU=5;"), kDefaults + "x=1;\n");
  EXPECT_EQ(with_defaults("x=1; NU=5;"), kDefaults + "x=1; ");
}

TEST(SetParameters, LeavesTheLineBreakOfALineSharedWithOtherText) {
  EXPECT_EQ(with_defaults("a=1; NU=5;\n"), kDefaults + "a=1; \n");
}

TEST(SetParameters, LeavesTheRestOfALineThatBeginsWithAnAssignment) {
  EXPECT_EQ(with_defaults("NU=5; a=1;\n"), kDefaults + " a=1;\n");
}

TEST(SetParameters, TakesTheLineBreakOfTheLastOfSeveralAssignmentsOnALine) {
  EXPECT_EQ(with_defaults("NU=5;NU=6;\na=1;\n"), kDefaults + "a=1;\n");
  // The second one comes to stand at the start of its line only by the first cut.
  EXPECT_EQ(with_defaults("x=1;\nNU=5;NU=6;\na=1;\n"), kDefaults + "x=1;\na=1;\n");
}

TEST(SetParameters, CutsEveryOccurrenceOfAKeyword) {
  EXPECT_EQ(with_defaults("NU=5;\na=1;\nNU=6;\nb=2; NU=7;"), kDefaults + "a=1;\nb=2; ");
}

TEST(SetParameters, CutsAllSixKeywords) {
  EXPECT_EQ(with_defaults("BIGM=1;\nRELTOL=2;\nABSTOL=3;\nMAXITER=4;\nGAMMA=5;\nNU=6;\nx=1;\n"),
            kDefaults + "x=1;\n");
}

TEST(SetParameters, SearchesOnAtTheCutAndNotBeforeIt) {
  // What is left of "N", a cut and "U=1;" spells NU, but begins before the cut.
  EXPECT_EQ(with_defaults("NNU=3;U=1;\n"), kDefaults + "NU=1;\n");
}

TEST(SetParameters, CutsTheKeywordsOneAfterTheOtherInTheirOrder) {
  // Each cut joins what spells the next keyword, which is cut in its turn.
  for (const char* text : {"GAMNU=1;MA=2;x=1;", "MAXGAMMA=1;ITER=2;x=1;", "ABSMAXITER=1;TOL=2;x=1;",
                           "RELABSTOL=1;TOL=2;x=1;", "BIRELTOL=1;GM=2;x=1;"}) {
    EXPECT_EQ(with_defaults(text), kDefaults + "x=1;") << text;
  }
  // Joined too late, an earlier keyword stays.
  EXPECT_EQ(with_defaults("NGAMMA=1;U=2;x=1;"), kDefaults + "NU=2;x=1;");
  EXPECT_EQ(with_defaults("NBIGM=1;U=2;x=1;"), kDefaults + "NU=2;x=1;");
}

TEST(SetParameters, CutsAcrossLinesUpToTheNextSemicolon) {
  EXPECT_EQ(with_defaults("NU=\n5\n;\nx=1;\n"), kDefaults + "x=1;\n");
}

TEST(SetParameters, CutsFromAKeywordInsideALongerWord) {
  EXPECT_EQ(with_defaults("variable MENU;\nx=1;\n"), kDefaults + "variable ME\nx=1;\n");
  EXPECT_EQ(with_defaults("x<BIGM;\ny=1;\n"), kDefaults + "x<\ny=1;\n");
  EXPECT_EQ(with_defaults("NUMBER=1;\ny=1;\n"), kDefaults + "y=1;\n");
}

TEST(SetParameters, LeavesNamesThatAreNotAllOfAKeyword) {
  const std::string text = "N=1;\nGAMM=1;\nMAXITE=1;\nABSTO=1;\nRELTO=1;\nBIG=1;\n";
  EXPECT_EQ(with_defaults(text), kDefaults + text);
  const std::string ends = "U=1;\nAMMA=1;\nAXITER=1;\nBSTOL=1;\nELTOL=1;\nIGM=1;\n";
  EXPECT_EQ(with_defaults(ends), kDefaults + ends);
}

TEST(SetParameters, SearchesCaseSensitively) {
  EXPECT_EQ(with_defaults("nu=5;\ngamma=1;\n"), kDefaults + "nu=5;\ngamma=1;\n");
}

TEST(SetParameters, KeepsOneBlockWithTheSecondCallsValues) {
  sdpsol_wrapper driver("sdpsol", "sdpsol.in", "sdpsol.out");
  driver.definition = "x=1;\n";
  driver.setParameters(driver.getDefaultParameters());
  driver.setParameters({1.5, 2e7, 3, 1e-9, 0.25, 123456.7});
  EXPECT_EQ(driver.definition,
            "NU=1.5;\n"
            "GAMMA=2e+07;\n"
            "MAXITER=3;\n"
            "ABSTOL=1e-09;\n"
            "RELTOL=0.25;\n"
            "BIGM=123457;\n"
            "x=1;\n");
}

TEST(SetParameters, ValidatesNothing) {
  sdpsol_wrapper driver("sdpsol", "sdpsol.in", "sdpsol.out");
  constexpr double kInfinity = std::numeric_limits<double>::infinity();
  driver.setParameters({-1.0, 0.0, -5, kInfinity, -kInfinity, -0.0});
  EXPECT_EQ(driver.definition,
            "NU=-1;\n"
            "GAMMA=0;\n"
            "MAXITER=-5;\n"
            "ABSTOL=inf;\n"
            "RELTOL=-inf;\n"
            "BIGM=-0;\n");
  driver.setParameters({1.0, 1.0, 0, 1.0, 1.0, 1.0});
  EXPECT_EQ(driver.definition,
            "NU=1;\n"
            "GAMMA=1;\n"
            "MAXITER=0;\n"
            "ABSTOL=1;\n"
            "RELTOL=1;\n"
            "BIGM=1;\n");
}

TEST(SetParameters, LeavesAKeywordWithoutASemicolonAndGoesOnWithTheNext) {
  EXPECT_EQ(with_defaults("x=1;\nNU=5"), kDefaults + "x=1;\nNU=5");
  EXPECT_EQ(with_defaults("GAMMA=1;\nBIGM=2; NU"), kDefaults + " NU");
}

TEST(SetParameters, LeavesTheLastOccurrenceWhenOnlyItLacksASemicolon) {
  EXPECT_EQ(with_defaults("NU=1;\nx=1;\nNU=2"), kDefaults + "x=1;\nNU=2");
}

TEST(SetParameters, ChangesNothingButTheDefinitionAndPrintsNothing) {
  sdpsol_wrapper driver("sdpsol", "sdpsol.in", "sdpsol.out");
  driver.resultText = "NU=1;";
  const unit_test::CapturedOutput output;
  driver.setParameters(driver.getDefaultParameters());
  EXPECT_EQ(output.text(), "");
  EXPECT_EQ(driver.resultText, "NU=1;");
  EXPECT_EQ(driver.lastResult.errorCode, -1);
  EXPECT_EQ(driver.commandLine, "sdpsol -q -o sdpsol.out sdpsol.in");
}

TEST(SetParameters, CutsAMillionAssignmentsInLinearTime) {
  std::string definition;
  for (int i = 0; i < 500000; ++i) definition += "NU=1;\nGAMMA=2;x;\n";
  std::string left;
  for (int i = 0; i < 500000; ++i) left += "x;\n";
  EXPECT_EQ(with_defaults(definition), kDefaults + left);
}

}  // namespace
