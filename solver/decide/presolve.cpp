#include "solver/decide/presolve.h"

#include <algorithm>
#include <cmath>

#include "solver/check/null_vectors.h"
#include "solver/problem/parallel_rows.h"

namespace sdpsol {
namespace {

/// The tightest row of a group that bounds the form from one side; strict rows
/// count as tighter than non-strict ones with the same bound.
const ParallelRow* tightest(const Problem& problem, const std::vector<ParallelRow>& group,
                            bool positive) {
  const ParallelRow* best = nullptr;
  for (const ParallelRow& row : group) {
    if ((row.scale > 0) != positive) continue;
    if (problem.blocks[row.block].sense == Sense::kEqual) continue;
    if (best != nullptr) {
      const double mine = row.constant / std::fabs(row.scale);
      const double its = best->constant / std::fabs(best->scale);
      const bool stricter = problem.blocks[row.block].sense == Sense::kStrict &&
                            problem.blocks[best->block].sense != Sense::kStrict;
      if (mine > its || (mine == its && !stricter)) continue;
    }
    best = &row;
  }
  return best;
}

/// Both bounds of one form, not strict, with nothing between them.
bool meet(const Problem& problem, const ParallelRow& lower, const ParallelRow& upper) {
  return problem.blocks[lower.block].sense == Sense::kNonStrict &&
         problem.blocks[upper.block].sense == Sense::kNonStrict &&
         lower.constant * std::fabs(upper.scale) + upper.constant * std::fabs(lower.scale) == 0;
}

void select_rows(const Problem& problem, const std::vector<ParallelRow>& group,
                 Selection& selection) {
  for (const ParallelRow& row : group) {
    if (problem.blocks[row.block].sense == Sense::kEqual) {
      selection.equations.push_back({row.block, std::nullopt});
      break;  // the others say the same, or the checker finds that they do not
    }
  }
  const ParallelRow* lower = tightest(problem, group, true);
  const ParallelRow* upper = tightest(problem, group, false);
  if (lower != nullptr && upper != nullptr && meet(problem, *lower, *upper)) {
    selection.equations.push_back({lower->block, upper->block});
    return;
  }
  if (lower != nullptr) selection.inequalities.push_back(lower->block);
  if (upper != nullptr) selection.inequalities.push_back(upper->block);
}

}  // namespace

Selection select_conditions(const Problem& problem) {
  Selection selection;
  for (const auto& group : group_parallel_rows(problem)) select_rows(problem, group, selection);
  for (std::size_t b = 0; b < problem.blocks.size(); ++b) {
    if (problem.blocks[b].size > 1 && has_unknowns(problem.blocks[b])) {
      selection.inequalities.push_back(b);
    }
  }
  std::sort(selection.inequalities.begin(), selection.inequalities.end());
  return selection;
}

bool has_singular_matrices(const Problem& problem) {
  return std::any_of(problem.blocks.begin(), problem.blocks.end(), [](const Block& block) {
    return block.sense == Sense::kNonStrict && split_null_vectors(block).found;
  });
}

Problem reduce_singular_matrices(const Problem& problem) {
  Problem reduced = problem;
  for (Block& block : reduced.blocks) {
    if (block.sense != Sense::kNonStrict) continue;
    NullSplit split = split_null_vectors(block);
    if (!split.found) continue;
    // Nothing left: 0 >= 0, which a row without terms says.
    if (split.rest.size == 0) split.rest.size = 1;
    block = std::move(split.rest);
  }
  return reduced;
}

void restore_struck_rows(const Problem& problem, std::vector<Multiplier>& multipliers) {
  for (Multiplier& y : multipliers) {
    const Block& block = problem.blocks[y.block];
    if (y.factor.rows() == block.size) continue;
    const NullSplit split = split_null_vectors(block);
    Eigen::MatrixXd whole = Eigen::MatrixXd::Zero(block.size, y.factor.cols());
    for (std::size_t i = 0; i < split.kept.size(); ++i) {
      whole.row(split.kept[i]) = y.factor.row(static_cast<Eigen::Index>(i));
    }
    y.factor = std::move(whole);
  }
}

DiagonalRelaxation relax_to_diagonals(const Problem& problem) {
  DiagonalRelaxation relaxation;
  relaxation.problem.unknowns = problem.unknowns;
  relaxation.problem.big_m = problem.big_m;
  relaxation.problem.boxed = problem.boxed;
  std::vector<Block>& rows = relaxation.problem.blocks;
  for (std::size_t b = 0; b < problem.blocks.size(); ++b) {
    const Block& block = problem.blocks[b];
    const std::size_t first = rows.size();
    for (std::int32_t row = 0; row < block.size; ++row) {
      rows.push_back({1, block.sense, block.condition, {}});
      relaxation.origins.push_back({b, row});
    }
    for (AffineTerm t : block.terms) {
      if (t.row != t.column) continue;
      Block& row = rows[first + static_cast<std::size_t>(t.row)];
      t.row = t.column = 0;
      row.terms.push_back(t);
    }
  }
  return relaxation;
}

std::vector<Multiplier> lift_multipliers(const Problem& problem,
                                         const DiagonalRelaxation& relaxation,
                                         const std::vector<Multiplier>& multipliers) {
  std::vector<Multiplier> lifted;
  for (const Multiplier& y : multipliers) {
    const auto& [block, row] = relaxation.origins[y.block];
    if (lifted.empty() || lifted.back().block != block) {
      lifted.push_back({block, Eigen::MatrixXd(problem.blocks[block].size, 0)});
    }
    Eigen::MatrixXd& factor = lifted.back().factor;
    factor.conservativeResize(Eigen::NoChange, factor.cols() + 1);
    factor.rightCols(1).setZero();
    factor(row, factor.cols() - 1) = y.factor(0, 0);
  }
  return lifted;
}

}  // namespace sdpsol
