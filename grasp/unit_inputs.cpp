#include "grasp/unit_inputs.h"

#include <array>
#include <charconv>
#include <cmath>

namespace grasp {
namespace {

constexpr int kDigits = 6;

double to_written_digits(double value) {
  std::array<char, 32> digits;
  const auto written = std::to_chars(digits.data(), digits.data() + digits.size(), value,
                                     std::chars_format::general, kDigits);
  double result = value;
  std::from_chars(digits.data(), written.ptr, result);
  return result;
}

// One in the last of the digits.
double last_place(double value) {
  return std::pow(10.0, std::floor(std::log10(std::abs(value))) - (kDigits - 1));
}

float rounded_down(double value) {
  const double nearest = to_written_digits(value);
  return static_cast<float>(nearest > value ? to_written_digits(nearest - last_place(nearest))
                                            : nearest);
}

float rounded_up(double value) {
  return -rounded_down(-value);
}

}  // namespace

UnitInputs unit_inputs(const Grasp& grasp, const Eigen::MatrixXd& base) {
  UnitInputs inputs;
  inputs.base.reserve(static_cast<std::size_t>(base.size()));
  // A base may have no columns.
  for (Eigen::Index row = 0; row < base.rows(); ++row)
    for (Eigen::Index column = 0; column < base.cols(); ++column)
      inputs.base.push_back(static_cast<float>(base(row, column)));
  for (const Contact& contact : grasp.contacts) {
    inputs.types.push_back(static_cast<std::int32_t>(contact.components()));
    inputs.friction.push_back(rounded_up(contact.friction));
    for (const Bounds& bounds : contact.bounds) {
      inputs.bounds.push_back(rounded_down(bounds.lower));
      inputs.bounds.push_back(rounded_up(bounds.upper));
    }
  }
  return inputs;
}

}  // namespace grasp
