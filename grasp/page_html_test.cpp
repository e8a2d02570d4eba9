#include "grasp/page_html.h"

#include <gtest/gtest.h>

#include <nlohmann/json.hpp>
#include <string>
#include <string_view>

#include "tests/grasp/page_samples.h"
#include "tests/support/test_folder.h"

namespace {

using grasp::draw_html;
using nlohmann::json;
using page_samples::kNasty;
using page_samples::Sample;
using page_samples::sample;

constexpr std::string_view kDataBegin = R"(<script type="application/json" id="grasp">)";
constexpr std::string_view kScriptEnd = "</script>";

std::string page_of(const std::string& file) {
  const Sample one = sample(file);
  return draw_html(one.grasp, one.answer);
}

/// What a browser takes for the content of the element with the data.
std::string data_text(const std::string& page) {
  const std::size_t begin = page.find(kDataBegin) + kDataBegin.size();
  return page.substr(begin, page.find(kScriptEnd, begin) - begin);
}

json data(const std::string& page) {
  return json::parse(data_text(page));
}

std::size_t occurrences(std::string_view text, std::string_view what) {
  std::size_t count = 0;
  for (std::size_t at = text.find(what); at != std::string_view::npos;
       at = text.find(what, at + 1)) {
    ++count;
  }
  return count;
}

/// The page without what stands between its script tags.
std::string markup(std::string_view page) {
  std::string left;
  while (true) {
    const std::size_t begin = page.find("<script");
    left += page.substr(0, begin);
    if (begin == std::string_view::npos) return left;
    const std::size_t inside = page.find('>', begin) + 1;
    left += page.substr(begin, inside - begin);
    page.remove_prefix(page.find(kScriptEnd, inside));
  }
}

std::string file_of_project(const std::string& name) {
  return test_support::content_of(SDPSOL_SOURCE_DIR "/" + name);
}

TEST(DrawHtml, CarriesTheWholeGraspAsJson) {
  const json grasp = data(page_of("box"));
  EXPECT_EQ(grasp["name"], "Box in a hand");
  EXPECT_EQ(grasp["verdict"], "FEASIBLE");
  EXPECT_EQ(grasp["question"], "individual");
  EXPECT_EQ(grasp["about"], json({"thumb", "4"}));
  EXPECT_EQ(grasp["hull"]["points"].size(), 8U);
  ASSERT_EQ(grasp["contacts"].size(), 6U);
  const json& index = grasp["contacts"][1];
  EXPECT_EQ(index["label"], "index");
  EXPECT_EQ(index["type"], "friction");
  EXPECT_EQ(index["friction"], 0.8);
  EXPECT_EQ(index["point"], json({0.06, 0.02, 0.0}));
  EXPECT_EQ(index["normal"], json({-1.0, 0.0, 0.0}));
  EXPECT_EQ(index["force"]["world"], json({-10.0, 3.0, 0.0}));
  EXPECT_EQ(index["force"]["local"][2], 10.0);
  EXPECT_DOUBLE_EQ(index["force"]["cone_margin"], 5.0);
  EXPECT_EQ(index["force"]["bound_margin"], 10.0);
  EXPECT_EQ(grasp["contacts"][3]["type"], "frictionless");
  EXPECT_EQ(grasp["contacts"][4]["label"], "4");
}

TEST(DrawHtml, CarriesABallAndNothingForNoHull) {
  const json ball = data(page_of("sphere"))["hull"];
  EXPECT_EQ(ball["radius"], 0.04);
  EXPECT_EQ(ball["centre"], json({0.3, 0.1, 0.05}));
  EXPECT_TRUE(data(page_of("no_hull"))["hull"].is_null());
  EXPECT_TRUE(data(page_of("nothing"))["hull"].is_null());
}

TEST(DrawHtml, CarriesNoForcesWhereThereAreNone) {
  const json grasp = data(page_of("infeasible"));
  EXPECT_EQ(grasp["verdict"], "INFEASIBLE");
  EXPECT_EQ(grasp["reason"], "no forces inside the friction cones are in balance");
  EXPECT_TRUE(grasp["objective"].is_null());
  for (const json& contact : grasp["contacts"]) EXPECT_TRUE(contact["force"].is_null());
}

TEST(DrawHtml, KeepsNamesFromBecomingMarkup) {
  const std::string page = page_of("nasty");
  EXPECT_EQ(data_text(page).find('<'), std::string::npos);
  const json grasp = data(page);
  EXPECT_EQ(grasp["name"], kNasty);
  EXPECT_EQ(grasp["reason"], kNasty);
  EXPECT_EQ(grasp["notes"][0], kNasty);
  EXPECT_EQ(grasp["contacts"][0]["label"], kNasty);
  EXPECT_EQ(markup(page), markup(page_of("pinch")));
}

TEST(DrawHtml, WritesValidTextForBytesThatAreNone) {
  Sample one = sample("pinch");
  one.grasp.name = std::string("a\xFF") + '\0' + "\x01z";
  const std::string name = data(draw_html(one.grasp, one.answer))["name"];
  EXPECT_EQ(name, std::string("a\xEF\xBF\xBD") + '\0' + "\x01z");
}

TEST(DrawHtml, HoldsTheLibraryWithItsLicence) {
  const std::string page = page_of("pinch");
  const std::string licence = file_of_project("grasp/page/three-licence.txt");
  EXPECT_NE(licence.find("Copyright (c) 2010-2017 three.js authors"), std::string::npos);
  EXPECT_EQ(licence.find("--"), std::string::npos);
  EXPECT_NE(page.find("<!--\n" + licence + "-->\n<script>\n"), std::string::npos);
  EXPECT_NE(page.find("THREE.OrbitControls"), std::string::npos);
  EXPECT_NE(page.find("REVISION"), std::string::npos);
}

TEST(DrawHtml, IsWhole) {
  const std::string page = page_of("pinch");
  EXPECT_EQ(markup(page).find("{{"), std::string::npos);
  EXPECT_TRUE(page.starts_with("<!DOCTYPE html>\n"));
  EXPECT_TRUE(page.ends_with("</html>\n"));
  EXPECT_EQ(occurrences(page, "<script"), occurrences(page, kScriptEnd));
  for (const char* part :
       {"style.css", "report.js", "shapes.js", "scene.js", "labels.js", "view.js"}) {
    EXPECT_EQ(occurrences(page, file_of_project(std::string("grasp/page/") + part)), 1U) << part;
  }
}

TEST(DrawHtml, LoadsNothing) {
  const std::string text = markup(page_of("pinch"));
  EXPECT_NE(text.find("content=\"default-src 'none';"), std::string::npos);
  std::size_t references = 0;
  for (const char* const attribute : {"src", "href", "data", "action"}) {
    // As the page writes them: without blanks.
    const std::string start = std::string(attribute) + "=\"";
    EXPECT_EQ(text.find(std::string(attribute) + " ="), std::string::npos);
    for (std::size_t at = text.find(start); at != std::string::npos;
         at = text.find(start, at + 1)) {
      EXPECT_EQ(text.substr(at + start.size(), 7), "data:,\"");
      ++references;
    }
  }
  EXPECT_EQ(references, 1U);
  EXPECT_EQ(text.find("url("), std::string::npos);
  EXPECT_EQ(text.find("@import"), std::string::npos);
}

TEST(DrawHtml, WritesTheSameEachTime) {
  EXPECT_EQ(page_of("cloud"), page_of("cloud"));
}

}  // namespace
