#include "solver/engine/cones/layout.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <numbers>
#include <optional>
#include <utility>

namespace sdpsol::cones {
namespace {

using Cone = ConeProgram::Cone;

/// An affine function of the unknowns.
struct Form {
  double constant = 0;
  std::vector<Term> terms;  ///< by unknown, each once

  void clear() {
    constant = 0;
    terms.clear();
  }
  bool is_zero() const { return constant == 0 && terms.empty(); }
  void add(std::int32_t unknown, double value) {
    if (unknown == ConeProgram::kConstantTerm) {
      constant += value;
    } else {
      terms.push_back({unknown, value});
    }
  }
  void sort_and_merge();
};

bool by_unknown(const Term& a, const Term& b) {
  return a.unknown < b.unknown;
}

void Form::sort_and_merge() {
  const auto not_before = [](const Term& a, const Term& b) { return a.unknown >= b.unknown; };
  if (std::adjacent_find(terms.begin(), terms.end(), not_before) == terms.end()) return;
  std::stable_sort(terms.begin(), terms.end(), by_unknown);
  auto last = terms.begin();
  for (auto next = last + 1; next != terms.end(); ++next) {
    if (next->unknown == last->unknown) {
      last->value += next->value;
    } else {
      *++last = *next;
    }
  }
  terms.erase(last + 1, terms.end());
  std::erase_if(terms, [](const Term& t) { return t.value == 0; });
}

bool are_same(const Form& a, const Form& b) {
  if (a.terms.size() != b.terms.size()) return false;
  double largest = std::fabs(a.constant);
  for (const Term& t : a.terms) largest = std::max(largest, std::fabs(t.value));
  const double tolerance = kSameForm * largest;
  if (!(std::fabs(a.constant - b.constant) <= tolerance)) return false;
  for (std::size_t i = 0; i < a.terms.size(); ++i) {
    if (a.terms[i].unknown != b.terms[i].unknown) return false;
    if (!(std::fabs(a.terms[i].value - b.terms[i].value) <= tolerance)) return false;
  }
  return true;
}

/// (a + share * b) / 2
Form half_sum(const Form& a, const Form& b, double share) {
  Form sum;
  sum.constant = (a.constant + share * b.constant) / 2;
  for (const Term& t : a.terms) sum.terms.push_back({t.unknown, t.value / 2});
  for (const Term& t : b.terms) sum.terms.push_back({t.unknown, share * t.value / 2});
  sum.sort_and_merge();
  return sum;
}

/// Upper triangle of a symmetric matrix of forms, column by column.
class MatrixOfForms {
 public:
  explicit MatrixOfForms(const Cone& cone)
      : order_(cone.size),
        entries_(static_cast<std::size_t>(order_) * static_cast<std::size_t>(order_ + 1) / 2) {
    for (const auto& c : cone.coefficients) {
      if (c.value != 0) at(c.row, c.column).add(c.unknown, c.value);
    }
    for (Form& form : entries_) form.sort_and_merge();
  }

  std::int32_t order() const { return order_; }
  Form& at(std::int32_t row, std::int32_t column) {
    return entries_[static_cast<std::size_t>(column) * static_cast<std::size_t>(column + 1) / 2 +
                    static_cast<std::size_t>(row)];
  }
  Form& beside(std::int32_t a, std::int32_t b) { return at(std::min(a, b), std::max(a, b)); }

  /// The row of an arrow that holds all entries beside the diagonal.
  std::optional<std::int32_t> hub_of_arrow() {
    for (std::int32_t i = 1; i < order_; ++i) {
      if (!are_same(at(0, 0), at(i, i))) return std::nullopt;
    }
    // Whichever row it is, it holds one end of the first entry.
    std::optional<std::pair<std::int32_t, std::int32_t>> first;
    std::array<bool, 2> is_hub = {true, true};
    for (std::int32_t column = 1; column < order_; ++column) {
      for (std::int32_t row = 0; row < column; ++row) {
        if (at(row, column).is_zero()) continue;
        if (!first) first = {row, column};
        const auto touches = [&](std::int32_t i) { return row == i || column == i; };
        is_hub[0] = is_hub[0] && touches(first->first);
        is_hub[1] = is_hub[1] && touches(first->second);
      }
    }
    if (!first) return 0;
    if (is_hub[0]) return first->first;
    if (is_hub[1]) return first->second;
    return std::nullopt;
  }

