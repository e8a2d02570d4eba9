#include "solver/engine/cones/range_system.h"

#include <algorithm>
#include <cmath>
#include <numeric>
#include <span>
#include <utility>

#include "solver/dense/triangular_factor.h"

namespace sdpsol::cones {
namespace {

using Eigen::Index;
using Eigen::MatrixXd;
using Eigen::VectorXd;

constexpr double kSmallestPivot = 1e-14;

std::size_t at(Index i) {
  return static_cast<std::size_t>(i);
}

/// Union-find.
class Sets {
 public:
  explicit Sets(Index count) : parent_(at(count)) {
    std::iota(parent_.begin(), parent_.end(), Index{0});
  }
  Index root(Index i) {
    while (parent_[at(i)] != i) i = parent_[at(i)] = parent_[at(parent_[at(i)])];
    return i;
  }
  void join(Index a, Index b) { parent_[at(root(b))] = root(a); }

 private:
  std::vector<Index> parent_;
};

}  // namespace

std::unique_ptr<RangeSystem> RangeSystem::make(const Layout& layout,
                                               const std::vector<double>& objective) {
  std::optional<Forces> forces = find_forces(layout, objective, kMaxNullVectors);
  if (!forces || forces->size() == 0) return nullptr;
  if (forces->factor.rows() < forces->factor.cols()) return nullptr;
  std::unique_ptr<RangeSystem> system(new RangeSystem(layout, *std::move(forces), objective));
  if (!system->factor_.has_full_rank()) return nullptr;
  system->find_objective(objective);
  system->find_groups();
  const bool suitable =
      std::all_of(system->groups_.begin(), system->groups_.end(), [&](const Group& group) {
        const auto members = static_cast<Index>(group.members.size());
        return members <= kLargestBlock && members <= system->height_of(group);
      });
  return suitable ? std::move(system) : nullptr;
}

RangeSystem::RangeSystem(const Layout& layout, Forces forces, const std::vector<double>& objective)
    : layout_(layout),
      forces_(std::move(forces)),
      objective_(VectorXd::Zero(forces_.size() + (forces_.common ? 1 : 0))),
      unknowns_(objective.size()),
      factor_(forces_.factor),
      null_(factor_.null_base()) {}

void RangeSystem::find_objective(const std::vector<double>& objective) {
  VectorXd wide(static_cast<Index>(forces_.wide.size()));
  for (Index k = 0; k < wide.size(); ++k) wide[k] = objective[at(forces_.wide[at(k)])];
  objective_.head(forces_count()) = factor_.pulled_back(wide);
  for (std::size_t l = 0; l < forces_.local.size(); ++l) {
    objective_[forces_count() + static_cast<Index>(l)] = objective[at(forces_.local[l])];
  }
  if (forces_.common) objective_[forces_.size()] = objective[at(*forces_.common)];
}

/// Two entries of x are of one group if a cone holds both.
void RangeSystem::find_groups() {
  Sets sets(forces_.size());
  const auto tie = [&](Index first, Index count) {
    const auto terms = forces_.linear.of(first, count);
    for (const Term& t : terms) sets.join(terms.front().unknown, t.unknown);
  };
  for (Index row = 0; row < layout_.rows; ++row) tie(row, 1);
  for (const Part& part : layout_.parts) tie(part.first, part.dimension);

  std::vector<Index> group_of(at(forces_.size()), -1);
  place_.resize(at(forces_.size()));
  for (Index i = 0; i < forces_.size(); ++i) {
    Index& group = group_of[at(sets.root(i))];
    if (group < 0) {
      group = static_cast<Index>(groups_.size());
      groups_.emplace_back();
    }
    place_[at(i)] = static_cast<Index>(groups_[at(group)].members.size());
    groups_[at(group)].members.push_back(i);
  }

  // Cones that hold nothing but the common unknown need no group of their own.
  const auto group_with = [&](std::span<const Term> terms) -> Group& {
    return terms.empty() ? groups_.front()
                         : groups_[at(group_of[at(sets.root(terms.front().unknown))])];
  };
  for (Index row = 0; row < layout_.rows; ++row)
    group_with(forces_.linear.of(row)).rows.push_back(row);
  for (std::size_t p = 0; p < layout_.parts.size(); ++p) {
    const Part& part = layout_.parts[p];
    group_with(forces_.linear.of(part.first, part.dimension)).parts.push_back(p);
  }
  for (Group& group : groups_) {
    group.null_rows = MatrixXd::Zero(static_cast<Index>(group.members.size()), null_.cols());
    for (std::size_t i = 0; i < group.members.size(); ++i) {
      if (group.members[i] >= forces_count()) continue;
      group.null_rows.row(static_cast<Index>(i)) = null_.row(group.members[i]);
    }
  }
}

VectorXd RangeSystem::multiply(const VectorXd& u) const {
  VectorXd s = forces_.common ? VectorXd(forces_.common_column * u[forces_.size()])
                              : VectorXd(VectorXd::Zero(layout_.dimension));
  for (Index i = 0; i < layout_.dimension; ++i) {
    for (const Term& t : forces_.linear.of(i)) s[i] += t.value * u[t.unknown];
  }
  return s;
}

VectorXd RangeSystem::multiply_transposed(const VectorXd& z) const {
  VectorXd u = VectorXd::Zero(size());
  for (Index i = 0; i < layout_.dimension; ++i) {
    for (const Term& t : forces_.linear.of(i)) u[t.unknown] += t.value * z[i];
  }
  if (forces_.common) u[forces_.size()] = forces_.common_column.dot(z);
  project(u);
  return u;
}

/// Away with what is not in the range of F.
void RangeSystem::project(VectorXd& u) const {
  auto x = u.head(forces_count());
  x -= null_ * (null_.transpose() * x);
}

/// Its coordinates.
Index RangeSystem::height_of(const Group& group) const {
  auto height = static_cast<Index>(group.rows.size());
  for (const std::size_t p : group.parts) height += layout_.parts[p].dimension;
  return height;
}

/// The coordinates of a group as they depend on its members and on t, scaled.
void RangeSystem::scale_group(Group& group, const NtScaling& scaling) const {
  const auto count = static_cast<Index>(group.members.size());
  group.scaled.setZero(std::max(height_of(group), count + 1), count + 1);
  const auto fill = [&](Index to, Index coordinate, double weight) {
    for (const Term& t : forces_.linear.of(coordinate)) {
      group.scaled(to, place_[at(t.unknown)]) = weight * t.value;
    }
    group.scaled(to, count) = weight * forces_.common_column[coordinate];
  };
  Index to = 0;
  for (const Index row : group.rows) fill(to++, row, scaling.inverse_row(row));
  for (const std::size_t p : group.parts) {
    const Part& part = layout_.parts[p];
    for (Index i = 0; i < part.dimension; ++i) fill(to + i, part.first + i, 1);
    scaling.unscale_transposed(p, group.scaled.middleRows(to, part.dimension));
    to += part.dimension;
  }
}

// With H = R'*R in every group, W the null vectors (no scaling here), Y = R^-T*W and
// q = R^-T*p, p the column of t, what is left for nu (of W'*x = 0) and t is
//   [ Y'Y   Y'q         ] [nu]
//   [ q'Y  -(h_tt - q'q)] [t ]
// R comes from a QR factorisation: its square would lose half of the digits, and h_tt - q'q
// is the square of its last pivot.
bool RangeSystem::factor(const NtScaling& scaling) {
  const Index nulls = null_.cols();
  MatrixXd square = MatrixXd::Zero(nulls, nulls);
  null_common_ = VectorXd::Zero(nulls);
  common_pivot_ = 0;
  for (Group& group : groups_) {
    scale_group(group, scaling);
    const auto count = static_cast<Index>(group.members.size());
    const MatrixXd r = triangular_factor(group.scaled);
    group.root = r.topLeftCorner(count, count);
    if (count > 0) {
      // Members that the cones do not tell apart have pivots that are rounding.
      const double least = kSmallestPivot * group.root.diagonal().cwiseAbs().maxCoeff();
      if (!(least > 0)) return false;
      for (double& pivot : group.root.diagonal()) {
        if (std::fabs(pivot) < least) pivot = std::copysign(least, pivot);
      }
    }
    group.common = r.col(count).head(count);
    common_pivot_ += r(count, count) * r(count, count);
    group.null_part = group.null_rows;
    if (group.null_part.size() > 0) {
      group.root.triangularView<Eigen::Upper>().transpose().solveInPlace(group.null_part);
    }
    square.noalias() += group.null_part.transpose() * group.null_part;
    null_common_.noalias() += group.null_part.transpose() * group.common;
  }
  null_factor_.compute(square);
  if (nulls > 0 && null_factor_.info() != Eigen::Success) return false;
  if (!forces_.common) return true;
  if (nulls > 0) common_pivot_ += null_common_.dot(null_factor_.solve(null_common_));
  return common_pivot_ > 0;
}

VectorXd RangeSystem::solve_once(const VectorXd& right) const {
  const Index nulls = null_.cols();
  VectorXd null_part = VectorXd::Zero(nulls);
  double common = forces_.common ? right[forces_.size()] : 0;
  std::vector<VectorXd> solved;  // R^-T * right
  solved.reserve(groups_.size());
  for (const Group& group : groups_) {
    VectorXd here(static_cast<Index>(group.members.size()));
    for (Index i = 0; i < here.size(); ++i) here[i] = right[group.members[at(i)]];
    group.root.triangularView<Eigen::Upper>().transpose().solveInPlace(here);
    null_part.noalias() += group.null_part.transpose() * here;
    common -= group.common.dot(here);
    solved.push_back(std::move(here));
  }
  VectorXd nu = nulls > 0 ? VectorXd(null_factor_.solve(null_part)) : null_part;
  if (forces_.common) {
    common = (common + null_common_.dot(nu)) / common_pivot_;
    if (nulls > 0) nu -= null_factor_.solve(null_common_) * common;
  }
  VectorXd u(size());
  if (forces_.common) u[forces_.size()] = common;
  for (std::size_t g = 0; g < groups_.size(); ++g) {
    const Group& group = groups_[g];
    VectorXd& here = solved[g];
    here.noalias() -= group.null_part * nu;
    if (forces_.common) here -= group.common * common;
    group.root.triangularView<Eigen::Upper>().solveInPlace(here);
    for (Index i = 0; i < here.size(); ++i) u[group.members[at(i)]] = here[i];
  }
  project(u);
  return u;
}

VectorXd RangeSystem::product(const VectorXd& u) const {
  VectorXd result = VectorXd::Zero(size());
  for (const Group& group : groups_) {
    const auto count = static_cast<Index>(group.members.size());
    VectorXd here(count + 1);
    for (Index i = 0; i < count; ++i) here[i] = u[group.members[at(i)]];
    here[count] = forces_.common ? u[forces_.size()] : 0;
    const VectorXd sum = group.scaled.transpose() * (group.scaled * here);
    for (Index i = 0; i < count; ++i) result[group.members[at(i)]] = sum[i];
    if (forces_.common) result[forces_.size()] += sum[count];
  }
  project(result);
  return result;
}

VectorXd RangeSystem::point(const VectorXd& u) const {
  const VectorXd z = factor_.preimage(u.head(forces_count()));
  VectorXd y(static_cast<Index>(unknowns_));
  for (Index k = 0; k < z.size(); ++k) y[forces_.wide[at(k)]] = z[k];
  for (std::size_t l = 0; l < forces_.local.size(); ++l) {
    y[forces_.local[l]] = u[forces_count() + static_cast<Index>(l)];
  }
  if (forces_.common) y[*forces_.common] = u[forces_.size()];
  return y;
}

}  // namespace sdpsol::cones
