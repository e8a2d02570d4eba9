// The answers of the demo, worked out on paper.
//
// The smallest eigenvalue of [mu n, 0, t1; 0, mu n, t2; t1, t2, mu n] is
// mu n - |t|. So a friction matrix minus epsilon times the identity is positive
// definite exactly where mu n - |t| > epsilon, and all conditions are strict: an
// optimum is a supremum, which the answers come close to and do not reach.
//
// Where the optimal forces are not unique they are judged by what they must
// satisfy: balance, cones, bounds and the objective. Such components are kFree
// in the tables below.
#include <gtest/gtest.h>

#include <cmath>
#include <filesystem>
#include <limits>
#include <memory>
#include <string>

#include "examples/questions.h"
#include "tests/grasp_map.h"

namespace {

using examples::Answer;
using examples::Grasp;
using examples::Question;
using examples::Verdict;
using grasp_map::Contact;

constexpr double kTolerance = 1e-5;
constexpr double kFree = std::numeric_limits<double>::infinity();

const std::filesystem::path kExamples = SDPSOL_SOURCE_DIR "/examples";

struct Optimum {
  Question question;
  double objective;
  std::vector<double> forces;
};

void expect_cones_and_bounds(const Grasp& grasp, const std::vector<double>& forces) {
  for (std::size_t k = 0; k < forces.size(); ++k) {
    EXPECT_GT(forces[k], grasp.bounds[2 * k]) << "x" << k;
    EXPECT_LT(forces[k], grasp.bounds[2 * k + 1]) << "x" << k;
  }
  for (std::size_t i = 0; i < grasp.types.size(); ++i) {
    if (grasp.types[i] != 3) continue;
    const auto s = grasp.first_component(i);
    // The answer keeps out of the cone's surface by no more than rounding, and
    // this sum rounds too.
    EXPECT_GT(grasp.friction[i] * forces[s + 2] - std::hypot(forces[s], forces[s + 1]), -1e-12)
        << "contact " << i;
  }
}

double norm(const std::vector<double>& forces) {
  double sum = 0;
  for (const double force : forces) sum += force * force;
  return std::sqrt(sum);
}

// The margin of a contact: mu n - |t|, or the normal force where there is no friction.
double margin(const Grasp& grasp, const std::vector<double>& forces, std::size_t contact) {
  const auto s = grasp.first_component(contact);
  if (grasp.types[contact] == 1) return forces[s];
  return grasp.friction[contact] * forces[s + 2] - std::hypot(forces[s], forces[s + 1]);
}

// The objective by its definition, from the values that came with it.
double recomputed_objective(const Grasp& grasp, Question question, const Answer& answer) {
  double with_friction = 0;
  double frictionless = 0;
  const auto epsilon = [&](std::size_t i) {
    return answer.values.at("epsilon" + std::to_string(i));
  };
  const auto divisor = static_cast<double>(grasp.types.size() - 1);
  switch (question) {
    case Question::kExists:
      return 1;
    case Question::kPoint:
      return answer.values.at("epsilon");
    case Question::kIndividual:
      for (const int contact : grasp.individual) {
        const auto i = static_cast<std::size_t>(contact);
        with_friction +=
            grasp.types[i] == 3 ? answer.forces[grasp.first_component(i) + 2] : epsilon(i);
      }
      return with_friction / static_cast<double>(grasp.individual.size());
    case Question::kFriction:
    case Question::kAll:
      for (std::size_t i = 0; i < grasp.types.size(); ++i) {
        if (grasp.types[i] == 3) with_friction += epsilon(i);
        if (grasp.types[i] == 1 && question == Question::kAll) frictionless += epsilon(i);
      }
      return with_friction / divisor + frictionless;
  }
  return 0;
}

// Every margin variable is positive and no larger than the margin it stands for.
void expect_margins(const Grasp& grasp, const Answer& answer) {
  for (const auto& [name, value] : answer.values) {
    if (name.rfind("epsilon", 0) != 0) continue;
    const auto contact =
        name == "epsilon" ? grasp.point : std::stoul(name.substr(std::string("epsilon").size()));
    EXPECT_GT(value, 0) << name;
    EXPECT_LT(value, margin(grasp, answer.forces, contact) + 1e-12) << name;
  }
}

class Demo : public testing::Test {
 protected:
  Answer ask(const Grasp& grasp, Question question) {
    return examples::ask(solver_, grasp, question);
  }

  Answer ask(const examples::Lmi& lmi) { return examples::ask(solver_, lmi); }

