#include "solver/engine/cones/jordan.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "solver/dense/symmetric_eigen.h"

namespace sdpsol::cones {
namespace {

using Eigen::Index;
using Eigen::MatrixXd;
using Eigen::VectorXd;

/// Calls the one or the other with every part, in their order.
template <typename SecondOrder, typename Dense>
void for_each_part(const Layout& layout, SecondOrder second_order, Dense dense) {
  for (const Part& part : layout.parts) {
    if (part.is_second_order()) {
      second_order(part);
    } else {
      dense(part);
    }
  }
}

auto piece(VectorXd& v, const Part& part) {
  return v.segment(part.first, part.dimension);
}
auto piece(const VectorXd& v, const Part& part) {
  return v.segment(part.first, part.dimension);
}

/// The diagonal entries of a packed diagonal matrix.
VectorXd diagonal_of(const VectorXd& lambda, const Part& part) {
  VectorXd diagonal(part.order);
  Index at = part.first;
  for (Index i = 0; i < part.order; ++i) {
    diagonal[i] = lambda[at];
    at += i + 2;
  }
  return diagonal;
}

/// How fast lambda + step * d approaches the border: -1/step where it meets it.
/// Source: Vandenberghe, The CVXOPT linear and quadratic cone program solvers, 2010, section 8.3.
double second_order_rate(const Eigen::Ref<const VectorXd>& lambda,
                         const Eigen::Ref<const VectorXd>& d) {
  const Index tail = lambda.size() - 1;
  const double length = lambda.tail(tail).norm();
  const double size = std::sqrt((lambda[0] - length) * (lambda[0] + length));
  const double l0 = lambda[0] / size;
  const double inner = (lambda[0] * d[0] - lambda.tail(tail).dot(d.tail(tail))) / size;
  const double share = (inner + d[0]) / (l0 + 1) / size;
  return (inner - (d.tail(tail) - share * lambda.tail(tail)).norm()) / size;
}

}  // namespace

VectorXd unit(const Layout& layout) {
  VectorXd e = VectorXd::Zero(layout.dimension);
  e.head(layout.rows).setOnes();
  for_each_part(
      layout, [&](const Part& part) { e[part.first] = 1; },
      [&](const Part& part) { pack(MatrixXd::Identity(part.order, part.order), piece(e, part)); });
  return e;
}

VectorXd product(const Layout& layout, const VectorXd& a, const VectorXd& b) {
  VectorXd result = a.cwiseProduct(b);
  for_each_part(
      layout,
      [&](const Part& part) {
        const auto x = piece(a, part);
        const auto y = piece(b, part);
        auto to = piece(result, part);
        to = x[0] * y + y[0] * x;
        to[0] = x.dot(y);
      },
      [&](const Part& part) {
        const MatrixXd half =
            unpack(piece(a, part), part.order) * unpack(piece(b, part), part.order);
        pack((half + half.transpose()) / 2, piece(result, part));
      });
  return result;
}

VectorXd quotient(const Layout& layout, const VectorXd& b, const VectorXd& lambda) {
  VectorXd result(b.size());
  result.head(layout.rows) = b.head(layout.rows).cwiseQuotient(lambda.head(layout.rows));
  for_each_part(
      layout,
      [&](const Part& part) {
        const auto l = piece(lambda, part);
        const auto y = piece(b, part);
        auto x = piece(result, part);
        const Index tail = part.dimension - 1;
        const double length = l.tail(tail).norm();
        const double determinant = (l[0] - length) * (l[0] + length);
        const double head = (l[0] * y[0] - l.tail(tail).dot(y.tail(tail))) / determinant;
        x = (y - head * l) / l[0];
        x[0] = head;
      },
      [&](const Part& part) {
        const VectorXd diagonal = diagonal_of(lambda, part);
        Index at = part.first;
        for (Index column = 0; column < part.order; ++column) {
          for (Index row = 0; row <= column; ++row, ++at) {
            result[at] = 2 * b[at] / (diagonal[row] + diagonal[column]);
          }
        }
      });
  return result;
}

double largest_step(const Layout& layout, const VectorXd& lambda, const VectorXd& direction) {
  double rate = std::numeric_limits<double>::infinity();
  const auto meet = [&](double another) {
    // Not a number is no step at all.
    rate = another < rate || std::isnan(another) ? another : rate;
  };
  for (Index r = 0; r < layout.rows; ++r) meet(direction[r] / lambda[r]);
  for_each_part(
      layout,
      [&](const Part& part) {
        meet(second_order_rate(piece(lambda, part), piece(direction, part)));
      },
      [&](const Part& part) {
        const VectorXd scale = diagonal_of(lambda, part).cwiseSqrt().cwiseInverse();
        const MatrixXd d = unpack(piece(direction, part), part.order);
        meet(symmetric_eigenvalues(scale.asDiagonal() * d * scale.asDiagonal())[0]);
      });
  if (std::isnan(rate)) return 0;
  return rate < 0 ? -1 / rate : std::numeric_limits<double>::infinity();
}

double least_eigenvalue(const Layout& layout, const VectorXd& s) {
  double least = std::numeric_limits<double>::infinity();
  for (Index r = 0; r < layout.rows; ++r) least = std::min(least, s[r]);
  for_each_part(
      layout,
      [&](const Part& part) {
        least = std::min(least, s[part.first] - piece(s, part).tail(part.dimension - 1).norm());
      },
      [&](const Part& part) {
        least = std::min(least, symmetric_eigenvalues(unpack(piece(s, part), part.order))[0]);
      });
  return least;
}

}  // namespace sdpsol::cones
