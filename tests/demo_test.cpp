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

#include <algorithm>
#include <cmath>
#include <filesystem>
#include <limits>
#include <nlohmann/json.hpp>
#include <string>

#include "tests/grasp_map.h"
#include "tests/grasp_network.h"
#include "tests/network_run.h"
#include "tests/support/test_folder.h"

namespace {

using grasp_map::Contact;
using grasp_network::Answer;
using grasp_network::Grasp;
using grasp_network::Question;
using grasp_network::Verdict;
using network_run::Firing;

constexpr double kTolerance = 1e-5;
// What is left of rounding in the sums below, which are in double precision.
constexpr double kSlack = 1e-12;
constexpr double kFree = std::numeric_limits<double>::infinity();

struct Optimum {
  Question question;
  double objective;
  std::vector<double> forces;
};

double norm(const std::vector<double>& forces) {
  double sum = 0;
  for (const double force : forces) sum += force * force;
  return std::sqrt(sum);
}

// The margin of a contact: mu n - |t|, or the normal force where there is no friction.
double margin(const Grasp& grasp, const Answer& answer, std::size_t contact) {
  const auto* const x = answer.forces.data() + grasp.first_component(contact);
  return grasp.types[contact] == 1 ? x[0] : grasp.friction[contact] * x[2] - std::hypot(x[0], x[1]);
}

// How far it may be off, since the forces come from numbers in single precision.
double margin_rounding(const Grasp& grasp, const Answer& answer, std::size_t contact) {
  const auto* const r = answer.rounding.data() + grasp.first_component(contact);
  return grasp.types[contact] == 1 ? r[0] : grasp.friction[contact] * r[2] + r[0] + r[1];
}

// All of it is strict in the solver's double precision: an optimum keeps out of a
// bound or of a cone's surface by no more than rounding, and single precision may
// round it back there.
void expect_cones_and_bounds(const Grasp& grasp, const Answer& answer) {
  for (std::size_t k = 0; k < answer.forces.size(); ++k) {
    EXPECT_GT(answer.forces[k], grasp.bounds[2 * k] - answer.rounding[k] - kSlack) << "x" << k;
    EXPECT_LT(answer.forces[k], grasp.bounds[2 * k + 1] + answer.rounding[k] + kSlack) << "x" << k;
  }
  for (std::size_t i = 0; i < grasp.types.size(); ++i) {
    EXPECT_GT(margin(grasp, answer, i), -margin_rounding(grasp, answer, i) - kSlack)
        << "contact " << i;
  }
}

// The objective by its definition, from the values that came with it.
double recomputed_objective(const Grasp& grasp, Question question, const Answer& answer) {
  double with_friction = 0;
  double frictionless = 0;
  switch (question) {
    case Question::kExists:
      return 1;
    case Question::kPoint:
      return answer.margins.at(grasp.point);
    case Question::kIndividual:
      for (const std::size_t i : grasp.individual) {
        with_friction += grasp.types[i] == 3 ? answer.forces[grasp.first_component(i) + 2]
                                             : answer.margins.at(i);
      }
      return with_friction / static_cast<double>(grasp.individual.size());
    case Question::kFriction:
    case Question::kAll:
      for (const auto& [contact, value] : answer.margins)
        (grasp.types[contact] == 3 ? with_friction : frictionless) += value;
      return with_friction / static_cast<double>(grasp.types.size() - 1) + frictionless;
  }
  return 0;
}

// Every margin variable is positive and no larger than the margin it stands for.
void expect_margins(const Grasp& grasp, const Answer& answer) {
  for (const auto& [contact, value] : answer.margins) {
    EXPECT_GT(value, 0) << "contact " << contact;
    const double rounding = margin_rounding(grasp, answer, contact) + std::ldexp(value, -24);
    EXPECT_LT(value, margin(grasp, answer, contact) + rounding + kSlack) << "contact " << contact;
  }
}

// Networks write their files into the working directory.
class Demo : public testing::Test {
 protected:
  Demo() { std::filesystem::current_path(folder_.path()); }
  ~Demo() override { std::filesystem::current_path("/"); }

