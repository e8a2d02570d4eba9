// The candidates are the reduced row echelon form's null vectors of the sum of
// squares of the coefficient matrices: in that basis each vector has a 1 in an
// index where the others have a 0, so the indices of these ones can simply be
// struck out, and vectors that people write ([1,-1], [2,1]) come out as written.
#include "solver/check/null_vectors.h"

#include <Eigen/Core>
#include <algorithm>
#include <cmath>
#include <map>
#include <utility>

#include "solver/check/exact_sum.h"

namespace sdpsol {
namespace {

constexpr double kSingular = 1e-10;

/// Sum of squares of the normalised coefficient matrices, with a unit diagonal.
Eigen::MatrixXd sum_of_squares(const Block& block) {
  const Eigen::Index n = block.size;
  Eigen::MatrixXd sum = Eigen::MatrixXd::Zero(n, n);
  for_each_unknown(block, [&](const AffineTerm* first, const AffineTerm* last) {
    std::vector<AffineTerm> entries;
    double square = 0;
    for (const AffineTerm* t = first; t != last; ++t) {
      if (t->value == 0) continue;
      entries.push_back(*t);
      if (t->row != t->column) {
        entries.push_back(*t);
        std::swap(entries.back().row, entries.back().column);
      }
      square += t->value * t->value;
    }
    std::sort(entries.begin(), entries.end(),
              [](const AffineTerm& a, const AffineTerm& b) { return a.row < b.row; });
    for (auto a = entries.begin(); a != entries.end();) {
      auto end = a;
      while (end != entries.end() && end->row == a->row) ++end;
      for (auto i = a; i != end; ++i) {
        for (auto j = a; j != end; ++j) sum(i->column, j->column) += i->value * j->value / square;
      }
      a = end;
    }
  });
  return sum;
}

/// Gauss-Jordan elimination with diagonal pivots (the matrix is positive
/// semidefinite). Returns one null vector per index without a pivot: a 1 in that
/// index, 0 in the other ones without.
struct NullVector {
  Eigen::Index free_index = 0;
  Eigen::VectorXd entries;
};
std::vector<NullVector> echelon_null_vectors(Eigen::MatrixXd m) {
  const Eigen::Index n = m.rows();
  const double largest = m.diagonal().maxCoeff();
  std::vector<bool> is_pivot(static_cast<std::size_t>(n), false);
  for (;;) {
    Eigen::Index pivot = -1;
    double best = kSingular * largest;
    for (Eigen::Index i = 0; i < n; ++i) {
      if (!is_pivot[static_cast<std::size_t>(i)] && m(i, i) > best) {
        best = m(i, i);
        pivot = i;
      }
    }
    if (pivot < 0) break;
    is_pivot[static_cast<std::size_t>(pivot)] = true;
    m.row(pivot) /= m(pivot, pivot);
    for (Eigen::Index i = 0; i < n; ++i) {
      if (i != pivot && m(i, pivot) != 0) m.row(i) -= m(i, pivot) * m.row(pivot);
    }
  }
  std::vector<NullVector> vectors;
  for (Eigen::Index f = 0; f < n; ++f) {
    if (is_pivot[static_cast<std::size_t>(f)]) continue;
    Eigen::VectorXd w = Eigen::VectorXd::Zero(n);
    w[f] = 1;
    for (Eigen::Index i = 0; i < n; ++i) {
      if (!is_pivot[static_cast<std::size_t>(i)]) continue;
      const double rounded = std::round(m(i, f) * 64) / 64;
      w[i] = -(std::fabs(m(i, f) - rounded) < 1e-6 ? rounded : m(i, f));
    }
    vectors.push_back({f, std::move(w)});
  }
  return vectors;
}

bool is_exact_null_vector(const Block& block, const Eigen::VectorXd& w) {
  bool exact = true;
  for_each_unknown(block, [&](const AffineTerm* first, const AffineTerm* last) {
    std::map<std::int32_t, ExactSum> products;
    for (const AffineTerm* t = first; t != last; ++t) {
      products[t->row].add_product(t->value, w[t->column]);
      if (t->row != t->column) products[t->column].add_product(t->value, w[t->row]);
    }
    for (const auto& [row, sum] : products) exact = exact && sum.certainly_zero();
  });
  return exact;
}

Block strike_out(const Block& block, const std::vector<bool>& struck) {
  std::vector<std::int32_t> place(struck.size());
  Block rest{0, block.sense, block.condition, {}};
  for (std::size_t i = 0; i < struck.size(); ++i) {
    place[i] = rest.size;
    if (!struck[i]) ++rest.size;
  }
  for (AffineTerm t : block.terms) {
    const auto row = static_cast<std::size_t>(t.row);
    const auto column = static_cast<std::size_t>(t.column);
    if (struck[row] || struck[column]) continue;
    t.row = place[row];
    t.column = place[column];
    rest.terms.push_back(t);
  }
  return rest;
}

}  // namespace

NullSplit split_null_vectors(const Block& block) {
  NullSplit split;
  if (block.size < 2) return split;
  std::vector<bool> struck(static_cast<std::size_t>(block.size), false);
  for (const NullVector& w : echelon_null_vectors(sum_of_squares(block))) {
    if (!is_exact_null_vector(block, w.entries)) continue;
    struck[static_cast<std::size_t>(w.free_index)] = true;
    split.found = true;
  }
  if (split.found) split.rest = strike_out(block, struck);
  return split;
}

}  // namespace sdpsol
