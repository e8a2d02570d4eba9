#include "tests/grasp/asked.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <filesystem>
#include <nlohmann/json.hpp>

#include "grasp/asker.h"
#include "grasp/geometry.h"
#include "grasp/grasp_file.h"
#include "tests/grasp/polyhedral_truth.h"
#include "tests/support/test_folder.h"

namespace grasp_asked {

using grasp::Answer;
using grasp::ContactForce;
using grasp::ContactType;
using grasp::Grasp;
using grasp::Inquiry;
using grasp::Question;
using grasp::Vector;
using grasp::Verdict;
using grasp_truth::Pyramids;

namespace {

// Of the forces: what the six digits of the solver's input leave.
constexpr double kTolerance = 1e-5;

double size_of(const Answer& answer) {
  double size = 0;
  for (const ContactForce& force : answer.forces) size = std::hypot(size, force.local.norm());
  return size;
}

double cone_margin(const grasp::Contact& contact, const Vector& force) {
  const double tangential = std::hypot(force[0], force[1]);
  return contact.type == ContactType::kFriction ? contact.friction * force[2] - tangential
                                                : force[2];
}

double bound_margin(const grasp::Contact& contact, const Vector& force) {
  double margin = 1e300;
  for (std::size_t k = 0; k < contact.bounds.size(); ++k) {
    const double component = force[static_cast<Eigen::Index>(3 - contact.bounds.size() + k)];
    margin = std::min(
        {margin, component - contact.bounds[k].lower, contact.bounds[k].upper - component});
  }
  return margin;
}

void expect_contact_right(const grasp::Contact& contact, const ContactForce& force, bool strictly,
                          double tolerance) {
  EXPECT_NEAR(force.cone_margin, cone_margin(contact, force.local), 1e-9 * tolerance);
  EXPECT_EQ(force.bound_margin, bound_margin(contact, force.local));
  const double least = strictly ? 0 : -tolerance * (1 + contact.friction);
  if (strictly) {
    EXPECT_GT(force.cone_margin, least);
    EXPECT_GT(force.bound_margin, least);
  } else {
    EXPECT_GE(force.cone_margin, least);
    EXPECT_GE(force.bound_margin, least);
  }
  if (contact.type == ContactType::kFrictionless) {
    EXPECT_TRUE(force.local.head<2>().isZero(0));
  }
  const auto& frame = contact.frame;
  for (Eigen::Index i = 0; i < 3; ++i)
    EXPECT_NEAR(force.world[i],
                force.local[0] * frame.tangential_1[i] + force.local[1] * frame.tangential_2[i] +
                    force.local[2] * frame.normal[i],
                1e-12 * (1 + force.local.norm()));
  if (force.epsilon) {
    EXPECT_GE(*force.epsilon, 0);
    EXPECT_LE(*force.epsilon, force.cone_margin + tolerance * (1 + contact.friction));
  }
}

void expect_balanced(const Grasp& grasp, const Answer& answer) {
  const auto contacts = grasp_truth::contacts_of(grasp, grasp.centre);
  std::vector<double> forces;
  double arm = 0;
  for (std::size_t i = 0; i < contacts.size(); ++i) {
    EXPECT_LE(grasp_map::frame_error(contacts[i]), 1e-14);
    const Vector& local = answer.forces[i].local;
    if (contacts[i].type == 3) forces.insert(forces.end(), {local[0], local[1]});
    forces.push_back(local[2]);
    arm = std::max(arm, (grasp.contacts[i].point - grasp.centre).norm());
  }
  const auto wrench = grasp_map::wrench(contacts, forces);
  const double size = size_of(answer);
  const auto largest = [&wrench](std::size_t first) {
    return std::max(
        {std::abs(wrench[first]), std::abs(wrench[first + 1]), std::abs(wrench[first + 2])});
  };
  EXPECT_LE(largest(0), kTolerance * size);
  EXPECT_LE(largest(3), kTolerance * size * arm);
  EXPECT_NEAR(answer.force_residual, largest(0), 1e-13 * size);
  EXPECT_NEAR(answer.torque_residual, largest(3), 1e-13 * size * arm);
}

double sum_of_epsilons(const Grasp& grasp, const Answer& answer, ContactType type) {
  double sum = 0;
  for (std::size_t i = 0; i < answer.forces.size(); ++i)
    if (grasp.contacts[i].type == type) sum += answer.forces[i].epsilon.value_or(0);
  return sum;
}

// The objective from the forces and epsilons that are shown.
double objective_of(const Grasp& grasp, const Answer& answer) {
  const auto others = static_cast<double>(grasp.contacts.size()) - 1;
  const double rough = sum_of_epsilons(grasp, answer, ContactType::kFriction);
  const double smooth = sum_of_epsilons(grasp, answer, ContactType::kFrictionless);
  double mean = 0;
  switch (answer.inquiry.question) {
    case Question::kExists:
      return 0;
    case Question::kIndividual:
      for (const std::size_t i : answer.inquiry.contacts)
        mean += answer.forces[i].local[2] / static_cast<double>(answer.inquiry.contacts.size());
      return mean;
    case Question::kPoint:
      return rough + smooth;
    case Question::kFriction:
      return rough / others;
    case Question::kAll:
      return rough / others + smooth;
  }
  return 0;
}

void expect_epsilons(const Grasp& grasp, const Answer& answer) {
  const auto& chosen = answer.inquiry.contacts;
  double sum = 0;
  double count = 0;
  for (std::size_t i = 0; i < answer.forces.size(); ++i) {
    const bool rough = grasp.contacts[i].type == ContactType::kFriction;
    const bool is_chosen = std::count(chosen.begin(), chosen.end(), i) > 0;
    const Question question = answer.inquiry.question;
    const bool expected = question == Question::kAll ||
                          (question == Question::kFriction && rough) ||
                          (question == Question::kPoint && is_chosen) ||
                          (question == Question::kIndividual && is_chosen && !rough);
    EXPECT_EQ(answer.forces[i].epsilon.has_value(), expected) << "contact " << i;
    sum += answer.forces[i].epsilon.value_or(0);
    count += expected ? 1 : 0;
  }
  const bool has_mean = (answer.inquiry.question == Question::kFriction ||
                         answer.inquiry.question == Question::kAll) &&
                        count > 0;
  ASSERT_EQ(answer.mean_epsilon.has_value(), has_mean);
  if (has_mean) {
    EXPECT_NEAR(*answer.mean_epsilon, sum / count, 1e-12 * (1 + sum));
  }
}

grasp::Asker& asker() {
  static const test_support::TestFolder folder;
  static grasp::Asker* const only = [] {
    std::filesystem::current_path(folder.path());
    const std::filesystem::path build = std::filesystem::path(SDPSOL_BIN_DIR).parent_path();
    static grasp::Asker made({build / "lib" / "sdpsol.so", SDPSOL_BIN_DIR "/sdpsol"});
    return &made;
  }();
  return *only;
}

}  // namespace

Grasp read_text(const std::string& text) {
  const zelhost::Json document = zelhost::parse_json(text, "grasp.json");
  return grasp::read_grasp(zelhost::JsonNode(document, "grasp.json", ""));
}

Grasp example(const std::string& name) {
  return read_text(
      test_support::content_of(SDPSOL_SOURCE_DIR "/examples/grasps/" + name + ".json"));
}

Answer ask(const Grasp& grasp, const Inquiry& inquiry) {
  return asker().ask(grasp, inquiry);
}

std::vector<Inquiry> all_inquiries(const Grasp& grasp) {
  const std::size_t last = grasp.contacts.size() - 1;
  return {{Question::kExists, {}},
          {Question::kIndividual, {last, 0}},
          {Question::kPoint, {last}},
          {Question::kFriction, {}},
          {Question::kAll, {}}};
}

void expect_right(const Grasp& grasp, const Answer& answer, const std::string& what) {
  SCOPED_TRACE(what);
  ASSERT_EQ(answer.verdict, Verdict::kFeasible) << answer.reason;
  ASSERT_EQ(answer.forces.size(), grasp.contacts.size());
  EXPECT_EQ(answer.reason, "");
  EXPECT_EQ(answer.balance.rank + answer.balance.nullity, answer.balance.columns);
  EXPECT_EQ(static_cast<std::size_t>(answer.balance.columns), grasp.components());
  const bool exists = answer.inquiry.question == Question::kExists;
  const double tolerance = kTolerance * size_of(answer);
  expect_balanced(grasp, answer);
  for (std::size_t i = 0; i < answer.forces.size(); ++i)
    expect_contact_right(grasp.contacts[i], answer.forces[i], exists, tolerance);
  expect_epsilons(grasp, answer);
  ASSERT_EQ(answer.objective.has_value(), !exists);
  if (!exists) {
    EXPECT_NEAR(*answer.objective, objective_of(grasp, answer), tolerance);
  }
}

bool expect_between_pyramids(const Grasp& grasp, const Answer& answer, int sides,
                             const std::string& what) {
  SCOPED_TRACE(what);
  const grasp_truth::PolyhedralGrasp truth(grasp, sides);
  const bool about_friction = answer.inquiry.question == Question::kFriction;
  const bool exists = answer.inquiry.question == Question::kExists;
  // The question about friction asks for more than an internal force.
  const bool possible = truth.has_internal_force(Pyramids::kAround, about_friction);
  const bool certain = possible && truth.has_internal_force(Pyramids::kInside, about_friction);
  if (!possible) {
    EXPECT_NE(answer.verdict, Verdict::kFeasible);
  }
  if (certain) {
    EXPECT_EQ(answer.verdict, Verdict::kFeasible) << answer.reason;
  }
  if (answer.verdict == Verdict::kFeasible && !exists && answer.objective) {
    const auto least = truth.optimum(answer.inquiry, Pyramids::kInside);
    const auto most = truth.optimum(answer.inquiry, Pyramids::kAround);
    const double tolerance = 2 * kTolerance * size_of(answer);
    if (least) {
      EXPECT_GE(*answer.objective, *least - tolerance);
    }
    EXPECT_TRUE(most);
    if (most) {
      EXPECT_LE(*answer.objective, *most + tolerance);
    }
  }
  if (exists && answer.force_closure) {
    if (truth.resists_every_wrench(Pyramids::kInside)) {
      EXPECT_TRUE(*answer.force_closure);
    } else if (!truth.resists_every_wrench(Pyramids::kAround)) {
      EXPECT_FALSE(*answer.force_closure);
    }
  }
  return !possible || certain;
}

Grasp random_grasp(std::mt19937& random, int contacts) {
  std::normal_distribution<double> normal;
  std::uniform_real_distribution<double> uniform(0, 1);
  const auto vector = [&] { return Vector(normal(random), normal(random), normal(random)); };
  Grasp grasp;
  for (int i = 0; i < contacts; ++i) {
    grasp::Contact contact;
    Vector out = vector().normalized();
    // Every other one is opposite of the one before, about.
    if (i % 2 == 1) out = (0.3 * out - grasp.contacts.back().point / 0.03).normalized();
    contact.point = 0.03 * out;
    contact.frame = grasp::make_frame(-out + 0.2 * vector(), vector());
    contact.type = uniform(random) < 0.2 ? ContactType::kFrictionless : ContactType::kFriction;
    if (contact.type == ContactType::kFriction) contact.friction = 0.1 + uniform(random);
    const double most = 1 + 20 * uniform(random);
    const bool is_held = uniform(random) < 0.2;
    contact.bounds.assign(contact.components(), {-most * (0.5 + uniform(random)), most});
    contact.bounds.back().lower = is_held ? 0.4 * most : 0;
    grasp.contacts.push_back(contact);
  }
  grasp.centre = 0.01 * vector();
  return grasp;
}

}  // namespace grasp_asked
