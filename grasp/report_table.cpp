#include "grasp/report_table.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <string_view>
#include <vector>

#include "host/text.h"

namespace grasp {
namespace {

// A longer name is cut: it widens the column of all.
constexpr std::size_t kLongestName = 30;

/// Writes forces with as many digits behind the point as the largest of an answer asks
/// for: four, or where all are small so many that it has four that count. 0 has no sign.
class Newtons {
 public:
  explicit Newtons(const Answer& answer) {
    double largest = 0;
    for (const ContactForce& force : answer.forces) largest = std::max(largest, force.local.norm());
    constexpr double kSmall = 0.1;
    constexpr int kMax = 50;
    if (largest > 0 && largest < kSmall)
      digits_ = std::min(kMax, 3 - static_cast<int>(std::floor(std::log10(largest))));
  }

  std::string operator()(double value) const {
    std::array<char, 400> digits;
    const auto written = std::to_chars(digits.data(), digits.data() + digits.size(), value,
                                       std::chars_format::fixed, digits_);
    const std::string text(digits.data(), written.ptr);
    return text.find_first_not_of("-0.") == std::string::npos && text.front() == '-'
               ? text.substr(1)
               : text;
  }

 private:
  int digits_ = 4;
};

std::string rounded(double value) {
  std::array<char, 32> digits;
  const auto written = std::to_chars(digits.data(), digits.data() + digits.size(), value,
                                     std::chars_format::general, 3);
  return {digits.data(), written.ptr};
}

// How many characters a terminal shows, if none is wide: bytes that do not continue one.
std::size_t width_of(const std::string& text) {
  return static_cast<std::size_t>(std::count_if(text.begin(), text.end(), [](char c) {
    return (static_cast<unsigned char>(c) & 0xC0U) != 0x80U;
  }));
}

/// Columns that are as wide as their widest cell; the first one leans left.
class Columns {
 public:
  void add(std::vector<std::string> row) { rows_.push_back(std::move(row)); }

  [[nodiscard]] std::string text() const {
    std::vector<std::size_t> widths;
    for (const auto& row : rows_) {
      widths.resize(std::max(widths.size(), row.size()));
      for (std::size_t i = 0; i < row.size(); ++i)
        widths[i] = std::max(widths[i], width_of(row[i]));
    }
    std::string text;
    for (const auto& row : rows_) {
      std::string line;
      for (std::size_t i = 0; i < row.size(); ++i) {
        const std::string blanks(widths[i] - width_of(row[i]), ' ');
        line += i == 0 ? row[i] + blanks : "  " + blanks + row[i];
      }
      line.erase(line.find_last_not_of(' ') + 1);
      text += line + "\n";
    }
    return text;
  }

 private:
  std::vector<std::vector<std::string>> rows_;
};

std::string name_of(const Grasp& grasp, std::size_t contact) {
  const std::string& name = grasp.contacts[contact].name;
  return std::to_string(contact) +
         (name.empty() ? "" : " " + zelhost::on_one_line(name, kLongestName));
}

std::string question_line(const Grasp& grasp, const Inquiry& inquiry) {
  std::string line = "question \"" + std::string(to_string(inquiry.question)) + "\"";
  for (const std::size_t contact : inquiry.contacts)
    line += (contact == inquiry.contacts.front() ? ": contact " : ", ") + name_of(grasp, contact);
  return line + "\n";
}

std::string closure_line(const Answer& answer) {
  const Balance& balance = answer.balance;
  std::string line = "grasp map 6 x " + std::to_string(balance.columns) + ", rank " +
                     std::to_string(balance.rank) + ", internal forces of " +
                     std::to_string(balance.nullity) +
                     (balance.nullity == 1 ? " dimension" : " dimensions");
  if (answer.force_closure)
    line += *answer.force_closure ? "; force closure" : "; no force closure";
  return line + "\n";
}

std::string force_table(const Grasp& grasp, const Answer& answer) {
  const bool has_epsilon =
      std::any_of(answer.forces.begin(), answer.forces.end(),
                  [](const ContactForce& each) { return each.epsilon.has_value(); });
  const Newtons newtons(answer);
  Columns columns;
  std::vector<std::string> head = {"force [N]", "normal",      "tangent 1",
                                   "tangent 2", "inside cone", "bounds"};
  if (has_epsilon) head.emplace_back("epsilon");
  for (const char* axis : {"world x", "y", "z"}) head.emplace_back(axis);
  columns.add(std::move(head));
  for (std::size_t i = 0; i < answer.forces.size(); ++i) {
    const ContactForce& force = answer.forces[i];
    const bool slides = grasp.contacts[i].type == ContactType::kFrictionless;
    std::vector<std::string> row = {name_of(grasp, i),
                                    newtons(force.local.z()),
                                    slides ? "-" : newtons(force.local.x()),
                                    slides ? "-" : newtons(force.local.y()),
                                    newtons(force.cone_margin),
                                    newtons(force.bound_margin)};
    if (has_epsilon) row.push_back(force.epsilon ? newtons(*force.epsilon) : "-");
    for (const double component : force.world) row.push_back(newtons(component));
    columns.add(std::move(row));
  }
  return columns.text();
}

std::string_view meaning_of_objective(Question question) {
  switch (question) {
    case Question::kExists:
      break;
    case Question::kPoint:
      return "epsilon of this contact";
    case Question::kIndividual:
      return "mean over these contacts of normal force with friction, epsilon without";
    case Question::kFriction:
      return "sum of the epsilons / (contacts - 1)";
    case Question::kAll:
      return "epsilons with friction / (contacts - 1) + the others";
  }
  return {};
}

std::string objective_lines(const Answer& answer) {
  if (!answer.objective) return {};
  const Newtons newtons(answer);
  std::string lines = "objective " + newtons(*answer.objective) +
                      " N: " + std::string(meaning_of_objective(answer.inquiry.question)) + "\n";
  if (answer.mean_epsilon) lines += "mean epsilon " + newtons(*answer.mean_epsilon) + " N\n";
  return lines;
}

}  // namespace

std::string to_table(const Grasp& grasp, const Answer& answer) {
  std::string text = grasp.name.empty() ? "" : zelhost::on_one_line(grasp.name) + "\n";
  text += question_line(grasp, answer.inquiry);
  text += std::string(to_string(answer.verdict)) + "\n";
  if (!answer.reason.empty()) text += zelhost::on_one_line(answer.reason) + "\n";
  text += closure_line(answer);
  if (answer.verdict == Verdict::kFeasible) {
    text += "\n" + force_table(grasp, answer) + "\n" + objective_lines(answer);
    text += "balance: force within " + rounded(answer.force_residual) + " N, torque within " +
            rounded(answer.torque_residual) + " N m\n";
  }
  for (const std::string& note : answer.notes) text += "note: " + zelhost::on_one_line(note) + "\n";
  if (answer.solving_time > 0) text += "solved in " + rounded(answer.solving_time * 1e3) + " ms\n";
  return text;
}

}  // namespace grasp
