// The truth about a grasp without its own geometry and without a solver of matrices:
// every friction cone is replaced by a pyramid inside of it or around it, and what is
// left is linear and decided in rational arithmetic. What pyramids inside of the cones
// can do the grasp can do; what pyramids around them cannot it cannot.
#pragma once

#include <optional>
#include <vector>

#include "grasp/grasp.h"
#include "grasp/question.h"
#include "tests/grasp_map.h"

namespace grasp_truth {

/// The contacts in the form of the tests' own grasp map, about a point and in units of a
/// length.
std::vector<grasp_map::Contact> contacts_of(const grasp::Grasp& grasp, const grasp::Vector& centre,
                                            double length = 1);

enum class Pyramids {
  kInside,  ///< and bounds that are tighter by a ten-thousandth
  kAround,  ///< and bounds that are wider by a hundred-thousandth
};

class PolyhedralGrasp {
 public:
  /// @param sides of a pyramid.
  PolyhedralGrasp(const grasp::Grasp& grasp, int sides);

  /// @param above_1 whether frictionless contacts must press with more than 1 N.
  [[nodiscard]] bool has_internal_force(Pyramids pyramids, bool above_1) const;

  /// The largest value of the objective, over the closure. Nothing if there is no force.
  [[nodiscard]] std::optional<double> optimum(const grasp::Inquiry& inquiry,
                                              Pyramids pyramids) const;

  /// Whether forces in the pyramids add up to every wrench: no twist is left that all of
  /// them, but for a millionth, have no power against.
  [[nodiscard]] bool resists_every_wrench(Pyramids pyramids) const;

 private:
  struct Rows;
  [[nodiscard]] Rows rows(Pyramids pyramids, const std::vector<int>& margin_of, std::size_t margins,
                          bool above_1) const;

  const grasp::Grasp& grasp_;
  int sides_;
  std::vector<std::vector<double>> map_;   ///< a column for each component: 6 numbers
  std::vector<std::vector<double>> base_;  ///< a row for each component
  double force_ = 0;                       ///< the largest bound
};

}  // namespace grasp_truth
