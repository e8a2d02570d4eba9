#include "tests/grasp/polyhedral_truth.h"

#include <Eigen/LU>
#include <algorithm>
#include <cmath>

#include "tests/verdicts/exact_simplex.h"

namespace grasp_truth {
namespace {

using grasp::ContactType;
using grasp::Question;
using sdpsol::Sense;
using sdpsol::testing::maximise_exactly;
using sdpsol::testing::Rational;
using sdpsol::testing::RationalOptimum;
using sdpsol::testing::RationalProgram;
using sdpsol::testing::RationalRow;

// Few digits keep the rational numbers short. What they lose is far below the
// differences between the pyramids and the cones.
Rational rational(double number) {
  return {std::round(number * 0x1p24) * 0x1p-24};
}

const double kPi = std::acos(-1);

grasp_map::Vector array(const grasp::Vector& v) {
  return {v.x(), v.y(), v.z()};
}

grasp::Vector middle_of(const grasp::Grasp& grasp) {
  grasp::Vector sum = grasp::Vector::Zero();
  for (const auto& contact : grasp.contacts) sum += contact.point;
  return sum / static_cast<double>(grasp.contacts.size());
}

double size_of(const grasp::Grasp& grasp) {
  double size = 1e-9;
  for (const auto& contact : grasp.contacts)
    size = std::max(size, (contact.point - middle_of(grasp)).norm());
  return size;
}

// Where a pyramid's sides are: as a part of the friction coefficient.
double width(Pyramids pyramids, int sides) {
  return pyramids == Pyramids::kInside ? 0.9999 * std::cos(kPi / sides) : 1.00001;
}

}  // namespace

std::vector<grasp_map::Contact> contacts_of(const grasp::Grasp& grasp, const grasp::Vector& centre,
                                            double length) {
  std::vector<grasp_map::Contact> contacts;
  for (const auto& each : grasp.contacts)
    contacts.push_back({array((each.point - centre) / length), array(each.frame.normal),
                        array(each.frame.tangential_1), array(each.frame.tangential_2),
                        static_cast<int>(each.components())});
  return contacts;
}

PolyhedralGrasp::PolyhedralGrasp(const grasp::Grasp& grasp, int sides)
    : grasp_(grasp), sides_(sides) {
  const auto contacts = contacts_of(grasp, middle_of(grasp), size_of(grasp));
  const auto count = static_cast<Eigen::Index>(grasp.components());
  Eigen::MatrixXd map(6, count);
  for (Eigen::Index k = 0; k < count; ++k) {
    std::vector<double> unit(grasp.components());
    unit[static_cast<std::size_t>(k)] = 1;
    const auto column = grasp_map::wrench(contacts, unit);
    map_.emplace_back(column.begin(), column.end());
    for (Eigen::Index i = 0; i < 6; ++i) map(i, k) = column[static_cast<std::size_t>(i)];
  }
  Eigen::FullPivLU<Eigen::MatrixXd> elimination(map);
  elimination.setThreshold(1e-6);
  if (elimination.dimensionOfKernel() > 0) {
    const Eigen::MatrixXd base = elimination.kernel();
    for (Eigen::Index k = 0; k < count; ++k) {
      base_.emplace_back();
      for (Eigen::Index j = 0; j < base.cols(); ++j) base_.back().push_back(base(k, j));
    }
  }
  for (const auto& contact : grasp.contacts)
    for (const auto& bounds : contact.bounds)
      force_ = std::max({force_, std::abs(bounds.lower), std::abs(bounds.upper)});
}

struct PolyhedralGrasp::Rows {
  RationalProgram program;

