#include "fuzz/same_problem.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <numeric>
#include <tuple>
#include <utility>
#include <vector>

#include "fuzz/oracle.h"

namespace fuzz {
namespace {

using sdpsol::AffineTerm;
using sdpsol::Block;
using sdpsol::Problem;
using sdpsol::Sense;

bool same_numbers(const std::vector<double>& a, const std::vector<double>& b) {
  return std::equal(a.begin(), a.end(), b.begin(), b.end(), same_bits);
}

/// Unknown, row, column, value. Rows are counted within the piece.
using Entry = std::tuple<std::int32_t, std::int32_t, std::int32_t, double>;
using Piece = std::vector<Entry>;

/// For every row of the block the first row that it hangs together with.
std::vector<std::int32_t> roots_of(const Block& block) {
  std::vector<std::int32_t> root(static_cast<std::size_t>(block.size));
  std::iota(root.begin(), root.end(), 0);
  for (const AffineTerm& term : block.terms) {
    if (term.value == 0) continue;
    const std::int32_t a = root[static_cast<std::size_t>(term.row)];
    const std::int32_t b = root[static_cast<std::size_t>(term.column)];
    std::replace(root.begin(), root.end(), std::max(a, b), std::min(a, b));
  }
  return root;
}

void add_pieces(const Block& block, double sign, std::vector<Piece>& pieces) {
  const std::vector<std::int32_t> root = roots_of(block);
  std::vector<std::int32_t> number(root.size());
  std::vector<Piece> own(root.size());
  std::vector<std::int32_t> lengths(root.size(), 0);
  for (std::size_t row = 0; row < root.size(); ++row) {
    number[row] = lengths[static_cast<std::size_t>(root[row])]++;
  }
  for (const AffineTerm& term : block.terms) {
    if (term.value == 0) continue;
    const auto row = static_cast<std::size_t>(term.row);
    own[static_cast<std::size_t>(root[row])].emplace_back(
        term.unknown, number[row], number[static_cast<std::size_t>(term.column)],
        sign * term.value);
  }
  for (std::size_t row = 0; row < own.size(); ++row) {
    if (own[row].empty()) continue;
    std::sort(own[row].begin(), own[row].end());
    pieces.push_back(std::move(own[row]));
  }
}

std::vector<Piece> pieces_of(const Problem& problem) {
  std::vector<Piece> pieces;
  for (const Block& block : problem.blocks) {
    add_pieces(block, 1, pieces);
    if (block.sense == Sense::kEqual) add_pieces(block, -1, pieces);
  }
  std::sort(pieces.begin(), pieces.end());
  return pieces;
}

std::vector<double> cost_of(const Problem& problem) {
  if (problem.objective) return problem.objective->cost;
  return std::vector<double>(static_cast<std::size_t>(problem.unknowns), 0.0);
}

}  // namespace

bool same_problem(const Problem& a, const Problem& b) {
  const auto same_block = [](const Block& one, const Block& other) {
    return one.size == other.size && one.sense == other.sense && one.condition == other.condition &&
           one.terms == other.terms;
  };
  if (a.objective.has_value() != b.objective.has_value()) return false;
  if (a.objective && !(same_bits(a.objective->constant, b.objective->constant) &&
                       same_numbers(a.objective->cost, b.objective->cost))) {
    return false;
  }
  return a.unknowns == b.unknowns && a.boxed == b.boxed && same_bits(a.big_m, b.big_m) &&
         std::equal(a.blocks.begin(), a.blocks.end(), b.blocks.begin(), b.blocks.end(), same_block);
}

bool same_cone_program(const Problem& a, const Problem& b) {
  return a.unknowns == b.unknowns && cost_of(a) == cost_of(b) && pieces_of(a) == pieces_of(b);
}

bool is_finite(const Problem& problem) {
  const auto finite_terms = [](const Block& block) {
    return std::all_of(block.terms.begin(), block.terms.end(), [](const AffineTerm& term) {
      return std::isfinite(term.value) && std::isfinite(term.magnitude);
    });
  };
  const auto finite = [](double number) { return std::isfinite(number); };
  const std::vector<double> cost = cost_of(problem);
  return std::isfinite(problem.big_m) && std::all_of(cost.begin(), cost.end(), finite) &&
         std::all_of(problem.blocks.begin(), problem.blocks.end(), finite_terms);
}

}  // namespace fuzz
