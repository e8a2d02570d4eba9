#include "grasp/picture/quantities.h"

#include <array>
#include <charconv>
#include <cmath>

namespace grasp::picture {
namespace {

struct Unit {
  const char* name;
  double size;   ///< in the base unit
  double until;  ///< the first value, in the base unit, that is for the next unit
};

template <std::size_t kCount>
const Unit& unit_for(double value, const std::array<Unit, kCount>& units) {
  for (const Unit& unit : units) {
    if (value < unit.until) return unit;
  }
  return units.back();
}

constexpr std::array<Unit, 5> kLengths = {{{"\u00b5m", 1e-6, 0.9999e-4},
                                           {"mm", 1e-3, 0.9999e-2},
                                           {"cm", 1e-2, 0.9999},
                                           {"m", 1, 999.9},
                                           {"km", 1e3, 0}}};
constexpr std::array<Unit, 5> kForces = {
    {{"\u00b5N", 1e-6, 1e-4}, {"mN", 1e-3, 0.1}, {"N", 1, 1e4}, {"kN", 1e3, 1e6}, {"MN", 1e6, 0}}};

}  // namespace

std::string three_digits(double value) {
  std::array<char, 32> digits{};
  char* const begin = digits.data();
  char* const end = begin + digits.size();
  // Values of 1000 and more are whole numbers, not 1e+03.
  const bool whole = value >= 999.5 && value < 999999.5;
  const auto written = whole ? std::to_chars(begin, end, value, std::chars_format::fixed, 0)
                             : std::to_chars(begin, end, value, std::chars_format::general, 3);
  return {begin, written.ptr};
}

double round_step(double limit) {
  if (!(limit > 0) || !std::isfinite(limit)) return 0;
  const double power = std::pow(10.0, std::floor(std::log10(limit)));
  // Rounding may have put the logarithm of a power of ten a little off.
  for (const double factor : {10.0, 5.0, 2.0, 1.0}) {
    if (factor * power <= limit * (1 + 1e-12)) return factor * power;
  }
  return power / 2;
}

std::string length_in_words(double metres) {
  const Unit& unit = unit_for(metres, kLengths);
  return three_digits(metres / unit.size) + " " + unit.name;
}

std::string force_in_words(double newtons, double largest) {
  const Unit& unit = unit_for(largest, kForces);
  const bool rounding = !(newtons > 1e-6 * largest);
  return three_digits(rounding ? 0 : newtons / unit.size) + " " + unit.name;
}

}  // namespace grasp::picture