  static zelhost::NetworkFile network(const std::string& name) {
    return zelhost::read_network(network_run::kExamples / name);
  }

  // The network with other coefficients of friction.
  zelhost::NetworkFile network(const std::string& name, const std::vector<double>& friction) {
    zelhost::Json document = *network(name).document;
    document.at("inputs").at(0).at("values").at("Friction constraints") = friction;
    return zelhost::read_network(folder_.file(name, document.dump()));
  }

  static void expect_optima(const std::string& name, const std::vector<Contact>& contacts,
                            const std::vector<Optimum>& optima) {
    const zelhost::NetworkFile file = network(name);
    const Grasp grasp = grasp_network::read_grasp(file);
    const auto answers = grasp_network::ask(file);
    EXPECT_EQ(answers.size(), optima.size());
    for (const Optimum& optimum : optima) {
      SCOPED_TRACE("question " + std::to_string(static_cast<int>(optimum.question)));
      const Answer& answer = answers.at(optimum.question);
      ASSERT_EQ(answer.verdict, Verdict::kFeasible);
      EXPECT_NEAR(answer.objective, optimum.objective, kTolerance);
      EXPECT_NEAR(recomputed_objective(grasp, optimum.question, answer), answer.objective, 2e-6);
      ASSERT_EQ(answer.forces.size(), optimum.forces.size());
      for (std::size_t k = 0; k < answer.forces.size(); ++k) {
        if (optimum.forces[k] == kFree) continue;
        EXPECT_NEAR(answer.forces[k], optimum.forces[k], kTolerance) << "x" << k;
      }
      expect_cones_and_bounds(grasp, answer);
      expect_margins(grasp, answer);
      // Each column of the base is in balance, so rounded coordinates are too.
      for (const double sum : grasp_map::wrench(contacts, answer.forces))
        EXPECT_LT(std::abs(sum), 1e-12 * norm(answer.forces));
    }
  }

