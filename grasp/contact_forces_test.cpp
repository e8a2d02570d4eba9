#include "grasp/contact_forces.h"

#include <gtest/gtest.h>

#include "grasp/test_grasps.h"

namespace grasp {
namespace {

// Frames: (x, y, z), and the normal -x of a frictionless contact.
Grasp two_contacts() {
  Grasp grasp = grasp_of({contact_at({0, 0, 0}, {0, 0, 1}),
                          contact_at({1, 0, 0}, {-1, 0, 0}, ContactType::kFrictionless)});
  grasp.contacts[0].friction = 0.5;
  grasp.contacts[0].bounds = {{-5, 6}, {-7, 8}, {1, 20}};
  grasp.contacts[1].bounds = {{2, 9}};
  return grasp;
}

TEST(ContactForces, AreTakenApartByContactAndTurnedIntoTheWorld) {
  const auto forces = contact_forces(two_contacts(), Eigen::Vector4d(3, -4, 12, 8));
  ASSERT_EQ(forces.size(), 2U);
  EXPECT_EQ(forces[0].local, Vector(3, -4, 12));
  EXPECT_EQ(forces[0].world, Vector(3, -4, 12));
  EXPECT_EQ(forces[1].local, Vector(0, 0, 8));
  EXPECT_EQ(forces[1].world, Vector(-8, 0, 0));
  EXPECT_FALSE(forces[0].epsilon);
  EXPECT_FALSE(forces[1].epsilon);
}

TEST(ContactForces, AreAsFarInsideTheConeAsTheFrictionExceedsTheTangentialForce) {
  const Grasp grasp = two_contacts();
  const auto margin = [&grasp](double x, double y, double z) {
    return contact_forces(grasp, Eigen::Vector4d(x, y, z, 8))[0].cone_margin;
  };
  EXPECT_DOUBLE_EQ(margin(3, -4, 12), 1);
  EXPECT_DOUBLE_EQ(margin(3, 4, 10), 0);
  EXPECT_DOUBLE_EQ(margin(-3, 4, 4), -3);
  EXPECT_DOUBLE_EQ(margin(0, 0, -2), -1);
  EXPECT_DOUBLE_EQ(contact_forces(grasp, Eigen::Vector4d(0, 0, 0, -3))[1].cone_margin, -3);
}

TEST(ContactForces, AreAsFarInsideTheBoundsAsTheNearestOfThem) {
  const Grasp grasp = two_contacts();
  const auto margin = [&grasp](double x, double y, double z) {
    return contact_forces(grasp, Eigen::Vector4d(x, y, z, 8))[0].bound_margin;
  };
  EXPECT_DOUBLE_EQ(margin(-4.5, 0, 10), 0.5);
  EXPECT_DOUBLE_EQ(margin(5.75, 0, 10), 0.25);
  EXPECT_DOUBLE_EQ(margin(0, -6, 10), 1);
  EXPECT_DOUBLE_EQ(margin(0, 9, 10), -1);
  EXPECT_DOUBLE_EQ(margin(0, 0, 1.5), 0.5);
  EXPECT_DOUBLE_EQ(margin(0, 0, 22), -2);
  EXPECT_DOUBLE_EQ(contact_forces(grasp, Eigen::Vector4d(0, 0, 5, 8))[1].bound_margin, 1);
  EXPECT_DOUBLE_EQ(contact_forces(grasp, Eigen::Vector4d(0, 0, 5, 2.5))[1].bound_margin, 0.5);
}

}  // namespace
}  // namespace grasp
