#include "solver/check/exact_sum.h"

#include <cmath>

namespace sdpsol {
namespace {

// Below this a product's rounding error may underflow and be lost.
constexpr double kSmallestSafeProduct = 1e-290;

}  // namespace

void ExactSum::add(double value) {
  if (!std::isfinite(value)) finite_ = false;
  if (!finite_ || value == 0) return;
  std::size_t kept = 0;
  double carry = value;
  for (const double part : parts_) {
    const double sum = carry + part;
    const double virtual_part = sum - carry;
    const double error = (carry - (sum - virtual_part)) + (part - virtual_part);
    if (error != 0) parts_[kept++] = error;
    carry = sum;
  }
  parts_.resize(kept);
  if (!std::isfinite(carry)) finite_ = false;
  if (carry != 0) parts_.push_back(carry);
}

void ExactSum::add_product(double a, double b) {
  if (a == 0 || b == 0) return;
  const double product = a * b;
  if (!(std::fabs(product) > kSmallestSafeProduct)) underflowed_ = true;
  add(std::fma(a, b, -product));
  add(product);
}

double ExactSum::estimate() const {
  double sum = 0;
  for (const double part : parts_) sum += part;
  return sum;
}

int ExactSum::sign() const {
  if (parts_.empty()) return 0;
  return parts_.back() > 0 ? 1 : -1;
}

}  // namespace sdpsol
