// What people and programs read, as whole texts.
#include <gtest/gtest.h>

#include <nlohmann/json.hpp>

#include "grasp/report_json.h"
#include "grasp/report_table.h"
#include "grasp/test_grasps.h"

namespace grasp {
namespace {

Answer answer_to(Question question, std::vector<std::size_t> contacts = {}) {
  Answer answer;
  answer.inquiry = {question, std::move(contacts)};
  answer.balance = {5, 6, 1, 0.25, 0};
  return answer;
}

ContactForce force(const Vector& local, const Vector& world, double cone, double bound) {
  return {local, world, cone, bound, std::nullopt};
}

/// Thumb with friction, a frictionless contact without a name.
Grasp mixed() {
  Grasp grasp = pinch();
  grasp.name = "a mixed pinch";
  grasp.contacts[1] = contact_at({0.02, 0, 0}, {-1, 0, 0}, ContactType::kFrictionless);
  return grasp;
}

Answer feasible(Question question, std::vector<std::size_t> contacts = {}) {
  Answer answer = answer_to(question, std::move(contacts));
  answer.balance = {3, 4, 1, 0.5, 1e-9};
  answer.verdict = Verdict::kFeasible;
  answer.force_closure = false;
  answer.forces = {force({0.5, -0.25, 12.5}, {12.5, 0.5, -0.25}, 5.75, 2),
                   force({0, 0, 12.5}, {-12.5, 0, -0.00001}, 12.5, -0.00001)};
  answer.force_residual = 1.25e-16;
  answer.torque_residual = 0;
  answer.solving_time = 0.0123456;
  return answer;
}

std::string json_text(const Grasp& grasp, const Answer& answer, bool times) {
  return to_json(grasp, answer, times).dump();
}

TEST(AnswerTable, ShowsForcesMarginsAndBalance) {
  EXPECT_EQ(
      to_table(mixed(), feasible(Question::kExists)),
      "a mixed pinch\n"
      "question \"exists\"\n"
      "FEASIBLE\n"
      "grasp map 6 x 4, rank 3, internal forces of 1 dimension; no force closure\n"
      "\n"
      "force [N]   normal  tangent 1  tangent 2  inside cone  bounds   world x       y        z\n"
      "0 thumb    12.5000     0.5000    -0.2500       5.7500  2.0000   12.5000  0.5000  -0.2500\n"
      "1          12.5000          -          -      12.5000  0.0000  -12.5000  0.0000   0.0000\n"
      "\n"
      "balance: force within 1.25e-16 N, torque within 0 N m\n"
      "solved in 12.3 ms\n");
}

TEST(AnswerTable, GivesSmallForcesMoreDigits) {
  Answer answer = feasible(Question::kExists);
  for (ContactForce& force : answer.forces) force.local *= 1e-4;
  EXPECT_NE(to_table(mixed(), answer).find("\n0 thumb    0.001250   0.000050  -0.000025 "),
            std::string::npos)
      << to_table(mixed(), answer);
}

TEST(AnswerTable, ShowsEpsilonsAndTheObjectiveInWords) {
  Answer answer = feasible(Question::kFriction);
  answer.forces[0].epsilon = 5.5;
  answer.objective = 5.5;
  answer.mean_epsilon = 5.5;
  answer.solving_time = 0;
  answer.notes = {"the first\nof two", "the second"};
  EXPECT_EQ(
      to_table(mixed(), answer),
      "a mixed pinch\n"
      "question \"friction\"\n"
      "FEASIBLE\n"
      "grasp map 6 x 4, rank 3, internal forces of 1 dimension; no force closure\n"
      "\n"
      "force [N]   normal  tangent 1  tangent 2  inside cone  bounds  epsilon   world x       y    "
      "    z\n"
      "0 thumb    12.5000     0.5000    -0.2500       5.7500  2.0000   5.5000   12.5000  0.5000  "
      "-0.2500\n"
      "1          12.5000          -          -      12.5000  0.0000        -  -12.5000  0.0000   "
      "0.0000\n"
      "\n"
      "objective 5.5000 N: sum of the epsilons / (contacts - 1)\n"
      "mean epsilon 5.5000 N\n"
      "balance: force within 1.25e-16 N, torque within 0 N m\n"
      "note: the first of two\n"
      "note: the second\n");
}

TEST(AnswerTable, SaysForEachQuestionWhatItsObjectiveIs) {
  const auto objective = [](Question question, std::vector<std::size_t> contacts) {
    Answer answer = feasible(question, std::move(contacts));
    answer.objective = 2;
    const std::string text = to_table(mixed(), answer);
    const std::size_t at = text.find("objective ");
    return text.substr(text.find('\n') + 1,
                       text.find('\n', text.find('\n') + 1) - text.find('\n')) +
           text.substr(at, text.find('\n', at) - at);
  };
  EXPECT_EQ(objective(Question::kPoint, {1}),
            "question \"point\": contact 1\n"
            "objective 2.0000 N: epsilon of this contact");
  EXPECT_EQ(objective(Question::kIndividual, {1, 0}),
            "question \"individual\": contact 1, 0 thumb\n"
            "objective 2.0000 N: mean over these contacts of normal force with friction, epsilon "
            "without");
  EXPECT_EQ(objective(Question::kAll, {}),
            "question \"all\"\n"
            "objective 2.0000 N: epsilons with friction / (contacts - 1) + the others");
}

TEST(AnswerTable, ShowsAReasonInPlaceOfForces) {
  Answer answer = answer_to(Question::kExists);
  answer.verdict = Verdict::kInfeasible;
  answer.reason = "the conditions contradict each other: the cones";
  answer.force_closure = false;
  answer.solving_time = 0.004;
  EXPECT_EQ(to_table(pinch(), answer),
            "question \"exists\"\n"
            "INFEASIBLE\n"
            "the conditions contradict each other: the cones\n"
            "grasp map 6 x 6, rank 5, internal forces of 1 dimension; no force closure\n"
            "solved in 4 ms\n");
  answer.verdict = Verdict::kUndetermined;
  answer.reason = "borderline:\nnothing";
  answer.balance = {6, 9, 3, 0.1, 0};
  answer.force_closure = std::nullopt;
  answer.solving_time = 0;
  EXPECT_EQ(to_table(pinch(), answer),
            "question \"exists\"\n"
            "FEASIBILITY CANNOT BE DETERMINED\n"
            "borderline: nothing\n"
            "grasp map 6 x 9, rank 6, internal forces of 3 dimensions\n");
}

TEST(AnswerTable, AlignsNamesBeyondAsciiAndCutsLongOnes) {
  Grasp grasp = mixed();
  grasp.contacts[0].name = "Däumchen";
  grasp.contacts[1].name = "a name that is far longer than any column should be\n";
  const std::string text = to_table(grasp, feasible(Question::kExists));
  EXPECT_NE(text.find("\n0 Däumchen                           12.5000 "), std::string::npos)
      << text;
  EXPECT_NE(text.find("\n1 a name that is far longer than...  12.5000 "), std::string::npos)
      << text;
}

TEST(AnswerJson, HoldsForcesMarginsAndBalance) {
  EXPECT_EQ(json_text(mixed(), feasible(Question::kExists), true),
            R"({"name":"a mixed pinch","question":"exists","verdict":"FEASIBLE","notes":[],)"
            R"("force_closure":false,"grasp_map":{"rank":3,"columns":4,"nullity":1,)"
            R"("smallest_singular_value":0.5,"taken_for_0":1e-09},"contacts":[)"
            R"({"contact":0,"name":"thumb","force":[0.5,-0.25,12.5],"world":[12.5,0.5,-0.25],)"
            R"("cone_margin":5.75,"bound_margin":2.0},)"
            R"({"contact":1,"force":[0.0,0.0,12.5],"world":[-12.5,0.0,-1e-05],)"
            R"("cone_margin":12.5,"bound_margin":-1e-05}],)"
            R"("residual":{"force":1.25e-16,"torque":0.0},"times":{"solving":0.0123456}})");
}

TEST(AnswerJson, HoldsWhatTheSolverReportsWithTheDigitsItHas) {
  Answer answer = feasible(Question::kPoint, {1});
  answer.forces[1].epsilon = 0.1F;  // 0.10000000149 in double precision
  answer.objective = 0.3F;
  answer.mean_epsilon = 0.25;
  answer.notes = {"a note"};
  const std::string text = json_text(mixed(), answer, false);
  EXPECT_EQ(text.find("times"), std::string::npos);
  EXPECT_NE(text.find(R"("question":"point","about":[1],"verdict":"FEASIBLE","notes":["a note"])"),
            std::string::npos)
      << text;
  EXPECT_NE(text.find(R"("objective":0.3,"mean_epsilon":0.25,"contacts":[)"), std::string::npos)
      << text;
  EXPECT_NE(text.find(R"("bound_margin":-1e-05,"epsilon":0.1}],)"), std::string::npos) << text;
}

TEST(AnswerJson, HoldsAReasonAndNoForcesWhereThereAreNone) {
  Answer answer = answer_to(Question::kIndividual, {1, 0});
  answer.verdict = Verdict::kInfeasible;
  answer.reason = "the conditions contradict each other: the cones";
  EXPECT_EQ(json_text(pinch(), answer, false),
            R"({"question":"individual","about":[1,0],"verdict":"INFEASIBLE",)"
            R"("reason":"the conditions contradict each other: the cones","notes":[],)"
            R"("grasp_map":{"rank":5,"columns":6,"nullity":1,"smallest_singular_value":0.25}})");
  answer.verdict = Verdict::kUndetermined;
  answer.inquiry = {Question::kExists, {}};
  answer.force_closure = true;
  EXPECT_EQ(json_text(pinch(), answer, false),
            R"({"question":"exists","verdict":"FEASIBILITY CANNOT BE DETERMINED",)"
            R"("reason":"the conditions contradict each other: the cones","notes":[],)"
            R"("force_closure":true,)"
            R"("grasp_map":{"rank":5,"columns":6,"nullity":1,"smallest_singular_value":0.25}})");
}

TEST(AnswerText, HasALineForEachKeyAndEachContact) {
  const Grasp grasp = mixed();
  const std::string text = to_text(to_json(grasp, feasible(Question::kExists), false));
  EXPECT_EQ(zelhost::Json::parse(text), to_json(grasp, feasible(Question::kExists), false));
  EXPECT_EQ(text.substr(0, 70),
            "{\n  \"name\": \"a mixed pinch\",\n  \"question\": \"exists\",\n  \"verdict\": \"FEA");
  EXPECT_NE(text.find(",\n  \"contacts\": [\n    {\"contact\":0,\"name\":\"thumb\","),
            std::string::npos);
  EXPECT_NE(text.find("},\n    {\"contact\":1,"), std::string::npos);
  EXPECT_NE(text.find("}\n  ],\n  \"residual\": {"), std::string::npos);
}

}  // namespace
}  // namespace grasp
