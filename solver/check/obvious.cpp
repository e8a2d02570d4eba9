#include "solver/check/obvious.h"

#include <algorithm>
#include <cmath>
#include <iterator>
#include <set>
#include <utility>

#include "solver/check/evaluate.h"
#include "solver/check/exact_sum.h"
#include "solver/check/infeasible.h"
#include "solver/check/null_vectors.h"
#include "solver/dense/symmetric_eigen.h"
#include "solver/problem/parallel_rows.h"

namespace sdpsol {
namespace {

/// A row without unknowns: constant > 0, >= 0 or == 0.
bool is_false_row(const Block& block) {
  double value = 0;
  double magnitude = 0;
  if (!block.terms.empty() && block.terms.front().unknown == kConstant) {
    value = block.terms.front().value;
    magnitude = block.terms.front().magnitude;
  }
  const bool below = value < -kReading * magnitude;
  switch (block.sense) {
    case Sense::kStrict:
      return below || value == 0;
    case Sense::kNonStrict:
      return below;
    case Sense::kEqual:
      return below || value > kReading * magnitude;
  }
  return false;
}

/// A matrix without unknowns that is not positive semidefinite: the eigenvector
/// of its smallest eigenvalue is the certificate.
bool is_false_matrix(const Problem& problem, std::size_t number) {
  const Block& block = problem.blocks[number];
  const Evaluated at =
      evaluate(block, std::vector<double>(static_cast<std::size_t>(problem.unknowns)));
  const SymmetricEigen eigen = symmetric_eigen(at.value);
  if (!(eigen.values[0] < 0)) return false;
  return disprove(problem, {{number, eigen.vectors.col(0)}}) == Disproof::kInfeasible;
}

/// What a diagonal entry that is identically 0 says about its block.
std::optional<std::string> diagonal_contradiction(const Block& block) {
  std::vector<bool> is_zero(static_cast<std::size_t>(block.size), true);
  for (const AffineTerm& t : block.terms) {
    if (t.row == t.column && t.value != 0) is_zero[static_cast<std::size_t>(t.row)] = false;
  }
  if (std::find(is_zero.begin(), is_zero.end(), true) == is_zero.end()) return std::nullopt;
  if (block.sense == Sense::kStrict) {
    return "a diagonal entry is 0 for every value of the variables";
  }
  // An off-diagonal entry beside a zero on the diagonal must be 0 as well.
  std::set<std::pair<std::int32_t, std::int32_t>> varying;
  for (const AffineTerm& t : block.terms) {
    if (varies(t)) varying.emplace(t.row, t.column);
  }
  for (const AffineTerm& t : block.terms) {
    if (t.unknown != kConstant) break;
    if (t.row == t.column || !(std::fabs(t.value) > kReading * t.magnitude)) continue;
    const bool beside_zero =
        is_zero[static_cast<std::size_t>(t.row)] || is_zero[static_cast<std::size_t>(t.column)];
    if (beside_zero && !varying.contains({t.row, t.column})) {
      return "a constant other than 0 stands beside a diagonal entry that is always 0";
    }
  }
  return std::nullopt;
}

/// first and second bound the same linear form; true if their positive
/// combination without unknowns reads "0 > 0" or "negative >= 0".
bool exclude_each_other(const Problem& problem, const ParallelRow& first,
                        const ParallelRow& second) {
  const Sense a = problem.blocks[first.block].sense;
  const Sense b = problem.blocks[second.block].sense;
  const bool opposite = (first.scale > 0) != (second.scale > 0);
  if (!opposite && a != Sense::kEqual && b != Sense::kEqual) return false;
  // An equation may be weighted with either sign.
  double weight_first = std::fabs(second.scale);
  double weight_second = std::fabs(first.scale);
  if (!opposite) (a == Sense::kEqual ? weight_first : weight_second) *= -1;
  ExactSum sum;
  sum.add_product(weight_first, first.constant);
  sum.add_product(weight_second, second.constant);
  if (!sum.exact()) return false;
  const double reading = kReading * (std::fabs(weight_first) * first.constant_magnitude +
                                     std::fabs(weight_second) * second.constant_magnitude);
  if (sum.estimate() < -reading) return true;
  if (a == Sense::kEqual && b == Sense::kEqual) return sum.estimate() > reading;
  const bool strict = a == Sense::kStrict || b == Sense::kStrict;
  return strict && sum.certainly_zero();
}

/// The rows of a group that matter for a contradiction: on either side the two
/// tightest of each sense, and the equations farthest apart. A group may be as
/// large as the definition.
std::vector<ParallelRow> extremes(const Problem& problem, const std::vector<ParallelRow>& group) {
  if (group.size() <= 4) return group;
  auto sense = [&](const ParallelRow& row) { return problem.blocks[row.block].sense; };
  auto bound = [](const ParallelRow& row) { return row.constant / row.scale; };
  std::vector<ParallelRow> sorted = group;
  std::stable_sort(sorted.begin(), sorted.end(),
                   [&](const ParallelRow& a, const ParallelRow& b) { return bound(a) < bound(b); });
  std::vector<ParallelRow> kept;
  for (const Sense wanted : {Sense::kStrict, Sense::kNonStrict, Sense::kEqual}) {
    for (const bool positive : {true, false}) {
      std::vector<ParallelRow> side;
      std::copy_if(sorted.begin(), sorted.end(), std::back_inserter(side),
                   [&](const ParallelRow& row) {
                     return sense(row) == wanted && (row.scale > 0) == positive;
                   });
      const std::size_t most = std::min<std::size_t>(side.size(), 2);
      kept.insert(kept.end(), side.begin(), side.begin() + static_cast<std::ptrdiff_t>(most));
      kept.insert(kept.end(), side.end() - static_cast<std::ptrdiff_t>(most), side.end());
    }
  }
  return kept;
}

std::optional<ObviousContradiction> opposite_rows(const Problem& problem) {
  for (const auto& group : group_parallel_rows(problem)) {
    const std::vector<ParallelRow> rows = extremes(problem, group);
    for (std::size_t i = 0; i < rows.size(); ++i) {
      for (std::size_t j = i + 1; j < rows.size(); ++j) {
        if (rows[i].block == rows[j].block || !exclude_each_other(problem, rows[i], rows[j])) {
          continue;
        }
        return ObviousContradiction{
            "two bounds exclude each other",
            {problem.blocks[rows[i].block].condition, problem.blocks[rows[j].block].condition}};
      }
    }
  }
  return std::nullopt;
}

std::optional<std::string> contradiction_in(const Problem& problem, std::size_t number) {
  const Block& block = problem.blocks[number];
  const bool constant = !has_unknowns(block);
  if (block.size == 1) {
    if (constant && is_false_row(block)) return "a relation between constants is false";
    return std::nullopt;
  }
  if (auto reason = diagonal_contradiction(block)) return reason;
  if (constant && is_false_matrix(problem, number)) return "a constant matrix is not positive";
  if (block.sense == Sense::kStrict && split_null_vectors(block).found) {
    return "a matrix is singular for every value of the variables";
  }
  return std::nullopt;
}

}  // namespace

std::optional<ObviousContradiction> find_obvious_contradiction(const Problem& problem) {
  for (std::size_t b = 0; b < problem.blocks.size(); ++b) {
    if (auto reason = contradiction_in(problem, b)) {
      return ObviousContradiction{*reason, {problem.blocks[b].condition}};
    }
  }
  return opposite_rows(problem);
}

}  // namespace sdpsol
