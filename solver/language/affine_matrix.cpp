#include "solver/language/affine_matrix.h"

#include <algorithm>
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

}  // namespace

void collect_terms(AffineMatrix& matrix) {
  std::vector<AffineTerm>& terms = matrix.terms;
  const auto out_of_order = [](const AffineTerm& a, const AffineTerm& b) {
    return !comes_before(a, b);
  };
  const auto trouble = std::adjacent_find(terms.begin(), terms.end(), out_of_order);
  if (trouble == terms.end()) return;

  merge_runs(terms);
  auto last = terms.begin();
  for (auto next = last + 1; next != terms.end(); ++next) {
    if (comes_before(*last, *next)) {
      *++last = *next;
    } else {
      last->value += next->value;
      last->magnitude += next->magnitude;
    }
  }
  terms.erase(last + 1, terms.end());
}

}  // namespace sdpsol
