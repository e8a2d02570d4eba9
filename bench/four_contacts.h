// The grasp that is solved where the time of a whole solve counts.
#pragma once

#include <vector>

namespace bench {

/// The lists that the driver's builders take.
struct Grasp {
  std::vector<double> base;
  std::vector<int> types;
  std::vector<double> friction;
  std::vector<double> bounds;
};

/// Four fingertips on a ball of 6 cm, at no two equal angles, so that no
/// coefficient of the orthonormal base is 0, as in a measured grasp. Lengths in
/// metres, forces in newton. All numbers are single precision, as networks carry them.
Grasp four_contacts();

}  // namespace bench
