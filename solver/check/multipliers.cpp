#include "solver/check/multipliers.h"

#include <Eigen/Cholesky>
#include <algorithm>
#include <cmath>
#include <numbers>

namespace sdpsol {
namespace {

// Cutting matrices of so few rows into pieces costs more than their product.
constexpr Eigen::Index kSmallFactor = 8;

/// Index of an unknown in lists that begin with the constants.
std::size_t place(std::int32_t unknown) {
  return static_cast<std::size_t>(unknown - kConstant);
}

}  // namespace

Weights::Weights(const Problem& problem, const std::vector<Multiplier>& multipliers)
    : problem_(problem), multipliers_(multipliers) {
  offsets_.push_back(0);
  for (const Multiplier& y : multipliers) {
    const Eigen::Index rank = y.factor.cols();
    offsets_.push_back(offsets_.back() + rank * (rank + 1) / 2);
  }
  set_identity();
}

void Weights::set_identity() {
  packed_ = Eigen::VectorXd::Zero(offsets_.back());
  for (std::size_t b = 0; b < count(); ++b) {
    Eigen::Index at = offsets_[b];
    for (Eigen::Index a = 0; a < multipliers_[b].factor.cols(); ++a) {
      packed_[at] = 1;
      at += a + 2;
    }
  }
}

Eigen::MatrixXd Weights::middle(std::size_t b) const {
  const Eigen::Index rank = multipliers_[b].factor.cols();
  Eigen::MatrixXd m(rank, rank);
  Eigen::Index at = offsets_[b];
  for (Eigen::Index column = 0; column < rank; ++column) {
    for (Eigen::Index row = 0; row <= column; ++row, ++at) {
      m(row, column) = m(column, row) =
          row == column ? packed_[at] : packed_[at] / std::numbers::sqrt2;
    }
  }
  return m;
}

std::vector<Multiplier> Weights::folded() const {
  std::vector<Multiplier> result = multipliers_;
  for (std::size_t b = 0; b < count(); ++b) {
    const Eigen::MatrixXd m = middle(b);
    if (is_equation(b)) {
      result[b].factor *= m(0, 0);
      continue;
    }
    const Eigen::LLT<Eigen::MatrixXd> root(m);
    result[b].factor = multipliers_[b].factor * Eigen::MatrixXd(root.matrixL());
  }
  return result;
}

Weights::Extended Weights::weight(std::size_t b) const {
  const Extended factor = multipliers_[b].factor.cast<long double>();
  const Extended m = middle(b).cast<long double>();
  if (is_equation(b)) return factor * m(0, 0);
  const Extended half = factor * m;
  if (factor.rows() <= kSmallFactor) return half.lazyProduct(factor.transpose());
  Extended y = Extended::Zero(factor.rows(), factor.rows());
  const Eigen::Index entries = factor.rows() * (factor.rows() + 1) / 2;
  if (static_cast<Eigen::Index>(block(b).terms.size()) >= entries) {
    y.triangularView<Eigen::Upper>() = half * factor.transpose();
    return y;
  }
  // A sparse block asks for few of them.
  const Extended rows = half.transpose();
  const Extended columns = factor.transpose();
  for (const AffineTerm& t : block(b).terms) {
    y(t.row, t.column) = rows.col(t.row).dot(columns.col(t.column));
  }
  return y;
}

Eigen::MatrixXd Weights::weight_size(std::size_t b) const {
  const Eigen::MatrixXd factor = multipliers_[b].factor.cwiseAbs();
  const Eigen::MatrixXd m = middle(b).cwiseAbs();
  if (is_equation(b)) return factor * m(0, 0);
  return factor * m * factor.transpose();
}

/// The same as for any block, without the matrices.
void Weights::add_row(std::size_t b, Sums& sums, std::vector<std::size_t>& operations) const {
  const long double factor = multipliers_[b].factor(0, 0);
  const long double m = packed_[offsets_[b]];
  const long double y = is_equation(b) ? factor * m : factor * m * factor;
  const auto size = static_cast<double>(std::fabs(y));
  for (const AffineTerm& t : block(b).terms) {
    const std::size_t k = place(t.unknown);
    operations[k] += 3;
    sums.values[k] += static_cast<long double>(t.value) * y;
    sums.sizes[k] += std::fabs(t.value) * size;
  }
}

Weights::Sums Weights::sums() const {
  const std::size_t entries = static_cast<std::size_t>(problem_.unknowns) + 1;
  Sums sums{std::vector<long double>(entries, 0.0L), std::vector<double>(entries, 0.0), {}};
  std::vector<std::size_t> operations(entries, 16);
  for (std::size_t b = 0; b < count(); ++b) {
    if (block(b).size == 1 && multipliers_[b].factor.size() == 1) {
      add_row(b, sums, operations);
      continue;
    }
    const Extended y = weight(b);
    const Eigen::MatrixXd size = weight_size(b);
    const Eigen::Index inner = std::max<Eigen::Index>(block(b).size, multipliers_[b].factor.cols());
    for_each_unknown(block(b), [&](const AffineTerm* first, const AffineTerm* last) {
      const std::size_t k = place(first->unknown);
      // On the way of one term: two inner products for the weight, a product, and
      // the additions.
      operations[k] += 2 * static_cast<std::size_t>(inner) + static_cast<std::size_t>(last - first);
      for (const AffineTerm* t = first; t != last; ++t) {
        const double times = t->row == t->column ? 1 : 2;
        sums.values[k] += static_cast<long double>(times * t->value) * y(t->row, t->column);
        sums.sizes[k] += times * std::fabs(t->value) * size(t->row, t->column);
      }
    });
  }
  // 2^-62 is four times the unit of the extended format.
  for (std::size_t k = 0; k < entries; ++k) {
    sums.errors.push_back(static_cast<double>(operations[k]) * 0x1p-62 * sums.sizes[k]);
  }
  return sums;
}

double Weights::constant_weight() const {
  double sum = 0;
  for (std::size_t b = 0; b < count(); ++b) {
    const Eigen::MatrixXd y = weight(b).cast<double>();
    for (const AffineTerm& t : block(b).terms) {
      if (t.unknown != kConstant) break;
      sum += (t.row == t.column ? 1 : 2) * std::fabs(y(t.row, t.column)) * t.magnitude;
    }
  }
  return sum;
}

std::vector<double> Weights::diagonal_weights(double correction) const {
  std::vector<double> weights(static_cast<std::size_t>(problem_.unknowns) + 1, 0.0);
  for (std::size_t b = 0; b < count(); ++b) {
    if (is_equation(b)) continue;
    const Eigen::VectorXd least = weight(b).cast<double>().diagonal() -
                                  correction * multipliers_[b].factor.rowwise().squaredNorm();
    for (const AffineTerm& t : block(b).terms) {
      if (t.row == t.column) {
        weights[place(t.unknown)] += std::max(0.0, least[t.row]) * t.magnitude;
      }
    }
  }
  return weights;
}

bool Weights::weighs(Sense sense) const {
  for (const Multiplier& y : multipliers_) {
    if (problem_.blocks[y.block].sense == sense && !y.factor.isZero(0)) return true;
  }
  return false;
}

}  // namespace sdpsol
