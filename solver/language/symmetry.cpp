#include "solver/language/symmetry.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <tuple>
#include <utility>
#include <vector>

namespace sdpsol {
namespace {

// Of what was added up, this much may be lost on the way: terms that mirror each
// other are often the same numbers, added in another order.
constexpr double kRounding = 0x1p-48;

using Key = std::tuple<std::int32_t, std::int32_t, std::int32_t>;

Key key_of(const AffineTerm& term) {
  return {term.row, term.column, term.unknown};
}
Key mirrored_key_of(const AffineTerm& term) {
  return {term.column, term.row, term.unknown};
}

// Positions of the terms in the order of their mirror images: a stable counting
// sort by column keeps row and unknown in order within each column.
std::vector<std::uint32_t> mirrored_order(const AffineMatrix& matrix) {
  std::vector<std::uint32_t> starts(static_cast<std::size_t>(matrix.columns) + 1, 0);
  for (const AffineTerm& term : matrix.terms) ++starts[static_cast<std::size_t>(term.column) + 1];
  for (std::size_t i = 1; i < starts.size(); ++i) starts[i] += starts[i - 1];
  std::vector<std::uint32_t> order(matrix.terms.size());
  for (std::uint32_t i = 0; i < order.size(); ++i) {
    order[starts[static_cast<std::size_t>(matrix.terms[i].column)]++] = i;
  }
  return order;
}

bool is_exactly_symmetric(const AffineMatrix& matrix, const std::vector<std::uint32_t>& order) {
  for (std::size_t i = 0; i < order.size(); ++i) {
    const AffineTerm& term = matrix.terms[i];
    const AffineTerm& image = matrix.terms[order[i]];
    if (key_of(term) != mirrored_key_of(image) || term.value != image.value ||
        term.magnitude != image.magnitude) {
      return false;
    }
  }
  return true;
}

// Largest entry of each coefficient matrix, at position unknown + 1.
std::vector<double> largest_entries(const AffineMatrix& matrix) {
  std::int32_t last = kConstant;
  for (const AffineTerm& term : matrix.terms) last = std::max(last, term.unknown);
  std::vector<double> largest(static_cast<std::size_t>(last) + 2, 0.0);
  for (const AffineTerm& term : matrix.terms) {
    double& entry = largest[static_cast<std::size_t>(term.unknown) + 1];
    entry = std::max(entry, std::abs(term.value));
  }
  return largest;
}

}  // namespace

bool is_symmetric(const AffineMatrix& matrix) {
  return is_exactly_symmetric(matrix, mirrored_order(matrix));
}

Symmetry symmetrize(AffineMatrix& matrix) {
  Symmetry result;
  const std::vector<std::uint32_t> order = mirrored_order(matrix);
  if (is_exactly_symmetric(matrix, order)) return result;

  const std::vector<double> largest = largest_entries(matrix);
  const std::vector<AffineTerm>& terms = matrix.terms;
  std::vector<AffineTerm> symmetric;
  symmetric.reserve(terms.size());
  double worst = 0;
  std::size_t i = 0;
  std::size_t j = 0;
  while (i < terms.size() || j < terms.size()) {
    const bool only_image = i == terms.size();
    const bool only_term = j == terms.size();
    const bool has_term =
        !only_image && (only_term || key_of(terms[i]) <= mirrored_key_of(terms[order[j]]));
    const bool has_image =
        !only_term && (only_image || mirrored_key_of(terms[order[j]]) <= key_of(terms[i]));
    const AffineTerm term = has_term ? terms[i++] : AffineTerm{};
    const AffineTerm image = has_image ? terms[order[j++]] : AffineTerm{};

    const auto [row, column, unknown] = has_term ? key_of(term) : mirrored_key_of(image);
    symmetric.push_back({row, column, unknown, 0.5 * term.value + 0.5 * image.value,
                         0.5 * term.magnitude + 0.5 * image.magnitude});
    const double difference = std::abs(term.value - image.value);
    if (row >= column || difference <= kRounding * (term.magnitude + image.magnitude)) continue;
    const double relative = difference / largest[static_cast<std::size_t>(unknown) + 1];
    if (relative <= worst) continue;
    worst = relative;
    result = {Symmetry::Grade::kRounded, unknown, row, column, term.value, image.value};
  }
  if (worst > kSymmetryTolerance) {
    result.grade = Symmetry::Grade::kBroken;
  } else {
    matrix.terms = std::move(symmetric);
  }
  return result;
}

}  // namespace sdpsol
