#include "grasp/asker.h"

#include <algorithm>
#include <cmath>
#include <numeric>

#include "grasp/contact_forces.h"
#include "grasp/force_closure.h"
#include "grasp/geometry.h"
#include "grasp/nullspace.h"
#include "grasp/reason.h"
#include "grasp/solving.h"
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

void withdraw_forces(Answer& answer) {
  answer.verdict = Verdict::kUndetermined;
  answer.reason = std::string(kBorderline);
  answer.forces.clear();
}

// The forces follow from the exact base, the solver has seen six digits of it: forces at a
// limit may be beyond it by that.
void judge_forces(const Grasp& grasp, Answer& answer) {
  double size = 0;
  for (const ContactForce& force : answer.forces) size = std::hypot(size, force.local.norm());
  for (std::size_t i = 0; i < answer.forces.size(); ++i) {
    const ContactForce& force = answer.forces[i];
    const double inside = std::min(force.cone_margin, force.bound_margin);
    if (-inside > kPrecision * size * (1 + grasp.contacts[i].friction))
      throw AskError("the forces that came back are outside of the cone or the bounds of contact " +
                     grasp.label(i));
    // Optimal forces are at limits by nature. Those that only have to exist are as far
    // inside as they can be, and this is what the rounding has made possible.
    if (answer.inquiry.question == Question::kExists && !(inside > 0))
      return withdraw_forces(answer);
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
  judge_forces(grasp, answer);
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

std::string no_nullspace(const Balance& balance) {
  // Of a map that six digits of its numbers could make singular, say.
  constexpr double kSuspicious = 1e-3;
  std::string reason = "no nullspace: the " + std::to_string(balance.columns) +
                       " columns of the grasp map are independent, so that no forces but 0 balance";
  if (balance.smallest_kept < kSuspicious)
    reason += "; if they should, points and normals need more digits";
  return reason;
}

}  // namespace

Asker::Asker(const Road& road) : road_(std::make_unique<UnitRoad>(road)) {}
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
    answer.reason = no_nullspace(space.balance);
  } else {
    const Solved solved = solve(*road_, grasp, inquiry, space);
    answer.verdict = solved.heading.verdict;
    answer.solving_time = solved.found.seconds;
    for (const std::string& warning : solved.heading.warnings)
      answer.notes.push_back(explain_warning(warning));
    if (solved.squeeze)
      answer.notes.push_back("contacts " + grasp.label(solved.squeeze->first) + " and " +
                             grasp.label(solved.squeeze->second) +
                             " can squeeze alone; the others cannot join them");
    if (solved.found.feasible)
      set_forces(grasp, map, solved.base, solved.found, answer);
    else
      answer.reason = explain(solved.heading.reason, solved.found.definition, grasp);
  }
  answer.force_closure = force_closure(grasp, answer);
  return answer;
}

}  // namespace grasp
