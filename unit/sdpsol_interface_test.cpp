// The interface as other programs compile against it: the types of all members,
// and the order of the data.
#include <gtest/gtest.h>

#include <cstdint>
#include <string>
#include <type_traits>
#include <vector>

#include "unit/sdpsol_wrapper.h"

namespace {

using Wrapper = sdpsol_wrapper;
using Ints = std::vector<int>;
using Doubles = std::vector<double>;
using Matrices = std::vector<std::vector<Doubles>>;

template <auto member, class Type>
constexpr bool kIs = std::is_same_v<decltype(member), Type>;

static_assert(kIs<&Wrapper::writeDefinition, int (Wrapper::*)()>);
static_assert(kIs<&Wrapper::callsdpsol, int (Wrapper::*)()>);
static_assert(kIs<&Wrapper::readResult, int (Wrapper::*)()>);
static_assert(kIs<&Wrapper::parseResult, int (Wrapper::*)()>);
static_assert(kIs<&Wrapper::run, int (Wrapper::*)()>);
static_assert(kIs<&Wrapper::print_command_values, void (Wrapper::*)()>);
static_assert(kIs<&Wrapper::getDefaultParameters, Wrapper::parameters (Wrapper::*)()>);
static_assert(kIs<&Wrapper::setParameters, void (Wrapper::*)(Wrapper::parameters)>);
static_assert(kIs<&Wrapper::isFeasible, bool (Wrapper::*)(Matrices, bool)>);
static_assert(kIs<&Wrapper::isInVector, bool (Wrapper::*)(int, Ints)>);
static_assert(kIs<&Wrapper::intforce_basic_defs,
                  std::string (Wrapper::*)(Doubles, Ints, std::uint32_t, std::uint32_t)>);
static_assert(kIs<&Wrapper::intforce_basic_constr,
                  std::string (Wrapper::*)(Ints, Doubles, Doubles, std::uint32_t, std::uint32_t)>);
static_assert(
    kIs<&Wrapper::internalForceExists, float (Wrapper::*)(Doubles, Ints, Doubles, Doubles)>);
static_assert(kIs<&Wrapper::internalForceMaximizeIndividual,
                  float (Wrapper::*)(Doubles, Ints, Doubles, Doubles, Ints)>);
static_assert(kIs<&Wrapper::internalForceMaximizeFrictionContacts,
                  float (Wrapper::*)(Doubles, Ints, Doubles, Doubles, Doubles*)>);
static_assert(kIs<&Wrapper::internalForceMaximizeAll,
                  float (Wrapper::*)(Doubles, Ints, Doubles, Doubles, Doubles*)>);
static_assert(kIs<&Wrapper::internalForceMaximizePointContact,
                  float (Wrapper::*)(Doubles, Ints, Doubles, Doubles, std::uint32_t)>);

TEST(Interface, KeepsTheOrderOfTheDriversData) {
  const Wrapper driver("c", "d", "r");
  const auto& [definition_file, result_file, command_line, definition, result_text, last] = driver;
  EXPECT_EQ(&definition_file, &driver.definitionFile);
  EXPECT_EQ(&result_file, &driver.resultFile);
  EXPECT_EQ(&command_line, &driver.commandLine);
  EXPECT_EQ(&definition, &driver.definition);
  EXPECT_EQ(&result_text, &driver.resultText);
  EXPECT_EQ(&last, &driver.lastResult);
}

TEST(Interface, KeepsTheOrderAndTypesOfAResult) {
  Wrapper::result last{1, true, 2.0, {"x"}, {3.0}, 4};
  const auto& [code, feasible, objective, names, values, count] = last;
  static_assert(std::is_same_v<decltype(last.errorCode), int>);
  static_assert(std::is_same_v<decltype(last.valueCount), int>);
  EXPECT_EQ(&code, &last.errorCode);
  EXPECT_EQ(&feasible, &last.feasible);
  EXPECT_EQ(&objective, &last.objectiveValue);
  EXPECT_EQ(&names, &last.variableNames);
  EXPECT_EQ(&values, &last.variableValues);
  EXPECT_EQ(&count, &last.valueCount);
}

TEST(Interface, KeepsTheOrderAndTypesOfParameters) {
  const Wrapper::parameters p{1.5, 2.5, 3, 4.5, 5.5, 6.5};
  static_assert(std::is_same_v<decltype(p.MAXITER), int>);
  EXPECT_EQ(p.NU, 1.5);
  EXPECT_EQ(p.GAMMA, 2.5);
  EXPECT_EQ(p.MAXITER, 3);
  EXPECT_EQ(p.ABSTOL, 4.5);
  EXPECT_EQ(p.RELTOL, 5.5);
  EXPECT_EQ(p.BIGM, 6.5);
}

}  // namespace
