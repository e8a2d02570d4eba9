#include "bench/four_contacts.h"

#include <Eigen/Geometry>
#include <Eigen/QR>

namespace bench {

Grasp four_contacts() {
  const std::vector<Eigen::Vector3d> directions = {
      {0.9, 0.2, 0.35}, {-0.5, 0.85, 0.1}, {-0.35, -0.9, 0.25}, {0.1, -0.05, -1.0}};
  Eigen::Matrix<double, 6, 12> map;
  Grasp grasp;
  for (std::size_t i = 0; i < directions.size(); ++i) {
    const Eigen::Vector3d normal = -directions[i].normalized();
    const Eigen::Vector3d point = -0.03 * normal;
    const Eigen::Vector3d tangential_1 = normal.unitOrthogonal();
    const auto column = 3 * static_cast<Eigen::Index>(i);
    Eigen::Matrix3d frame;
    frame << tangential_1, normal.cross(tangential_1), normal;
    map.block<3, 3>(0, column) = frame;
    for (Eigen::Index k = 0; k < 3; ++k) map.block<3, 1>(3, column + k) = point.cross(frame.col(k));
    grasp.types.push_back(3);
    grasp.friction.push_back(0.5);
    for (const double bound : {-20.0, 20.0, -20.0, 20.0, 0.0, 20.0}) grasp.bounds.push_back(bound);
  }
  // The last columns of Q in map' = Q R are orthogonal to every row of the map.
  const Eigen::HouseholderQR<Eigen::Matrix<double, 12, 6>> qr(map.transpose());
  const Eigen::Matrix<double, 12, 12> q = qr.householderQ();
  for (Eigen::Index row = 0; row < 12; ++row)
    for (Eigen::Index column = 6; column < 12; ++column)
      grasp.base.push_back(static_cast<float>(q(row, column)));
  return grasp;
}

}  // namespace bench