 private:
  std::int32_t order_;
  std::vector<Form> entries_;
};

void append(Layout& layout, const Form& form, std::vector<double>& constants, double factor = 1) {
  constants.push_back(factor * form.constant);
  auto& terms = layout.linear.terms;
  const std::size_t first = terms.size();
  terms.insert(terms.end(), form.terms.begin(), form.terms.end());
  if (factor != 1) {
    for (std::size_t t = first; t < terms.size(); ++t) terms[t].value *= factor;
  }
  layout.linear.starts.push_back(terms.size());
}

void append_matrix(Layout& layout, const Cone& cone, std::size_t number,
                   std::vector<double>& constants) {
  MatrixOfForms matrix(cone);
  Part part;
  part.first = static_cast<Eigen::Index>(constants.size());
  part.order = cone.size;
  part.cone = number;
  if (const auto hub = matrix.hub_of_arrow()) {
    part.kind = Part::Kind::kArrow;
    part.hub = *hub;
    append(layout, matrix.at(0, 0), constants);
    for (std::int32_t i = 0; i < cone.size; ++i) {
      if (i != *hub) append(layout, matrix.beside(i, *hub), constants);
    }
  } else if (cone.size == 2) {
    part.kind = Part::Kind::kTwoByTwo;
    append(layout, half_sum(matrix.at(0, 0), matrix.at(1, 1), 1), constants);
    append(layout, half_sum(matrix.at(0, 0), matrix.at(1, 1), -1), constants);
    append(layout, matrix.at(0, 1), constants);
  } else {
    part.kind = Part::Kind::kDense;
    for (std::int32_t column = 0; column < cone.size; ++column) {
      for (std::int32_t row = 0; row <= column; ++row) {
        append(layout, matrix.at(row, column), constants, row == column ? 1 : std::numbers::sqrt2);
      }
    }
  }
  part.dimension = static_cast<Eigen::Index>(constants.size()) - part.first;
  layout.parts.push_back(part);
}

/// (z0 - |z1|)/n * I + |z1| * v*v' with v = (z1/|z1| beside the hub, 1 in it)/sqrt 2.
void fill_arrow(const Part& part, const Eigen::Ref<const Eigen::VectorXd>& z,
                Eigen::Ref<Eigen::MatrixXd> x) {
  const auto beside = z.tail(part.dimension - 1);
  const double length = beside.norm();
  x.setIdentity();
  x *= std::max(0.0, z[0] - length) / static_cast<double>(part.order);
  if (length == 0) return;
  Eigen::VectorXd v(part.order);
  v[part.hub] = std::sqrt(length / 2);
  for (Eigen::Index i = 0, at = 0; i < part.order; ++i) {
    if (i != part.hub) v[i] = beside[at++] / length * v[part.hub];
  }
  x.noalias() += v * v.transpose();
}

}  // namespace

Layout::Layout(const ConeProgram& program) {
  std::vector<double> values;
  std::size_t coefficients = 0;
  for (const Cone& cone : program.cones) coefficients += cone.coefficients.size();
  linear.terms.reserve(coefficients);
  linear.starts.reserve(program.cones.size() * 3);
  Form row;
  for (std::size_t i = 0; i < program.cones.size(); ++i) {
    if (program.cones[i].size != 1) continue;
    row.clear();
    for (const auto& c : program.cones[i].coefficients) {
      if (c.value != 0) row.add(c.unknown, c.value);
    }
    row.sort_and_merge();
    append(*this, row, values);
    row_cones.push_back(i);
  }
  rows = static_cast<Eigen::Index>(values.size());
  degree = rows;
  for (std::size_t i = 0; i < program.cones.size(); ++i) {
    if (program.cones[i].size == 1) continue;
    append_matrix(*this, program.cones[i], i, values);
    degree += parts.back().is_second_order() ? 1 : parts.back().order;
  }
  dimension = static_cast<Eigen::Index>(values.size());
  constants = Eigen::Map<const Eigen::VectorXd>(values.data(), dimension);
}

std::vector<double> Layout::matrices(const Eigen::VectorXd& multipliers,
                                     const std::vector<std::size_t>& offsets) const {
  std::vector<double> result(offsets.back());
  for (std::size_t r = 0; r < row_cones.size(); ++r) {
    result[offsets[row_cones[r]]] = multipliers[static_cast<Eigen::Index>(r)];
  }
  for (const Part& part : parts) {
    const auto z = multipliers.segment(part.first, part.dimension);
    Eigen::Map<Eigen::MatrixXd> x(&result[offsets[part.cone]], part.order, part.order);
    switch (part.kind) {
      case Part::Kind::kArrow:
        fill_arrow(part, z, x);
        break;
      case Part::Kind::kTwoByTwo:
        x << z[0] + z[1], z[2], z[2], z[0] - z[1];
        x /= 2;
        break;
      case Part::Kind::kDense:
        x = unpack(z, part.order);
        break;
    }
  }
  return result;
}

void pack(const Eigen::MatrixXd& matrix, Eigen::Ref<Eigen::VectorXd> packed) {
  Eigen::Index at = 0;
  for (Eigen::Index column = 0; column < matrix.cols(); ++column) {
    for (Eigen::Index row = 0; row < column; ++row) {
      packed[at++] = matrix(row, column) * std::numbers::sqrt2;
    }
    packed[at++] = matrix(column, column);
  }
}

Eigen::MatrixXd unpack(const Eigen::Ref<const Eigen::VectorXd>& packed, Eigen::Index order) {
  Eigen::MatrixXd matrix(order, order);
  Eigen::Index at = 0;
  for (Eigen::Index column = 0; column < order; ++column) {
    for (Eigen::Index row = 0; row < column; ++row) {
      matrix(row, column) = matrix(column, row) = packed[at++] / std::numbers::sqrt2;
    }
    matrix(column, column) = packed[at++];
  }
  return matrix;
}

}  // namespace sdpsol::cones
