#include "grasp/geometry.h"

#include <gtest/gtest.h>

#include <Eigen/Geometry>
#include <cmath>
#include <limits>

#include "grasp/test_grasps.h"
#include "tests/grasp_map.h"

namespace grasp {
namespace {

constexpr double kRounding = 4 * std::numeric_limits<double>::epsilon();

void expect_frame(const Frame& frame, const Vector& normal, const std::string& what) {
  Eigen::Matrix3d axes;
  axes << frame.tangential_1, frame.tangential_2, frame.normal;
  EXPECT_LE((axes.transpose() * axes - Eigen::Matrix3d::Identity()).cwiseAbs().maxCoeff(),
            kRounding)
      << what;
  EXPECT_NEAR(axes.determinant(), 1, kRounding) << what << ": it is left-handed";
  EXPECT_LE((frame.normal - normal.stableNormalized()).norm(), kRounding) << what;
}

TEST(MakeFrame, IsRightHandedAndOrthonormalForNormalsOfAnyLengthAndDirection) {
  std::mt19937 random(1);
  std::normal_distribution<double> number;
  for (int i = 0; i < 300; ++i) {
    const Vector normal =
        std::pow(10, i % 61 - 30) * Vector(number(random), number(random), number(random));
    const Vector tangent =
        std::pow(10, (7 * i) % 61 - 30) * Vector(number(random), number(random), number(random));
    expect_frame(make_frame(normal, std::nullopt), normal, "no tangent " + std::to_string(i));
    const Frame frame = make_frame(normal, tangent);
    expect_frame(frame, normal, "tangent " + std::to_string(i));
    EXPECT_GT(frame.tangential_1.dot(tangent.stableNormalized()), 0);
    EXPECT_NEAR(frame.tangential_2.dot(tangent.stableNormalized()), 0, kRounding);
  }
}

TEST(MakeFrame, StaysOrthonormalWhereTheTangentIsAlmostAlongTheNormal) {
  const Vector normal(3, -2, 5);
  for (const double off : {1e-3, 1e-5, 1e-6})
    expect_frame(make_frame(normal, normal + off * Vector(1, 4, 1)), normal, std::to_string(off));
}

TEST(MakeFrame, TakesTheAxisThatTheNormalLeansOnLeastForTangential1) {
  EXPECT_EQ(make_frame({0, 0, 7}, std::nullopt).tangential_1, Vector::UnitX());
  EXPECT_EQ(make_frame({1, 0, 0}, std::nullopt).tangential_1, Vector::UnitY());
  EXPECT_EQ(make_frame({0, -1, 0}, std::nullopt).tangential_1, Vector::UnitX());
  const Frame third = make_frame({3, -4, 1}, std::nullopt);
  EXPECT_GT(third.tangential_1.z(), 0.9);
  EXPECT_NEAR(third.tangential_2.z(), 0, kRounding);
}

TEST(MakeFrame, TakesTheFirstOfAxesThatTheNormalLeansOnAlike) {
  const double last_digit = std::numeric_limits<double>::epsilon();
  for (const double y : {1 - last_digit, 1.0, 1 + last_digit}) {
    EXPECT_GT(make_frame({1, y, 2}, std::nullopt).tangential_1.x(), 0.9) << y;
    EXPECT_GT(make_frame({-1, y, 1}, std::nullopt).tangential_1.x(), 0.5) << y;
    EXPECT_GT(make_frame({2, y, -1}, std::nullopt).tangential_1.y(), 0.9) << y;
  }
}

TEST(MakeFrame, TakesThePartOfASlantedTangentThatIsAcrossTheNormal) {
  const Frame frame = make_frame({0, 0, 2}, Vector(3, 4, 100));
  EXPECT_LE((frame.tangential_1 - Vector(0.6, 0.8, 0)).norm(), 1e-14);
  EXPECT_LE((frame.tangential_2 - Vector(-0.8, 0.6, 0)).norm(), 1e-14);
}

TEST(GraspMapOfContacts, IsTheMapOfAPinchOnPaper) {
  const GraspMap map = grasp_map(pinch());
  GraspMap paper(6, 6);
  // The frames are (y, z, x) at the thumb and (y, -z, -x) at the index.
  paper << 0, 0, 1, 0, 0, -1,  //
      1, 0, 0, 1, 0, 0,        //
      0, 1, 0, 0, -1, 0,       //
      0, 0, 0, 0, 0, 0,        //
      0, 0.02, 0, 0, 0.02, 0,  //
      -0.02, 0, 0, 0.02, 0, 0;
  EXPECT_EQ(map, paper) << map;
}

// The other way: a function of the tests' own, that takes the torques about the origin.
TEST(GraspMapOfContacts, GivesTheWrenchOfAnotherWayAboutTheCentre) {
  const auto array = [](const Vector& v) { return grasp_map::Vector{v.x(), v.y(), v.z()}; };
  std::mt19937 random(2);
  std::normal_distribution<double> number;
  for (int i = 0; i < 50; ++i) {
    const Grasp grasp = random_grasp(random, 1 + i % 7, std::pow(10, i % 5 - 2));
    std::vector<grasp_map::Contact> contacts;
    for (const Contact& each : grasp.contacts)
      contacts.push_back({array(each.point - grasp.centre), array(each.frame.normal),
                          array(each.frame.tangential_1), array(each.frame.tangential_2),
                          static_cast<int>(each.components())});
    std::vector<double> forces(grasp.components());
    for (double& force : forces) force = number(random);
    const auto expected = grasp_map::wrench(contacts, forces);
    const Eigen::VectorXd wrench =
        grasp_map(grasp) *
        Eigen::Map<const Eigen::VectorXd>(forces.data(), static_cast<Eigen::Index>(forces.size()));
    ASSERT_EQ(wrench.size(), 6);
    for (Eigen::Index k = 0; k < 6; ++k)
      EXPECT_NEAR(wrench[k], expected[static_cast<std::size_t>(k)], 1e-12 * 200) << i;
  }
}

TEST(GraspMapOfContacts, IsWeighedBySizeAboutTheCentroidToJudgeItsRank) {
  const auto smooth = ContactType::kFrictionless;
  Grasp grasp = grasp_of({contact_at({10, 0, 0}, {0, 0, 1}, smooth),
                          contact_at({12, 0, 0}, {0, 1, 0}, smooth),
                          contact_at({11, 3, 0}, {1, 0, 0}, smooth)});
  grasp.centre = {100, 0, 0};
  GraspMap paper(6, 3);  // about (11, 1, 0), in units of 2
  paper << 0, 0, 1, 0, 1, 0, 1, 0, 0, -0.5, 0, 0, 0.5, 0, 0, 0, 0.5, -1;
  EXPECT_EQ(weighed_grasp_map(grasp), paper) << weighed_grasp_map(grasp);
}

TEST(Directions, AreTheFrameOfAContactAndOnlyTheNormalOfAFrictionlessOne) {
  const Contact rough = contact_at({1, 2, 3}, {1, 2, 2});
  EXPECT_EQ(directions(rough).cols(), 3);
  EXPECT_EQ(directions(rough).col(0), rough.frame.tangential_1);
  EXPECT_EQ(directions(rough).col(1), rough.frame.tangential_2);
  EXPECT_EQ(directions(rough).col(2), rough.frame.normal);
  const Contact smooth = contact_at({1, 2, 3}, {1, 2, 2}, ContactType::kFrictionless);
  ASSERT_EQ(directions(smooth).cols(), 1);
  EXPECT_EQ(directions(smooth).col(0), smooth.frame.normal);
}

}  // namespace
}  // namespace grasp
