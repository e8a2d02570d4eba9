// What an instance tells its host when it is created, and what is made when the
// host refuses something.
#include <gtest/gtest.h>

#include <algorithm>
#include <set>
#include <string>

#include "unit/plugin_fixture.h"

namespace {

using namespace unit_test;

// The help texts of every method and port, then the dialog's fields.
const std::string kDescriptions =
    R"(kem_iconform_for_method("General:Set_Definition", " set definition string in sdpsol format %n", 0, 0)
SET_INFO_FOR_METHOD("General:Set_Definition")
INFO_FOR_INP(0, "Definiton String")
kem_iconform_for_method("General:Set_Params", " set runtime parameters for sdpsol additionally to a given definition %n  for use after set_definition. Will also be overwritten by non general methods%n", 0, 0)
SET_INFO_FOR_METHOD("General:Set_Params")
INFO_FOR_INP(0, "Parameter values: NU,GAMMA,MAXITER,ABSTOL,RELTOL,BIGM")
kem_iconform_for_method("General:Run_Sdpsol", " start command line util on given definition %n", 0, 0)
SET_INFO_FOR_METHOD("General:Run_Sdpsol")
INFO_FOR_OUT(0, "Error code")
kem_iconform_for_method("General:Get_Default_Params", " get default parameters used by sdpsol if no parameters set %n", 0, 0)
SET_INFO_FOR_METHOD("General:Get_Default_Params")
INFO_FOR_OUT(0, "Parameter values: NU,GAMMA,MAXITER,ABSTOL,RELTOL,BIGM")
kem_iconform_for_method("General:Get_Result", " get Results from sdpsol %n", 0, 0)
SET_INFO_FOR_METHOD("General:Get_Result")
INFO_FOR_OUT(0, "bool feasible")
INFO_FOR_OUT(1, "variable values")
INFO_FOR_OUT(2, "objective value")
INFO_FOR_OUT(3, "error code")
kem_iconform_for_method("Is_Feasible", " proof of feasibility for Standard LMI given as Matrices%n", 0, 0)
SET_INFO_FOR_METHOD("Is_Feasible")
INFO_FOR_INP(0, "number of matrices")
INFO_FOR_INP(1, "values")
INFO_FOR_INP(2, "=0 for no strictly feasibility")
INFO_FOR_OUT(0, "bool feasible")
INFO_FOR_OUT(1, "variable values")
INFO_FOR_OUT(2, "objective value")
INFO_FOR_OUT(3, "error code")
kem_iconform_for_method("IntForce:Exists", " returns epsilon>0 if internal force exists, 0 if not%n", 0, 0)
SET_INFO_FOR_METHOD("IntForce:Exists")
INFO_FOR_INP(0, "Nullspace Base")
INFO_FOR_INP(1, "Friction constraints")
INFO_FOR_INP(2, "Force constraints")
INFO_FOR_INP(3, "Contact Types")
INFO_FOR_OUT(0, "bool, 1 if forces found")
kem_iconform_for_method("IntForce:Maximize_All", " returns epsilon>0 as epsilon-average after maximizing all epsilons if internal force exists, 0 if not%n", 0, 0)
SET_INFO_FOR_METHOD("IntForce:Maximize_All")
INFO_FOR_INP(0, "Nullspace Base")
INFO_FOR_INP(1, "Friction constraints")
INFO_FOR_INP(2, "Force constraints")
INFO_FOR_INP(3, "Contact Types")
INFO_FOR_OUT(0, "0 if no forces found")
INFO_FOR_OUT(1, "average friction_epsilon + frictionless_epsilon, 0 if no forces found")
INFO_FOR_OUT(2, "epsilons, one for each contact")
kem_iconform_for_method("IntForce:Maximize_FrictConts", " returns epsilon>0 as average epsilon of all maximized epsilons of contacts wth friction if internal force exists, 0 if not%n", 0, 0)
SET_INFO_FOR_METHOD("IntForce:Maximize_FrictConts")
INFO_FOR_INP(0, "Nullspace Base")
INFO_FOR_INP(1, "Friction constraints")
INFO_FOR_INP(2, "Force constraints")
INFO_FOR_INP(3, "Contact Types")
INFO_FOR_OUT(0, "0 if no forces found")
INFO_FOR_OUT(1, "average epsilon, 0 if no forces found")
INFO_FOR_OUT(2, "epsilons, one for each contact")
kem_iconform_for_method("IntForce:Maximize_PointCont", " returns epsilon>0 as maximal force on given point contact if internal force exists, 0 if not%n", 0, 0)
SET_INFO_FOR_METHOD("IntForce:Maximize_PointCont")
INFO_FOR_INP(0, "Nullspace Base")
INFO_FOR_INP(1, "Friction constraints")
INFO_FOR_INP(2, "Force constraints")
INFO_FOR_INP(3, "Contact Types")
INFO_FOR_INP(4, "Number of contact force to maximize")
INFO_FOR_OUT(0, "0 if no forces found")
INFO_FOR_OUT(1, "epsilon")
kem_iconform_for_method("IntForce:Maximize_Individual", " returns epsilon>0 as average of all maximized epsilons if internal force exists, 0 if not%n", 0, 0)
SET_INFO_FOR_METHOD("IntForce:Maximize_Individual")
INFO_FOR_INP(0, "Nullspace Base")
INFO_FOR_INP(1, "Friction constraints")
INFO_FOR_INP(2, "Force constraints")
INFO_FOR_INP(3, "Contact Types")
INFO_FOR_INP(4, "Contacts for epsilon maximization")
INFO_FOR_OUT(0, "0 if no forces found")
INFO_FOR_OUT(1, "average epsilon")
TVAL(2)
TVAL(1)
TVAL(0)
)";