  void expect_optima(const Grasp& grasp, const std::vector<Contact>& contacts,
                     const std::vector<Optimum>& optima) {
    for (const Optimum& optimum : optima) {
      SCOPED_TRACE("question " + std::to_string(static_cast<int>(optimum.question)));
      const Answer answer = ask(grasp, optimum.question);
      ASSERT_EQ(answer.verdict, Verdict::kFeasible);
      EXPECT_NEAR(answer.objective, optimum.objective, kTolerance);
      EXPECT_NEAR(recomputed_objective(grasp, optimum.question, answer), answer.objective, 2e-6);
      ASSERT_EQ(answer.forces.size(), optimum.forces.size());
      for (std::size_t k = 0; k < answer.forces.size(); ++k) {
        if (optimum.forces[k] == kFree) continue;
        EXPECT_NEAR(answer.forces[k], optimum.forces[k], kTolerance) << "x" << k;
      }
      expect_cones_and_bounds(grasp, answer.forces);
      expect_margins(grasp, answer);
      for (const double sum : grasp_map::wrench(contacts, answer.forces))
        EXPECT_LT(std::abs(sum), 1e-12 * norm(answer.forces));
    }
  }

 private:
  examples::WorkingFolder folder_;
  sdpsol_wrapper solver_ = folder_.solver(SDPSOL_BIN_DIR "/sdpsol");
};

constexpr grasp_map::Vector kX = {1, 0, 0};
constexpr grasp_map::Vector kY = {0, 1, 0};
constexpr grasp_map::Vector kZ = {0, 0, 1};
constexpr grasp_map::Vector kMinusX = {-1, 0, 0};
constexpr grasp_map::Vector kMinusY = {0, -1, 0};
constexpr grasp_map::Vector kMinusZ = {0, 0, -1};

const std::vector<Contact> kBox = {{kMinusX, kX, kY, kZ}, {kX, kMinusX, kY, kMinusZ}};

const std::vector<Contact> kWedge = {{kMinusX, {0.8, -0.6, 0}, {0.6, 0.8, 0}, kZ},
                                     {kX, {-0.8, -0.6, 0}, {-0.6, 0.8, 0}, kMinusZ}};

const std::vector<Contact> kRoller = {{kMinusX, kX, kY, kZ},
                                      {kX, kMinusX, kY, kMinusZ},
                                      {{0, -0.6, -0.8}, {0, 0.6, 0.8}, {0, 0.8, -0.6}, kMinusX, 1}};

const std::vector<Contact> kFour = {{kMinusX, kX, kY, kZ},
                                    {kX, kMinusX, kY, kMinusZ},
                                    {kMinusY, kY, kZ, kX},
                                    {kY, kMinusY, kX, kZ}};

// All forces are a squeeze s, and 0 < s < 8, the bound of the weaker finger.
//   Individual: (s + s)/2 -> 8.
//   Friction, all: (epsilon0 + epsilon1)/1 with epsilon_i < mu_i s: 0.5*8 + 0.8*8 = 10.4.
//   Point 1: epsilon < 0.8 s -> 6.4.
TEST_F(Demo, BoxPinch) {
  const Grasp grasp = examples::read_grasp(kExamples / "box_pinch.grasp");
  const std::vector<double> hardest = {0, 0, 8, 0, 0, 8};
  expect_optima(grasp, kBox,
                {{Question::kExists, 1, {0, 0, kFree, 0, 0, kFree}},
                 {Question::kIndividual, 8, hardest},
                 {Question::kFriction, 10.4, hardest},
                 {Question::kAll, 10.4, hardest},
                 {Question::kPoint, 6.4, hardest}});
}

// A squeeze s is 0.8 s along both normals and 0.6 s along both tangentials; the
// normals' bound of 10 ends it at s = 12.5, with normals 10 and tangentials 7.5.
//   Individual: 10.  Margins: mu n - |t| = 0.8 s - 0.6 s = 0.2 s -> 2.5 each;
//   friction, all: (2.5 + 2.5)/1.  Point 0: 2.5.
TEST_F(Demo, WedgeHeldByRoughFingers) {
  const Grasp grasp = examples::read_grasp(kExamples / "wedge_holds.grasp");
  const std::vector<double> hardest = {7.5, 0, 10, 7.5, 0, 10};
  expect_optima(grasp, kWedge,
                {{Question::kExists, 1, {kFree, 0, kFree, kFree, 0, kFree}},
                 {Question::kIndividual, 10, hardest},
                 {Question::kFriction, 5, hardest},
                 {Question::kAll, 5, hardest},
                 {Question::kPoint, 2.5, hardest}});
}

// The same squeeze would need 0.6 s < 0.5 * 0.8 s with s > 0.
TEST_F(Demo, WedgeSlipsThroughSmoothFingers) {
  const Grasp grasp = examples::read_grasp(kExamples / "wedge_slips.grasp");
  for (const Question question : examples::kQuestions) {
    const Answer answer = ask(grasp, question);
    EXPECT_EQ(answer.verdict, Verdict::kInfeasible);
    EXPECT_EQ(answer.objective, 0);
  }
}

// The border is mu = 0.75: a percent to either side decides.
TEST_F(Demo, WedgeNeedsThreeQuartersOfFriction) {
  Grasp grasp = examples::read_grasp(kExamples / "wedge_slips.grasp");
  grasp.friction = {0.7425, 0.7425};
  EXPECT_EQ(ask(grasp, Question::kExists).verdict, Verdict::kInfeasible);
  grasp.friction = {0.7575, 0.7575};
  EXPECT_EQ(ask(grasp, Question::kExists).verdict, Verdict::kFeasible);
  // One finger that slips is enough.
  grasp.friction = {0.7575, 0.7425};
  EXPECT_EQ(ask(grasp, Question::kExists).verdict, Verdict::kInfeasible);
}

// Normals a = z0 (bounds 0..10), the roller c = 2 z1 (0..4), tangentials of size
// c/2 = z1 at each finger, split 0.6 to 0.8.
//   Individual 0 and 2: (a + epsilon2)/2 with epsilon2 < c: (10 + 4)/2 = 7; the
//     finger's own cone holds, 0.5*10 - 2 > 0.
//   Friction: (0.5 a - z1 + 0.6 a - z1)/2 where the roller must keep c > 1:
//     a = 10, z1 = 0.5: (4.5 + 5.5)/2 = 5.
//   All: (0.5 a - z1 + 0.6 a - z1)/2 + c = 0.55 a + z1: 5.5 + 2 = 7.5, where
//     both fingers' margins, 3 and 4, are positive.
//   Point 2: epsilon < c -> 4, for any a with 0.5 a > 2.
TEST_F(Demo, RollerSupport) {
  const Grasp grasp = examples::read_grasp(kExamples / "roller_support.grasp");
  const std::vector<double> hardest = {-1.2, -1.6, 10, -1.2, 1.6, 10, 4};
  expect_optima(grasp, kRoller,
                {{Question::kExists, 1, std::vector<double>(7, kFree)},
                 {Question::kIndividual, 7, hardest},
                 {Question::kFriction, 5, {-0.3, -0.4, 10, -0.3, 0.4, 10, 1}},
                 {Question::kAll, 7.5, hardest},
                 {Question::kPoint, 4, {-1.2, -1.6, kFree, -1.2, 1.6, kFree, 4}}});
}

// What the two questions hand back are the first values of the result, one per
// contact: margins where there are enough, then coordinates.
TEST_F(Demo, RollerSupportHandsBackTheFirstValues) {
  const Grasp grasp = examples::read_grasp(kExamples / "roller_support.grasp");
  const auto expect = [](const std::vector<double>& values, const std::vector<double>& paper) {
    ASSERT_EQ(values.size(), paper.size());
    for (std::size_t i = 0; i < paper.size(); ++i) EXPECT_NEAR(values[i], paper[i], kTolerance);
  };
  // epsilon0, epsilon1, z0: the roller has no margin in this question.
  expect(ask(grasp, Question::kFriction).handed_back, {4.5, 5.5, 10});
  expect(ask(grasp, Question::kAll).handed_back, {3, 4, 4});
}

// Let p = -x0 and q = -x3 be what fingers 0 and 1 pull along -y. Balance says
//   n2 = n3 + p + q,  x7 + x9 = n1 - n0,  x7 - x9 = q - p,
// and along z all four tangentials have one size w. Bounds: n0, n1 < 10,
// n2 < 20, n3 < 4.
//
// Individual, contact 2 alone: n2 = n3 + p + q < 4 + 0.5*10 + 0.6*10 = 15, which
//   n3 = 4, n0 = n1 = 10, p = 5, q = 6, x7 = 0.5, x9 = -0.5, w = 0 comes up to:
//   0.5 < 0.7*15 and 0.5 < 0.8*4. On the round border of the cones w may be of
//   the size of the square root of what the objective lacks, hence free.
// Friction, all: the sum of mu_i n_i - |t_i| is at most
//   0.5 n0 + 0.6 n1 + 0.7 (n3 + p + q) + 0.8 n3 - |t0| - |t1| - |t2| - |t3|,
//   p + q <= |t0| + |t1|, so at most 5 + 6 + 1.5*4 - 0.3 (|t0| + |t1|) - |t2| - |t3|:
//   17, reached at t = 0 alone, over 4 - 1.
// Point 2: epsilon <= 0.7 n2 - |x7| and x7 = (q - p + n1 - n0)/2, hence for every
//   |l| <= 1: epsilon <= 0.7 (n3 + p + q) - l (q - p + n1 - n0)/2. With l = 0.525,
//   q < 0.6 n1 makes n1 cancel (0.7*0.6 - 0.525*0.8 = 0) and p < 0.5 n0 leaves
//   0.7*4 + n0 (0.35 + 0.13125 + 0.2625) = 2.8 + 7.4375 = 10.2375. Reached where
//   x7 = 0: n1 = 9.375, q = 5.625, p = 5, n0 = 10, n2 = 14.625, x9 = -0.625.
TEST_F(Demo, FourFingers) {
  const Grasp grasp = examples::read_grasp(kExamples / "four_fingers.grasp");
  const std::vector<double> untwisted = {0, 0, 10, 0, 0, 10, 0, 0, 4, 0, 0, 4};
  expect_optima(
      grasp, kFour,
      {{Question::kExists, 1, std::vector<double>(12, kFree)},
       {Question::kIndividual, 15, {-5, kFree, 10, -6, kFree, 10, kFree, 0.5, 15, -0.5, kFree, 4}},
       {Question::kFriction, 17.0 / 3, untwisted},
       {Question::kAll, 17.0 / 3, untwisted},
       {Question::kPoint,
        10.2375,
        {-5, kFree, 10, -5.625, kFree, 9.375, kFree, 0, 14.625, -0.625, kFree, 4}}});
}

// The bases of the files against the geometry in this file: every column is in
// balance and every frame is one.
TEST(DemoFiles, BasesAreInBalance) {
  const std::vector<std::pair<std::string, std::vector<Contact>>> grasps = {
      {"box_pinch.grasp", kBox},
      {"wedge_holds.grasp", kWedge},
      {"wedge_slips.grasp", kWedge},
      {"roller_support.grasp", kRoller},
      {"four_fingers.grasp", kFour}};
  for (const auto& [file, contacts] : grasps) {
    const Grasp grasp = examples::read_grasp(kExamples / file);
    for (const Contact& contact : contacts) EXPECT_LT(grasp_map::frame_error(contact), 1e-15);
    for (std::size_t j = 0; j < grasp.coordinates(); ++j) {
      std::vector<double> column;
      for (std::size_t k = 0; k < grasp.components(); ++k)
        column.push_back(grasp.base[k * grasp.coordinates() + j]);
      for (const double sum : grasp_map::wrench(contacts, column)) EXPECT_LT(std::abs(sum), 1e-15);
    }
  }
}

// P = [x1, x2; x2, x3] and -(A'P + P A) = [4 x2, m; m, -2 x2 + 2 x3] with
// m = -x1 + x2 + 2 x3: positive definite by their minors.
TEST_F(Demo, DampedOscillatorIsStable) {
  const Answer answer = ask(examples::read_lmi(kExamples / "oscillator_damped.lmi"));
  ASSERT_EQ(answer.verdict, Verdict::kFeasible);
  const double x1 = answer.values.at("x1");
  const double x2 = answer.values.at("x2");
  const double x3 = answer.values.at("x3");
  const double m = -x1 + x2 + 2 * x3;
  EXPECT_GT(x1, 0);
  EXPECT_GT(x1 * x3 - x2 * x2, 0);
  EXPECT_GT(4 * x2, 0);
  EXPECT_GT(4 * x2 * (-2 * x2 + 2 * x3) - m * m, 0);
}

// x3 > 0, 4 x2 > 0 and -2 x2 - 2 x3 > 0 on the diagonal exclude each other.
TEST_F(Demo, ExcitedOscillatorIsNot) {
  EXPECT_EQ(ask(examples::read_lmi(kExamples / "oscillator_excited.lmi")).verdict,
            Verdict::kInfeasible);
}

}  // namespace
