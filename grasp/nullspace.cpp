// The singular value decomposition gives the rank and some orthonormal base, which
// may turn within the nullspace from one library to the next. The base that is
// returned is made from its projector N N', which does not turn.
#include "grasp/nullspace.h"

#include <Eigen/SVD>
#include <algorithm>
#include <limits>

namespace grasp {
namespace {

// How much longer than another projection one must be to count as longer: in a
// symmetric grasp many are of one length but for rounding.
constexpr double kSameLength = 1e-9;

// The component whose unit vector has the longest projection, the first of several.
// @param rows what is left of the projector's columns, as rows in some orthonormal base.
Eigen::Index longest(const Eigen::MatrixXd& rows) {
  const Eigen::VectorXd lengths = rows.rowwise().norm();
  const double most = lengths.maxCoeff();
  Eigen::Index i = 0;
  while (lengths[i] < most * (1 - kSameLength)) ++i;
  return i;
}

// @param some orthonormal columns. @param first in the coordinates of `some`: orthonormal
// columns that come first. @return columns that span the same space as `some` and do not
// depend on which those were.
Eigen::MatrixXd canonical_base(const Eigen::MatrixXd& some, const Eigen::MatrixXd& first) {
  // Row i of `left` is the projection of unit vector i in the coordinates of `some`,
  // without its parts along the directions taken so far. Those are columns of `taken`.
  Eigen::MatrixXd taken(some.cols(), some.cols());
  taken.leftCols(first.cols()) = first;
  Eigen::MatrixXd left = some - (some * first) * first.transpose();
  for (Eigen::Index n = first.cols(); n < some.cols(); ++n) {
    Eigen::VectorXd direction = left.row(longest(left)).transpose();
    // Once more than on paper: what rounding has left of the directions before goes.
    direction -= taken.leftCols(n) * (taken.leftCols(n).transpose() * direction);
    direction.normalize();
    taken.col(n) = direction;
    left -= (left * direction) * direction.transpose();
  }
  return some * taken;
}

// The decomposition is as good as a change of the map in its last digits, which turns
// the nullspace by so much more as the smallest singular value is small.
Eigen::MatrixXd without_rounding(const Eigen::MatrixXd& base, const Balance& balance) {
  const double rounding = 16 * static_cast<double>(base.rows()) *
                          std::numeric_limits<double>::epsilon() / balance.smallest_kept;
  return base.unaryExpr([rounding](double x) { return std::abs(x) < rounding ? 0 : x; });
}

Balance balance_of(const Eigen::VectorXd& singular_values, Eigen::Index columns) {
  Balance balance;
  balance.columns = static_cast<int>(columns);
  for (const double value : singular_values / singular_values[0]) {
    if (value > kRankTolerance) {
      ++balance.rank;
      balance.smallest_kept = value;
    } else {
      balance.largest_dropped = std::max(balance.largest_dropped, value);
    }
  }
  balance.nullity = balance.columns - balance.rank;
  return balance;
}

}  // namespace

Nullspace nullspace(const GraspMap& map) {
  const Eigen::JacobiSVD<Eigen::MatrixXd> svd(Eigen::MatrixXd(map), Eigen::ComputeFullV);
  Nullspace result;
  result.balance = balance_of(svd.singularValues(), map.cols());
  const Eigen::Index nullity = result.balance.nullity;
  const Eigen::MatrixXd base =
      canonical_base(svd.matrixV().rightCols(nullity), Eigen::MatrixXd(nullity, 0));
  result.base = without_rounding(base, result.balance);
  return result;
}

Eigen::MatrixXd base_with(const Nullspace& space, const Eigen::VectorXd& first) {
  const Eigen::VectorXd coordinates = (space.base.transpose() * first).normalized();
  Eigen::MatrixXd base = canonical_base(space.base, coordinates);
  base.col(0) = first;
  return without_rounding(base, space.balance);
}

}  // namespace grasp
