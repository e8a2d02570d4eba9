// Sums of doubles and of products of doubles without any rounding.
#pragma once

#include <vector>

namespace sdpsol {

/// A running sum held as an expansion: doubles of growing size that do not
/// overlap and whose exact sum is the value (Shewchuk, "Adaptive precision
/// floating-point arithmetic and fast robust geometric predicates", Discrete &
/// Computational Geometry 18, 1997).
class ExactSum {
 public:
  void add(double value);
  void add_product(double a, double b);
  /// The sum rounded to double (within one unit in the last place).
  double estimate() const;
  /// -1, 0 or 1; only meaningful if exact().
  int sign() const;
  /// False once an overflow, an underflow or a NaN has spoilt the sum.
  bool exact() const { return finite_ && !underflowed_; }
  bool certainly_zero() const { return exact() && sign() == 0; }

 private:
  std::vector<double> parts_;  ///< without zeros, smallest first
  bool finite_ = true;
  bool underflowed_ = false;  ///< too little is lost to show in an estimate
};

}  // namespace sdpsol
