// Random problems whose truth is known: linear ones by exact elimination, those
// with matrices because a point or a certificate was planted in them.
#pragma once

#include <Eigen/Core>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <numbers>
#include <random>
#include <vector>

#include "solver/check/evaluate.h"
#include "solver/check/test_linear_truth.h"
#include "solver/dense/symmetric_eigen.h"
#include "solver/problem/problem.h"

namespace sdpsol::testing {

/// As definitions write numbers.
inline double six_digits(double value) {
  char text[40];
  std::snprintf(text, sizeof text, "%.6g", value);
  return std::strtod(text, nullptr);
}

class RandomProblems {
 public:
  explicit RandomProblems(unsigned seed) : random_(seed) {}

  int uniform(int from, int to) { return std::uniform_int_distribution<int>(from, to)(random_); }
  double real(double from, double to) {
    return std::uniform_real_distribution<double>(from, to)(random_);
  }
  std::mt19937& engine() { return random_; }

  /// One to six rows in `unknowns`: dense, without constants, or sparse.
  std::vector<ExactRow> linear_rows(int unknowns) {
    std::vector<ExactRow> rows(static_cast<std::size_t>(uniform(1, 6)));
    const int style = uniform(0, 2);
    for (ExactRow& row : rows) {
      for (int k = 0; k < unknowns; ++k) {
        const bool absent = style == 2 && uniform(0, 1) == 1;
        row.coefficients[static_cast<std::size_t>(k)] = absent ? 0 : uniform(-3, 3);
      }
      row.constant = style == 0 ? 0 : uniform(-3, 3);
      const double kind = real(0, 1);
      row.sense = kind < 0.15 ? Sense::kEqual : kind < 0.575 ? Sense::kStrict : Sense::kNonStrict;
    }
    return rows;
  }

  /// Blocks of size 2 to 6 and rows around a point with a relative room of
  /// 1e-4 to 1 in every one. @param point receives it.
  Problem with_planted_point(std::vector<double>* point = nullptr) {
    for (;;) {
      Problem problem = random_blocks();
      std::vector<double> at(static_cast<std::size_t>(problem.unknowns));
      for (double& v : at) v = six_digits(real(-2, 2));
      bool good = true;
      for (Block& block : problem.blocks) good = good && lift_to_room(block, at);
      if (!good) continue;
      if (point != nullptr) *point = at;
      return problem;
    }
  }

  enum class Contradiction { kNegativeConstant, kZeroConstant };

  /// Blocks for which multipliers well inside their cones balance, up to the
  /// rounding of one coefficient per unknown to six digits. That this rounding
  /// cannot carry the multipliers out of their cones is made sure of here.
  Problem with_planted_certificate(Contradiction kind) {
    for (;;) {
      Problem problem = random_blocks();
      std::vector<Eigen::MatrixXd> weights;
      Eigen::Index packed = 0;
      double room = HUGE_VAL;
      for (const Block& block : problem.blocks) {
        weights.push_back(inside_cone(block.size));
        packed += block.size * (block.size + 1) / 2;
        room = std::min(room, symmetric_eigenvalues(weights.back())[0]);
      }
      const bool zero = kind == Contradiction::kZeroConstant;
      if (packed < problem.unknowns + 2) continue;
      if (zero) {
        for (Block& block : problem.blocks) block.sense = Sense::kStrict;
      }
      if (zero && uniform(0, 1) == 0) {
        drop_constants(problem);
      } else if (!balance(problem, weights, kConstant, zero ? 0 : -std::pow(10.0, real(-3, 0)))) {
        continue;
      }
      bool good = true;
      for (std::int32_t k = 0; k < problem.unknowns; ++k) {
        good = good && balance(problem, weights, k, 0);
      }
      if (good && correction(problem, weights, zero) < 0.1 * room) return problem;
    }
  }

 private:
  double coefficient() { return six_digits((uniform(0, 1) == 0 ? -1 : 1) * real(0.2, 3)); }

  /// Coefficients of six digits; every unknown and constants in most entries.
  Problem random_blocks() {
    Problem problem;
    problem.unknowns = uniform(1, 6);
    const int matrices = uniform(1, 3);
    const int rows = uniform(0, 4);
    for (int b = 0; b < matrices + rows; ++b) {
      Block block{b < matrices ? uniform(2, 6) : 1,
                  uniform(0, 3) == 0 ? Sense::kNonStrict : Sense::kStrict,
                  b,
                  {}};
      for (std::int32_t k = kConstant; k < problem.unknowns; ++k) {
        for (std::int32_t i = 0; i < block.size; ++i) {
          for (std::int32_t j = i; j < block.size; ++j) {
            if (k != kConstant && uniform(0, 9) < 3) continue;
            const double value = coefficient();
            block.terms.push_back({i, j, k, value, std::fabs(value)});
          }
        }
      }
      problem.blocks.push_back(std::move(block));
    }
    return problem;
  }

