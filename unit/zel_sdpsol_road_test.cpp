// The whole road from a host's ports to the real solver and back.
#include <gtest/gtest.h>

#include <cstdlib>

#include "unit/zel_sdpsol_grasp_fixture.h"

namespace {

using namespace unit_test;

class Road : public PluginTest {
 protected:
  void define(const def_unittype* root, const std::string& text) {
    def_unittype* const unit = find(root, "General:Set_Definition");
    RecordingHost::set_text(unit, 0, text);
    fire(unit);
  }

  float run(const def_unittype* root) {
    def_unittype* const unit = find(root, "General:Run_Sdpsol");
    fire(unit);
    return out(unit, 0);
  }
};

TEST_F(Road, TakesADefinitionByHandToItsResult) {
  const def_unittype* const root = solving();
  define(root, "variable x, y;\n[y,x;x,2] > 0;\nx > 1;\nminimize o = x + y;\n");
  EXPECT_EQ(run(root), 0.0F);
  const Shown shown = get_result(root);
  EXPECT_EQ(shown.feasible, 1.0F);
  EXPECT_EQ(shown.code, 0.0F);
  EXPECT_NEAR(shown.objective, 1.5F, 1e-5F);
  ASSERT_EQ(shown.values.size(), 2U);
  EXPECT_NEAR(shown.values[0], 1.0F, 1e-5F);
  EXPECT_NEAR(shown.values[1], 0.5F, 1e-5F);
  EXPECT_EQ(said_, "");
}

TEST_F(Road, TakesParametersAlong) {
  const def_unittype* const root = solving();
  define(root, "variable x;\nx > 20;\n");
  EXPECT_EQ(run(root), 0.0F);
  EXPECT_EQ(get_result(root).feasible, 1.0F);

  def_unittype* const defaults = find(root, "General:Get_Default_Params");
  fire(defaults);
  def_unittype* const parameters = find(root, "General:Set_Params");
  for (int i = 0; i < 5; ++i) RecordingHost::set_float(parameters, 0, i, out(defaults, 0, i));
  RecordingHost::set_float(parameters, 0, 5, 10);  // no variable above
  fire(parameters);
  EXPECT_EQ(run(root), 0.0F);
  const Shown shown = get_result(root);
  EXPECT_EQ(shown, (Shown{0, 0, 0, {}}));
}

TEST_F(Road, OfAWrongDefinitionEndsInTwoAndLeavesNoStaleResult) {
  const def_unittype* const root = solving();
  define(root, "variable x;\nx > 1;\n");
  EXPECT_EQ(run(root), 0.0F);
  define(root, "variable x;\nx > ;\n");
  def_unittype* const unit = find(root, "General:Run_Sdpsol");
  fire_anyhow(unit);
  EXPECT_EQ(out(unit, 0), 2.0F);
  EXPECT_NE(packets_, Packets());  // the solver says what is wrong
  EXPECT_NE(said_, "");
  EXPECT_EQ(get_result(root), (Shown{0, 0, 2, {}}));
  EXPECT_FALSE(std::filesystem::exists(dir_.path("sdpsol.out")));
}

TEST_F(Road, WithTheDialogsDefaultsFindsTheSolverByItsName) {
  const char* const path = std::getenv("PATH");
  const std::string before = path == nullptr ? "" : path;
  ASSERT_EQ(setenv("PATH", (SDPSOL_BIN_DIR ":" + before).c_str(), 1), 0);
  const WorkingDirectory here(dir_.path(""));
  const def_unittype* const root = icon().create(0, 0, &icon(), host_.parent());
  ASSERT_NE(root, nullptr);
  define(root, "variable x;\nx > 1;\n");
  EXPECT_EQ(run(root), 0.0F);
  setenv("PATH", before.c_str(), 1);
  EXPECT_EQ(get_result(root).feasible, 1.0F);
  EXPECT_EQ(content_of(dir_.path("sdpsol.in")), "variable x;\nx > 1;\n");
  EXPECT_TRUE(std::filesystem::exists(dir_.path("sdpsol.out")));
}

TEST_F(Road, TellsAFeasibleInequalityFromAnInfeasibleOne) {
  const def_unittype* const root = solving();
  def_unittype* const unit = find(root, "Is_Feasible");
  const auto ask = [&](const Floats& values, float strict) {
    RecordingHost::set_float(unit, 0, 0, 2);
    RecordingHost::set_array(unit, 1, values);
    RecordingHost::set_float(unit, 2, 0, strict);
    fire(unit);
    return shown_on(unit);
  };
  const Shown feasible = ask({-1, 0, 0, -1, 1, 0, 0, 2}, 1);
  EXPECT_EQ(feasible.feasible, 1.0F);
  ASSERT_EQ(feasible.values.size(), 1U);
  EXPECT_GT(feasible.values[0], 1.0F);
  EXPECT_EQ(ask({-1, 0, 0, -1, 1, 0, 0, -1}, 1), (Shown{0, 0, 0, {}}));
  // Only the border is left: the flag decides.
  EXPECT_EQ(ask({0, 0, 0, 0, 1, 0, 0, -1}, 1).feasible, 0.0F);
  EXPECT_EQ(ask({0, 0, 0, 0, 1, 0, 0, -1}, 0).feasible, 1.0F);
}

TEST_F(Road, KeepsTwoInstancesApart) {
  const def_unittype* const first = solving("first");
  const def_unittype* const second = solving("second");
  define(first, "variable a;\na > 1;\na < 2;\nmaximize o = a;\n");
  define(second, "variable b, c;\nb > 4;\nc > 4;\nminimize o = b + c;\n");
  EXPECT_EQ(run(first), 0.0F);
  EXPECT_EQ(run(second), 0.0F);
  const Shown of_first = get_result(first);
  const Shown of_second = get_result(second);
  EXPECT_NEAR(of_first.objective, 2.0F, 1e-5F);
  EXPECT_EQ(of_first.values.size(), 1U);
  EXPECT_NEAR(of_second.objective, 8.0F, 1e-5F);
  EXPECT_EQ(of_second.values.size(), 2U);
  EXPECT_EQ(content_of(dir_.path("first.in")), "variable a;\na > 1;\na < 2;\nmaximize o = a;\n");

  // A refusal by one leaves the other's result.
  fire_anyhow(find(first, "IntForce:Exists"));
  EXPECT_EQ(get_result(first), (Shown{0, 0, 100, {}}));
  EXPECT_EQ(get_result(second), of_second);
}

// Two fingers press against each other along their normals, each with up to 10.
const GraspInputs kPinch{
    {0, 0, 1, 0, 0, 1}, {0.5F, 0.5F}, {-10, 10, -10, 10, 0, 10, -10, 10, -10, 10, 0, 10}, {3, 3}};
// Two that can only pull apart.
const GraspInputs kApart{{1, -1}, {0, 0}, {0, 10, 0, 10}, {1, 1}};

class RoadOfAGrasp : public EveryGraspMethod {
 protected:
  // Every method with the real solver; contact 1 is the chosen one.
  def_unittype* ask(const GraspInputs& grasp) {
    root_ = solving();
    def_unittype* const unit = method(GetParam());
    set(unit, grasp);
    const std::string name = GetParam().name;
    if (name == "Maximize_Individual") RecordingHost::set_array(unit, 4, Integers{1});
    if (name == "Maximize_PointCont") RecordingHost::set_float(unit, 4, 0, 1);
    fire(unit);
    EXPECT_EQ(said_, "");
    return unit;
  }
};

TEST_P(RoadOfAGrasp, FindsTheForcesOfAPinch) {
  // The normal force itself, one margin (friction times force), or two of them.
  const std::map<std::string, float> objectives{{"Exists", 0},
                                                {"Maximize_Individual", 10},
                                                {"Maximize_PointCont", 5},
                                                {"Maximize_FrictConts", 10},
                                                {"Maximize_All", 10}};
  const float objective = objectives.at(GetParam().name);
  const def_unittype* const unit = ask(kPinch);
  EXPECT_EQ(out(unit, 0), 1.0F);
  const Shown shown = get_result(root_);
  EXPECT_EQ(shown.feasible, 1.0F);
  EXPECT_EQ(shown.code, 0.0F);
  EXPECT_NEAR(shown.objective, objective, 1e-4F);
  if (GetParam().float_outputs > 1) {
    EXPECT_EQ(out(unit, 1), shown.objective);
  }
  if (!GetParam().has_epsilons) return;
  const auto epsilons = RecordingHost::array_out(unit, 2);
  ASSERT_TRUE(epsilons.has_value());
  ASSERT_EQ(epsilons->size(), 12U);
  EXPECT_NEAR(epsilons->at(0), 5.0F, 1e-4F);
  EXPECT_NEAR(epsilons->at(1), 5.0F, 1e-4F);
  EXPECT_EQ(Floats(epsilons->begin() + 2, epsilons->end()), Floats(10, 0.0F));
}

TEST_P(RoadOfAGrasp, FindsNoForcesWhereFingersPullApart) {
  const def_unittype* const unit = ask(kApart);
  EXPECT_EQ(out(unit, 0), 0.0F);
  EXPECT_EQ(get_result(root_), (Shown{0, 0, 0, {}}));
  if (GetParam().float_outputs > 1) {
    EXPECT_EQ(out(unit, 1), 0.0F);
  }
  if (GetParam().has_epsilons) {
    EXPECT_EQ(RecordingHost::array_out(unit, 2), Floats(4, 0.0F));
  }
}

INSTANTIATE_TEST_SUITE_P(IntForce, RoadOfAGrasp, every_method(), name_of_method);

}  // namespace
