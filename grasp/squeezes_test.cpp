#include "grasp/squeezes.h"

#include <gtest/gtest.h>

#include <cmath>

#include "grasp/geometry.h"
#include "grasp/test_grasps.h"

namespace grasp {
namespace {

TEST(Squeezes, AreThePairsWhoseLineLiesInBothCones) {
  Grasp grasp = pinch();
  grasp.contacts.push_back(contact_at({0, 0.02, 0}, {0, -1, 0}));
  auto found = squeezes(grasp);
  ASSERT_EQ(found.size(), 1U);
  EXPECT_EQ(found[0].first, 0U);
  EXPECT_EQ(found[0].second, 1U);
  Eigen::VectorXd forces = Eigen::VectorXd::Zero(9);
  forces[2] = forces[5] = std::sqrt(0.5);
  EXPECT_LE((found[0].forces - forces).norm(), 1e-15);
  EXPECT_TRUE(found[0].forces.tail(3).isZero(0));
  // The lines to the third contact lean by 45 degrees: a friction of 1 is their border.
  for (Contact& contact : grasp.contacts) contact.friction = 1.01;
  found = squeezes(grasp);
  ASSERT_EQ(found.size(), 3U);
  for (const Squeeze& squeeze : found) {
    EXPECT_LT(squeeze.first, squeeze.second);
    EXPECT_NEAR(squeeze.forces.norm(), 1, 1e-15);
    EXPECT_LE((grasp_map(grasp) * squeeze.forces).norm(), 1e-15);
    EXPECT_GT(squeeze.forces[static_cast<Eigen::Index>(3 * squeeze.first + 2)], 0);
    EXPECT_GT(squeeze.forces[static_cast<Eigen::Index>(3 * squeeze.second + 2)], 0);
  }
}

TEST(Squeezes, AreNoneWithoutFrictionAndNoneThatPull) {
  Grasp grasp = pinch();
  grasp.contacts[1].type = ContactType::kFrictionless;
  EXPECT_TRUE(squeezes(grasp).empty());
  Grasp outwards = pinch();
  for (Contact& contact : outwards.contacts)
    contact.frame = make_frame(-contact.frame.normal, std::nullopt);
  EXPECT_TRUE(squeezes(outwards).empty());
}

}  // namespace
}  // namespace grasp
