#include "solver/engine/cones/forces.h"

#include <algorithm>
#include <cmath>

#include "solver/engine/cones/fixed_numbers.h"

namespace sdpsol::cones {
namespace {

using Eigen::Index;

// An unknown in no more coordinates than a friction cone and a few rows have is local.
constexpr int kMaxLocal = 8;
// Rounding in the product of two vectors, one of norm 1 and one of some thousand numbers
// near 1.
constexpr double kSameSignature = 1e-11;

template <typename Integer>
std::size_t at(Integer i) {
  return static_cast<std::size_t>(i);
}

enum class Role { kWide, kLocal, kCommon };

std::vector<Role> roles_of(const Layout& layout, const std::vector<double>& objective) {
  std::vector<int> occurrences(objective.size(), 0);
  for (const Term& t : layout.linear.terms) ++occurrences[static_cast<std::size_t>(t.unknown)];
  std::vector<Role> roles;
  roles.reserve(objective.size());
  for (const int count : occurrences) {
    roles.push_back(count > kMaxLocal ? Role::kWide : Role::kLocal);
  }
  const auto is_maximised = [](double cost) { return cost != 0; };
  if (std::count_if(objective.begin(), objective.end(), is_maximised) == 1) {
    const auto found = std::find_if(objective.begin(), objective.end(), is_maximised);
    Role& role = roles[static_cast<std::size_t>(found - objective.begin())];
    if (role == Role::kWide) role = Role::kCommon;
  }
  return roles;
}

/// The wide part of a coordinate.
struct WideForm {
  double norm = 0;  ///< 0: there is no wide unknown in it
  /// A number that equal forms share, and hardly any others: the product of the form,
  /// scaled to norm 1, with a fixed vector; but for its sign.
  double signature = 0;
};

class ForceFinder {
 public:
  ForceFinder(const Layout& layout, const std::vector<double>& objective)
      : layout_(layout),
        roles_(roles_of(layout, objective)),
        place_(objective.size()),
        weights_(objective.size(), 0.0) {
    for (std::size_t k = 0; k < roles_.size(); ++k) {
      const auto unknown = static_cast<std::int32_t>(k);
      switch (roles_[k]) {
        case Role::kWide:
          place_[k] = static_cast<std::int32_t>(forces_.wide.size());
          forces_.wide.push_back(unknown);
          weights_[k] = fixed_number(unknown);
          break;
        case Role::kLocal:
          place_[k] = static_cast<std::int32_t>(forces_.local.size());
          forces_.local.push_back(unknown);
          break;
        case Role::kCommon:
          forces_.common = unknown;
          break;
      }
    }
  }

  std::optional<Forces> find(Index most_left_over) && {
    number_forces();
    const auto left_over =
        static_cast<Index>(representatives_.size()) - static_cast<Index>(forces_.wide.size());
    if (left_over > most_left_over) return std::nullopt;
    fill_factor();
    fill_coordinates();
    return std::move(forces_);
  }

 private:
  template <typename Visitor>
  void for_each_wide(Index coordinate, Visitor visit) const {
    for (const Term& t : layout_.linear.of(coordinate)) {
      if (roles_[static_cast<std::size_t>(t.unknown)] == Role::kWide) visit(t);
    }
  }

  WideForm wide_form(Index coordinate) const {
    WideForm form;
    for (const Term& t : layout_.linear.of(coordinate)) {
      const double weight = weights_[at(t.unknown)];  // 0 unless it is wide
      const double value = weight != 0 ? t.value : 0;
      form.signature += weight * value;
      form.norm += value * value;
    }
    form.norm = std::sqrt(form.norm);
    if (form.norm > 0) form.signature = std::fabs(form.signature) / form.norm;
    return form;
  }

  /// The wide unknown with the largest coefficient.
  Term largest_of(Index coordinate) const {
    Term largest;
    for_each_wide(coordinate, [&](const Term& t) {
      if (std::fabs(t.value) > std::fabs(largest.value)) largest = t;
    });
    return largest;
  }

  double coefficient_of(std::int32_t unknown, Index coordinate) const {
    const auto terms = layout_.linear.of(coordinate);
    const auto found =
        std::lower_bound(terms.begin(), terms.end(), unknown,
                         [](const Term& t, std::int32_t wanted) { return t.unknown < wanted; });
    return found != terms.end() && found->unknown == unknown ? found->value : 0;
  }