  /// Adds to the diagonal of the constants until the room at the point is what
  /// was drawn. False if rounding to six digits took too much of it.
  bool lift_to_room(Block& block, const std::vector<double>& at) {
    const double wanted = std::pow(10.0, real(-3.9, -0.5));
    Block lifted = block;
    const auto lift = [&](double by) {
      lifted = block;
      for (AffineTerm& t : lifted.terms) {
        if (t.unknown != kConstant || t.row != t.column) continue;
        t.value = six_digits(t.value + by);
        t.magnitude = std::fabs(t.value);
      }
      return relative_room(evaluate(lifted, at));
    };
    double low = -100;
    double high = 1000;
    for (int step = 0; step < 40; ++step) {
      const double middle = (low + high) / 2;
      (lift(middle) < wanted ? low : high) = middle;
    }
    if (!(lift(high) >= 1e-4)) return false;
    block = lifted;
    return true;
  }

  /// Trace 1, smallest eigenvalue at least 0.02.
  Eigen::MatrixXd inside_cone(Eigen::Index size) {
    Eigen::MatrixXd a = Eigen::MatrixXd::NullaryExpr(size, size, [&] { return real(-1, 1); });
    Eigen::MatrixXd y = a * a.transpose();
    y /= y.trace();
    y.diagonal().array() += 0.03;
    return y / y.trace();
  }

  static double weighed(const AffineTerm& t, const Eigen::MatrixXd& y) {
    return (t.row == t.column ? 1 : 2) * y(t.row, t.column) * t.value;
  }

  /// Changes one diagonal coefficient of the unknown so that its weighed sum
  /// becomes share * (the sum of the weighed magnitudes), to six digits.
  static bool balance(Problem& problem, const std::vector<Eigen::MatrixXd>& weights,
                      std::int32_t unknown, double share) {
    AffineTerm* chosen = nullptr;
    const Eigen::MatrixXd* its_weight = nullptr;
    double sum = 0;
    double size = 0;
    for (std::size_t b = 0; b < problem.blocks.size(); ++b) {
      for (AffineTerm& t : problem.blocks[b].terms) {
        if (t.unknown != unknown) continue;
        sum += weighed(t, weights[b]);
        size += std::fabs(weighed(t, weights[b]));
        if (t.row == t.column && chosen == nullptr) {
          chosen = &t;
          its_weight = &weights[b];
        }
      }
    }
    if (chosen == nullptr) return false;
    const double change = (share * size - sum) / (*its_weight)(chosen->row, chosen->row);
    chosen->value = six_digits(chosen->value + change);
    chosen->magnitude = std::fabs(chosen->value);
    return std::fabs(chosen->value) > 0.02;
  }

  static void drop_constants(Problem& problem) {
    for (Block& block : problem.blocks) {
      std::erase_if(block.terms, [](const AffineTerm& t) { return t.unknown == kConstant; });
    }
  }

  /// Norm of the least change of the weights that balances exactly; infinite if
  /// the balance is badly conditioned.
  static double correction(const Problem& problem, const std::vector<Eigen::MatrixXd>& weights,
                           bool with_constant) {
    Eigen::Index packed = 0;
    for (const Block& block : problem.blocks) packed += block.size * (block.size + 1) / 2;
    Eigen::MatrixXd rows = Eigen::MatrixXd::Zero(problem.unknowns + 1, packed);
    Eigen::VectorXd sums = Eigen::VectorXd::Zero(problem.unknowns + 1);
    Eigen::Index offset = 0;
    for (std::size_t b = 0; b < problem.blocks.size(); ++b) {
      for (const AffineTerm& t : problem.blocks[b].terms) {
        const Eigen::Index at = offset + t.column * (t.column + 1) / 2 + t.row;
        rows(t.unknown + 1, at) = t.value * (t.row == t.column ? 1 : std::numbers::sqrt2);
        sums[t.unknown + 1] += weighed(t, weights[b]);
      }
      offset += problem.blocks[b].size * (problem.blocks[b].size + 1) / 2;
    }
    const bool constant_counts = with_constant && !rows.row(0).isZero(0);
    const Eigen::Index count = problem.unknowns + (constant_counts ? 1 : 0);
    const Eigen::MatrixXd counted = rows.bottomRows(count);
    const double smallest =
        std::sqrt(std::max(0.0, symmetric_eigenvalues(counted * counted.transpose())[0]));
    return smallest > 1e-3 ? sums.tail(count).norm() / smallest : HUGE_VAL;
  }

  std::mt19937 random_;
};

/// Measures unknowns and blocks in other units: 1e-6 to 1e6 and 1e-5 to 1e5.
inline Problem in_other_units(const Problem& problem, RandomProblems& random) {
  Problem scaled = problem;
  std::vector<double> unit(static_cast<std::size_t>(problem.unknowns));
  for (double& u : unit) u = std::pow(10.0, random.real(-6, 6));
  for (Block& block : scaled.blocks) {
    const double factor = std::pow(10.0, random.real(-5, 5));
    for (AffineTerm& t : block.terms) {
      const double by =
          factor * (t.unknown == kConstant ? 1 : unit[static_cast<std::size_t>(t.unknown)]);
      t.value *= by;
      t.magnitude *= by;
    }
  }
  return scaled;
}

}  // namespace sdpsol::testing
