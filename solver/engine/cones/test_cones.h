// Cone programs for tests, and what is true of them by definition.
#pragma once

#include <Eigen/Core>
#include <cmath>
#include <numbers>
#include <random>
#include <utility>
#include <vector>

#include "solver/engine/cones/jordan.h"
#include "solver/engine/cones/layout.h"

namespace sdpsol::testing {

using Eigen::Index;
using Eigen::MatrixXd;
using Eigen::VectorXd;

inline constexpr std::int32_t kOne = ConeProgram::kConstantTerm;

/// Values by unknown; kOne is the constant.
using Form = std::vector<std::pair<std::int32_t, double>>;

inline void add(ConeProgram::Cone& cone, std::int32_t row, std::int32_t column, const Form& form) {
  for (const auto& [unknown, value] : form) {
    cone.coefficients.push_back({std::min(row, column), std::max(row, column), unknown, value});
  }
}

inline ConeProgram::Cone row(const Form& form) {
  ConeProgram::Cone cone;
  add(cone, 0, 0, form);
  return cone;
}

/// @param upper the upper triangle row by row.
inline ConeProgram::Cone matrix(std::int32_t size, const std::vector<Form>& upper) {
  ConeProgram::Cone cone{size, {}};
  auto next = upper.begin();
  for (std::int32_t i = 0; i < size; ++i) {
    for (std::int32_t j = i; j < size; ++j) add(cone, i, j, *next++);
  }
  return cone;
}

/// @param beside the entries beside the diagonal, in the order of the rows that are not the hub.
inline ConeProgram::Cone arrow(std::int32_t hub, const Form& diagonal,
                               const std::vector<Form>& beside) {
  ConeProgram::Cone cone{static_cast<std::int32_t>(beside.size()) + 1, {}};
  auto next = beside.begin();
  for (std::int32_t i = 0; i < cone.size; ++i) {
    add(cone, i, i, diagonal);
    if (i != hub) add(cone, i, hub, *next++);
  }
  return cone;
}

inline ConeProgram program(std::vector<double> objective, std::vector<ConeProgram::Cone> cones) {
  ConeProgram program;
  program.unknowns = static_cast<std::int32_t>(objective.size());
  program.objective = std::move(objective);
  program.cones = std::move(cones);
  return program;
}

/// maximise y_0 with [2 - y_0, 1; 1, 3 - y_0] psd: kSmallestEigenvalue
inline ConeProgram smallest_eigenvalue() {
  return program({1}, {matrix(2, {{{kOne, 2}, {0, -1}}, {{kOne, 1}}, {{kOne, 3}, {0, -1}}})});
}
inline const double kSmallestEigenvalue = (5 - std::sqrt(5.0)) / 2;

/// C + sum of y_k * A_k
inline MatrixXd matrix_at(const ConeProgram::Cone& cone, const VectorXd& y) {
  MatrixXd matrix = MatrixXd::Zero(cone.size, cone.size);
  for (const auto& c : cone.coefficients) {
    const double value = c.unknown == kOne ? c.value : c.value * y[c.unknown];
    matrix(c.row, c.column) += value;
    if (c.row != c.column) matrix(c.column, c.row) += value;
  }
  return matrix;
}

/// G as a dense matrix.
inline MatrixXd dense(const cones::Layout& layout, Index unknowns) {
  MatrixXd g = MatrixXd::Zero(layout.dimension, unknowns);
  for (Index i = 0; i < layout.dimension; ++i) {
    for (const cones::Term& t : layout.linear.of(i)) g(i, t.unknown) += t.value;
  }
  return g;
}

inline VectorXd coordinates_at(const cones::Layout& layout, const VectorXd& y) {
  return layout.constants + dense(layout, y.size()) * y;
}

/// The matrix that has these coordinates.
inline MatrixXd matrix_of(const cones::Part& part, const VectorXd& s) {
  const VectorXd c = s.segment(part.first, part.dimension);
  MatrixXd matrix = MatrixXd::Zero(part.order, part.order);
  Index next = 0;
  switch (part.kind) {
    case cones::Part::Kind::kArrow:
      matrix.diagonal().setConstant(c[next++]);
      for (Index i = 0; i < part.order; ++i) {
        if (i != part.hub) matrix(i, part.hub) = matrix(part.hub, i) = c[next++];
      }
      break;
    case cones::Part::Kind::kTwoByTwo:
      matrix << c[0] + c[1], c[2], c[2], c[0] - c[1];
      break;
    case cones::Part::Kind::kDense:
      for (Index column = 0; column < part.order; ++column) {
        for (Index i = 0; i < column; ++i) {
          matrix(i, column) = matrix(column, i) = c[next++] / std::numbers::sqrt2;
        }
        matrix(column, column) = c[next++];
      }
      break;
  }
  return matrix;
}

/// Random numbers, and what is made of them.
class Numbers {
 public:
  explicit Numbers(unsigned seed) : random_(seed) {}

  double number() { return normal_(random_); }
  VectorXd vector(Index size) {
    VectorXd v(size);
    for (double& x : v) x = number();
    return v;
  }
  MatrixXd matrix(Index rows, Index columns) {
    MatrixXd m(rows, columns);
    for (Index j = 0; j < columns; ++j) m.col(j) = vector(rows);
    return m;
  }
  Form form(std::int32_t unknowns) {
    Form form = {{kOne, number()}};
    for (std::int32_t k = 0; k < unknowns; ++k) form.emplace_back(k, number());
    return form;
  }
  std::vector<Form> forms(std::int32_t unknowns, std::size_t count) {
    std::vector<Form> forms;
    for (std::size_t i = 0; i < count; ++i) forms.push_back(form(unknowns));
    return forms;
  }

  /// Cones of every kind, matrices and rows in turns.
  ConeProgram mixture(std::int32_t unknowns) {
    ConeProgram program;
    program.unknowns = unknowns;
    for (const double c : vector(unknowns)) program.objective.push_back(c);
    program.cones = {
        arrow(2, form(unknowns), forms(unknowns, 2)),
        row(form(unknowns)),
        testing::matrix(2, forms(unknowns, 3)),
        testing::matrix(3, forms(unknowns, 6)),
        row(form(unknowns)),
        arrow(1, form(unknowns), forms(unknowns, 1)),
        row(form(unknowns)),
        testing::matrix(4, forms(unknowns, 10)),
        arrow(0, form(unknowns), forms(unknowns, 4)),
    };
    return program;
  }

  /// A vector inside the cones, sometimes hardly so.
  VectorXd inside(const cones::Layout& layout) {
    const VectorXd v = vector(layout.dimension);
    const double room = std::pow(10.0, -3 * std::fabs(number()));
    return v + (room - cones::least_eigenvalue(layout, v)) * cones::unit(layout);
  }

 private:
  std::mt19937 random_;
  std::normal_distribution<double> normal_;
};

/// Coordinates of cones of every kind.
inline const cones::Layout& mixed_layout() {
  static const cones::Layout layout(Numbers(1).mixture(1));
  return layout;
}

}  // namespace sdpsol::testing
