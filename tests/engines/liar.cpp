#include "tests/engines/liar.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <vector>

namespace sdpsol::testing {
namespace {

constexpr double kInfinity = std::numeric_limits<double>::infinity();
constexpr double kHuge = 1e300;

std::size_t size_of(const ConeProgram& program) {
  return multiplier_offsets(program.cones).back();
}

/// Lies come back as programs that no honest engine should see.
bool is_sensible(const ConeProgram& program) {
  const auto usual = [](const ConeProgram::Cone& cone) {
    return std::all_of(cone.coefficients.begin(), cone.coefficients.end(),
                       [](const auto& t) { return std::fabs(t.value) < 1e50; });
  };
  return program.unknowns > 0 &&
         std::all_of(program.objective.begin(), program.objective.end(),
                     [](double c) { return std::fabs(c) < 1e50; }) &&
         std::all_of(program.cones.begin(), program.cones.end(), usual) &&
         std::all_of(program.equations.begin(), program.equations.end(), usual);
}

void scale(std::vector<double>& numbers, double by) {
  for (double& number : numbers) number *= by;
}

}  // namespace

Lie random_lie(std::mt19937& random) {
  const auto one_of = [&](int count) {
    return std::uniform_int_distribution<int>(0, count - 1)(random);
  };
  return {static_cast<PointLie>(one_of(kPointLies)), static_cast<WeightLie>(one_of(kWeightLies)),
          static_cast<Boast>(one_of(kBoasts)), static_cast<When>(one_of(kWhens))};
}

std::string text_of(const Lie& lie) {
  constexpr const char* kOfPoints[kPointLies] = {
      "true", "zero",     "not a number", "infinite",     "huge",   "denormal", "far",
      "near", "mirrored", "of another",   "of a relaxed", "random", "short",    "long"};
  constexpr const char* kOfWeights[kWeightLies] = {
      "true",          "zero",     "not a number", "infinite",  "huge",       "tiny",
      "negated",       "near",     "indefinite",   "one entry", "asymmetric", "of another",
      "of a narrowed", "one cone", "random",       "shuffled",  "short",      "long"};
  constexpr const char* kOfBoasts[kBoasts] = {"nothing",       "optimum",   "point",
                                              "contradiction", "unbounded", "nonsense"};
  constexpr const char* kOfWhens[kWhens] = {"always", "margins", "objectives", "first", "later"};
  return std::string("point ") + kOfPoints[static_cast<int>(lie.point)] + ", weights " +
         kOfWeights[static_cast<int>(lie.weights)] + ", claims " +
         kOfBoasts[static_cast<int>(lie.boast)] + ", " + kOfWhens[static_cast<int>(lie.when)];
}

Candidate Liar::solve(const ConeProgram& program, const Limits& limits, const Observer& observer) {
  ++runs_;
  const bool sensible = is_sensible(program);
  if (!is_time(program) && sensible) return honest_.solve(program, limits, observer);
  Candidate candidate;
  if (sensible) {
    candidate = honest_.solve(program, limits, {});
  } else {
    candidate.last.point.assign(program.objective.size(), 0.0);
    candidate.last.multipliers.assign(size_of(program), 0.0);
  }
  const Iterate truth = candidate.last;
  const int iterates = uniform(1, 2);
  for (int i = 1; i <= iterates; ++i) {
    candidate.last = lie_about(program, truth);
    const StopReason reason = boast(candidate.last);
    if (lie_.boast != Boast::kNone) candidate.reason = reason;
    candidate.last.iteration = i;
    if (!observer || !observer(candidate.last)) continue;
    candidate.reason = StopReason::kAccepted;
    break;
  }
  before_ = truth;
  return candidate;
}

bool Liar::is_time(const ConeProgram& program) const {
  switch (lie_.when) {
    case When::kAlways:
      return true;
    case When::kOfMargins:
      return program.is_margin;
    case When::kOfObjectives:
      return !program.is_margin;
    case When::kFirst:
      return runs_ == 1;
    case When::kLater:
      return runs_ > 1;
  }
  return true;
}

Iterate Liar::lie_about(const ConeProgram& program, const Iterate& truth) {
  Iterate lie = truth;
  change_point(program, lie.point);
  change_weights(program, lie.multipliers);
  return lie;
}

double Liar::small(int least, int most) {
  return std::pow(10.0, -uniform(least, most));
}

Iterate Liar::answer_beside(const ConeProgram& program, double sign) {
  ConeProgram beside = program;
  const auto chosen =
      static_cast<std::size_t>(uniform(0, static_cast<int>(beside.cones.size()) - 1));
  ConeProgram::Cone& cone = beside.cones[chosen];
  const double by = sign * small(1, 10);
  std::vector<double> diagonal(static_cast<std::size_t>(cone.size), by);
  for (ConeProgram::Coefficient& c : cone.coefficients) {
    if (c.unknown != ConeProgram::kConstantTerm || c.row != c.column) continue;
    c.value += std::exchange(diagonal[static_cast<std::size_t>(c.row)], 0.0);
  }
  for (std::int32_t i = 0; i < cone.size; ++i) {
    const double missing = diagonal[static_cast<std::size_t>(i)];
    if (missing == 0) continue;
    cone.coefficients.insert(cone.coefficients.begin(),
                             {i, i, ConeProgram::kConstantTerm, missing});
  }
  return honest_.solve(beside, {}, {}).last;
}

void Liar::change_point(const ConeProgram& program, std::vector<double>& point) {
  const bool sensible = is_sensible(program) && !program.cones.empty();
  switch (lie_.point) {
    case PointLie::kNone:
      break;
    case PointLie::kZero:
      std::fill(point.begin(), point.end(), 0.0);
      break;
    case PointLie::kNotANumber:
      for (double& v : point) v = uniform(0, 1) == 0 ? kNan : v;
      break;
    case PointLie::kInfinite:
      for (double& v : point) v = uniform(0, 1) == 0 ? std::copysign(kInfinity, v) : v;
      break;
    case PointLie::kHuge:
      scale(point, kHuge);
      break;
    case PointLie::kDenormal:
      for (double& v : point) v = std::copysign(5e-324 * uniform(0, 1000), v);
      break;
    case PointLie::kFar:
      scale(point, 1e6);
      break;
    case PointLie::kNear: {
      const double by = small(1, 12);
      for (double& v : point) v += by * (1 + std::fabs(v)) * normal();
      break;
    }
    case PointLie::kMirrored:
      scale(point, -1);
      break;
    case PointLie::kOfAnother: {
      std::vector<double> other = before_.point;
      other.resize(point.size(), 0.0);
      point = std::move(other);
      break;
    }
    case PointLie::kOfRelaxed:
      if (sensible) point = answer_beside(program, 1).point;
      break;
    case PointLie::kRandom: {
      const double size = std::pow(10.0, uniform(-6, 6));
      for (double& v : point) v = size * normal();
      break;
    }
    case PointLie::kShort:
      point.resize(point.size() / 2);
      break;
    case PointLie::kLong:
      point.resize(point.size() * 2 + 1, 1.0);
      break;
  }
}

/// Makes a cone's multiplier leave the cone, or the symmetric matrices.
void Liar::spoil_one_cone(const ConeProgram& program, std::vector<double>& weights) {
  if (program.cones.empty()) return;
  const auto offsets = multiplier_offsets(program.cones);
  const auto cone =
      static_cast<std::size_t>(uniform(0, static_cast<int>(program.cones.size()) - 1));
  const auto n = static_cast<std::size_t>(program.cones[cone].size);
  double* const y = &weights[offsets[cone]];
  double largest = 0;
  for (std::size_t i = 0; i < n * n; ++i) largest = std::max(largest, std::fabs(y[i]));
  const auto entry = static_cast<std::size_t>(uniform(0, static_cast<int>(n * n) - 1));
  if (lie_.weights == WeightLie::kIndefinite) {
    std::vector<double> direction(n);
    for (double& d : direction) d = normal();
    const double by = largest * small(6, 16);
    for (std::size_t i = 0; i < n * n; ++i) y[i] -= by * direction[i / n] * direction[i % n];
  } else if (lie_.weights == WeightLie::kOneEntry) {
    const double changed = uniform(0, 1) == 0 ? largest * normal() : y[entry] * (1 + small(1, 12));
    y[entry] = y[(entry % n) * n + entry / n] = changed;
  } else {
    y[entry] += (1 + largest) * small(0, 12) * normal();
  }
}

void Liar::change_weights(const ConeProgram& program, std::vector<double>& weights) {
  const bool sensible = is_sensible(program) && !program.cones.empty();
  const auto offsets = multiplier_offsets(program.cones);
  switch (lie_.weights) {
    case WeightLie::kNone:
      break;
    case WeightLie::kZero:
      std::fill(weights.begin(), weights.end(), 0.0);
      break;
    case WeightLie::kNotANumber:
      for (double& y : weights) y = uniform(0, 2) == 0 ? kNan : y;
      break;
    case WeightLie::kInfinite:
      for (double& y : weights) y = uniform(0, 2) == 0 ? std::copysign(kInfinity, y) : y;
      break;
    case WeightLie::kHuge:
      scale(weights, uniform(0, 1) == 0 ? kHuge : 1e60);
      break;
    case WeightLie::kTiny:
      scale(weights, uniform(0, 1) == 0 ? 1 / kHuge : 1e-60);
      break;
    case WeightLie::kNegated:
      scale(weights, -1);
      break;
    case WeightLie::kNear: {
      const double by = small(1, 12);
      for (double& y : weights) y *= 1 + by * normal();
      break;
    }
    case WeightLie::kIndefinite:
    case WeightLie::kOneEntry:
    case WeightLie::kAsymmetric:
      spoil_one_cone(program, weights);
      break;
    case WeightLie::kOfAnother: {
      std::vector<double> other = before_.multipliers;
      other.resize(weights.size(), 0.0);
      weights = std::move(other);
      break;
    }
    case WeightLie::kOfNarrowed:
      if (sensible) weights = answer_beside(program, -1).multipliers;
      break;
    case WeightLie::kOneCone: {
      if (program.cones.empty()) break;
      const auto kept =
          static_cast<std::size_t>(uniform(0, static_cast<int>(program.cones.size()) - 1));
      for (std::size_t i = 0; i < weights.size(); ++i) {
        if (i < offsets[kept] || i >= offsets[kept + 1]) weights[i] = 0;
      }
      break;
    }
    case WeightLie::kRandom:
      for (std::size_t c = 0; c < program.cones.size(); ++c) {
        const auto n = static_cast<std::size_t>(program.cones[c].size);
        std::vector<double> root(n);
        for (double& r : root) r = normal();
        for (std::size_t i = 0; i < n * n; ++i) weights[offsets[c] + i] = root[i / n] * root[i % n];
      }
      break;
    case WeightLie::kShuffled:
      std::shuffle(weights.begin(), weights.end(), random_);
      break;
    case WeightLie::kShort:
      weights.resize(weights.size() / 2);
      break;
    case WeightLie::kLong:
      weights.resize(weights.size() * 2 + 1, 1.0);
      break;
  }
}

/// What the driver acts on: numbers that promise a proof.
StopReason Liar::boast(Iterate& iterate) {
  constexpr StopReason kReasons[] = {StopReason::kConverged,      StopReason::kUnbounded,
                                     StopReason::kInfeasible,     StopReason::kTrouble,
                                     StopReason::kIterationLimit, StopReason::kUnsuited};
  switch (lie_.boast) {
    case Boast::kNone:
      break;
    case Boast::kOptimum:
      iterate.bound = iterate.value;
      return StopReason::kConverged;
    case Boast::kPoint:
      iterate.value = iterate.bound = 1;
      return StopReason::kConverged;
    case Boast::kContradiction:
      iterate.value = iterate.bound = -1;
      return StopReason::kInfeasible;
    case Boast::kUnbounded:
      iterate.bound = kInfinity;
      return StopReason::kUnbounded;
    case Boast::kNonsense:
      iterate.value = uniform(0, 1) == 0 ? kNan : -kInfinity;
      iterate.bound = uniform(0, 1) == 0 ? kNan : -kInfinity;
      return kReasons[uniform(0, 5)];
  }
  return StopReason::kConverged;
}

}  // namespace sdpsol::testing
