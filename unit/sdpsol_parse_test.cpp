// Result texts written by hand, each with everything that is read out of it.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "unit/sdpsol_wrapper.h"
#include "unit/test_readings.h"

namespace {

using unit_test::kThrown;
using unit_test::Reading;
using Names = std::vector<std::string>;
using Values = std::vector<double>;

Reading parse(const std::string& text) {
  Reading parsed = unit_test::by_driver(text);
  EXPECT_EQ(parsed.last.errorCode, 100);
  EXPECT_EQ(parsed.last.variableNames.size(), parsed.last.variableValues.size());
  EXPECT_EQ(static_cast<std::size_t>(parsed.last.valueCount), parsed.last.variableValues.size());
  return parsed;
}

void expect_entries(const Reading& parsed, const Names& names, const Values& values) {
  EXPECT_EQ(parsed.last.variableNames, names);
  EXPECT_EQ(parsed.last.variableValues, values);
}

void expect_thrown(const Reading& parsed) {
  EXPECT_EQ(parsed.code, kThrown);
  EXPECT_EQ(parsed.error.substr(0, 20), "basic_string::substr");
}

// A variables section behind a result without objective.
Reading parse_variables(const std::string& section) {
  return parse("*** Objective value\nNO OBJECTIVE.\n\n*** Variables\n" + section);
}

TEST(ParseResult, ReadsACompleteResult) {
  const Reading parsed = parse(
      "solved, FEASIBLE\n"
      "\n"
      "*** Objective value\n"
      "objective = 3.43119587\n"
      "\n"
      "*** Variables\n"
      "z0 = 1.25\n"
      "\n"
      "X =\n"
      "[\n"
      "  1,\n"
      "  0.5,\n"
      "  0.5,\n"
      "  2,\n"
      "]\n"
      "\n"
      "epsilon0 = -1.5e-03\n"
      "\n");
  EXPECT_EQ(parsed.code, 0);
  EXPECT_TRUE(parsed.last.feasible);
  EXPECT_EQ(parsed.last.objectiveValue, 3.43119587);
  expect_entries(parsed, {"z0", "X_0", "X_1", "X_2", "X_3", "epsilon0"},
                 {1.25, 1.0, 0.5, 0.5, 2.0, -1.5e-3});
}

TEST(ParseResult, ThrowsOnAnEmptyTextWithTheVerdictSetToFeasible) {
  const Reading parsed = parse("");
  expect_thrown(parsed);
  EXPECT_TRUE(parsed.last.feasible);
  EXPECT_EQ(parsed.last.objectiveValue, 0.0);
  expect_entries(parsed, {}, {});
}

TEST(ParseResult, ThrowsOnASingleCharacter) {
  expect_thrown(parse("x"));
}

TEST(ParseResult, EndsQuietlyOnTwoToFourCharacters) {
  for (const char* text : {"ab", "12", "\n\n", "abcd"}) {
    const Reading parsed = parse(text);
    EXPECT_EQ(parsed.code, 0) << text;
    expect_entries(parsed, {}, {});
  }
}

TEST(ParseResult, StartsFromAnEmptyRecord) {
  sdpsol_wrapper driver("sdpsol", "sdpsol.in", "sdpsol.out");
  driver.lastResult = {0, true, 5.0, {"old"}, {1.0}, 1};
  driver.resultText = "INFEASIBLE\n*** Objective value\nNO OBJECTIVE.\n\n*** Variables\nx = 2\n\n";
  EXPECT_EQ(driver.parseResult(), 0);
  EXPECT_FALSE(driver.lastResult.feasible);
  EXPECT_EQ(driver.lastResult.objectiveValue, 0.0);
  EXPECT_EQ(driver.lastResult.variableNames, Names{"x"});
  EXPECT_EQ(driver.lastResult.variableValues, Values{2.0});
  EXPECT_EQ(driver.lastResult.valueCount, 1);
}

TEST(ParseVerdict, IsInfeasibleWhereverTheWordStandsAndReadsOn) {
  const Reading parsed =
      parse("*** Objective value\nobjective = 4\n\n*** Variables\nx = 2.5\n\nyINFEASIBLEy = 3\n\n");
  EXPECT_EQ(parsed.code, 0);
  EXPECT_FALSE(parsed.last.feasible);
  EXPECT_EQ(parsed.last.objectiveValue, 4.0);
  expect_entries(parsed, {"x", "yINFEASIBLEy"}, {2.5, 3.0});
}

TEST(ParseVerdict, IsNotFeasibleWhenItCannotBeDetermined) {
  const Reading parsed = parse(
      "FEASIBILITY CANNOT BE DETERMINED\n*** Objective value\nNO OBJECTIVE.\n\n*** Variables\n\n");
  EXPECT_EQ(parsed.code, 0);
  EXPECT_FALSE(parsed.last.feasible);
}

TEST(ParseVerdict, IsFeasibleForAnyOtherSpelling) {
  EXPECT_TRUE(parse("infeasible\n\n").last.feasible);
  EXPECT_TRUE(parse("FEASIBILITY CANNOT  BE DETERMINED\n\n").last.feasible);
  EXPECT_TRUE(parse("FEASIBLE\n\n").last.feasible);
}

TEST(ParseObjective, IsZeroForTheWholeLineNoObjective) {
  const Reading parsed = parse_variables("x = 2.5\n\n");
  EXPECT_EQ(parsed.last.objectiveValue, 0.0);
  expect_entries(parsed, {"x"}, {2.5});
}

TEST(ParseObjective, DoesNotRecogniseNoObjectiveWithABlankBehindIt) {
  const Reading parsed = parse("*** Objective value\nNO OBJECTIVE. \n\n*** Variables\nx = 2.5\n\n");
  EXPECT_EQ(parsed.last.objectiveValue, 2.5);
  expect_entries(parsed, {"x"}, {2.5});
}

TEST(ParseObjective, ComesFromALaterLineWhenItsOwnHasNoEqualsSign) {
  EXPECT_EQ(
      parse("*** Objective value\nnothing here\n\n*** Variables\nx = 7\n\n").last.objectiveValue,
      7.0);
}

TEST(ParseObjective, UsesOnlyTheFirstMarker) {
  EXPECT_EQ(parse("*** Objective value\na = 1\n*** Objective value\nb = 2\n*** Variables\n\n")
                .last.objectiveValue,
            1.0);
}

TEST(ParseObjective, ComesFromTheFirstLineWithoutAMarker) {
  EXPECT_EQ(parse("a = 8\nb = 9\n*** Variables\n\n").last.objectiveValue, 8.0);
}

TEST(ParseObjective, ComesFromTheFirstLineWhenTheMarkersLineIsTheLast) {
  const Reading parsed = parse("obj = 4\nVariable\n\n*** Objective value");
  EXPECT_EQ(parsed.code, 0);
  EXPECT_EQ(parsed.last.objectiveValue, 4.0);
  expect_entries(parsed, {"\n*** Objective value"}, {0.0});
}

TEST(ParseObjective, ReadsFromPositionTwoAsManyCharactersAsTheLineHasWithoutAnEqualsSign) {
  EXPECT_EQ(parse("98765432 head\n*** Objective value\nv=3\n*** Variables\n\n").last.objectiveValue,
            765.0);
}

TEST(ParseObjective, IsZeroWhereNoNumberCanBeRead) {
  EXPECT_EQ(parse("*** Objective value\nobjective = inf\n*** Variables\n\n").last.objectiveValue,
            0.0);
  EXPECT_EQ(parse("*** Objective value\nobjective = 1e\n*** Variables\n\n").last.objectiveValue,
            0.0);
}

TEST(ParseObjective, ReadsTheLastLineOfATextWithoutALineBreak) {
  EXPECT_EQ(parse("*** Variables\nx = 1\n\n*** Objective value\nobjective = 6").last.objectiveValue,
            6.0);
}

TEST(ParseScalar, ReadsNameAndValue) {
  expect_entries(parse_variables("x = 2.5\n\n"), {"x"}, {2.5});
}

TEST(ParseScalar, DropsTheCharacterBeforeAndSkipsTwoFromTheEqualsSign) {
  expect_entries(parse_variables("x=2.5\n\n"), {""}, {0.5});
  expect_entries(parse_variables("xy=12.5\n\n"), {"x"}, {2.5});
}

TEST(ParseScalar, LosesTheFirstCharacterOfTheNextNameWithoutABlankLine) {
  expect_entries(parse_variables("x = 1\nyy = 2\nzz = 3\n"), {"x", "y", "z"}, {1.0, 2.0, 3.0});
}

TEST(ParseScalar, ReadsAMissingValueAsZero) {
  expect_entries(parse_variables("x = \n\ny = 2\n\n"), {"x", "y"}, {0.0, 2.0});
}

TEST(ParseScalar, ReadsUnreadableValuesAsZero) {
  expect_entries(parse_variables("x = nan\n\ny = inf\n\nz = --1\n\nw = 1e+\n\n"),
                 {"x", "y", "z", "w"}, {0.0, 0.0, 0.0, 0.0});
}

TEST(ParseScalar, KeepsDuplicateNamesInOrder) {
  expect_entries(parse_variables("x = 1\n\nx = 2\n\nx = 1\n\n"), {"x", "x", "x"}, {1.0, 2.0, 1.0});
}

TEST(ParseScalar, IgnoresAnEntryOfFewerThanFiveCharacters) {
  expect_entries(parse_variables("x = 1\n\ny=2\n"), {"x"}, {1.0});
  expect_entries(parse_variables("x = 1\n\ny = 2"), {"x", "y"}, {1.0, 2.0});
}

TEST(ParseScalar, TakesTheRestOfTheTextAsNameWhenTheEqualsSignComesFirst) {
  expect_entries(parse_variables("= 5\n\n"), {"= 5\n\n"}, {5.0});
}

TEST(ParseScalar, EndsTheScanAtAMissingLineBreak) {
  const Reading parsed = parse_variables("x = 1\n\ny = 2");
  EXPECT_EQ(parsed.code, 0);
  expect_entries(parsed, {"x", "y"}, {1.0, 2.0});
}

TEST(ParseScalar, ThrowsWhenTheEqualsSignEndsTheText) {
  const Reading parsed = parse_variables("x = 1\n\nyyyyy =");
  expect_thrown(parsed);
  EXPECT_TRUE(parsed.last.feasible);
  expect_entries(parsed, {"x"}, {1.0});
}

TEST(ParseScalar, StartsAtTheFirstMarkerOnly) {
  expect_entries(parse("NO OBJECTIVE.\nVariable one\nx = 1\n\nVariable two = 2\n\ny = 3\n\n"),
                 {"x", "Variable two", "y"}, {1.0, 2.0, 3.0});
}

TEST(ParseMatrix, NamesElementsUpwardInTextOrder) {
  std::string section = "Mat =\n[\n";
  Names names;
  Values values;
  for (int k = 0; k < 12; ++k) {
    section += "  " + std::to_string(k) + ".5,\n";
    names.push_back("Mat_" + std::to_string(k));
    values.push_back(k + 0.5);
  }
  expect_entries(parse_variables(section + "]\n\n"), names, values);
  EXPECT_EQ(names.back(), "Mat_11");
}

TEST(ParseMatrix, ReadsElementsOfOneLine) {
  expect_entries(parse_variables("X =\n[   1,   2,   3,]\n\ny = 4\n\n"), {"X_0", "X_1", "X_2", "y"},
                 {1.0, 2.0, 3.0, 4.0});
}

TEST(ParseMatrix, LosesTheCharactersRightBehindAComma) {
  expect_entries(parse_variables("X =\n[   1,23456,]\n\ny = 4\n\n"), {"X_0", "X_1", "y"},
                 {1.0, 56.0, 4.0});
}

TEST(ParseMatrix, EndsWhenTheBracketIsFiveCharactersBehindTheComma) {
  expect_entries(parse_variables("X =\n[   1,    ]\n\ny = 4\n\n"), {"X_0", "y"}, {1.0, 4.0});
}

TEST(ParseMatrix, GoesOnWhenTheBracketIsSixCharactersBehindTheComma) {
  // The text between this comma and the next one is an element too.
  expect_entries(parse_variables("X =\n[   1,     ]  2,]\n\ny = 4\n\n"), {"X_0", "X_1", "y"},
                 {1.0, 0.0, 4.0});
}

TEST(ParseMatrix, ReadsEmptyAndUnreadableElementsAsZero) {
  expect_entries(parse_variables("X =\n[\n  a,\n  ,\n  1e,\n]\n\n"), {"X_0", "X_1", "X_2"},
                 {0.0, 0.0, 0.0});
}

TEST(ParseMatrix, ReadsOneMatrixAfterTheOther) {
  expect_entries(parse_variables("X =\n[\n  1,\n]\n\nY =\n[\n  2,\n  3,\n]\n\nz = 4\n\n"),
                 {"X_0", "Y_0", "Y_1", "z"}, {1.0, 2.0, 3.0, 4.0});
}

TEST(ParseMatrix, ThrowsWhenItsFirstElementLiesBehindTheEnd) {
  const Reading parsed = parse_variables("x = 1\n\nXXXX =\n[\n");
  expect_thrown(parsed);
  expect_entries(parsed, {"x"}, {1.0});
}

TEST(ParseMatrix, ThrowsWhenTheLastCommaIsFollowedByTooLittle) {
  const Reading parsed = parse_variables("X =\n[\n  1,\n  2,\n");
  expect_thrown(parsed);
  expect_entries(parsed, {"X_0", "X_1"}, {1.0, 2.0});
}

TEST(ParseMatrix, ReadsOnFromTheFrontOfTheTextWhenCommasRunOut) {
  const Reading parsed = parse(
      "abc5,]\n*** Objective value\nNO OBJECTIVE.\n\n*** Variables\nX =\n[\n  1,\n  2,\n     \n");
  EXPECT_EQ(parsed.code, 0);
  expect_entries(parsed, {"X_0", "X_1", "X_2", "X_3"}, {1.0, 2.0, 0.0, 5.0});
}

TEST(ParseTrailer, AddsAnEntryNamedAfterTheWholeRest) {
  const Reading parsed =
      parse("42 lines\n*** Objective value\nNO OBJECTIVE.\n\n*** Variables\nx = 1\n\nThe end.\n");
  EXPECT_EQ(parsed.code, 0);
  expect_entries(parsed, {"x", "The end.\n"}, {1.0, 2.0});
}

TEST(ParseTrailer, IsIgnoredUpToFourCharacters) {
  const Reading parsed = parse_variables("x = 1\n\nEnd.");
  EXPECT_EQ(parsed.code, 0);
  expect_entries(parsed, {"x"}, {1.0});
}

TEST(ParseTrailer, StopsAtAnEntryWithoutLineBreakBehindAnEarlyStart) {
  const Reading parsed = parse("Variable\nx = 1");
  EXPECT_EQ(parsed.code, 0);
  EXPECT_EQ(parsed.last.objectiveValue, 1.0);
  expect_entries(parsed, {"x"}, {1.0});
}

TEST(ParseCircle, IsNoticedInATextWithoutVariablesAndEqualsSigns) {
  const Reading parsed = parse("garbage\nwithout any marker\n");
  EXPECT_EQ(parsed.code, 1);
  EXPECT_TRUE(parsed.last.feasible);
  expect_entries(parsed, {"garbage\nwithout any marker\n", "ithout any marker\n"}, {0.0, 0.0});
}

TEST(ParseCircle, IsNoneWhereTheFirstLineIsFollowedByTooLittle) {
  const Reading parsed = parse("garbage\n12345");
  EXPECT_EQ(parsed.code, 0);
  expect_entries(parsed, {"garbage\n12345"}, {0.0});
  EXPECT_EQ(parse("garbage\n123456").code, 1);
}

TEST(ParseCircle, IsNoticedInALineWithoutEnd) {
  const Reading parsed = parse("*** Objective value\nobjective = 7");
  EXPECT_EQ(parsed.code, 1);
  EXPECT_EQ(parsed.last.objectiveValue, 7.0);
  EXPECT_EQ(parsed.last.variableValues, (Values{7.0, 7.0}));
}

TEST(ParseCircle, IsNoticedAmongTheElementsOfAMatrix) {
  const Reading parsed = parse_variables("X =\n[\n  1\n  2\n]\n\n");
  EXPECT_EQ(parsed.code, 1);
  EXPECT_EQ(parsed.last.variableNames[0], "X_0");
  EXPECT_EQ(parsed.last.variableValues[0], 1.0);
  EXPECT_LE(parsed.last.valueCount, 3);
}

TEST(ParseCircle, IsNoticedWhenAMatrixNeverCloses) {
  const Reading parsed = parse_variables("X =\n[\n  1,\n  2,\n        \n");
  EXPECT_EQ(parsed.code, 1);
  EXPECT_EQ(parsed.last.variableValues[0], 1.0);
  EXPECT_EQ(parsed.last.variableValues[1], 2.0);
}

TEST(ParseCircle, IsNoticedWhenAnUnclosedMatrixLeadsBackToAnEarlierOne) {
  const Reading parsed = parse_variables("A =\n[\n  1,\n]\n\nX =\n[\n  2,\n       \n");
  EXPECT_EQ(parsed.code, 1);
  EXPECT_EQ(parsed.last.variableNames[0], "A_0");
  EXPECT_EQ(parsed.last.variableNames[1], "X_0");
}

TEST(ParseCost, IsLinearWhenNoBracketEverComes) {
  std::string section = "X =\n[\n";
  for (int i = 0; i < 1000000; ++i) section += "  1,\n";
  const Reading parsed = parse_variables(section);
  expect_thrown(parsed);
  EXPECT_EQ(parsed.last.valueCount, 1000000);
}

TEST(ParseCost, IsLinearWhenEveryNumberIsOdd) {
  std::string section;
  for (int i = 0; i < 200000; ++i) section += "x = 1e\n\n";
  EXPECT_EQ(parse_variables(section).last.valueCount, 200000);
}

TEST(ParseCost, IsLinearWhenTheWholeTextIsOneNumber) {
  const Reading parsed = parse_variables("x = " + std::string(5000000, '9') + "\n\n");
  EXPECT_EQ(parsed.code, 0);
  EXPECT_EQ(parsed.last.valueCount, 1);
}

}  // namespace
