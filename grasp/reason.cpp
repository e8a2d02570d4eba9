#include "grasp/reason.h"

#include <algorithm>
#include <charconv>
#include <optional>

namespace grasp {
namespace {

constexpr std::string_view kSolverBorderline = "borderline: no point has more room than 4.4e-6";
constexpr std::string_view kCones = "the cones";
constexpr std::string_view kSolverTooFar = "no point with |v| <= BIGM";
constexpr std::string_view kWarning = "warning: ";

std::vector<std::string_view> lines_of(std::string_view text) {
  std::vector<std::string_view> lines;
  while (!text.empty()) {
    const std::size_t end = std::min(text.find('\n'), text.size());
    lines.push_back(text.substr(0, end));
    text.remove_prefix(std::min(end + 1, text.size()));
  }
  return lines;
}

bool starts_with(std::string_view text, std::string_view start) {
  return text.substr(0, start.size()) == start;
}

// The number at the start of the text, which is taken away.
std::optional<std::size_t> take_number(std::string_view& text) {
  std::size_t number = 0;
  const auto read = std::from_chars(text.data(), text.data() + text.size(), number);
  if (read.ec != std::errc()) return {};
  text.remove_prefix(static_cast<std::size_t>(read.ptr - text.data()));
  return number;
}

// "lines 24, 32, 33" at the end of a reason.
struct LineList {
  std::size_t start;  ///< of the text that is about lines
  std::vector<std::size_t> lines;
  bool more = false;
};

LineList find_lines(std::string_view reason) {
  std::size_t start = reason.rfind(", lines ");
  std::size_t numbers = start + std::string_view(", lines ").size();
  if (start == std::string_view::npos) {
    start = reason.rfind(", line ");
    numbers = start + std::string_view(", line ").size();
  }
  if (start == std::string_view::npos) return {reason.size(), {}};
  LineList list{start, {}};
  std::string_view rest = reason.substr(numbers);
  while (const auto number = take_number(rest)) {
    list.lines.push_back(*number);
    if (!starts_with(rest, ", ")) break;
    rest.remove_prefix(2);
  }
  list.more = !rest.empty();
  if (list.lines.empty()) return {reason.size(), {}};
  return list;
}

struct Component {
  std::size_t contact;
  std::string_view name;
};

std::optional<Component> component(const Grasp& grasp, std::size_t number) {
  for (std::size_t i = 0; i < grasp.contacts.size(); ++i) {
    const std::size_t count = grasp.contacts[i].components();
    if (number < count) {
      constexpr std::string_view kNames[] = {"tangential force 1", "tangential force 2",
                                             "normal force"};
      return Component{i, kNames[3 - count + number]};
    }
    number -= count;
  }
  return {};
}

// What a line of the definition says: "x5>0;", "epsilon1>0;" or "[P0,zeros(3,3);".
std::string condition(std::string_view line, const Grasp& grasp) {
  if (starts_with(line, "[")) return std::string(kCones);
  if (starts_with(line, "epsilon")) {
    line.remove_prefix(std::string_view("epsilon").size());
    const auto number = take_number(line);
    if (number && *number < grasp.contacts.size())
      return "margin of " + grasp.label(*number) + " above 0";
    return "margin above 0";
  }
  if (!starts_with(line, "x")) return {};
  line.remove_prefix(1);
  const auto number = take_number(line);
  const auto of = number ? component(grasp, *number) : std::nullopt;
  if (!of || line.size() < 3 || (line.front() != '>' && line.front() != '<')) return {};
  const std::string_view relation = line.front() == '>' ? " above " : " below ";
  return std::string(of->name) + " of " + grasp.label(of->contact) + std::string(relation) +
         std::string(line.substr(1, line.size() - 2)) + " N";
}

}  // namespace

Heading read_heading(std::string_view result) {
  Heading heading;
  const auto lines = lines_of(result.substr(0, result.find("\n*** ")));
  const auto next = [&lines](auto verdict) {
    return verdict + 1 == lines.end() ? std::string() : std::string(verdict[1]);
  };
  for (auto line = lines.begin(); line != lines.end(); ++line) {
    if (*line == to_string(Verdict::kFeasible)) heading.verdict = Verdict::kFeasible;
    if (*line == to_string(Verdict::kInfeasible)) {
      heading.verdict = Verdict::kInfeasible;
      heading.reason = next(line);
    }
    if (*line == to_string(Verdict::kUndetermined)) heading.reason = next(line);
    if (starts_with(*line, kWarning)) heading.warnings.emplace_back(line->substr(kWarning.size()));
  }
  return heading;
}

std::string explain_warning(const std::string& warning) {
  return warning.find("BIGM") == std::string::npos
             ? warning
             : "the objective is limited only by how far the unit looks, up to forces of about "
               "2e5 N; with forces in a larger unit it may be larger";
}

std::string explain(const std::string& reason, std::string_view definition, const Grasp& grasp) {
  if (starts_with(reason, kSolverBorderline)) return std::string(kBorderline);
  if (starts_with(reason, kSolverTooFar))
    return "no forces up to about 2e5 N, which is as far as the unit looks; try forces in a larger "
           "unit";
  const LineList list = find_lines(reason);
  const auto lines = lines_of(definition);
  std::vector<std::string> conditions;
  for (const std::size_t number : list.lines) {
    if (number == 0 || number > lines.size()) continue;
    const std::string text = condition(lines[number - 1], grasp);
    if (text.empty() || std::find(conditions.begin(), conditions.end(), text) != conditions.end())
      continue;
    // First what a grasp fails for most often.
    conditions.insert(text == kCones ? conditions.begin() : conditions.end(), text);
  }
  // Where bounds of different components exclude each other, balance is what ties them.
  std::string text =
      (conditions.size() > 1 ? "for forces that balance, " : "") + reason.substr(0, list.start);
  for (const std::string& each : conditions) text += (&each == &conditions[0] ? ": " : ", ") + each;
  return text + (list.more && !conditions.empty() ? ", and more" : "");
}

}  // namespace grasp