  // weight * component k for each, constant, and a part of margin number `margin`.
  void add(const std::vector<std::vector<double>>& base,
           const std::vector<std::pair<std::size_t, double>>& components, double constant,
           int margin = -1, double part = 0) {
    const std::size_t nullity = base.front().size();
    RationalRow row{std::vector<Rational>(program.unknowns), rational(constant), Sense::kStrict};
    for (std::size_t j = 0; j < nullity; ++j) {
      double sum = 0;
      for (const auto& [k, weight] : components) sum += weight * base[k][j];
      row.coefficients[j] = rational(sum);
    }
    if (margin >= 0) row.coefficients[nullity + static_cast<std::size_t>(margin)] = rational(-part);
    program.rows.push_back(std::move(row));
  }
};

// The unknowns are the coordinates of the nullspace, then the margins.
// @param margin_of contact: the number of its margin, -1 if it has none.
PolyhedralGrasp::Rows PolyhedralGrasp::rows(Pyramids pyramids, const std::vector<int>& margin_of,
                                            std::size_t margins, bool above_1) const {
  Rows rows;
  rows.program.unknowns = base_.front().size() + margins;
  const double tighter = (pyramids == Pyramids::kInside ? 1e-4 : -1e-5) * force_;
  std::size_t k = 0;
  for (std::size_t i = 0; i < grasp_.contacts.size(); ++i) {
    const auto& contact = grasp_.contacts[i];
    const std::size_t normal = k + contact.components() - 1;
    if (contact.type == ContactType::kFriction) {
      const double part = pyramids == Pyramids::kInside ? std::cos(kPi / sides_) : 1;
      for (int side = 0; side < sides_; ++side) {
        const double angle = 2 * kPi * side / sides_;
        rows.add(base_,
                 {{k, -std::cos(angle)},
                  {k + 1, -std::sin(angle)},
                  {normal, contact.friction * width(pyramids, sides_)}},
                 0, margin_of[i], part);
      }
    } else {
      rows.add(base_, {{normal, 1}}, above_1 ? -1 : 0, margin_of[i], 1);
    }
    for (const auto& bounds : contact.bounds) {
      rows.add(base_, {{k, 1}}, -bounds.lower - tighter);
      rows.add(base_, {{k, -1}}, bounds.upper - tighter);
      ++k;
    }
  }
  for (std::size_t margin = 0; margin < margins; ++margin) {
    RationalRow row{std::vector<Rational>(rows.program.unknowns), 0, Sense::kStrict};
    row.coefficients[base_.front().size() + margin] = 1;
    rows.program.rows.push_back(std::move(row));
  }
  return rows;
}

bool PolyhedralGrasp::has_internal_force(Pyramids pyramids, bool above_1) const {
  if (base_.empty()) return false;
  const std::vector<int> none(grasp_.contacts.size(), -1);
  return sdpsol::testing::has_exact_solution(rows(pyramids, none, 0, above_1).program);
}

std::optional<double> PolyhedralGrasp::optimum(const grasp::Inquiry& inquiry,
                                               Pyramids pyramids) const {
  if (base_.empty()) return {};
  const std::size_t nullity = base_.front().size();
  const auto others = static_cast<double>(grasp_.contacts.size()) - 1;
  std::vector<int> margin_of(grasp_.contacts.size(), -1);
  std::vector<double> margin_costs;
  std::vector<double> costs(nullity);
  const auto add_margin = [&](std::size_t contact, double cost) {
    margin_of[contact] = static_cast<int>(margin_costs.size());
    margin_costs.push_back(cost);
  };
  std::size_t normal = 0;
  for (std::size_t i = 0; i < grasp_.contacts.size(); ++i) {
    const bool rough = grasp_.contacts[i].type == ContactType::kFriction;
    normal += grasp_.contacts[i].components();
    const bool chosen = std::count(inquiry.contacts.begin(), inquiry.contacts.end(), i) > 0;
    switch (inquiry.question) {
      case Question::kExists:
        break;
      case Question::kIndividual:
        // The margin of a frictionless contact is its normal force.
        for (std::size_t j = 0; chosen && j < nullity; ++j)
          costs[j] += base_[normal - 1][j] / static_cast<double>(inquiry.contacts.size());
        break;
      case Question::kPoint:
        if (chosen) add_margin(i, 1);
        break;
      case Question::kFriction:
        if (rough) add_margin(i, 1 / others);
        break;
      case Question::kAll:
        add_margin(i, rough ? 1 / others : 1);
        break;
    }
  }
  costs.insert(costs.end(), margin_costs.begin(), margin_costs.end());
  std::vector<Rational> cost;
  for (const double each : costs) cost.push_back(rational(each));
  const RationalOptimum found = maximise_exactly(
      rows(pyramids, margin_of, margin_costs.size(), inquiry.question == Question::kFriction)
          .program,
      cost);
  if (found.kind != RationalOptimum::Kind::kReached) return {};
  return found.value.get_d();
}

bool PolyhedralGrasp::resists_every_wrench(Pyramids pyramids) const {
  RationalProgram twists;
  twists.unknowns = 6;
  const auto add_edge = [&](const std::vector<std::pair<std::size_t, double>>& components) {
    RationalRow row{std::vector<Rational>(6), rational(1e-6), Sense::kNonStrict};
    for (std::size_t i = 0; i < 6; ++i) {
      double sum = 0;
      for (const auto& [k, weight] : components) sum += weight * map_[k][i];
      row.coefficients[i] = rational(sum);
    }
    twists.rows.push_back(std::move(row));
  };
  std::size_t k = 0;
  for (const auto& contact : grasp_.contacts) {
    if (contact.type == ContactType::kFriction) {
      const double reach = contact.friction * width(pyramids, sides_) / std::cos(kPi / sides_);
      for (int side = 0; side < sides_; ++side) {
        const double angle = 2 * kPi * (side + 0.5) / sides_;
        add_edge({{k, reach * std::cos(angle)}, {k + 1, reach * std::sin(angle)}, {k + 2, 1}});
      }
    } else {
      add_edge({{k, 1}});
    }
    k += contact.components();
  }
  twists = with_box(std::move(twists), 1);
  for (std::size_t i = 0; i < 6; ++i) {
    for (const int sign : {1, -1}) {
      std::vector<Rational> cost(6);
      cost[i] = sign;
      const RationalOptimum found = maximise_exactly(twists, cost);
      if (found.kind != RationalOptimum::Kind::kReached || found.value >= 1) return false;
    }
  }
  return true;
}

}  // namespace grasp_truth
