#include "grasp/asker.h"

#include <algorithm>
#include <cmath>
#include <numeric>

#include "grasp/contact_forces.h"
#include "grasp/geometry.h"
#include "grasp/nullspace.h"
#include "grasp/reason.h"
#include "grasp/unit_inputs.h"
#include "grasp/unit_road.h"

namespace grasp {
namespace {

// The unit's texts carry six digits of the base, of friction and of bounds.
constexpr double kPrecision = 1e-5;

// The contacts that have a margin variable, in the order of their declaration.
std::vector<std::size_t> contacts_with_margin(const Grasp& grasp, const Inquiry& inquiry) {
  std::vector<std::size_t> contacts;
  switch (inquiry.question) {
    case Question::kExists:
      break;
    case Question::kIndividual:
    case Question::kPoint:
      return inquiry.contacts;
    case Question::kFriction:
    case Question::kAll:
      for (std::size_t i = 0; i < grasp.contacts.size(); ++i)
        if (inquiry.question == Question::kAll || grasp.contacts[i].type == ContactType::kFriction)
          contacts.push_back(i);
  }
  return contacts;
}

// The values of a result, apart. Definitions declare the margins before the coordinates
// in the two questions about the margins of many, behind them in the others.
struct Values {
  Eigen::VectorXd coordinates;
  std::vector<double> margins;
};

Values take_apart(const UnitAnswer& found, std::size_t nullity, std::size_t margins,
                  Question question) {
  if (found.values.size() != nullity + margins)
    throw AskError("the unit published " + std::to_string(found.values.size()) + " values, not " +
                   std::to_string(nullity + margins));
  const bool margins_first = question == Question::kFriction || question == Question::kAll;
  const double* const first = found.values.data();
  const double* const z = first + (margins_first ? margins : 0);
  const double* const margin = first + (margins_first ? 0 : nullity);
  return {Eigen::Map<const Eigen::VectorXd>(z, static_cast<Eigen::Index>(nullity)),
          {margin, margin + margins}};
}

// For kIndividual the margin of a contact with friction is any that is left over: its
// normal force is what is maximised.
bool is_maximised(const Contact& contact, Question question) {
  return question != Question::kIndividual || contact.type == ContactType::kFrictionless;
}

void set_epsilons(const Grasp& grasp, const std::vector<std::size_t>& contacts,
                  const std::vector<double>& margins, Answer& answer) {
  for (std::size_t i = 0; i < contacts.size(); ++i)
    if (is_maximised(grasp.contacts[contacts[i]], answer.inquiry.question))
      answer.forces[contacts[i]].epsilon = margins[i];
  const bool of_many =
      answer.inquiry.question == Question::kFriction || answer.inquiry.question == Question::kAll;
  if (of_many && !margins.empty())
    answer.mean_epsilon =
        std::accumulate(margins.begin(), margins.end(), 0.0) / static_cast<double>(margins.size());
}

// The forces follow from the exact base, the solver has seen six digits of it.
void expect_inside(const Grasp& grasp, Answer& answer) {
  double size = 0;
  for (const ContactForce& force : answer.forces) size = std::hypot(size, force.local.norm());
  for (std::size_t i = 0; i < answer.forces.size(); ++i) {
    const ContactForce& force = answer.forces[i];
    const double outside = -std::min(force.cone_margin, force.bound_margin);
    if (outside <= 0) continue;
    if (outside > kPrecision * size * (1 + grasp.contacts[i].friction))
      throw AskError("the forces that came back are outside of the cone or the bounds of contact " +
                     grasp.label(i));
    answer.notes.push_back("contact " + grasp.label(i) +
                           " is at its limit, to the six digits that the solver is given");
  }
}

void set_forces(const Grasp& grasp, const GraspMap& map, const Eigen::MatrixXd& base,
                const UnitAnswer& found, Answer& answer) {
  const std::vector<std::size_t> contacts = contacts_with_margin(grasp, answer.inquiry);
  const Values values = take_apart(found, static_cast<std::size_t>(base.cols()), contacts.size(),
                                   answer.inquiry.question);
  const Eigen::VectorXd forces = base * values.coordinates;
  answer.forces = contact_forces(grasp, forces);
  set_epsilons(grasp, contacts, values.margins, answer);
  if (answer.inquiry.question != Question::kExists) answer.objective = found.objective;
  const Eigen::VectorXd residual = map * forces;
  answer.force_residual = residual.head<3>().cwiseAbs().maxCoeff();
  answer.torque_residual = residual.tail<3>().cwiseAbs().maxCoeff();
  expect_inside(grasp, answer);
}

// Whether the bounds hold all small forces of a cone, so that they are no reason why
// there is no internal force: one that is too large could be made smaller.
bool bounds_admit_small_forces(const Grasp& grasp) {
  return std::all_of(grasp.contacts.begin(), grasp.contacts.end(), [](const Contact& contact) {
    return std::all_of(contact.bounds.begin(), contact.bounds.end(), [&](const Bounds& bounds) {
      const bool is_normal = &bounds == &contact.bounds.back();
      return bounds.upper > 0 && (is_normal ? bounds.lower <= 0 : bounds.lower < 0);
    });
  });
}

// A cone without friction has no inside: that no force is there says nothing about the
// forces on it.
bool cones_have_an_inside(const Grasp& grasp) {
  return std::all_of(grasp.contacts.begin(), grasp.contacts.end(), [](const Contact& contact) {
    return contact.type == ContactType::kFrictionless || contact.friction > 0;
  });
}

// The question about friction wants the frictionless contacts above 1 N, if there are any.
bool asks_for_more(const Grasp& grasp, const Inquiry& inquiry) {
  return inquiry.question == Question::kFriction &&
         std::any_of(grasp.contacts.begin(), grasp.contacts.end(), [](const Contact& contact) {
           return contact.type == ContactType::kFrictionless;
         });
}

// A grasp has force closure exactly if its map has rank 6 and there is an internal force
// strictly inside all cones (Murray, Li, Sastry, prop. 5.3).
std::optional<bool> force_closure(const Grasp& grasp, const Answer& answer) {
  if (answer.balance.rank < 6) return false;
  switch (answer.verdict) {
    case Verdict::kFeasible:
      return true;
    case Verdict::kInfeasible:
      if (!asks_for_more(grasp, answer.inquiry) && bounds_admit_small_forces(grasp) &&
          cones_have_an_inside(grasp))
        return false;
      break;
    case Verdict::kUndetermined:
      break;
  }
  return {};
}

void add_notes(const Grasp& grasp, Answer& answer) {
  if (answer.balance.largest_dropped > 1e-12)
    answer.notes.emplace_back(
        "a small singular value of the grasp map was taken for 0: the forces balance to the "
        "residual that is shown");
  for (std::size_t i = 0; i < grasp.contacts.size(); ++i)
    if (grasp.contacts[i].type == ContactType::kFriction && grasp.contacts[i].friction == 0)
      answer.notes.push_back("contact " + grasp.label(i) +
                             " has a friction coefficient of 0, a cone that no force is inside "
                             "of; \"frictionless\" is what it may be meant to be");
}

}  // namespace

struct Asker::Parts {
  UnitRoad road;
};

Asker::Asker(const Road& road) : parts_(new Parts{UnitRoad(road)}) {}
Asker::~Asker() = default;

Answer Asker::ask(const Grasp& grasp, const Inquiry& inquiry) {
  const GraspMap map = grasp_map(grasp);
  const Nullspace space = nullspace(weighed_grasp_map(grasp));
  Answer answer;
  answer.inquiry = inquiry;
  answer.balance = space.balance;
  add_notes(grasp, answer);
  if (space.balance.nullity == 0) {
    answer.verdict = Verdict::kInfeasible;
    answer.reason = "no nullspace: the " + std::to_string(space.balance.columns) +
                    " columns of the grasp map are independent, so that no forces but 0 balance";
  } else {
    const UnitAnswer found = parts_->road.ask(unit_inputs(grasp, space.base), inquiry);
    const Heading heading = read_heading(found.result);
    if ((heading.verdict == Verdict::kFeasible) != found.feasible)
      throw AskError("the unit and the result file contradict each other");
    answer.verdict = heading.verdict;
    answer.solving_time = found.seconds;
    for (const std::string& warning : heading.warnings) answer.notes.push_back(warning);
    if (found.feasible)
      set_forces(grasp, map, space.base, found, answer);
    else
      answer.reason = explain(heading.reason, found.definition, grasp);
  }
  answer.force_closure = force_closure(grasp, answer);
  return answer;
}

}  // namespace grasp
