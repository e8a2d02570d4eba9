// What a grasp file says, as a grasp; and files that are refused, as data: every file of
// tests/grasps/bad, with exactly the text in its .expected.
#include "grasp/grasp_file.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <nlohmann/json.hpp>

#include "tests/support/golden_files.h"

namespace grasp {
namespace {

namespace fs = std::filesystem;

Grasp read(const std::string& text) {
  const zelhost::Json document = zelhost::parse_json(text, "grasp.json");
  return read_grasp(zelhost::JsonNode(document, "grasp.json", ""));
}

TEST(ReadGrasp, TakesEverythingThatAFileCanSay) {
  const Grasp grasp = read(R"({"name": "g", "notes": ["a", "b"], "friction": 0.4, "max_force": 7,
    "centre": [1, 2, 3], "hull": [[0, 0, 0], [1, 0, 0]], "contacts": [
    {"name": "a", "point": [0.1, 0.2, 0.3], "normal": [0, 0, 5], "tangent": [0, 2, 9]},
    {"point": [1, 0, 0], "normal": [-1, 0, 0], "type": "frictionless", "max_force": 2},
    {"point": [2, 0, 0], "normal": [1e-20, 0, 0], "type": "friction", "friction": 0.9,
     "bounds": {"tangential_1": [-1, 2], "tangential_2": [-3, 4], "normal": [5, 5]}},
    {"point": [3, 0, 0], "normal": [1e30, 0, 0], "type": "frictionless",
     "bounds": {"normal": [-6, 8]}}]})");
  EXPECT_EQ(grasp.name, "g");
  EXPECT_EQ(grasp.centre, Vector(1, 2, 3));
  ASSERT_TRUE(grasp.hull);
  EXPECT_EQ(std::get<PointHull>(*grasp.hull).points.at(1), Vector::UnitX());
  ASSERT_EQ(grasp.contacts.size(), 4U);
  EXPECT_EQ(grasp.components(), 8U);
  const auto& contacts = grasp.contacts;
  EXPECT_EQ(grasp.label(0), "a");
  EXPECT_EQ(grasp.label(1), "1");
  EXPECT_EQ(contacts[0].point, Vector(0.1, 0.2, 0.3));
  EXPECT_EQ(contacts[0].frame.normal, Vector::UnitZ());
  EXPECT_EQ(contacts[0].frame.tangential_1, Vector::UnitY());
  EXPECT_EQ(contacts[0].frame.tangential_2, -Vector::UnitX());
  EXPECT_EQ(contacts[2].frame.normal, Vector::UnitX());
  EXPECT_EQ(contacts[3].frame.normal, Vector::UnitX());
  const std::vector<double> frictions = {0.4, 0, 0.9, 0};
  std::vector<std::vector<double>> bounds;
  for (std::size_t i = 0; i < 4; ++i) {
    EXPECT_EQ(contacts[i].friction, frictions[i]);
    EXPECT_EQ(contacts[i].type == ContactType::kFriction, i % 2 == 0);
    bounds.emplace_back();
    for (const Bounds& each : contacts[i].bounds)
      bounds.back().insert(bounds.back().end(), {each.lower, each.upper});
  }
  EXPECT_EQ(bounds, (std::vector<std::vector<double>>{
                        {-7, 7, -7, 7, 0, 7}, {0, 2}, {-1, 2, -3, 4, 5, 5}, {-6, 8}}));
}

TEST(ReadGrasp, TakesTorquesAboutTheCentroidOfTheContactsUnlessACentreIsGiven) {
  const std::string contacts = R"("friction": 0.5, "max_force": 1, "contacts": [
    {"point": [1, 0, 3], "normal": [1, 0, 0]}, {"point": [3, 0, 0], "normal": [1, 0, 0]},
    {"point": [5, 6, 0], "normal": [1, 0, 0]}])";
  EXPECT_EQ(read("{" + contacts + "}").centre, Vector(3, 2, 1));
  EXPECT_EQ(read("{\"centre\": [0, 0, 9], " + contacts + "}").centre, Vector(0, 0, 9));
  const Grasp ball = read("{\"hull\": {\"centre\": [1, 1, 1], \"radius\": 2}, " + contacts + "}");
  EXPECT_EQ(ball.centre, Vector(3, 2, 1));
  EXPECT_EQ(std::get<BallHull>(ball.hull.value()).centre, Vector::Ones());
  EXPECT_EQ(std::get<BallHull>(ball.hull.value()).radius, 2);
}

std::string text_of(int contacts) {
  std::string text = R"({"friction": 1, "max_force": 1, "contacts": [)";
  for (int i = 0; i < contacts; ++i)
    text += std::string(i == 0 ? "" : ",") + R"({"normal": [0, 0, 1], "point": [)" +
            std::to_string(i) + ", 0, 0]}";
  return text + "]}";
}

TEST(ReadGrasp, TakesAsManyContactsAsTheSolverCanAnswerFor) {
  EXPECT_EQ(read(text_of(300)).contacts.size(), 300U);
  try {
    read(text_of(301));
    ADD_FAILURE() << "read";
  } catch (const zelhost::JsonError& error) {
    EXPECT_STREQ(error.what(), "grasp.json: /contacts: a grasp has at most 300 contacts, not 301");
  }
}

fs::path bad_folder() {
  return fs::path(SDPSOL_SOURCE_DIR) / "tests" / "grasps" / "bad";
}

std::string refusal(const std::string& name) {
  try {
    const zelhost::Json document =
        zelhost::read_json(bad_folder() / (name + ".json"), name + ".json");
    static_cast<void>(read_grasp(zelhost::JsonNode(document, name + ".json", "")));
  } catch (const zelhost::JsonError& error) {
    return std::string(error.what()) + "\n";
  }
  return "it was read\n";
}

class BadGrasp : public testing::TestWithParam<std::string> {};

TEST_P(BadGrasp, IsRefusedAsExpected) {
  const std::string error = refusal(GetParam());
  EXPECT_EQ(std::count(error.begin(), error.end(), '\n'), 1);
  test_support::expect_content(bad_folder() / (GetParam() + ".expected"), error);
}

INSTANTIATE_TEST_SUITE_P(Files, BadGrasp,
                         testing::ValuesIn(test_support::names_with_ending(bad_folder(), ".json")),
                         test_support::name_of_file);

}  // namespace
}  // namespace grasp
