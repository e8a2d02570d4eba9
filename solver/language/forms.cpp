#include "solver/language/forms.h"

#include <algorithm>
#include <utility>

#include "solver/language/arithmetic.h"

namespace sdpsol {
namespace {

// Below, a copy is as cheap as a reference.
constexpr std::size_t kShortest = 4;

// Coefficients of forms and factors of references stay within these powers of
// ten, so that their products and the sums of those stay within 1e308.
constexpr double kLargestCoefficient = 1e30;
constexpr double kLargestFactor = 1e250;

bool is_within(double magnitude, double largest) {
  return magnitude <= largest && magnitude >= 1 / largest;
}

std::size_t form_number(const AffineTerm& reference) {
  return static_cast<std::size_t>(reference.unknown - kFirstForm);
}

bool holds_references(const AffineMatrix& matrix) {
  return std::any_of(matrix.terms.begin(), matrix.terms.end(), is_reference);
}

}  // namespace

bool is_moderate(const AffineTerm& reference) {
  return is_within(reference.magnitude, kLargestFactor);
}

std::size_t written_out_size(const std::vector<AffineTerm>& terms, const std::vector<Form>& forms) {
  std::size_t size = 0;
  for (const AffineTerm& term : terms) {
    size += is_reference(term) ? form_of(term, forms).size() : 1;
  }
  return size;
}

void append_written_out(const AffineTerm& term, const std::vector<Form>& forms,
                        std::vector<AffineTerm>& to) {
  if (!is_reference(term)) {
    to.push_back(term);
    return;
  }
  for (const AffineTerm& t : form_of(term, forms)) to.push_back(scaled(t, term));
}

AffineMatrix written_out(const AffineMatrix& matrix, const std::vector<Form>& forms) {
  AffineMatrix result{matrix.rows, matrix.columns, {}};
  result.terms.reserve(written_out_size(matrix.terms, forms));
  for (const AffineTerm& term : matrix.terms) append_written_out(term, forms, result.terms);
  collect_terms(result);
  return result;
}

void FormTable::keep(AffineMatrix& value) {
  if (!is_scalar(value) || value.terms.size() < kShortest ||
      !std::all_of(value.terms.begin(), value.terms.end(), [](const AffineTerm& term) {
        return is_within(term.magnitude, kLargestCoefficient);
      })) {
    return;
  }
  if (free_.empty()) {
    free_.push_back(forms_.size());
    forms_.emplace_back();
    uses_.push_back(0);
  }
  const std::size_t number = free_.back();
  free_.pop_back();
  held_terms_ += value.terms.size();
  forms_[number] = std::move(value.terms);
  value.terms = {{0, 0, kFirstForm + static_cast<std::int32_t>(number), 1, 1}};
}

void FormTable::hold(const AffineMatrix& value) {
  for (const AffineTerm& term : value.terms) {
    if (is_reference(term)) ++uses_[form_number(term)];
  }
}

void FormTable::drop(const AffineMatrix& value) {
  for (const AffineTerm& term : value.terms) {
    if (!is_reference(term)) continue;
    const std::size_t number = form_number(term);
    if (--uses_[number] > 0) continue;
    held_terms_ -= forms_[number].size();
    forms_[number] = Form();
    free_.push_back(number);
  }
}

void FormTable::write_out(AffineMatrix& value, Span at) const {
  if (!holds_references(value)) return;
  const std::size_t size = written_out_size(value.terms, forms_);
  require_room(size, at);
  std::vector<AffineTerm> terms;
  terms.reserve(size);
  for (const AffineTerm& term : value.terms) append_written_out(term, forms_, terms);
  value.terms = std::move(terms);
}

void FormTable::settle(AffineMatrix& value, Span at) const {
  sdpsol::settle(value, at);
  const bool moderate =
      std::all_of(value.terms.begin(), value.terms.end(),
                  [](const AffineTerm& term) { return !is_reference(term) || is_moderate(term); });
  if (moderate) return;
  write_out(value, at);
  sdpsol::settle(value, at);
}

}  // namespace sdpsol
