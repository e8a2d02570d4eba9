// Small problems for tests, written down without the language.
#pragma once

#include <algorithm>
#include <cmath>
#include <tuple>
#include <utility>
#include <vector>

#include "solver/problem/problem.h"

namespace sdpsol::testing {

using enum Sense;

/// constant + sum of second * v_first
struct Form {
  double constant = 0;
  std::vector<std::pair<std::int32_t, double>> terms;
};

/// x, the first unknown.
inline const Form kX{0, {{0, 1}}};

/// Builds a problem block by block; each block is a condition of its own.
class ProblemBuilder {
 public:
  explicit ProblemBuilder(std::int32_t unknowns) { problem_.unknowns = unknowns; }

  ProblemBuilder& row(Sense sense, const Form& form) { return matrix(sense, 1, {form}); }

  /// `upper` lists the upper triangle row by row.
  ProblemBuilder& matrix(Sense sense, std::int32_t size, const std::vector<Form>& upper) {
    Block block{size, sense, static_cast<std::int32_t>(problem_.blocks.size()), {}};
    std::size_t at = 0;
    for (std::int32_t i = 0; i < size; ++i) {
      for (std::int32_t j = i; j < size; ++j, ++at) add(block, i, j, upper[at]);
    }
    std::sort(block.terms.begin(), block.terms.end(), [](const auto& a, const auto& b) {
      return std::tie(a.unknown, a.row, a.column) < std::tie(b.unknown, b.row, b.column);
    });
    problem_.blocks.push_back(std::move(block));
    return *this;
  }

  ProblemBuilder& maximise(std::vector<double> cost) {
    problem_.objective.emplace();
    problem_.objective->cost = std::move(cost);
    return *this;
  }

  Problem build() const { return problem_; }

 private:
  static void add(Block& block, std::int32_t i, std::int32_t j, const Form& form) {
    if (form.constant != 0) {
      block.terms.push_back({i, j, kConstant, form.constant, std::fabs(form.constant)});
    }
    for (const auto& [unknown, value] : form.terms) {
      block.terms.push_back({i, j, unknown, value, std::fabs(value)});
    }
  }

  Problem problem_;
};

}  // namespace sdpsol::testing
