// Block structure is found, not declared: the block-diagonal matrix of a grasp
// of c contacts is one c*3 x c*3 matrix on paper and c small cones here.
#include "solver/problem/structure.h"

#include <algorithm>
#include <numeric>
#include <tuple>
#include <utility>

namespace sdpsol {
namespace {

/// Union-find over the indices of one matrix.
class Components {
 public:
  explicit Components(std::int32_t size) : parent_(static_cast<std::size_t>(size)) {
    std::iota(parent_.begin(), parent_.end(), 0);
  }
  std::int32_t root(std::int32_t index) {
    while (parent(index) != index) {
      parent(index) = parent(parent(index));
      index = parent(index);
    }
    return index;
  }
  void join(std::int32_t a, std::int32_t b) {
    a = root(a);
    b = root(b);
    // The smaller index stays the root, so that blocks keep the order of the text.
    if (a != b) parent(std::max(a, b)) = std::min(a, b);
  }

 private:
  std::int32_t& parent(std::int32_t index) { return parent_[static_cast<std::size_t>(index)]; }
  std::vector<std::int32_t> parent_;
};

// Structure comes from the symbols, not from values: an entry that happens to
// cancel for today's data would otherwise split a block, and two runs of one
// model would hand the engine differently shaped problems.
Components components_of(const AffineMatrix& matrix) {
  Components components(matrix.rows);
  for (const AffineTerm& t : matrix.terms) components.join(t.row, t.column);
  return components;
}

/// Calls visit for every term behind `pieces`, in their order.
template <typename Visitor>
void for_each_written_out(const std::vector<AffineTerm>& pieces, const std::vector<Form>& forms,
                          Visitor visit) {
  for (const AffineTerm& piece : pieces) {
    if (!is_reference(piece)) {
      visit(piece);
      continue;
    }
    for (const AffineTerm& t : form_of(piece, forms)) visit(scaled(t, piece));
  }
}

/// Adds up neighbours of the same unknown and entry.
void merge_equals(std::vector<AffineTerm>& terms) {
  if (terms.empty()) return;
  auto last = terms.begin();
  for (auto next = last + 1; next != terms.end(); ++next) {
    if (last->unknown == next->unknown && last->row == next->row && last->column == next->column) {
      last->value += next->value;
      last->magnitude += next->magnitude;
    } else {
      *++last = *next;
    }
  }
  terms.erase(last + 1, terms.end());
}

/// Writes out terms and brings them from the order of entries to that of unknowns:
/// by counting, which keeps the order of entries for each unknown, or, where there
/// are more places to count than terms, by an ordinary sort.
std::vector<AffineTerm> ordered_by_unknown(const std::vector<AffineTerm>& pieces,
                                           const std::vector<Form>& forms) {
  const auto place_of = [](const AffineTerm& t) {
    return static_cast<std::size_t>(t.unknown - kConstant);
  };
  std::size_t places = 0;
  for (const AffineTerm& piece : pieces) {
    const AffineTerm& last = is_reference(piece) ? form_of(piece, forms).back() : piece;
    places = std::max(places, place_of(last) + 1);
  }
  std::vector<AffineTerm> terms(written_out_size(pieces, forms));
  if (places <= 2 * terms.size()) {
    std::vector<std::size_t> starts(places + 1, 0);
    for_each_written_out(pieces, forms, [&](const AffineTerm& t) { ++starts[place_of(t) + 1]; });
    std::partial_sum(starts.begin(), starts.end(), starts.begin());
    for_each_written_out(pieces, forms,
                         [&](const AffineTerm& t) { terms[starts[place_of(t)]++] = t; });
  } else {
    auto to = terms.begin();
    for_each_written_out(pieces, forms, [&](const AffineTerm& t) { *to++ = t; });
    std::sort(terms.begin(), terms.end(), [](const AffineTerm& a, const AffineTerm& b) {
      return std::tie(a.unknown, a.row, a.column) < std::tie(b.unknown, b.row, b.column);
    });
  }
  return terms;
}

/// Brings the terms of a block, which are in the order of entries, to the order
/// and the form in which problems have them.
void finish(Block& block, const std::vector<Form>& forms) {
  if (block.size == 1) {
    if (std::any_of(block.terms.begin(), block.terms.end(), is_reference)) {
      block.terms = written_out({1, 1, std::move(block.terms)}, forms).terms;
    }
    return;
  }
  const auto same_entry = [](const AffineTerm& a, const AffineTerm& b) {
    return a.row == b.row && a.column == b.column;
  };
  const bool entries_overlap =
      std::adjacent_find(block.terms.begin(), block.terms.end(), same_entry) != block.terms.end();
  block.terms = ordered_by_unknown(block.terms, forms);
  if (entries_overlap) merge_equals(block.terms);
}

/// One block per connected component; an index that no entry touches is a
/// 1 x 1 block without terms.
void append_matrix(const Condition& condition, std::int32_t number, std::vector<Block>& blocks) {
  const std::int32_t size = condition.difference.rows;
  Components components = components_of(condition.difference);
  std::vector<std::size_t> block_of(static_cast<std::size_t>(size));
  std::vector<std::int32_t> place_in_block(static_cast<std::size_t>(size));
  for (std::int32_t i = 0; i < size; ++i) {
    const auto at = static_cast<std::size_t>(i);
    const std::int32_t root = components.root(i);
    if (root == i) {
      block_of[at] = blocks.size();
      place_in_block[at] = 0;
      blocks.push_back({1, condition.sense, number, {}});
    } else {
      block_of[at] = block_of[static_cast<std::size_t>(root)];
      place_in_block[at] = blocks[block_of[at]].size++;
    }
  }
  for (AffineTerm t : condition.difference.terms) {
    if (t.row > t.column) continue;
    Block& block = blocks[block_of[static_cast<std::size_t>(t.row)]];
    t.row = place_in_block[static_cast<std::size_t>(t.row)];
    t.column = place_in_block[static_cast<std::size_t>(t.column)];
    block.terms.push_back(t);
  }
}

/// One row per entry. An entry without terms reads 0 > 0, unless in an equation: there
/// it says nothing, and a matrix of 10,000 x 10,000 may consist of them.
void append_rows(const Condition& condition, std::int32_t number, std::vector<Block>& blocks) {
  const AffineMatrix& m = condition.difference;
  const std::size_t first = blocks.size();
  if (condition.sense == Sense::kEqual) {
    const AffineTerm* previous = nullptr;
    for (const AffineTerm& t : m.terms) {
      if (previous == nullptr || previous->row != t.row || previous->column != t.column) {
        blocks.push_back({1, Sense::kEqual, number, {}});
      }
      blocks.back().terms.push_back({0, 0, t.unknown, t.value, t.magnitude});
      previous = &t;
    }
    return;
  }
  blocks.resize(first + static_cast<std::size_t>(m.rows) * static_cast<std::size_t>(m.columns),
                {1, condition.sense, number, {}});
  for (AffineTerm t : m.terms) {
    const std::int64_t entry = std::int64_t{t.row} * m.columns + t.column;
    t.row = t.column = 0;
    blocks[first + static_cast<std::size_t>(entry)].terms.push_back(t);
  }
}

LinearObjective maximisation_of(const Objective& objective, std::int32_t unknowns) {
  LinearObjective result;
  result.cost.assign(static_cast<std::size_t>(unknowns), 0.0);
  const double sign = objective.maximize ? 1 : -1;
  for (const AffineTerm& t : objective.value.terms) {
    if (t.unknown == kConstant) {
      result.constant = sign * t.value;
      result.constant_magnitude = t.magnitude;
    } else {
      result.cost[static_cast<std::size_t>(t.unknown)] = sign * t.value;
    }
  }
  return result;
}

}  // namespace

Problem build_problem(const Model& model) {
  Problem problem;
  problem.unknowns = model.unknown_count;
  problem.big_m = model.parameters.big_m;
  problem.boxed = model.boxed;
  std::int32_t number = 0;
  for (const Condition& condition : model.conditions) {
    if (condition.is_matrix && condition.sense != Sense::kEqual) {
      append_matrix(condition, number, problem.blocks);
    } else {
      append_rows(condition, number, problem.blocks);
    }
    ++number;
  }
  for (Block& block : problem.blocks) finish(block, model.forms);
  if (model.objective) {
    problem.objective = maximisation_of(*model.objective, model.unknown_count);
  }
  return problem;
}

std::vector<std::vector<std::int32_t>> rows_of_blocks(const Condition& condition) {
  const std::int32_t size = condition.difference.rows;
  Components components = components_of(condition.difference);
  std::vector<std::size_t> block_of(static_cast<std::size_t>(size));
  std::vector<std::vector<std::int32_t>> blocks;
  for (std::int32_t i = 0; i < size; ++i) {
    const std::int32_t root = components.root(i);
    if (root == i) {
      block_of[static_cast<std::size_t>(i)] = blocks.size();
      blocks.emplace_back();
    }
    blocks[block_of[static_cast<std::size_t>(root)]].push_back(i);
  }
  return blocks;
}

std::vector<std::pair<std::int32_t, std::int32_t>> entries_of_blocks(const Condition& condition) {
  const AffineMatrix& m = condition.difference;
  std::vector<std::pair<std::int32_t, std::int32_t>> entries;
  if (condition.sense == Sense::kEqual) {
    for (const AffineTerm& t : m.terms) entries.emplace_back(t.row, t.column);
    entries.erase(std::unique(entries.begin(), entries.end()), entries.end());
    return entries;
  }
  for (std::int32_t row = 0; row < m.rows; ++row) {
    for (std::int32_t column = 0; column < m.columns; ++column) entries.emplace_back(row, column);
  }
  return entries;
}

}  // namespace sdpsol