  const test_support::TestFolder folder_;
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
  const std::vector<double> hardest = {0, 0, 8, 0, 0, 8};
  expect_optima("box_pinch.json", kBox,
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
  const std::vector<double> hardest = {7.5, 0, 10, 7.5, 0, 10};
  expect_optima("wedge_holds.json", kWedge,
                {{Question::kExists, 1, {kFree, 0, kFree, kFree, 0, kFree}},
                 {Question::kIndividual, 10, hardest},
                 {Question::kFriction, 5, hardest},
                 {Question::kAll, 5, hardest},
                 {Question::kPoint, 2.5, hardest}});
}

// The same squeeze would need 0.6 s < 0.5 * 0.8 s with s > 0.
TEST_F(Demo, WedgeSlipsThroughSmoothFingers) {
  const auto answers = grasp_network::ask(network("wedge_slips.json"));
  EXPECT_EQ(answers.size(), 5U);
  for (const auto& [question, answer] : answers) {
    EXPECT_EQ(answer.verdict, Verdict::kInfeasible);
    EXPECT_EQ(answer.objective, 0);
  }
}

// The border is mu = 0.75: a percent to either side decides.
TEST_F(Demo, WedgeNeedsThreeQuartersOfFriction) {
  const auto verdict = [this](const std::vector<double>& friction) {
    return grasp_network::ask(network("wedge_slips.json", friction)).at(Question::kExists).verdict;
  };
  EXPECT_EQ(verdict({0.7425, 0.7425}), Verdict::kInfeasible);
  EXPECT_EQ(verdict({0.7575, 0.7575}), Verdict::kFeasible);
  // One finger that slips is enough.
  EXPECT_EQ(verdict({0.7575, 0.7425}), Verdict::kInfeasible);
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
  const std::vector<double> hardest = {-1.2, -1.6, 10, -1.2, 1.6, 10, 4};
  expect_optima("roller_support.json", kRoller,
                {{Question::kExists, 1, std::vector<double>(7, kFree)},
                 {Question::kIndividual, 7, hardest},
                 {Question::kFriction, 5, {-0.3, -0.4, 10, -0.3, 0.4, 10, 1}},
                 {Question::kAll, 7.5, hardest},
                 {Question::kPoint, 4, {-1.2, -1.6, kFree, -1.2, 1.6, kFree, 4}}});
}

// What the two questions publish last are the first values of the result, one per
// contact: margins where there are enough, then coordinates. The output is as long
// as there are force bounds, with zeros behind the contacts.
TEST_F(Demo, RollerSupportPublishesTheFirstValues) {
  const auto answers = grasp_network::ask(network("roller_support.json"));
  const auto expect = [](const std::vector<float>& epsilons, const std::vector<double>& paper) {
    ASSERT_EQ(epsilons.size(), 14U);
    for (std::size_t i = 0; i < paper.size(); ++i) EXPECT_NEAR(epsilons[i], paper[i], kTolerance);
    EXPECT_EQ(std::count(epsilons.begin() + 3, epsilons.end(), 0.0F), 11);
  };
  // epsilon0, epsilon1, z0: the roller has no margin in this question.
  expect(answers.at(Question::kFriction).epsilons, {4.5, 5.5, 10});
  expect(answers.at(Question::kAll).epsilons, {3, 4, 4});
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
  const std::vector<double> untwisted = {0, 0, 10, 0, 0, 10, 0, 0, 4, 0, 0, 4};
  expect_optima(
      "four_fingers.json", kFour,
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
      {"box_pinch.json", kBox},
      {"wedge_holds.json", kWedge},
      {"wedge_slips.json", kWedge},
      {"roller_support.json", kRoller},
      {"four_fingers.json", kFour}};
  for (const auto& [file, contacts] : grasps) {
    const Grasp grasp =
        grasp_network::read_grasp(zelhost::read_network(network_run::kExamples / file));
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
  const std::vector<Firing> firings = network_run::run(network("oscillator_damped.json"));
  ASSERT_EQ(firings.size(), 1U);
  ASSERT_EQ(firings[0].number(0), 1);
  ASSERT_EQ(firings[0].number(3), 0);
  const std::vector<double> x(firings[0].list(1).begin(), firings[0].list(1).end());
  ASSERT_EQ(x.size(), 3U);
  const double m = -x[0] + x[1] + 2 * x[2];
  EXPECT_GT(x[0], 0);
  EXPECT_GT(x[0] * x[2] - x[1] * x[1], 0);
  EXPECT_GT(4 * x[1], 0);
  EXPECT_GT(4 * x[1] * (-2 * x[1] + 2 * x[2]) - m * m, 0);
}

// x3 > 0, 4 x2 > 0 and -2 x2 - 2 x3 > 0 on the diagonal exclude each other.
TEST_F(Demo, ExcitedOscillatorIsNot) {
  const std::vector<Firing> firings = network_run::run(network("oscillator_excited.json"));
  ASSERT_EQ(firings.size(), 1U);
  EXPECT_EQ(firings[0].number(0), 0);
  EXPECT_EQ(firings[0].number(3), 0);
  EXPECT_NE(firings[0].result_file.find("\nINFEASIBLE\n"), std::string::npos);
}

// The transfer function 1/(s^2 + s + 2) has |.|^2 = 1/(u^2 - 3 u + 4) at u = omega^2,
// largest at u = 3/2: g = 4/7. There, with P = [p1, p2; p2, p3], the Schur complement
//   [1 - 4 p2 + 7/4 p2^2,  p1 - p2 - 2 p3 + 7/4 p2 p3;  ., 2 p2 - 2 p3 + 7/4 p3^2] <= 0
// says 2/7 <= p2 <= 2 first, then p2 <= p3 - 7/8 p3^2 <= 2/7 with the largest value at
// p3 = 4/7, hence p2 = 2/7; both diagonal entries being 0, so is the third: p1 = 8/7.
TEST_F(Demo, AmplificationOfAnOscillator) {
  const std::vector<Firing> firings = network_run::run(network("by_hand.json"));
  ASSERT_EQ(firings.size(), 5U);
  EXPECT_EQ(firings[1].list(0), (std::vector<float>{10, 100, 100, 4.4e-6F, 4.4e-6F, 15000}));
  EXPECT_EQ(firings[3].number(0), 0);
  const Firing& result = firings[4];
  ASSERT_EQ(result.number(0), 1);
  EXPECT_EQ(result.number(3), 0);
  EXPECT_NEAR(result.number(2), 4.0 / 7, 1e-6);
  ASSERT_EQ(result.list(1).size(), 5U);
  // A g that is larger by d leaves P a room of the order of the square root of d.
  const std::vector<double> paper = {8.0 / 7, 2.0 / 7, 2.0 / 7, 4.0 / 7, 4.0 / 7};
  for (std::size_t i = 0; i < paper.size(); ++i)
    EXPECT_NEAR(result.list(1)[i], paper[i], 1e-3) << i;
  // The parameters went through the wire and stand before what was written by hand.
  const std::string definition = test_support::content_of("sdpsol.in");
  EXPECT_EQ(definition.rfind("NU=10;\nGAMMA=100;\nMAXITER=100;\nABSTOL=4.4e-06;\n"
                             "RELTOL=4.4e-06;\nBIGM=15000;\nA = [0, 1; -2, -1];\n",
                             0),
            0U)
      << definition;
}

// With P = [p1, p2; p2, p3]:
//   L0 = [4 p2, -p1 - p2 + 2 p3; ., -2 p2 - 2 p3] for the excited oscillator,
//   L1 = [0, p2; p2, 2 p3] for the feedback,
// and the second instance's k must make L0 + k L1 positive definite for the P that
// the first one found.
TEST_F(Demo, FeedbackIsProvenByTheMatrixOfAnotherInstance) {
  const std::vector<Firing> firings = network_run::run(network("oscillator_feedback.json"));
  ASSERT_EQ(firings.size(), 4U);
  const Firing& found = firings[2];
  ASSERT_EQ(found.number(0), 1);
  ASSERT_EQ(found.number(3), 0);
  ASSERT_EQ(found.list(1).size(), 12U);
  const std::vector<double> values(found.list(1).begin(), found.list(1).end());
  const double p1 = values[8];
  const double p2 = values[9];
  const double p3 = values[11];
  EXPECT_EQ(values[10], p2);
  EXPECT_NEAR(p1 + p3, 1, 1e-6);
  EXPECT_GT(p1 * p3 - p2 * p2, 0);
  const double m0 = -p1 - p2 + 2 * p3;
  const std::vector<double> paper = {4 * p2, m0, m0, -2 * p2 - 2 * p3, 0, p2, p2, 2 * p3};
  for (std::size_t i = 0; i < paper.size(); ++i) EXPECT_NEAR(values[i], paper[i], 1e-6) << i;

  const Firing& checked = firings[3];
  EXPECT_EQ(checked.instance, "feedback");
  ASSERT_EQ(checked.number(0), 1);
  ASSERT_EQ(checked.number(3), 0);
  ASSERT_EQ(checked.list(1).size(), 1U);
  const double k = checked.list(1)[0];
  const double m = m0 + k * p2;
  EXPECT_GT(4 * p2, 0);
  EXPECT_GT(4 * p2 * (-2 * p2 - 2 * p3 + 2 * k * p3) - m * m, 0);

  // Each instance with its own files.
  EXPECT_EQ(folder_.names(),
            (std::vector<std::string>{"feedback.in", "feedback.out", "search.in", "search.out"}));
}

}  // namespace
