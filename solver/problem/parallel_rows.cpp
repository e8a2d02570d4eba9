#include "solver/problem/parallel_rows.h"

#include <bit>
#include <cmath>
#include <cstdint>
#include <unordered_map>

namespace sdpsol {
namespace {

struct RowView {
  const AffineTerm* first = nullptr;  ///< first coefficient that is not 0
  const AffineTerm* last = nullptr;
};

const AffineTerm* skip_zeros(const AffineTerm* t, const AffineTerm* end) {
  while (t != end && (t->value == 0 || t->unknown == kConstant)) ++t;
  return t;
}

RowView view(const Block& block) {
  const AffineTerm* end = block.terms.data() + block.terms.size();
  return {skip_zeros(block.terms.data(), end), end};
}

/// Equal for rows whose quotients to the first coefficient agree to the precision
/// of a float. Proportional rows may round apart here and stay single, which costs
/// nothing but a row; rows with this in common are compared exactly.
std::uint64_t pattern_of(const RowView& row) {
  std::uint64_t hash = 1469598103934665603ULL;
  auto mix = [&](std::uint64_t value) { hash = (hash ^ value) * 1099511628211ULL; };
  for (const AffineTerm* t = row.first; t != row.last; t = skip_zeros(t + 1, row.last)) {
    mix(static_cast<std::uint64_t>(t->unknown));
    mix(std::bit_cast<std::uint32_t>(static_cast<float>(t->value / row.first->value)));
  }
  return hash;
}

bool same_products(double a, double b, double c, double d) {
  const double left = a * b;
  const double right = c * d;
  // Beyond these sizes a product or its rounding error is not what it seems.
  const auto safe = [](double x) { return std::fabs(x) > 1e-290 && std::fabs(x) < 1e300; };
  return safe(left) && safe(right) && left == right &&
         std::fma(a, b, -left) == std::fma(c, d, -right);
}

bool proportional(const RowView& a, const RowView& b) {
  const AffineTerm* s = a.first;
  const AffineTerm* t = b.first;
  while (s != a.last && t != b.last) {
    if (s->unknown != t->unknown ||
        !same_products(s->value, b.first->value, t->value, a.first->value)) {
      return false;
    }
    s = skip_zeros(s + 1, a.last);
    t = skip_zeros(t + 1, b.last);
  }
  return s == a.last && t == b.last;
}

}  // namespace

std::vector<std::vector<ParallelRow>> group_parallel_rows(const Problem& problem) {
  std::vector<std::vector<ParallelRow>> groups;
  std::unordered_multimap<std::uint64_t, std::size_t> by_pattern;
  for (std::size_t b = 0; b < problem.blocks.size(); ++b) {
    const Block& block = problem.blocks[b];
    if (block.size != 1) continue;
    const RowView row = view(block);
    if (row.first == row.last) continue;
    ParallelRow member{b, row.first->value, 0, 0};
    if (block.terms.front().unknown == kConstant) {
      member.constant = block.terms.front().value;
      member.constant_magnitude = block.terms.front().magnitude;
    }
    const std::uint64_t pattern = pattern_of(row);
    bool found = false;
    const auto [begin, end] = by_pattern.equal_range(pattern);
    for (auto it = begin; it != end && !found; ++it) {
      auto& group = groups[it->second];
      if (proportional(view(problem.blocks[group.front().block]), row)) {
        group.push_back(member);
        found = true;
      }
    }
    if (!found) {
      by_pattern.emplace(pattern, groups.size());
      groups.push_back({member});
    }
  }
  return groups;
}

}  // namespace sdpsol
