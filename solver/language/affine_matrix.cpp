#include "solver/language/affine_matrix.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <utility>

namespace sdpsol {
namespace {

std::uint64_t place(const AffineTerm& term) {
  return static_cast<std::uint64_t>(term.row) << 32U | static_cast<std::uint32_t>(term.column);
}

bool comes_before(const AffineTerm& a, const AffineTerm& b) {
  return place(a) != place(b) ? place(a) < place(b) : a.unknown < b.unknown;
}

// Texts are written in order, so what is sorted here is a handful of ascending
// runs: "[...] - [...]" is two of them. Merging the runs that are there costs
// one pass each time their number halves, and nothing at all for a single run.
void merge_runs(std::vector<AffineTerm>& terms) {
  using Offset = std::ptrdiff_t;
  std::vector<Offset> ends;
  const auto begin = terms.begin();
  for (auto at = begin; at != terms.end();) {
    at = std::is_sorted_until(at, terms.end(), comes_before);
    ends.push_back(at - begin);
  }
  while (ends.size() > 1) {
    std::vector<Offset> merged;
    merged.reserve((ends.size() + 1) / 2);
    Offset run = 0;
    for (std::size_t i = 0; i + 1 < ends.size(); i += 2) {
      std::inplace_merge(begin + run, begin + ends[i], begin + ends[i + 1], comes_before);
      run = ends[i + 1];
      merged.push_back(run);
    }
    if (ends.size() % 2 == 1) merged.push_back(ends.back());
    ends = std::move(merged);
  }
}

/// One term for all of [first, last). What rounding takes away on the way is added
/// again at the end (Neumaier's summation, ZAMM 54, 1974): of 1e20+1-1e20 the 1 is left.
AffineTerm sum_of(std::vector<AffineTerm>::const_iterator first,
                  std::vector<AffineTerm>::const_iterator last) {
  AffineTerm sum = *first;
  double lost = 0;
  for (auto term = first + 1; term != last; ++term) {
    const double before = sum.value;
    sum.value += term->value;
    sum.magnitude += term->magnitude;
    lost += std::fabs(before) >= std::fabs(term->value) ? (before - sum.value) + term->value
                                                        : (term->value - sum.value) + before;
  }
  if (lost != 0 && std::isfinite(sum.value)) sum.value += lost;
  return sum;
}

}  // namespace

void collect_terms(AffineMatrix& matrix) {
  std::vector<AffineTerm>& terms = matrix.terms;
  const auto out_of_order = [](const AffineTerm& a, const AffineTerm& b) {
    return !comes_before(a, b);
  };
  const auto trouble = std::adjacent_find(terms.begin(), terms.end(), out_of_order);
  if (trouble == terms.end()) return;

  merge_runs(terms);
  auto to = terms.begin();
  for (auto first = terms.begin(); first != terms.end(); ++to) {
    const auto last = std::find_if(
        first + 1, terms.end(), [&](const AffineTerm& term) { return comes_before(*first, term); });
    const AffineTerm sum = sum_of(first, last);
    *to = sum;
    first = last;
  }
  terms.erase(to, terms.end());
}

}  // namespace sdpsol
