#include "grasp/nullspace.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <numeric>

#include "grasp/test_grasps.h"

namespace grasp {
namespace {

double residual(const GraspMap& map, const Eigen::MatrixXd& base) {
  return base.cols() == 0 ? 0 : (map * base).cwiseAbs().maxCoeff();
}

// @param first_pivot the first column that a component was chosen for.
void expect_base(const GraspMap& map, const Nullspace& space, int rank,
                 Eigen::Index first_pivot = 0) {
  EXPECT_EQ(space.balance.rank, rank);
  EXPECT_EQ(space.balance.columns, map.cols());
  EXPECT_EQ(space.balance.nullity, map.cols() - rank);
  ASSERT_EQ(space.base.rows(), map.cols());
  ASSERT_EQ(space.base.cols(), map.cols() - rank);
  EXPECT_LE(residual(map, space.base), 1e-12);
  EXPECT_GT(space.balance.smallest_kept, kRankTolerance);
  EXPECT_LE(space.balance.largest_dropped, kRankTolerance);
  if (space.base.cols() == 0) return;
  const auto n = space.base.cols();
  EXPECT_LE(
      (space.base.transpose() * space.base - Eigen::MatrixXd::Identity(n, n)).cwiseAbs().maxCoeff(),
      1e-12);
  // The pivot of a column: a positive entry in a row that is 0 in the columns behind it.
  for (Eigen::Index column = first_pivot; column < n; ++column) {
    bool has_pivot = false;
    for (Eigen::Index row = 0; row < space.base.rows(); ++row)
      has_pivot = has_pivot || (space.base(row, column) > 1e-9 &&
                                space.base.row(row).tail(n - column - 1).isZero(1e-12));
    EXPECT_TRUE(has_pivot) << "column " << column << " of\n" << space.base;
  }
}

double difference(const Eigen::MatrixXd& a, const Eigen::MatrixXd& b) {
  return a.rows() == b.rows() && a.cols() == b.cols() ? (a - b).cwiseAbs().maxCoeff() : 1e300;
}

/// Contacts with friction on a regular polygon.
Grasp polygon(int contacts, double size) {
  Grasp grasp;
  for (int i = 0; i < contacts; ++i) {
    const double angle = 2 * std::acos(-1) * i / contacts;
    const Vector out(std::cos(angle), std::sin(angle), 0);
    grasp.contacts.push_back(contact_at(size * out, -out));
  }
  grasp.centre = Vector::Zero();
  return grasp;
}

TEST(NullspaceOfAGraspMap, OfAPinchIsTheSqueeze) {
  const GraspMap map = weighed_grasp_map(pinch());
  const Nullspace space = nullspace(map);
  expect_base(map, space, 5);
  Eigen::MatrixXd squeeze(6, 1);
  squeeze << 0, 0, std::sqrt(0.5), 0, 0, std::sqrt(0.5);
  EXPECT_LE(difference(space.base, squeeze), 1e-15);
  for (const Eigen::Index k : {0, 1, 3, 4}) EXPECT_EQ(space.base(k, 0), 0) << k;
  // Across the line between the fingers; singular values relative to the largest.
  EXPECT_LE(space.balance.largest_dropped, 1e-15);
}

TEST(NullspaceOfAGraspMap, IsABaseForManyRandomGrasps) {
  std::mt19937 random(3);
  for (int i = 0; i < 60; ++i) {
    const GraspMap map =
        weighed_grasp_map(random_grasp(random, 1 + i % 8, std::pow(10, i % 9 - 4)));
    expect_base(map, nullspace(map),
                static_cast<int>(
                    std::min<Eigen::Index>({6, map.cols(), 3 * (1 + i % 8), i % 8 == 1 ? 5 : 6})));
  }
}

TEST(NullspaceOfAGraspMap, HasOneRankInMetresAndMillimetres) {
  for (const int contacts : {2, 3, 4, 7}) {
    const Nullspace metres = nullspace(weighed_grasp_map(polygon(contacts, 0.03)));
    const GraspMap map = weighed_grasp_map(polygon(contacts, 30));
    const Nullspace millimetres = nullspace(map);
    expect_base(map, millimetres, contacts == 2 ? 5 : 6);
    EXPECT_EQ(metres.balance.rank, millimetres.balance.rank);
    EXPECT_NEAR(metres.balance.smallest_kept, millimetres.balance.smallest_kept, 1e-12);
    EXPECT_LE(difference(metres.base, millimetres.base), 1e-12) << contacts;
  }
}

// Rows of another order or size, mixed rows and rounding: one nullspace, and so one base,
// also of symmetric grasps, whose choice of components is all ties.
TEST(NullspaceOfAGraspMap, HasABaseThatDependsOnTheNullspaceAlone) {
  std::mt19937 random(4);
  std::uniform_real_distribution<double> number(-1, 1);
  std::vector<Grasp> grasps = {pinch(),          polygon(3, 0.03), polygon(4, 0.03),
                               polygon(6, 0.03), polygon(8, 1),    random_grasp(random, 5, 0.05)};
  for (const Grasp& grasp : grasps) {
    const GraspMap map = weighed_grasp_map(grasp);
    const Eigen::MatrixXd base = nullspace(map).base;
    GraspMap turned = map;
    for (const auto& [to, from] : {std::pair{0, 4}, {1, 5}, {2, 3}, {3, 1}, {4, 0}, {5, 2}})
      turned.row(to) = (to % 2 == 0 ? -1.25 : 0.75) * map.row(from);
    EXPECT_LE(difference(nullspace(turned).base, base), 1e-11);
    const Eigen::Matrix<double, 6, 6> mix =
        Eigen::Matrix<double, 6, 6>::NullaryExpr([&] { return number(random); }) +
        3 * Eigen::Matrix<double, 6, 6>::Identity();
    EXPECT_LE(difference(nullspace(mix * map).base, base), 1e-11);
    const GraspMap rounded =
        map + 1e-15 * GraspMap::NullaryExpr(6, map.cols(), [&] { return number(random); });
    EXPECT_LE(difference(nullspace(rounded).base, base), 1e-11) << base;
  }
}

TEST(NullspaceOfAGraspMap, SetsEntriesAtRoundingLevelToExactly0) {
  std::mt19937 random(5);
  for (const int contacts : {2, 3, 4, 6, 12}) {
    const Nullspace space = nullspace(weighed_grasp_map(polygon(contacts, 0.03)));
    for (const double entry : space.base.reshaped())
      EXPECT_TRUE(entry == 0 || std::abs(entry) > 1e-9) << entry;
  }
}

TEST(NullspaceOfAGraspMap, OfContactsOnALineHasRank5) {
  Grasp line;
  for (int i = 0; i < 5; ++i)
    line.contacts.push_back(contact_at(Vector(0.1, 0.2, 0.3) + 0.01 * i * i * Vector(1, 2, -1),
                                       Vector(i, 1, 1 - 2 * i)));
  line.centre = line.contacts[2].point;
  const GraspMap map = weighed_grasp_map(line);
  expect_base(map, nullspace(map), 5);
}

TEST(NullspaceOfAGraspMap, OfAPlaneWithoutFrictionHasRank3) {
  Grasp plane;
  for (int i = 0; i < 6; ++i)
    plane.contacts.push_back(contact_at(Vector(std::cos(i), std::sin(i), 0),
                                        Vector(std::cos(1.7 * i), std::sin(1.7 * i), 0),
                                        ContactType::kFrictionless));
  plane.centre = Vector::Zero();
  const GraspMap map = weighed_grasp_map(plane);
  expect_base(map, nullspace(map), 3);
}

TEST(NullspaceOfAGraspMap, OfFewComponentsHasNoColumnsOrOne) {
  const auto smooth = ContactType::kFrictionless;
  // The centre at the only contact: no torque at all, and so no size.
  const GraspMap one = weighed_grasp_map(grasp_of({contact_at({0, 0, 0}, {1, 2, 3})}));
  expect_base(one, nullspace(one), 3);
  const GraspMap single = weighed_grasp_map(grasp_of({contact_at({0, 0, 0}, {1, 2, 3}, smooth)}));
  expect_base(single, nullspace(single), 1);
  const GraspMap three = weighed_grasp_map(grasp_of({contact_at({-1, 0, 0}, {1, 0, 0}, smooth),
                                                     contact_at({0, -1, 0}, {0, 1, 0}, smooth),
                                                     contact_at({0, 0, -1}, {0, 0, 1}, smooth)}));
  expect_base(three, nullspace(three), 3);
  const GraspMap facing = weighed_grasp_map(grasp_of(
      {contact_at({-1, 0, 0}, {1, 0, 0}, smooth), contact_at({1, 0, 0}, {-1, 0, 0}, smooth)}));
  const Nullspace squeeze = nullspace(facing);
  expect_base(facing, squeeze, 1);
  EXPECT_NEAR(squeeze.base(0, 0), std::sqrt(0.5), 1e-15);
  EXPECT_NEAR(squeeze.base(1, 0), std::sqrt(0.5), 1e-15);
}

// Two frictionless contacts, the second of which is pushed off the line: a moment of
// offset / 2 in units of the grasp's size, at both contacts.
TEST(NullspaceOfAGraspMap, TakesSingularValuesBelowAMillionthFor0) {
  const auto off_by = [](double offset) {
    return weighed_grasp_map(
        grasp_of({contact_at({-0.02, 0, 0}, {1, 0, 0}, ContactType::kFrictionless),
                  contact_at({0.02, 0, 0.04 * offset}, {-1, 0, 0}, ContactType::kFrictionless)}));
  };
  for (const double offset : {1e-16, 1e-7}) {
    const Nullspace border = nullspace(off_by(offset));
    EXPECT_EQ(border.balance.rank, 1);
    EXPECT_NEAR(border.balance.largest_dropped, offset, 0.01 * offset);
    EXPECT_NEAR(border.balance.smallest_kept, 1, 1e-12);
    EXPECT_NEAR(residual(off_by(offset), border.base), std::sqrt(2) * offset, 0.1 * offset);
  }
  const Nullspace apart = nullspace(off_by(1e-5));
  EXPECT_EQ(apart.balance.rank, 2);
  EXPECT_EQ(apart.balance.nullity, 0);
  EXPECT_NEAR(apart.balance.smallest_kept, 1e-5, 1e-7);
  EXPECT_EQ(apart.balance.largest_dropped, 0);
}

// Without friction on a ball no contact has a moment but by rounding.
TEST(NullspaceOfAGraspMap, DoesNotTakeRoundingForMomentsWhereThereAreNone) {
  std::mt19937 random(7);
  std::normal_distribution<double> number;
  Grasp ball;
  for (int i = 0; i < 8; ++i) {
    const Vector out = Vector(number(random), number(random), number(random)).normalized();
    ball.contacts.push_back(
        contact_at(Vector(1, 2, 3) + 0.03 * out, -out, ContactType::kFrictionless));
  }
  // The centroid is not the ball's centre: pairs of opposite contacts make it one.
  const std::vector<Contact> half = ball.contacts;
  for (const Contact& each : half)
    ball.contacts.push_back(
        contact_at(Vector(2, 4, 6) - each.point, -each.frame.normal, ContactType::kFrictionless));
  const GraspMap map = weighed_grasp_map(ball);
  expect_base(map, nullspace(map), 3);
}

TEST(NullspaceOfAGraspMap, DoesNotDependOnThePointThatTorquesAreAbout) {
  Grasp grasp = polygon(4, 0.03);
  const Nullspace near = nullspace(weighed_grasp_map(grasp));
  grasp.centre = Vector(1e6, -2e6, 3e6);
  const Nullspace far = nullspace(weighed_grasp_map(grasp));
  EXPECT_EQ(far.balance.rank, 6);
  EXPECT_EQ(difference(far.base, near.base), 0);
}

TEST(BaseWith, SpansTheSameNullspaceBehindAGivenFirstColumn) {
  std::mt19937 random(8);
  for (int contacts = 2; contacts < 7; ++contacts) {
    Grasp grasp = random_grasp(random, contacts, 0.05);
    // Contacts 0 and 1 face each other.
    const Vector along = grasp.contacts[1].point - grasp.contacts[0].point;
    grasp.contacts[0].frame = make_frame(along, std::nullopt);
    grasp.contacts[1].frame = make_frame(-along, std::nullopt);
    const GraspMap map = weighed_grasp_map(grasp);
    Nullspace space = nullspace(map);
    Eigen::VectorXd squeeze = Eigen::VectorXd::Zero(map.cols());
    squeeze[2] = squeeze[5] = std::sqrt(0.5);
    const Eigen::MatrixXd projector = space.base * space.base.transpose();
    space.base = base_with(space, squeeze);
    EXPECT_EQ(space.base.col(0), squeeze);
    EXPECT_LE(difference(space.base * space.base.transpose(), projector), 1e-12);
    expect_base(map, space, contacts == 2 ? 5 : 6, 1);
  }
}

TEST(NullspaceOfAGraspMap, OfAHundredContactsIsABase) {
  std::mt19937 random(6);
  const GraspMap map = weighed_grasp_map(random_grasp(random, 100, 0.1));
  expect_base(map, nullspace(map), 6);
}

}  // namespace
}  // namespace grasp
