// A difference that should be 0 and is 5e-17 decides a strict inequality if it
// is believed. Nobody can tell it from a true coefficient, so a verdict has to
// hold both ways; this file finds the places.
#include "solver/problem/noise.h"

#include <algorithm>
#include <cmath>

namespace sdpsol {
namespace {

constexpr double kNoise = 1e-12;

std::vector<double> largest_coefficients(const Problem& problem) {
  std::vector<double> largest(static_cast<std::size_t>(problem.unknowns), 0.0);
  for (const Block& block : problem.blocks) {
    for (const AffineTerm& t : block.terms) {
      if (t.unknown == kConstant) continue;
      double& most = largest[static_cast<std::size_t>(t.unknown)];
      most = std::max(most, std::fabs(t.value));
    }
  }
  return largest;
}

bool is_noise(const AffineTerm& t, const std::vector<double>& largest) {
  if (t.value == 0) return false;
  const double size = std::fabs(t.value);
  if (size < kNoise * t.magnitude) return true;
  return t.unknown != kConstant && size < kNoise * largest[static_cast<std::size_t>(t.unknown)];
}

}  // namespace

std::vector<std::int32_t> noisy_conditions(const Problem& problem) {
  const std::vector<double> largest = largest_coefficients(problem);
  std::vector<std::int32_t> conditions;
  for (const Block& block : problem.blocks) {
    const bool noisy = std::any_of(block.terms.begin(), block.terms.end(),
                                   [&](const AffineTerm& t) { return is_noise(t, largest); });
    if (noisy) conditions.push_back(block.condition);
  }
  std::sort(conditions.begin(), conditions.end());
  conditions.erase(std::unique(conditions.begin(), conditions.end()), conditions.end());
  return conditions;
}

Problem without_noise(const Problem& problem) {
  const std::vector<double> largest = largest_coefficients(problem);
  Problem clean = problem;
  for (Block& block : clean.blocks) {
    for (AffineTerm& t : block.terms) {
      if (is_noise(t, largest)) t.value = 0;
    }
  }
  return clean;
}

}  // namespace sdpsol
