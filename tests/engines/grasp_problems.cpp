#include "tests/engines/grasp_problems.h"

#include <Eigen/Core>
#include <Eigen/Geometry>
#include <Eigen/QR>
#include <algorithm>
#include <cmath>
#include <span>
#include <stdexcept>
#include <utility>
#include <vector>

#include "solver/language/reader.h"
#include "solver/problem/structure.h"
#include "tests/verdicts/random_grasp.h"
#include "unit/sdpsol_compose.h"

namespace sdpsol::testing {
namespace {

using Eigen::MatrixXd;
using Eigen::Vector3d;
using Eigen::VectorXd;

/// Below this share of the largest force no planted force of a contact falls.
constexpr double kWeakest = 0.05;

int integer(std::mt19937& random, int from, int to) {
  return std::uniform_int_distribution<int>(from, to)(random);
}

double real(std::mt19937& random, double from, double to) {
  return std::uniform_real_distribution<double>(from, to)(random);
}

double unit(std::mt19937& random) {
  return std::pow(10.0, real(random, -4, 4));
}

GraspQuestion any_question(std::mt19937& random, std::size_t contacts) {
  using enum GraspQuestion;
  // The means over all contacts but one have no meaning for a single one.
  constexpr GraspQuestion kQuestions[] = {kExists, kIndividual, kPoint, kFriction, kAll};
  return kQuestions[integer(random, 0, contacts > 1 ? 4 : 2)];
}

std::string definition_of(const RandomGrasp& grasp, GraspQuestion question, std::mt19937& random) {
  const sdpsol_internal::Grasp asked{grasp.base, grasp.types, grasp.friction, grasp.bounds};
  const auto last = static_cast<int>(grasp.types.size()) - 1;
  switch (question) {
    case GraspQuestion::kExists:
      return *sdpsol_internal::compose_exists(asked).definition;
    case GraspQuestion::kIndividual: {
      std::vector<int> chosen{integer(random, 0, last)};
      while (chosen.size() < grasp.types.size() && integer(random, 0, 2) != 0) {
        const int other = integer(random, 0, last);
        if (std::find(chosen.begin(), chosen.end(), other) == chosen.end()) chosen.push_back(other);
      }
      return *sdpsol_internal::compose_individual(asked, chosen).definition;
    }
    case GraspQuestion::kFriction:
      return *sdpsol_internal::compose_friction_contacts(asked).definition;
    case GraspQuestion::kAll:
      return *sdpsol_internal::compose_all(asked).definition;
    case GraspQuestion::kPoint:
      return *sdpsol_internal::compose_point_contact(
                  asked, static_cast<std::uint32_t>(integer(random, 0, last)))
                  .definition;
  }
  return {};
}

EngineProblem asked(const RandomGrasp& grasp, GraspQuestion question, Truth truth, bool has_room,
                    std::mt19937& random) {
  return {.problem = problem_of(definition_of(grasp, question, random)),
          .truth = truth,
          .has_room = has_room};
}

/// Asks of a grasp with a planted force. The question of the contacts with friction
/// wants more than 1 of all others, which the bounds may or may not leave.
EngineProblem asked_with_force(const RandomGrasp& grasp, GraspQuestion question,
                               double largest_force, std::mt19937& random) {
  Truth truth = Truth::kFeasible;
  bool has_room = true;
  if (question == GraspQuestion::kFriction &&
      std::count(grasp.types.begin(), grasp.types.end(), 1) > 0) {
    const bool enough = largest_force * kWeakest > 1.2;
    const bool too_little = largest_force < 0.9;
    truth = enough ? Truth::kFeasible : too_little ? Truth::kInfeasible : Truth::kUnknown;
    has_room = enough || too_little;
  }
  return asked(grasp, question, truth, has_room, random);
}

/// Contacts and bounds, without a base.
RandomGrasp contacts_alone(std::mt19937& random, int contacts, double frictionless) {
  RandomGrasp grasp;
  const double largest = 10 * unit(random);
  for (int i = 0; i < contacts; ++i) {
    const int type = real(random, 0, 1) < frictionless ? 1 : 3;
    grasp.types.push_back(type);
    grasp.friction.push_back(real(random, 0.2, 1));
    for (int component = 0; component < type; ++component) {
      grasp.bounds.push_back(component + 1 == type ? 0 : -largest);
      grasp.bounds.push_back(largest);
    }
  }
  return grasp;
}

/// One vector per contact, at most 0.8 of the way from the axis to the border of the
/// cone |tangential| <= slope(i) * normal.
template <typename Slope>
VectorXd inside_cones(std::mt19937& random, const RandomGrasp& grasp, Slope slope) {
  VectorXd all = VectorXd::Zero(static_cast<Eigen::Index>(grasp.bounds.size() / 2));
  Eigen::Index at = 0;
  for (std::size_t i = 0; i < grasp.types.size(); ++i) {
    const double normal = real(random, 0.2, 1);
    if (grasp.types[i] == 3) {
      const double angle = real(random, 0, 6.28);
      const double tangential = 0.8 * real(random, 0, 1) * slope(i) * normal;
      all[at++] = tangential * std::cos(angle);
      all[at++] = tangential * std::sin(angle);
    }
    all[at++] = normal;
  }
  return all;
}

MatrixXd random_matrix(std::mt19937& random, Eigen::Index rows, Eigen::Index columns) {
  return MatrixXd::NullaryExpr(rows, columns, [&] { return real(random, -1, 1); });
}

/// An orthonormal base of what the columns span, turned so that none of them shows.
MatrixXd hidden_base(std::mt19937& random, const MatrixXd& columns) {
  const Eigen::Index count = columns.cols();
  const MatrixXd base = Eigen::HouseholderQR<MatrixXd>(columns).householderQ() *
                        MatrixXd::Identity(columns.rows(), count);
  const MatrixXd turn =
      Eigen::HouseholderQR<MatrixXd>(random_matrix(random, count, count)).householderQ();
  return base * turn;
}

void set_base(RandomGrasp& grasp, const MatrixXd& base) {
  grasp.columns = static_cast<int>(base.cols());
  for (Eigen::Index row = 0; row < base.rows(); ++row) {
    for (Eigen::Index column = 0; column < base.cols(); ++column) {
      grasp.base.push_back(base(row, column));
    }
  }
}

Eigen::Index number_of_columns(std::mt19937& random, Eigen::Index most) {
  return integer(random, 0, 3) == 0 ? 1 : integer(random, 1, static_cast<int>(most));
}

EngineProblem with_planted_force(std::mt19937& random, RandomGrasp grasp) {
  const VectorXd force =
      inside_cones(random, grasp, [&](std::size_t i) { return grasp.friction[i]; });
  const Eigen::Index columns = number_of_columns(random, force.size());
  MatrixXd spanned(force.size(), columns);
  spanned << force, random_matrix(random, force.size(), columns - 1);
  set_base(grasp, hidden_base(random, spanned));
  return asked_with_force(grasp, any_question(random, grasp.types.size()), grasp.bounds.back(),
                          random);
}

/// What spends positive power on every force of the cones spends none on the base.
EngineProblem with_planted_multipliers(std::mt19937& random, RandomGrasp grasp) {
  const VectorXd power =
      inside_cones(random, grasp, [&](std::size_t i) { return 1 / grasp.friction[i]; });
  const Eigen::Index columns = number_of_columns(random, power.size() - 1);
  MatrixXd spanned = random_matrix(random, power.size(), columns);
  spanned -= power * (power.transpose() * spanned) / power.squaredNorm();
  set_base(grasp, hidden_base(random, spanned));
  return asked(grasp, any_question(random, grasp.types.size()), Truth::kInfeasible, true, random);
}

/// Points of a grid in the plane z = 0, in whole numbers.
std::vector<Vector3d> grid(std::mt19937& random, int count) {
  const int width = integer(random, 1, 4);
  std::vector<Vector3d> points;
  for (int i = 0; i < count; ++i) {
    const int row = i / width;
    points.emplace_back(i % width, row, 0);
  }
  return points;
}

GraspSize any_size(std::mt19937& random, int contacts) {
  return {.contacts = contacts, .largest_force = 10 * unit(random), .length = unit(random)};
}

}  // namespace

Problem problem_of(const std::string& definition) {
  const Source source("drawn.def", definition);
  Diagnostics diagnostics;
  const auto model = read_definition(source, diagnostics);
  if (!model) throw std::runtime_error(diagnostics.render(source) + definition);
  return build_problem(*model);
}

EngineProblem force_in_grasp(std::mt19937& random, GraspQuestion question) {
  const GraspSize size = any_size(random, integer(random, 2, 12));
  return asked_with_force(grasp_with_internal_force(random, size), question, size.largest_force,
                          random);
}

EngineProblem twist_of_grasp(std::mt19937& random, GraspQuestion question) {
  const GraspSize size = any_size(random, integer(random, 2, 12));
  return asked(grasp_without_internal_force(random, size), question, Truth::kInfeasible, true,
               random);
}

EngineProblem force_in_base(std::mt19937& random) {
  return with_planted_force(random, contacts_alone(random, integer(random, 1, 12), 0.2));
}

EngineProblem multipliers_of_base(std::mt19937& random) {
  const int contacts = integer(random, 1, 12);
  // A single force component spends power wherever it is.
  return with_planted_multipliers(random,
                                  contacts_alone(random, contacts, contacts == 1 ? 0 : 0.2));
}

EngineProblem frictionless_base(std::mt19937& random) {
  RandomGrasp grasp = contacts_alone(random, integer(random, 2, 12), 1);
  return integer(random, 0, 1) == 0 ? with_planted_force(random, std::move(grasp))
                                    : with_planted_multipliers(random, std::move(grasp));
}

EngineProblem contradicting_bounds(std::mt19937& random) {
  const GraspSize size = any_size(random, integer(random, 2, 12));
  RandomGrasp grasp = grasp_with_internal_force(random, size);
  const auto component =
      static_cast<std::size_t>(integer(random, 0, static_cast<int>(grasp.bounds.size() / 2) - 1));
  const double f = size.largest_force;
  constexpr std::pair<double, double> kPairs[] = {
      {0.5, 0.3}, {0.5, 0.5}, {0, 0}, {0.1, -0.1}, {0, -1}};
  const auto [lower, upper] = kPairs[integer(random, 0, 4)];
  grasp.bounds[2 * component] = lower * f;
  grasp.bounds[2 * component + 1] = upper * f;
  return asked(grasp, any_question(random, grasp.types.size()), Truth::kInfeasible, true, random);
}

EngineProblem tight_bounds(std::mt19937& random) {
  const GraspSize size = any_size(random, integer(random, 2, 12));
  RandomGrasp grasp = grasp_with_internal_force(random, size);
  const double f = size.largest_force;
  for (std::size_t i = 0; i + 1 < grasp.bounds.size(); i += 2) {
    if (integer(random, 0, 2) == 0) grasp.bounds[i] = f * real(random, -0.3, 0.2);
    if (integer(random, 0, 2) == 0) grasp.bounds[i + 1] = f * real(random, 0.2, 1);
  }
  return asked(grasp, any_question(random, grasp.types.size()), Truth::kUnknown, false, random);
}

EngineProblem bounds_of_a_million(std::mt19937& random) {
  const GraspSize size{.contacts = integer(random, 2, 12), .largest_force = 1e6};
  const GraspQuestion question = any_question(random, static_cast<std::size_t>(size.contacts));
  if (integer(random, 0, 3) == 0) {
    return asked(grasp_without_internal_force(random, size), question, Truth::kInfeasible, true,
                 random);
  }
  return asked_with_force(grasp_with_internal_force(random, size), question, size.largest_force,
                          random);
}

EngineProblem slanted_pairs(std::mt19937& random) {
  const int pairs = integer(random, 0, 2) == 0 ? integer(random, 2, 6) : 1;
  const double slant = real(random, 0.2, 0.7);
  constexpr double kBeside[] = {0, 1e-6, -1e-6, 1e-5, -1e-5, 1e-3, -1e-3};
  const double beside = kBeside[integer(random, 0, 6)];
  std::vector<GraspContact> contacts;
  for (const Vector3d& place : grid(random, pairs)) {
    for (const double side : {-1.0, 1.0}) {
      const double around = real(random, 0, 6.28);
      const Vector3d across(std::cos(around), std::sin(around), 0);
      contacts.push_back(
          {.point = place + side * Vector3d::UnitZ(),
           .normal = -side * std::cos(slant) * Vector3d::UnitZ() + std::sin(slant) * across,
           .friction = std::tan(slant) * (1 + beside)});
    }
  }
  // Pairs that do not hold alone may do so together.
  const bool known = beside > 2e-6 || (beside < -2e-6 && pairs == 1);
  const Truth truth = !known ? Truth::kUnknown : beside > 0 ? Truth::kFeasible : Truth::kInfeasible;
  const RandomGrasp grasp = grasp_of(random, contacts, any_size(random, 2 * pairs));
  return asked(grasp, any_question(random, grasp.types.size()), truth,
               known && std::fabs(beside) > 1e-4, random);
}

EngineProblem facing_plates(std::mt19937& random) {
  std::vector<GraspContact> contacts;
  const double friction = real(random, 0.2, 1);
  for (const Vector3d& point : grid(random, integer(random, 1, 6))) {
    for (const double side : {-1.0, 1.0}) {
      contacts.push_back({.point = point + side * Vector3d::UnitZ(),
                          .normal = -side * Vector3d::UnitZ(),
                          .friction = friction});
    }
  }
  const RandomGrasp grasp =
      grasp_of(random, contacts, any_size(random, static_cast<int>(contacts.size())));
  return asked(grasp, any_question(random, grasp.types.size()), Truth::kFeasible, true, random);
}

EngineProblem single_plate(std::mt19937& random) {
  std::vector<GraspContact> contacts;
  for (const Vector3d& point : grid(random, integer(random, 2, 12))) {
    contacts.push_back(
        {.point = point, .normal = Vector3d::UnitZ(), .friction = real(random, 0.2, 1)});
  }
  const RandomGrasp grasp =
      grasp_of(random, contacts, any_size(random, static_cast<int>(contacts.size())));
  return asked(grasp, any_question(random, grasp.types.size()), Truth::kInfeasible, true, random);
}

}  // namespace sdpsol::testing
