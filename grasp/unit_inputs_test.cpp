#include "grasp/unit_inputs.h"

#include <gtest/gtest.h>

namespace grasp {
namespace {

// Bounds and friction of a grasp whose first contact has these.
UnitInputs inputs_with(const Bounds& bounds, double friction) {
  Grasp grasp;
  Contact contact;
  contact.friction = friction;
  contact.bounds = {bounds, bounds, bounds};
  grasp.contacts = {contact};
  return unit_inputs(grasp, Eigen::MatrixXd::Zero(3, 1));
}

TEST(UnitInputs, KeepWhatSixDigitsCanTell) {
  const UnitInputs inputs = inputs_with({-12.3456, 1234.56}, 0.1);
  EXPECT_EQ(inputs.bounds[0], -12.3456F);
  EXPECT_EQ(inputs.bounds[1], 1234.56F);
  EXPECT_EQ(inputs.friction[0], 0.1F);
  EXPECT_EQ(inputs_with({0, 1e6}, 0).bounds[0], 0.0F);
}

TEST(UnitInputs, RoundBoundsAndFrictionOutwards) {
  const UnitInputs inputs = inputs_with({123456.2, 123456.4}, 0.3333333);
  EXPECT_EQ(inputs.bounds[0], 123456.0F);
  EXPECT_EQ(inputs.bounds[1], 123457.0F);
  EXPECT_EQ(inputs.friction[0], 0.333334F);
  const UnitInputs below = inputs_with({-9.999999, -1.0000001}, 0.9999999);
  EXPECT_EQ(below.bounds[0], -10.0F);
  EXPECT_EQ(below.bounds[1], -1.0F);
  EXPECT_EQ(below.friction[0], 1.0F);
}

TEST(UnitInputs, HoldTheBaseRowAfterRow) {
  Grasp grasp;
  Eigen::MatrixXd base(3, 2);
  base << 1, 2, 3, 4, 5, 6;
  EXPECT_EQ(unit_inputs(grasp, base).base, (std::vector<float>{1, 2, 3, 4, 5, 6}));
}

// There is nothing to point at in such a matrix, which the sanitizers see.
TEST(UnitInputs, HaveNoBaseWhereThereAreNoInternalForces) {
  EXPECT_TRUE(unit_inputs(Grasp(), Eigen::MatrixXd(3, 0)).base.empty());
}

}  // namespace
}  // namespace grasp
