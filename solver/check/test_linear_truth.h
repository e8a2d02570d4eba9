// The truth about small linear problems with integer data, without rounding:
// equations are substituted, then the unknowns are eliminated one after the
// other (Fourier-Motzkin). Whatever is left speaks of constants only.
#pragma once

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <stdexcept>
#include <tuple>
#include <vector>

#include "solver/problem/problem.h"

namespace sdpsol::testing {

__extension__ using Wide = __int128;

inline constexpr std::size_t kMaxUnknowns = 6;

/// constant + sum of coefficients * v, in a relation to 0. Integers.
struct ExactRow {
  std::array<std::int64_t, kMaxUnknowns> coefficients{};
  std::int64_t constant = 0;
  Sense sense = Sense::kStrict;

  friend bool operator==(const ExactRow&, const ExactRow&) = default;
  friend bool operator<(const ExactRow& a, const ExactRow& b) {
    return std::tie(a.coefficients, a.constant, a.sense) <
           std::tie(b.coefficients, b.constant, b.sense);
  }
};

/// a*wa + b*wb with the common factor taken out. wa is positive unless a is an
/// equation. @throws std::overflow_error if 64 bits do not hold the result.
inline ExactRow combine(const ExactRow& a, std::int64_t wa, const ExactRow& b, std::int64_t wb,
                        Sense sense) {
  std::array<Wide, kMaxUnknowns + 1> wide{};
  Wide common = 0;
  auto gcd = [](Wide x, Wide y) {
    if (x < 0) x = -x;
    if (y < 0) y = -y;
    while (y != 0) std::tie(x, y) = std::tuple<Wide, Wide>(y, x % y);
    return x;
  };
  for (std::size_t k = 0; k <= kMaxUnknowns; ++k) {
    const std::int64_t left = k < kMaxUnknowns ? a.coefficients[k] : a.constant;
    const std::int64_t right = k < kMaxUnknowns ? b.coefficients[k] : b.constant;
    wide[k] = static_cast<Wide>(left) * wa + static_cast<Wide>(right) * wb;
    common = gcd(common, wide[k]);
  }
  ExactRow row;
  row.sense = sense;
  for (std::size_t k = 0; k <= kMaxUnknowns; ++k) {
    const Wide value = common == 0 ? 0 : wide[k] / common;
    if (value > INT64_MAX / 4 || value < INT64_MIN / 4) throw std::overflow_error("exact row");
    (k < kMaxUnknowns ? row.coefficients[k] : row.constant) = static_cast<std::int64_t>(value);
  }
  return row;
}

inline bool substitute_one_equation(std::vector<ExactRow>& rows) {
  for (std::size_t e = 0; e < rows.size(); ++e) {
    if (rows[e].sense != Sense::kEqual) continue;
    for (std::size_t k = 0; k < kMaxUnknowns; ++k) {
      const std::int64_t pivot = rows[e].coefficients[k];
      if (pivot == 0) continue;
      const ExactRow equation = rows[e];
      rows.erase(rows.begin() + static_cast<std::ptrdiff_t>(e));
      for (ExactRow& row : rows) {
        const std::int64_t here = row.coefficients[k];
        if (here == 0) continue;
        row = combine(row, std::abs(pivot), equation, pivot > 0 ? -here : here, row.sense);
      }
      return true;
    }
  }
  return false;
}

inline void eliminate(std::vector<ExactRow>& rows, std::size_t k) {
  std::vector<ExactRow> result;
  for (const ExactRow& row : rows) {
    if (row.coefficients[k] == 0) result.push_back(row);
  }
  for (const ExactRow& lower : rows) {
    if (lower.coefficients[k] <= 0) continue;
    for (const ExactRow& upper : rows) {
      if (upper.coefficients[k] >= 0) continue;
      const bool strict = lower.sense == Sense::kStrict || upper.sense == Sense::kStrict;
      result.push_back(combine(lower, -upper.coefficients[k], upper, lower.coefficients[k],
                               strict ? Sense::kStrict : Sense::kNonStrict));
    }
  }
  std::sort(result.begin(), result.end());
  result.erase(std::unique(result.begin(), result.end()), result.end());
  rows = std::move(result);
}

/// True if some point of the whole space satisfies every row.
inline bool exactly_feasible(std::vector<ExactRow> rows) {
  while (substitute_one_equation(rows)) {
  }
  for (std::size_t k = 0; k < kMaxUnknowns; ++k) eliminate(rows, k);
  return std::all_of(rows.begin(), rows.end(), [](const ExactRow& row) {
    switch (row.sense) {
      case Sense::kStrict:
        return row.constant > 0;
      case Sense::kNonStrict:
        return row.constant >= 0;
      case Sense::kEqual:
        return row.constant == 0;
    }
    return false;
  });
}

/// The same rows as a problem; row i is condition i.
inline Problem problem_of(const std::vector<ExactRow>& rows, std::int32_t unknowns) {
  Problem problem;
  problem.unknowns = unknowns;
  for (const ExactRow& row : rows) {
    Block block{1, row.sense, static_cast<std::int32_t>(problem.blocks.size()), {}};
    auto add = [&](std::int32_t unknown, std::int64_t value) {
      const auto v = static_cast<double>(value);
      if (value != 0) block.terms.push_back({0, 0, unknown, v, std::fabs(v)});
    };
    add(kConstant, row.constant);
    for (std::int32_t k = 0; k < unknowns; ++k) {
      add(k, row.coefficients[static_cast<std::size_t>(k)]);
    }
    problem.blocks.push_back(std::move(block));
  }
  return problem;
}

}  // namespace sdpsol::testing
