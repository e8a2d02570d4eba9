// The sheet: a heading, three views in their places, the legend in the fourth.
#include "grasp/picture_svg.h"

#include <algorithm>

#include "grasp/picture/canvas.h"
#include "grasp/picture/drawable_text.h"
#include "grasp/picture/legend.h"
#include "grasp/picture/scene.h"
#include "grasp/picture/view_drawing.h"

namespace grasp {
namespace {

using picture::Box;
using picture::Canvas;
using picture::Font;
using picture::Spot;

constexpr double kBorder = 12;
constexpr double kGap = 10;
/// Between lines of the heading.
constexpr double kLeading = 5;
constexpr std::size_t kMaxNotes = 5;

/// A line of the heading.
struct Line {
  std::u32string text;
  Font font;
};

std::string title_of(const Grasp& grasp) {
  return grasp.name.empty() ? "Grasp" : grasp.name;
}

std::string question_in_words(const Grasp& grasp, const Inquiry& inquiry) {
  std::string words = "question: " + std::string(to_string(inquiry.question));
  const char* before = " of ";
  for (const std::size_t contact : inquiry.contacts) {
    if (contact >= grasp.contacts.size()) continue;
    words += before + grasp.label(contact);
    before = ", ";
  }
  return words;
}

/// Where the views have numbers: whose they are.
std::string numbers_in_words(const picture::Scene& scene) {
  const Grasp& grasp = scene.grasp;
  const auto named = [](const Contact& contact) { return !contact.name.empty(); };
  if (!scene.has_numbers || std::none_of(grasp.contacts.begin(), grasp.contacts.end(), named)) {
    return "";
  }
  std::string words = "contacts:";
  for (std::size_t k = 0; k < grasp.contacts.size(); ++k) {
    if (!named(grasp.contacts[k])) continue;
    words += " " + std::to_string(k) + " " + grasp.contacts[k].name + ",";
  }
  words.pop_back();
  return words;
}

std::vector<Line> heading(const picture::Scene& scene, const Answer& answer, double width) {
  const Grasp& grasp = scene.grasp;
  constexpr Font kTitle{.size = 16, .bold = true};
  constexpr Font kVerdict{.size = 12, .bold = true};
  constexpr Font kText{.size = 11};
  constexpr Font kNote{.size = 10};
  std::vector<Line> lines;
  const auto add = [&](const std::string& text, const Font& font, std::size_t most) {
    for (const std::u32string& line :
         picture::wrap(picture::drawable(text), width / font.size, most)) {
      lines.push_back({.text = line, .font = font});
    }
  };
  const std::u32string title = picture::drawable(title_of(grasp));
  lines.push_back({.text = picture::cut(title, width / kTitle.size, true), .font = kTitle});
  lines.push_back({.text = picture::drawable(to_string(answer.verdict)), .font = kVerdict});
  add(answer.reason, kText, 6);
  add(question_in_words(grasp, answer.inquiry), kText, 2);
  add(numbers_in_words(scene), kNote, 6);
  for (std::size_t k = 0; k < std::min(answer.notes.size(), kMaxNotes); ++k) {
    add(answer.notes[k], kNote, 3);
  }
  return lines;
}

}  // namespace

std::string draw_svg(const Grasp& grasp, const Answer& answer) {
  const picture::Scene scene = picture::make_scene(grasp, answer);
  const Vector panel = scene.fit.size + Vector::Constant(2 * picture::kMargin);
  const double width = 2 * kBorder + panel.x() + kGap + panel.y();
  const std::vector<Line> lines = heading(scene, answer, width - 2 * kBorder);
  double top = kBorder + 4;
  for (const Line& line : lines) top += line.font.size + kLeading;
  const double right = kBorder + panel.x() + kGap;
  Canvas legend;
  const double above = std::max(panel.y(), draw_legend(legend, scene, {right, top}, panel.y()));
  const double middle = top + above + kGap;
  const double height = middle + panel.z() + kBorder;

  Canvas canvas;
  canvas.open("fill=\"#000\"");
  double y = kBorder;
  for (const Line& line : lines) {
    y += line.font.size + kLeading;
    canvas.text({kBorder, y - kLeading}, line.text, line.font);
  }
  canvas.close();
  const auto box = [&](double left, double upper, double w, double h) {
    return Box{.left = left, .top = upper, .right = left + w, .bottom = upper + h};
  };
  const auto& views = picture::views();
  draw_view(canvas, scene, views[picture::kTop],
            box(kBorder, middle - kGap - panel.y(), panel.x(), panel.y()));
  draw_view(canvas, scene, views[picture::kFront], box(kBorder, middle, panel.x(), panel.z()));
  draw_view(canvas, scene, views[picture::kSide], box(right, middle, panel.y(), panel.z()));
  canvas.append(legend);
  return canvas.file(width, height, picture::drawable(title_of(grasp)));
}

}  // namespace grasp
