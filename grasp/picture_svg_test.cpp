// Whole pictures, read back.
#include "grasp/picture_svg.h"

#include <gtest/gtest.h>

#include <Eigen/Geometry>
#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <limits>
#include <numbers>
#include <random>

#include "grasp/picture/drawable_text.h"
#include "grasp/picture/labels.h"

namespace grasp {
namespace {

using picture::Box;

Contact contact(const Vector& point, const Vector& normal, double friction,
                const std::string& name = "") {
  Contact contact;
  contact.name = name;
  contact.point = point;
  contact.frame.normal = normal.normalized();
  contact.frame.tangential_1 = contact.frame.normal.unitOrthogonal();
  contact.frame.tangential_2 = contact.frame.normal.cross(contact.frame.tangential_1);
  contact.type = friction > 0 ? ContactType::kFriction : ContactType::kFrictionless;
  contact.friction = friction;
  contact.bounds.resize(contact.components(), {.lower = -10, .upper = 10});
  return contact;
}

Answer answer(const std::vector<Vector>& forces) {
  Answer answer;
  answer.verdict = Verdict::kFeasible;
  for (const Vector& force : forces) {
    ContactForce of_contact;
    of_contact.world = force;
    answer.forces.push_back(of_contact);
  }
  return answer;
}

Grasp pinch() {
  Grasp grasp;
  grasp.name = "Pinch";
  grasp.contacts = {contact({-0.02, 0, 0}, Vector::UnitX(), 0.5, "thumb"),
                    contact({0.02, 0, 0}, -Vector::UnitX(), 0.5, "index")};
  grasp.centre = Vector::Zero();
  return grasp;
}

/// A text of the picture, where it stands by the widths the picture counts with.
struct Text {
  std::string content;
  Box box;
};

std::string attribute(const std::string& element, const std::string& name) {
  const std::size_t at = element.find(" " + name + "=\"");
  if (at == std::string::npos) return "";
  const std::size_t begin = at + name.size() + 3;
  return element.substr(begin, element.find('"', begin) - begin);
}

std::string without_entities(std::string text) {
  const std::pair<const char*, const char*> entities[] = {
      {"&lt;", "<"}, {"&gt;", ">"}, {"&quot;", "\""}, {"&amp;", "&"}};
  for (const auto& [entity, character] : entities) {
    for (std::size_t at = 0; (at = text.find(entity, at)) != std::string::npos; ++at) {
      text.replace(at, std::string(entity).size(), character);
    }
  }
  return text;
}

std::vector<std::string> elements(const std::string& svg, const std::string& name) {
  std::vector<std::string> found;
  const std::string begin = "<" + name + " ";
  for (std::size_t at = 0; (at = svg.find(begin, at)) != std::string::npos; ++at) {
    found.push_back(svg.substr(at, svg.find('\n', at) - at));
  }
  return found;
}

std::vector<Text> texts(const std::string& svg) {
  std::vector<Text> found;
  for (const std::string& element : elements(svg, "text")) {
    const std::size_t begin = element.find('>') + 1;
    Text text;
    text.content = without_entities(element.substr(begin, element.rfind("</") - begin));
    const double size = std::stod(attribute(element, "font-size"));
    const bool bold = attribute(element, "font-weight") == "bold";
    const double width = size * picture::text_width(picture::drawable(text.content), bold);
    const std::string anchor = attribute(element, "text-anchor");
    const double x = std::stod(attribute(element, "x"));
    const double y = std::stod(attribute(element, "y"));
    text.box.left = x - (anchor == "end" ? width : anchor == "middle" ? width / 2 : 0);
    text.box.right = text.box.left + width;
    // From the top of capitals to below letters that hang.
    text.box.top = y - 0.76 * size;
    text.box.bottom = y + 0.22 * size;
    found.push_back(text);
  }
  return found;
}

std::size_t count(const std::vector<Text>& texts, const std::string& content) {
  return static_cast<std::size_t>(std::count_if(
      texts.begin(), texts.end(), [&](const Text& text) { return text.content == content; }));
}

void expect_no_overlaps(const std::string& svg) {
  const std::vector<Text> all = texts(svg);
  const std::string first = svg.substr(svg.find("<svg"), 200);
  const Box sheet{.left = 0,
                  .top = 0,
                  .right = std::stod(attribute(first, "width")),
                  .bottom = std::stod(attribute(first, "height"))};
  for (std::size_t a = 0; a < all.size(); ++a) {
    EXPECT_TRUE(sheet.contains(all[a].box)) << all[a].content;
    for (std::size_t b = 0; b < a; ++b) {
      EXPECT_FALSE(all[a].box.overlaps(all[b].box)) << all[a].content << " | " << all[b].content;
    }
  }
}

/// Lengths of the force arrows, from tail to tip, as they are written.
std::vector<double> arrow_lengths(const std::string& svg) {
  std::vector<double> lengths;
  const std::string style = "stroke-width=\"2.4\" stroke-linejoin=\"round\">\n<line ";
  for (std::size_t at = 0; (at = svg.find(style, at)) != std::string::npos; ++at) {
    const std::string rest = svg.substr(at, 400);
    const std::string line = elements(rest, "line").front();
    const std::string points = attribute(elements(rest, "polygon").front(), "points");
    const picture::Spot tip(std::stod(points), std::stod(points.substr(points.find(',') + 1)));
    const picture::Spot tail(std::stod(attribute(line, "x1")), std::stod(attribute(line, "y1")));
    lengths.push_back((tip - tail).norm());
  }
  return lengths;
}

/// Grasps of which many have contacts that coincide in a view, or names that are long.
struct RandomGrasps {
  std::mt19937 random{5};

