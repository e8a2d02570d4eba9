// The five methods of the group "IntForce" fired on small grasps, and a driver
// that is asked the same directly.
#pragma once

#include <ostream>
#include <string>

#include "unit/intforce_fixture.h"
#include "unit/plugin_fixture.h"

namespace unit_test {

/// What the ports 0 to 3 get.
struct GraspInputs {
  Floats base;
  Floats friction;
  Floats bounds;
  Integers types;
};

inline Floats narrowed(const std::vector<double>& values) {
  return {values.begin(), values.end()};
}

inline std::vector<double> widened(const Floats& values) {
  return {values.begin(), values.end()};
}

inline const GraspInputs kGrasp313{narrowed(kBase313), narrowed(kFriction313), narrowed(kBounds313),
                                   kTypes313};

/// One of the methods: its names, the text of its refusal, and how many outputs it has.
struct GraspMethod {
  const char* name;
  const char* name_in_warning;
  int float_outputs;
  bool has_epsilons;

  std::string full_name() const { return std::string("IntForce:") + name; }
  std::string warning() const {
    return std::string("sdpsol warning: ") + name_in_warning +
           " could not be executed because of wrong input dimensions.\n";
  }
};

inline std::ostream& operator<<(std::ostream& stream, const GraspMethod& method) {
  return stream << method.name;
}

constexpr GraspMethod kExists{"Exists", "exec_internal_force", 1, false};
constexpr GraspMethod kIndividual{"Maximize_Individual", "exec_maximize_individual", 2, false};
// The plural is the text that hosts know.
constexpr GraspMethod kPointContact{"Maximize_PointCont", "exec_maximize_point_contacts", 2, false};
constexpr GraspMethod kFrictionContacts{"Maximize_FrictConts", "exec_maximize_friction_contacts", 2,
                                        true};
constexpr GraspMethod kAll{"Maximize_All", "exec_maximize_all", 2, true};

class GraspTest : public PluginTest {
 protected:
  static void set(def_unittype* unit, const GraspInputs& grasp) {
    RecordingHost::set_array(unit, 0, grasp.base);
    RecordingHost::set_array(unit, 1, grasp.friction);
    RecordingHost::set_array(unit, 2, grasp.bounds);
    RecordingHost::set_array(unit, 3, grasp.types);
  }

  /// A driver that knows the answer of `root_` and asks nobody.
  sdpsol_wrapper twin() { return {"true", dir_.path("twin.in"), dir_.path("answer")}; }

  def_unittype* method(const GraspMethod& method) { return find(root_, method.full_name()); }

  def_unittype* root_ = answering(kObjective);
};

/// Each test once for every method; those with a fifth input leave it at 0 or empty.
class EveryGraspMethod : public GraspTest, public ::testing::WithParamInterface<GraspMethod> {
 protected:
  void SetUp() override { set(unit_, kGrasp313); }

  /// The direct call. @return the driver with what it was left with.
  sdpsol_wrapper asked_directly(const GraspInputs& grasp) {
    sdpsol_wrapper driver = twin();
    const CapturedOutput output;
    const auto ask = [&](auto member, auto... last) {
      (driver.*member)(widened(grasp.base), grasp.types, widened(grasp.friction),
                       widened(grasp.bounds), last...);
    };
    std::vector<double> epsilons(grasp.types.size());
    const std::string name = GetParam().name;
    if (name == "Exists") ask(&sdpsol_wrapper::internalForceExists);
    if (name == "Maximize_Individual") {
      ask(&sdpsol_wrapper::internalForceMaximizeIndividual, std::vector<int>());
    }
    if (name == "Maximize_PointCont") ask(&sdpsol_wrapper::internalForceMaximizePointContact, 0U);
    if (name == "Maximize_FrictConts") {
      ask(&sdpsol_wrapper::internalForceMaximizeFrictionContacts, &epsilons);
    }
    if (name == "Maximize_All") ask(&sdpsol_wrapper::internalForceMaximizeAll, &epsilons);
    said_directly_ = output.text();
    epsilons_ = narrowed(epsilons);
    return driver;
  }

  /// Fires, and compares everything with the direct call.
  void expect_as_directly(const GraspInputs& grasp) {
    set(unit_, grasp);
    sdpsol_wrapper driver = asked_directly(grasp);
    const std::string before = driver_of(unit_).definition;
    fire(unit_);
    EXPECT_EQ(driver_of(unit_).definition, driver.definition.empty() ? before : driver.definition);
    EXPECT_EQ(said_, said_directly_);
    expect_same_result(driver_of(unit_).lastResult, driver.lastResult);
    EXPECT_EQ(out(unit_, 0), driver.lastResult.feasible ? 1.0F : 0.0F);
    if (GetParam().float_outputs > 1) {
      EXPECT_EQ(out(unit_, 1), static_cast<float>(driver.lastResult.objectiveValue));
    }
    if (GetParam().has_epsilons) {
      epsilons_.resize(grasp.bounds.size());
      EXPECT_EQ(RecordingHost::array_out(unit_, 2), epsilons_);
    }
  }

  def_unittype* unit_ = method(GetParam());
  std::string said_directly_;
  Floats epsilons_;
};

inline std::string name_of_method(const ::testing::TestParamInfo<GraspMethod>& info) {
  return info.param.name;
}

inline auto every_method() {
  return ::testing::Values(kExists, kIndividual, kPointContact, kFrictionContacts, kAll);
}

}  // namespace unit_test
