// Scalars of many terms, written down once.
//
// Each force of a grasp is a sum over all coordinates and comes up in its cone,
// in its bounds and in the matrix of all cones. Copying those sums would be most
// of what reading costs. So the value of a name that is a scalar of several terms
// becomes a form, and what is composed of it holds a single term in its place, a
// reference: the number of the form stands where an unknown's would. Sums, blocks
// and conditions take references for unknowns; whoever needs the terms themselves
// writes them out.
#pragma once

#include <cstddef>
#include <cstdint>
#include <utility>
#include <vector>

#include "solver/language/affine_matrix.h"
#include "solver/language/source.h"

namespace sdpsol {

/// Terms of a scalar, collected; none of them a reference.
using Form = std::vector<AffineTerm>;

/// Unknown numbers from here on are references to form number unknown - kFirstForm.
inline constexpr std::int32_t kFirstForm = 1 << 30;

inline bool is_reference(const AffineTerm& term) {
  return term.unknown >= kFirstForm;
}

inline const Form& form_of(const AffineTerm& reference, const std::vector<Form>& forms) {
  return forms[static_cast<std::size_t>(reference.unknown - kFirstForm)];
}

/// What `reference` stands for where its form has the term t.
inline AffineTerm scaled(const AffineTerm& t, const AffineTerm& reference) {
  return {reference.row, reference.column, t.unknown, reference.value * t.value,
          reference.magnitude * t.magnitude};
}

/// True if a reference may be scaled by so much: no coefficient of a form can
/// overflow or vanish then, however many of them are added up.
bool is_moderate(const AffineTerm& reference);

/// Number of terms behind `terms`.
std::size_t written_out_size(const std::vector<AffineTerm>& terms, const std::vector<Form>& forms);

/// Appends what `term` stands for: itself, or the terms of its form in its place.
void append_written_out(const AffineTerm& term, const std::vector<Form>& forms,
                        std::vector<AffineTerm>& to);

/// `matrix` without references, terms collected.
AffineMatrix written_out(const AffineMatrix& matrix, const std::vector<Form>& forms);

/// The forms of a definition while it is read. A form lives as long as a value
/// that is held refers to it; a value under way must be held or written out
/// before any other is dropped.
class FormTable {
 public:
  /// Makes a form of a scalar, terms collected, and a reference to it of `value`,
  /// where that pays and every coefficient has a moderate size.
  void keep(AffineMatrix& value);
  void hold(const AffineMatrix& value);
  void drop(const AffineMatrix& value);

  /// Replaces references by terms, which are not collected.
  /// @throws LanguageError if they are too many.
  void write_out(AffineMatrix& value, Span at) const;
  /// Collects terms, and writes out references that are not moderate.
  /// @throws LanguageError where a coefficient is beyond the range of numbers.
  void settle(AffineMatrix& value, Span at) const;

  const std::vector<Form>& forms() const { return forms_; }
  std::vector<Form> take() { return std::move(forms_); }
  /// Terms of all forms together.
  std::size_t held_terms() const { return held_terms_; }

 private:
  std::vector<Form> forms_;
  std::vector<std::size_t> uses_;  ///< references in values that are held
  std::vector<std::size_t> free_;  ///< numbers of forms that nobody refers to
  std::size_t held_terms_ = 0;
};

}  // namespace sdpsol