const std::string kTree =
    R"(is_not_unit(host)
primitive_unit(TAG_END, host)
zel_indicate_export_of_methods(#1)
return_unit(#1)
primitive_unit(TAG_END, #1)
zel_name_unit("General", #2)
zel_indicate_export_of_methods(General)
primitive_unit(TAG_INP, TAG_STRING, 1, TAG_END, General)
zel_name_unit("Set_Definition", #3)
primitive_unit(TAG_INP, TAG_FLOAT, 6, TAG_END, General)
zel_name_unit("Set_Params", #4)
primitive_unit(TAG_OUT, TAG_FLOAT, 1, TAG_END, General)
zel_name_unit("Run_Sdpsol", #5)
primitive_unit(TAG_OUT, TAG_FLOAT, 6, TAG_END, General)
zel_name_unit("Get_Default_Params", #6)
primitive_unit(TAG_OUT, TAG_FLOAT, 1, TAG_OUT, TAG_DYN, "F", TAG_OUT, TAG_FLOAT, 1, TAG_OUT, TAG_FLOAT, 1, TAG_END, General)
zel_name_unit("Get_Result", #7)
primitive_unit(TAG_INP, TAG_FLOAT, 1, TAG_INP, TAG_DYN, "F", TAG_INP, TAG_FLOAT, 1, TAG_OUT, TAG_FLOAT, 1, TAG_OUT, TAG_DYN, "F", TAG_OUT, TAG_FLOAT, 1, TAG_OUT, TAG_FLOAT, 1, TAG_END, #1)
zel_name_unit("Is_Feasible", #8)
primitive_unit(TAG_END, #1)
zel_name_unit("IntForce", #9)
zel_indicate_export_of_methods(IntForce)
primitive_unit(TAG_INP, TAG_DYN, "F", TAG_INP, TAG_DYN, "F", TAG_INP, TAG_DYN, "F", TAG_INP, TAG_DYN, "I", TAG_OUT, TAG_FLOAT, 1, TAG_END, IntForce)
zel_name_unit("Exists", #10)
primitive_unit(TAG_INP, TAG_DYN, "F", TAG_INP, TAG_DYN, "F", TAG_INP, TAG_DYN, "F", TAG_INP, TAG_DYN, "I", TAG_INP, TAG_DYN, "I", TAG_OUT, TAG_FLOAT, 1, TAG_OUT, TAG_FLOAT, 1, TAG_END, IntForce)
zel_name_unit("Maximize_Individual", #11)
primitive_unit(TAG_INP, TAG_DYN, "F", TAG_INP, TAG_DYN, "F", TAG_INP, TAG_DYN, "F", TAG_INP, TAG_DYN, "I", TAG_INP, TAG_FLOAT, 1, TAG_OUT, TAG_FLOAT, 1, TAG_OUT, TAG_FLOAT, 1, TAG_END, IntForce)
zel_name_unit("Maximize_PointCont", #12)
primitive_unit(TAG_INP, TAG_DYN, "F", TAG_INP, TAG_DYN, "F", TAG_INP, TAG_DYN, "F", TAG_INP, TAG_DYN, "I", TAG_OUT, TAG_FLOAT, 1, TAG_OUT, TAG_FLOAT, 1, TAG_OUT, TAG_DYN, "F", TAG_END, IntForce)
zel_name_unit("Maximize_FrictConts", #13)
primitive_unit(TAG_INP, TAG_DYN, "F", TAG_INP, TAG_DYN, "F", TAG_INP, TAG_DYN, "F", TAG_INP, TAG_DYN, "I", TAG_OUT, TAG_FLOAT, 1, TAG_OUT, TAG_FLOAT, 1, TAG_OUT, TAG_DYN, "F", TAG_END, IntForce)
zel_name_unit("Maximize_All", #14)
label(#1, "sdpsol")
)";

const std::set<std::string> kMethods{
    "General:Set_Definition",
    "General:Set_Params",
    "General:Run_Sdpsol",
    "General:Get_Default_Params",
    "General:Get_Result",
    "Is_Feasible",
    "IntForce:Exists",
    "IntForce:Maximize_Individual",
    "IntForce:Maximize_PointCont",
    "IntForce:Maximize_FrictConts",
    "IntForce:Maximize_All",
};

using Constructor = def_unittype*(def_unittype*, char*, char*, char*);

class Creation : public PluginTest {
 protected:
  def_unittype* create() { return icon().create(0, 0, &icon(), host_.parent()); }

  def_unittype* construct(char* command, char* definition_file, char* result_file) {
    return exported<Constructor>("sdpsol")(host_.parent(), command, definition_file, result_file);
  }
};

TEST_F(Creation, DescribesTheMethodsThenReadsTheDialogThenBuildsTheTree) {
  EXPECT_NE(create(), nullptr);
  EXPECT_EQ(host_.take_calls(), kDescriptions + kTree);
}

TEST_F(Creation, IgnoresItsNumbersAndItsIcon) {
  EXPECT_NE(icon().create(-1, 99, nullptr, host_.parent()), nullptr);
  EXPECT_EQ(host_.take_calls(), kDescriptions + kTree);
}

TEST_F(Creation, ByTheConstructorAloneBuildsTheTree) {
  std::string texts[] = {"my solver", "d", "r"};
  def_unittype* const root = construct(texts[0].data(), texts[1].data(), texts[2].data());
  EXPECT_EQ(host_.take_calls(), kTree);
  ASSERT_NE(root, nullptr);
  EXPECT_EQ(driver_of(root).commandLine, "my solver -q -o r d");
}

TEST_F(Creation, DescribesTheMethodsAgainForEveryInstance) {
  def_unittype* const first = create();
  host_.take_calls();
  EXPECT_NE(create(), first);
  EXPECT_EQ(host_.take_calls().substr(0, kDescriptions.size()), kDescriptions);
}

TEST_F(Creation, ReturnsTheRootOfAllThatItMade) {
  def_unittype* const root = create();
  EXPECT_EQ(root->parent, host_.parent());
  EXPECT_EQ(host_.tree(root).size(), 3 + kMethods.size());
  EXPECT_EQ(host_.tree(root).front(), root);
}

TEST_F(Creation, SetsItsFunctionsOnMethodsOnly) {
  def_unittype* const root = create();
  std::set<std::string> methods;
  std::set<zel_method*> functions;
  for (const def_unittype* unit : host_.tree(root)) {
    if (unit->method == nullptr) continue;
    methods.insert(host_.shown(unit));
    functions.insert(unit->method);
  }
  EXPECT_EQ(methods, kMethods);
  EXPECT_EQ(functions.size(), kMethods.size());
}

TEST_F(Creation, GivesTheSameFunctionsToEveryInstance) {
  def_unittype* const first = create();
  def_unittype* const second = create();
  for (const std::string& name : kMethods) {
    EXPECT_EQ(find(first, name)->method, find(second, name)->method) << name;
  }
}

TEST_F(Creation, SharesOneDriverAmongAllUnitsOfAnInstance) {
  def_unittype* const first = create();
  def_unittype* const second = create();
  ASSERT_NE(first->user, nullptr);
  ASSERT_NE(second->user, nullptr);
  EXPECT_NE(first->user, second->user);
  for (const def_unittype* unit : host_.tree(first)) EXPECT_EQ(unit->user, first->user);
  for (const def_unittype* unit : host_.tree(second)) EXPECT_EQ(unit->user, second->user);
  EXPECT_EQ(host_.parent()->user, nullptr);
}

// A host may look at a unit whenever it is called.
TEST_F(Creation, HandsTheDriverOnAfterTheNameAndBeforeTheExportMark) {
  const def_unittype* const root = create();
  ASSERT_EQ(host_.calls.size(), host_.users_at_calls.size());
  std::size_t seen = 0;
  for (std::size_t i = 0; i < host_.calls.size(); ++i) {
    const std::string& line = host_.calls[i];
    const bool on_unit = kTree.find(line + "\n") != std::string::npos;
    const bool on_host = line.ends_with("host)");
    const bool naming = line.starts_with("zel_name_unit");
    const void* const expected = on_unit && !on_host && !naming ? root->user : nullptr;
    EXPECT_EQ(host_.users_at_calls[i], expected) << line;
    if (expected != nullptr) ++seen;
  }
  // Thirteen units below another, three export marks, return_unit and label.
  EXPECT_EQ(seen, 18U);
}

TEST_F(Creation, MakesADriverOfTheDialogsTexts) {
  const sdpsol_wrapper& driver = driver_of(create());
  EXPECT_EQ(driver.commandLine, "sdpsol -q -o sdpsol.out sdpsol.in");
  EXPECT_EQ(driver.definitionFile, "sdpsol.in");
  EXPECT_EQ(driver.resultFile, "sdpsol.out");
  EXPECT_EQ(driver.definition, "");
  expect_same_result(driver.lastResult, {});
}

TEST_F(Creation, CopiesTheDialogsTexts) {
  host_.dialog = {"a command that is too long for short strings", "definition", "result"};
  const sdpsol_wrapper& driver = driver_of(create());
  for (auto& text : host_.dialog) text->assign(text->size(), '?');
  EXPECT_EQ(driver.commandLine,
            "a command that is too long for short strings -q -o result definition");
  EXPECT_EQ(driver.definitionFile, "definition");
  EXPECT_EQ(driver.resultFile, "result");
}

TEST_F(Creation, CountsMissingTextsAsEmpty) {
  host_.dialog = {std::nullopt, "d", "r"};
  EXPECT_EQ(driver_of(create()).commandLine, " -q -o r d");
  host_.dialog = {"s", std::nullopt, "r"};
  EXPECT_EQ(driver_of(create()).commandLine, "s -q -o r ");
  host_.dialog = {"s", "d", std::nullopt};
  EXPECT_EQ(driver_of(create()).commandLine, "s -q -o  d");
  const def_unittype* const root = construct(nullptr, nullptr, nullptr);
  ASSERT_NE(root, nullptr);
  EXPECT_EQ(driver_of(root).commandLine, " -q -o  ");
  EXPECT_EQ(driver_of(root).definitionFile, "");
  EXPECT_EQ(driver_of(root).resultFile, "");
}

TEST_F(Creation, ReportsAParentThatIsNoUnitAndMakesNothing) {
  host_.knows_no_unit = true;
  EXPECT_EQ(create(), nullptr);
  EXPECT_EQ(host_.take_calls(),
            kDescriptions + "is_not_unit(host)\nerror_msg(2, \"sdpsol\", 1, 0)\n");
}

TEST_F(Creation, ReportsAMissingParentAndMakesNothing) {
  EXPECT_EQ(icon().create(0, 0, &icon(), nullptr), nullptr);
  EXPECT_EQ(host_.take_calls(),
            kDescriptions + "is_not_unit(null)\nerror_msg(2, \"sdpsol\", 1, 0)\n");
}

TEST_F(Creation, ReportsThatThereIsNoRootAndMakesNothingElse) {
  host_.refused_unit = 1;
  EXPECT_EQ(create(), nullptr);
  EXPECT_EQ(host_.take_calls(), kDescriptions +
                                    "is_not_unit(host)\nprimitive_unit(TAG_END, host)\n"
                                    "error_msg(30, \"sdpsol\", 1, 0)\n");
}

TEST_F(Creation, OfAThousandInstancesKeepsThemApart) {
  std::vector<def_unittype*> roots;
  std::set<const void*> drivers;
  for (int i = 0; i < 1000; ++i) {
    host_.dialog = {"sdpsol", std::to_string(i) + ".in", std::to_string(i) + ".out"};
    roots.push_back(create());
    ASSERT_NE(roots.back(), nullptr);
    drivers.insert(roots.back()->user);
  }
  EXPECT_EQ(drivers.size(), 1000U);
  for (int i = 0; i < 1000; ++i) {
    EXPECT_EQ(driver_of(roots[static_cast<std::size_t>(i)]).commandLine,
              "sdpsol -q -o " + std::to_string(i) + ".out " + std::to_string(i) + ".in");
  }
}

std::string replaced(std::string text, const std::string& what, const std::string& with) {
  for (std::size_t at = 0; (at = text.find(what, at)) != std::string::npos; at += with.size()) {
    text.replace(at, what.size(), with);
  }
  return text;
}

// By number of the call: every unit but the root.
class RefusedUnit : public Creation, public ::testing::WithParamInterface<int> {};

TEST_P(RefusedUnit, IsMissingFromATreeThatIsBuiltOn) {
  const int number = GetParam();
  host_.refused_unit = number;
  const def_unittype* const root = create();
  ASSERT_NE(root, nullptr);

  // A group takes its five methods with it: no unit can be made below none.
  const bool group = number == 2 || number == 9;
  const int last = group ? number + 5 : number;
  std::string expected = kTree;
  for (int missing = number; missing <= last; ++missing) {
    expected = replaced(expected, "#" + std::to_string(missing) + ")", "null)");
  }
  if (group) expected = replaced(expected, number == 2 ? "General)" : "IntForce)", "null)");
  EXPECT_EQ(host_.take_calls(), kDescriptions + expected);
  EXPECT_EQ(host_.tree(root).size(), group ? 8U : 13U);
  for (const def_unittype* unit : host_.tree(root)) EXPECT_EQ(unit->user, root->user);
}

INSTANTIATE_TEST_SUITE_P(OfTheTree, RefusedUnit, ::testing::Range(2, 15));

TEST_F(Creation, HasASecondFunctionThatAnswersOneAndDoesNothing) {
  EXPECT_EQ(icon().second(0, 0, &icon(), host_.parent()), 1);
  EXPECT_EQ(icon().second(std::numeric_limits<int>::min(), std::numeric_limits<int>::max(), nullptr,
                          nullptr),
            1);
  EXPECT_EQ(host_.take_calls(), "");
}

}  // namespace