  /// The factor by which coordinate b is coordinate a in the wide unknowns, if there is one.
  /// @param largest of a.
  std::optional<double> factor_between(Index a, const Term& largest, Index b) const {
    const double factor = coefficient_of(largest.unknown, b) / largest.value;
    const double tolerance = kSameForm * forms_[at(b)].norm;
    const auto of_b = layout_.linear.of(b);
    auto next = of_b.begin();
    const auto skip = [&] {
      while (next != of_b.end() && roles_[at(next->unknown)] != Role::kWide) ++next;
    };
    bool same = true;
    for_each_wide(a, [&](const Term& t) {
      skip();
      same = same && next != of_b.end() && next->unknown == t.unknown &&
             std::fabs(next->value - factor * t.value) <= tolerance;
      if (same) ++next;
    });
    skip();
    if (!same || next != of_b.end()) return std::nullopt;
    return factor;
  }

  /// Brings coordinates with one force together by their signatures, and looks closer
  /// where these are near each other.
  void number_forces() {
    std::vector<Index> order;
    forms_.reserve(at(layout_.dimension));
    for (Index i = 0; i < layout_.dimension; ++i) {
      forms_.push_back(wide_form(i));
      if (forms_.back().norm > 0) order.push_back(i);
    }
    const auto signature = [this](Index i) { return forms_[at(i)].signature; };
    std::stable_sort(order.begin(), order.end(),
                     [&](Index a, Index b) { return signature(a) < signature(b); });
    force_.assign(forms_.size(), kNone);
    share_.assign(forms_.size(), 0.0);
    for (const Index here : order) {
      share_[at(here)] = forms_[at(here)].norm;
      for (auto a = representatives_.rbegin(); a != representatives_.rend(); ++a) {
        if (signature(here) - signature(a->coordinate) > kSameSignature) break;
        const auto factor = factor_between(a->coordinate, a->largest, here);
        if (!factor) continue;
        force_[at(here)] = representatives_.rend() - a - 1;
        share_[at(here)] = *factor * forms_[at(a->coordinate)].norm;
        break;
      }
      if (force_[at(here)] != kNone) continue;
      force_[at(here)] = static_cast<Index>(representatives_.size());
      representatives_.push_back({here, largest_of(here)});
    }
  }

  void fill_factor() {
    forces_.factor = Eigen::MatrixXd::Zero(static_cast<Index>(representatives_.size()),
                                           static_cast<Index>(forces_.wide.size()));
    for (std::size_t f = 0; f < representatives_.size(); ++f) {
      const Index coordinate = representatives_[f].coordinate;
      const double norm = forms_[at(coordinate)].norm;
      for_each_wide(coordinate, [&](const Term& t) {
        forces_.factor(static_cast<Index>(f), place_[at(t.unknown)]) = t.value / norm;
      });
    }
  }

  void fill_coordinates() {
    const auto first_local = static_cast<std::int32_t>(forces_.factor.rows());
    forces_.common_column = Eigen::VectorXd::Zero(layout_.dimension);
    for (Index i = 0; i < layout_.dimension; ++i) {
      const auto at = static_cast<std::size_t>(i);
      if (force_[at] != kNone) {
        forces_.linear.terms.push_back({static_cast<std::int32_t>(force_[at]), share_[at]});
      }
      for (const Term& t : layout_.linear.of(i)) {
        const auto k = static_cast<std::size_t>(t.unknown);
        if (roles_[k] == Role::kCommon) forces_.common_column[i] = t.value;
        if (roles_[k] != Role::kLocal) continue;
        forces_.linear.terms.push_back({first_local + place_[k], t.value});
      }
      forces_.linear.starts.push_back(forces_.linear.terms.size());
    }
  }

  struct Representative {
    Index coordinate = 0;
    Term largest;
  };
  static constexpr Index kNone = -1;
  const Layout& layout_;
  const std::vector<Role> roles_;
  std::vector<std::int32_t> place_;  ///< of each unknown among those of its role
  std::vector<double> weights_;      ///< of each unknown in signatures; 0 unless it is wide
  std::vector<WideForm> forms_;      ///< of each coordinate
  std::vector<Representative> representatives_;  ///< of each force
  std::vector<Index> force_;                     ///< of each coordinate
  std::vector<double> share_;                    ///< its multiple of the force
  Forces forces_;
};

}  // namespace

std::optional<Forces> find_forces(const Layout& layout, const std::vector<double>& objective,
                                  Index most_left_over) {
  return ForceFinder(layout, objective).find(most_left_over);
}

}  // namespace sdpsol::cones
