// An engine that cannot be trusted.
#pragma once

#include <algorithm>
#include <cmath>
#include <limits>
#include <random>
#include <utility>
#include <vector>

#include "solver/engine/engine.h"

namespace sdpsol::testing {

/// Returns points and multipliers of the right shape and of no value, and claims
/// whatever it likes about them. Some of its lies are the answers of an honest
/// engine, slightly or grossly changed, or those to another problem.
class LyingEngine final : public Engine {
 public:
  LyingEngine(Engine& honest, unsigned seed) : honest_(honest), random_(seed) {}

  std::string_view name() const override { return "liar"; }

  Candidate solve(const ConeProgram& program, const Limits& limits,
                  const Observer& observer) override {
    const Iterate truth = is_sensible(program)
                              ? honest_.solve(program, limits, {}).last
                              : Iterate{std::vector<double>(program.objective.size()),
                                        std::vector<double>(size(program))};
    Candidate candidate;
    const int iterates = uniform(1, 3);
    for (int i = 1; i <= iterates; ++i) {
      candidate.last = lie(program, truth);
      candidate.last.iteration = i;
      if (observer && observer(candidate.last)) {
        candidate.reason = StopReason::kAccepted;
        return candidate;
      }
    }
    constexpr StopReason kClaims[] = {StopReason::kConverged,  StopReason::kUnbounded,
                                      StopReason::kInfeasible, StopReason::kIterationLimit,
                                      StopReason::kTrouble,    StopReason::kAccepted};
    candidate.reason = kClaims[uniform(0, 5)];
    previous_ = truth;
    return candidate;
  }

 private:
  /// Lies about sizes come back as programs that no honest engine should see.
  static bool is_sensible(const ConeProgram& program) {
    const auto finite = [](const ConeProgram::Cone& cone) {
      return std::all_of(cone.coefficients.begin(), cone.coefficients.end(),
                         [](const auto& t) { return std::fabs(t.value) < 1e100; });
    };
    return program.unknowns > 0 &&
           std::all_of(program.cones.begin(), program.cones.end(), finite) &&
           std::all_of(program.equations.begin(), program.equations.end(), finite);
  }

  static std::size_t size(const ConeProgram& program) {
    return multiplier_offsets(program.cones).back();
  }

  Iterate lie(const ConeProgram& program, const Iterate& truth) {
    Iterate lie;
    lie.point = numbers(static_cast<std::size_t>(program.unknowns), truth.point, previous_.point);
    lie.multipliers = numbers(size(program), truth.multipliers, previous_.multipliers);
    make_symmetric(program, lie.multipliers);
    // What the observer acts on: margins and gaps that promise a proof, mostly.
    constexpr double kValues[] = {1, 0, 1e-9, -1, -1e-9, 0.5};
    lie.value = uniform(0, 9) == 0 ? std::nan("") : kValues[uniform(0, 5)];
    lie.bound = uniform(0, 9) == 0 ? std::nan("") : kValues[uniform(0, 5)];
    return lie;
  }

  std::vector<double> numbers(std::size_t count, const std::vector<double>& truth,
                              const std::vector<double>& other) {
    std::vector<double> result(count);
    const int kind = uniform(0, 11);
    for (std::size_t i = 0; i < count; ++i) {
      const double its = i < other.size() ? other[i] : 1;
      result[i] = number(kind, truth[i], its);
    }
    if (kind == 11) std::shuffle(result.begin(), result.end(), random_);
    return result;
  }

  double number(int kind, double truth, double other) {
    constexpr double kOdd[] = {std::numeric_limits<double>::quiet_NaN(),
                               std::numeric_limits<double>::infinity(),
                               -std::numeric_limits<double>::infinity(),
                               std::numeric_limits<double>::max(),
                               std::numeric_limits<double>::denorm_min(),
                               1e-150,
                               1e150,
                               -0.0};
    switch (kind) {
      case 0:
        return 0;
      case 1:
        return normal_(random_);
      case 2:
        return std::fabs(normal_(random_));
      case 3:
        return kOdd[uniform(0, 7)];
      case 4:
        return uniform(0, 4) == 0 ? kOdd[uniform(0, 7)] : truth;
      case 5:
        return normal_(random_) * std::pow(10.0, uniform(-30, 30));
      case 6:
        return -truth;
      case 7:
        return other;
      case 8:
        return truth * (1 + 1e-6 * normal_(random_));
      case 9:
        return truth + 1e-3 * normal_(random_);
      case 10:
        return truth * 1e8;
      default:
        return truth;
    }
  }

  /// As the multipliers of any engine are.
  static void make_symmetric(const ConeProgram& program, std::vector<double>& multipliers) {
    const auto offsets = multiplier_offsets(program.cones);
    for (std::size_t c = 0; c < program.cones.size(); ++c) {
      const auto n = static_cast<std::size_t>(program.cones[c].size);
      for (std::size_t i = 0; i < n; ++i) {
        for (std::size_t j = 0; j < i; ++j) {
          multipliers[offsets[c] + i * n + j] = multipliers[offsets[c] + j * n + i];
        }
      }
    }
  }

  int uniform(int from, int to) { return std::uniform_int_distribution<int>(from, to)(random_); }

  Engine& honest_;
  std::mt19937 random_;
  std::normal_distribution<double> normal_;
  Iterate previous_;
};

}  // namespace sdpsol::testing