  double part() { return std::uniform_real_distribution<double>(-1, 1)(random); }
  std::size_t below(std::size_t end) {
    return std::uniform_int_distribution<std::size_t>(0, end - 1)(random);
  }
  Vector direction(bool along_axes) {
    if (along_axes) return Vector::Unit(static_cast<int>(below(3))) * (below(2) == 0 ? 1 : -1);
    const Vector any(part(), part(), part());
    return any.norm() > 0.1 ? any.normalized() : Vector(Vector::UnitX());
  }
  std::string name() {
    const std::vector<std::string> names = {"",
                                            "thumb",
                                            "WWWWWWWWWWWWWWWWWWWWWWWW",
                                            "a very long name of a finger",
                                            "\u5de6\u624b\u306e\u89aa\u6307\u306e\u5148",
                                            "M\u00f6bius <&> \"x\"",
                                            "\xff\x01",
                                            "\u03c6"};
    return names[below(names.size())];
  }
  std::pair<Grasp, Answer> next(std::size_t contacts) {
    Grasp grasp;
    grasp.name = name();
    const double size = std::pow(10, 3 * part());
    const bool along_axes = below(2) == 0;
    const std::size_t shape = below(5);
    std::vector<Vector> forces;
    for (std::size_t k = 0; k < contacts; ++k) {
      const Vector normal = direction(along_axes);
      Vector point = -size * normal;
      if (shape == 1) point = size * static_cast<double>(k) * Vector::UnitY();
      if (shape == 2) point = Vector(1, 1, 1) * size;
      if (shape == 3) point.z() = 0;
      const double friction = below(3) == 0 ? 0 : 0.1 + std::abs(part());
      grasp.contacts.push_back(contact(point, normal, friction, name()));
      forces.push_back(10 * std::abs(part()) * normal + part() * direction(false));
    }
    grasp.centre = Vector::Zero();
    if (shape == 4) grasp.hull = BallHull{.centre = Vector::Zero(), .radius = size};
    if (shape == 3) grasp.hull = PointHull{{{size, 0, 0}, {0, size, 0}, {0, 0, size}, {0, 0, 0}}};
    Answer known = below(4) == 0 ? Answer{} : answer(forces);
    known.reason = known.forces.empty() ? "no force within the cones balances" : "";
    return {grasp, known};
  }
};

TEST(DrawSvg, LetsNoTwoTextsOverlapForUpToEightContacts) {
  RandomGrasps grasps;
  for (int round = 0; round < 120; ++round) {
    const std::size_t contacts = 1 + static_cast<std::size_t>(round) % 8;
    const auto [grasp, known] = grasps.next(contacts);
    const std::string svg = draw_svg(grasp, known);
    expect_no_overlaps(svg);
    if (HasFailure()) {
      FAIL() << "round " << round << "\n" << svg;
    }
  }
}

TEST(DrawSvg, NamesEachOfUpToEightContactsInEachView) {
  RandomGrasps grasps;
  for (int round = 0; round < 40; ++round) {
    auto [grasp, known] = grasps.next(8);
    for (std::size_t k = 0; k < 8; ++k) {
      grasp.contacts[k].name = std::string(k % 2 == 0 ? "WWW" : "i") + std::to_string(k);
    }
    const std::vector<Text> all = texts(draw_svg(grasp, known));
    for (const Contact& each : grasp.contacts) EXPECT_EQ(count(all, each.name), 3U) << round;
  }
}

TEST(DrawSvg, NumbersContactsWhoseNamesWouldBeCutToTheSame) {
  Grasp grasp = pinch();
  grasp.contacts[0].name = "index fingertip, left";
  grasp.contacts[1].name = "index fingertip, right";
  const std::vector<Text> all = texts(draw_svg(grasp, answer({{1, 0, 0}, {-1, 0, 0}})));
  EXPECT_EQ(count(all, "0"), 3U);
  EXPECT_EQ(count(all, "1"), 3U);
  EXPECT_EQ(count(all, "contacts: 0 index fingertip, left, 1 index fingertip, right"), 1U);
}

TEST(DrawSvg, StaysAPictureOfManyContacts) {
  RandomGrasps grasps;
  for (const std::size_t contacts : {9U, 20U, 60U}) {
    auto [grasp, known] = grasps.next(contacts);
    grasp.name = "many";
    const std::string svg = draw_svg(grasp, known);
    expect_no_overlaps(svg);
    EXPECT_NE(svg.find("<circle"), std::string::npos);
  }
}

TEST(DrawSvg, DrawsAThousandContactsWithoutLabels) {
  const auto [grasp, known] = RandomGrasps{}.next(1000);
  const std::string svg = draw_svg(grasp, known);
  EXPECT_GE(elements(svg, "circle").size(), 3000U);
  EXPECT_EQ(count(texts(svg), "999"), 0U);
}

TEST(DrawSvg, WritesXmlWhateverTheNamesAre) {
  const std::filesystem::path folder =
      std::filesystem::path(testing::TempDir()) / "grasp_picture_xml";
  std::filesystem::remove_all(folder);
  std::filesystem::create_directories(folder);
  RandomGrasps grasps;
  for (std::size_t k = 1; k <= 16; ++k) {
    const auto [grasp, known] = grasps.next(k);
    std::ofstream(folder / (std::to_string(k) + ".svg"), std::ios::binary)
        << draw_svg(grasp, known);
  }
  const std::string command =
      "/usr/bin/python3 -c 'import sys, glob, xml.etree.ElementTree as tree\n"
      "files = glob.glob(sys.argv[1] + \"/*.svg\")\n"
      "roots = {tree.parse(file).getroot().tag for file in files}\n"
      "sys.exit(len(files) != 16 or roots != {\"{http://www.w3.org/2000/svg}svg\"})' '" +
      folder.string() + "'";
  EXPECT_EQ(std::system(command.c_str()), 0);  // NOLINT(cert-env33-c,concurrency-mt-unsafe)
  std::filesystem::remove_all(folder);
}

TEST(DrawSvg, WritesTheSameBytesEachTime) {
  RandomGrasps once;
  RandomGrasps again;
  for (std::size_t k = 1; k < 10; ++k) {
    const auto [grasp, known] = once.next(k);
    const auto [same_grasp, same_known] = again.next(k);
    EXPECT_EQ(draw_svg(grasp, known), draw_svg(same_grasp, same_known));
  }
}

TEST(DrawSvg, DrawsForcesToOneScaleWithTheirLengthsNamed) {
  const std::string svg = draw_svg(pinch(), answer({{10, 0, 0}, {-5, 0, 0}}));
  const std::vector<double> lengths = arrow_lengths(svg);
  // Top and front show both; from the side they are seen end on. The last is the legend's.
  ASSERT_EQ(lengths.size(), 5U);
  EXPECT_NEAR(lengths[0] / lengths[1], 2, 0.01);
  EXPECT_NEAR(lengths[2], lengths[0], 0.02);
  EXPECT_NEAR(lengths[3], lengths[1], 0.02);
  EXPECT_NEAR(lengths[4], lengths[1], 0.02);
  const std::vector<Text> all = texts(svg);
  EXPECT_EQ(count(all, "10 N"), 3U);
  EXPECT_EQ(count(all, "5 N"), 3U);
  EXPECT_EQ(count(all, "force on the object, here 5 N"), 1U);
  EXPECT_NE(svg.find("force towards and away"), std::string::npos);
}

TEST(DrawSvg, NamesTheScaleThatItsScaleBarHas) {
  for (const double factor : {0.0025, 1.0, 2500.0}) {
    Grasp grasp = pinch();
    for (Contact& each : grasp.contacts) each.point *= factor;
    const std::string svg = draw_svg(grasp, Answer{});
    // The legend's line with ticks is the last group of lines of this weight.
    const std::size_t at = svg.find("stroke=\"#000\" stroke-width=\"1.4\">\n<line");
    ASSERT_NE(at, std::string::npos);
    const std::string line = elements(svg.substr(at, 300), "line").front();
    const double bar = std::stod(attribute(line, "x2")) - std::stod(attribute(line, "x1"));
    // Both contacts fill the width of the views: 4 cm times the factor.
    const double metres = bar / 270 * 0.04 * factor;
    const std::string named = factor == 1.0 ? "1 cm, in all views"
                              : factor < 1  ? "20 \u00b5m, in all views"
                                            : "20 m, in all views";
    EXPECT_EQ(count(texts(svg), named), 1U) << svg;
    const double expected = factor == 1.0 ? 0.01 : factor < 1 ? 2e-5 : 20;
    EXPECT_NEAR(metres / expected, 1, 1e-3);
  }
}

TEST(DrawSvg, SaysWhyThereAreNoForces) {
  Answer none;
  none.verdict = Verdict::kInfeasible;
  none.reason = "all contacts push up & nothing pushes down";
  none.inquiry = {.question = Question::kPoint, .contacts = {1}};
  none.notes = {"a note"};
  const std::string svg = draw_svg(pinch(), none);
  const std::vector<Text> all = texts(svg);
  EXPECT_EQ(count(all, "Pinch"), 1U);
  EXPECT_EQ(count(all, std::string(to_string(Verdict::kInfeasible))), 1U);
  EXPECT_EQ(count(all, "all contacts push up & nothing pushes down"), 1U);
  EXPECT_EQ(count(all, "question: point of index"), 1U);
  EXPECT_EQ(count(all, "a note"), 1U);
  EXPECT_TRUE(arrow_lengths(svg).empty());
  EXPECT_EQ(count(all, "thumb"), 3U);
}

TEST(DrawSvg, DrawsOneContactWithoutAScale) {
  Grasp grasp;
  grasp.contacts = {contact({1, 2, 3}, {1, 1, 0}, 0.3)};
  grasp.centre = {1, 2, 3};
  const std::string svg = draw_svg(grasp, Answer{});
  expect_no_overlaps(svg);
  EXPECT_EQ(svg.find("in all views"), std::string::npos);
  EXPECT_EQ(count(texts(svg), "0"), 3U);
}

TEST(DrawSvg, DrawsNoConesWithoutFriction) {
  Grasp grasp = pinch();
  EXPECT_NE(draw_svg(grasp, Answer{}).find("friction cone"), std::string::npos);
  for (Contact& each : grasp.contacts) each = contact(each.point, each.frame.normal, 0);
  const std::string svg = draw_svg(grasp, Answer{});
  EXPECT_EQ(svg.find("friction cone"), std::string::npos);
  EXPECT_EQ(svg.find("fill-opacity"), std::string::npos);
}

TEST(DrawSvg, WritesNothingThatIsNoNumber) {
  Grasp grasp = pinch();
  grasp.contacts[0].point *= 1e300;
  grasp.contacts[1].point.y() = -std::numeric_limits<double>::max();
  const std::string svg = draw_svg(grasp, answer({{1e-300, 0, 0}, {0, 0, 0}}));
  EXPECT_EQ(svg.find("nan"), std::string::npos);
  EXPECT_EQ(svg.find("inf"), std::string::npos);
}

}  // namespace
}  // namespace grasp
