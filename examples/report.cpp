#include "examples/report.h"

#include <cmath>
#include <iomanip>
#include <sstream>

namespace examples {
namespace {

std::string fixed(double value, int digits) {
  std::ostringstream out;
  // Adding 0 after rounding makes a 0 of the -0 that a small negative rounds to.
  const double unit = std::pow(10.0, digits);
  out << std::fixed << std::setprecision(digits) << std::round(value * unit) / unit + 0.0;
  return out.str();
}

std::string plain(double value) {
  std::ostringstream out;
  out << value;
  return out.str();
}

std::string verdict_text(const Answer& answer) {
  switch (answer.verdict) {
    case Verdict::kFeasible:
      return "yes";
    case Verdict::kInfeasible:
      return "no, none exists (INFEASIBLE)";
    case Verdict::kUndetermined:
      return "not answered: feasibility cannot be determined";
    case Verdict::kFailed:
      break;
  }
  return "not answered: the run failed with code " + std::to_string(answer.error_code);
}

// "epsilon0 4.5 + epsilon1 5.5" over the contacts of one type, `none` if there are none.
std::string margins(const Grasp& grasp, const Answer& answer, int type, const char* none) {
  std::string sum;
  for (std::size_t i = 0; i < grasp.types.size(); ++i) {
    if (grasp.types[i] != type) continue;
    const std::string name = "epsilon" + std::to_string(i);
    sum += (sum.empty() ? "" : " + ") + name + " " + fixed(answer.values.at(name), 5);
  }
  return sum.empty() ? none : sum;
}

// What the objective is made of. The divisor of two of the questions is the
// number of contacts minus one, so that theirs is no average of anything.
std::string objective_text(const Grasp& grasp, Question question, const Answer& answer) {
  const std::string divisor = std::to_string(grasp.types.size() - 1);
  const std::string remark = ", the divisor being the number of contacts minus one";
  switch (question) {
    case Question::kExists:
      break;
    case Question::kIndividual: {
      std::string sum;
      for (const int contact : grasp.individual) {
        const auto i = static_cast<std::size_t>(contact);
        const double normal =
            answer.forces[grasp.first_component(i) + static_cast<std::size_t>(grasp.types[i]) - 1];
        const std::string name = "epsilon" + std::to_string(contact);
        sum += (sum.empty() ? "" : " + ") +
               (grasp.types[i] == 3
                    ? "normal force of contact " + std::to_string(contact) + " " + fixed(normal, 5)
                    : name + " " + fixed(answer.values.at(name), 5));
      }
      return "(" + sum + ") / " + std::to_string(grasp.individual.size());
    }
    case Question::kFriction:
      return "(" + margins(grasp, answer, 3, "0") + ") / " + divisor + remark;
    case Question::kAll: {
      const std::string frictionless = margins(grasp, answer, 1, "");
      return "(" + margins(grasp, answer, 3, "0") + ") / " + divisor +
             (frictionless.empty() ? "" : " + " + frictionless) + remark;
    }
    case Question::kPoint:
      return "epsilon, the margin of contact " + std::to_string(grasp.point);
  }
  return "";
}

std::string component_text(const Grasp& grasp, const Answer& answer, std::size_t component) {
  return fixed(answer.forces[component], 5) + " in [" + plain(grasp.bounds[2 * component]) + ", " +
         plain(grasp.bounds[2 * component + 1]) + "]";
}

std::string force_table(const Grasp& grasp, const Answer& answer) {
  std::ostringstream out;
  const auto row = [&out](const std::string& contact, const std::string& tangential_1,
                          const std::string& tangential_2, const std::string& normal,
                          const std::string& used) {
    out << "    " << std::setw(7) << contact << std::setw(22) << tangential_1 << std::setw(22)
        << tangential_2 << std::setw(22) << normal << std::setw(16) << used << "\n";
  };
  row("contact", "tangential 1", "tangential 2", "normal", "friction used");
  for (std::size_t i = 0; i < grasp.types.size(); ++i) {
    const auto s = grasp.first_component(i);
    if (grasp.types[i] == 1) {
      row(std::to_string(i), "-", "-", component_text(grasp, answer, s), "frictionless");
      continue;
    }
    const double tangential = std::hypot(answer.forces[s], answer.forces[s + 1]);
    const double used = tangential / (grasp.friction[i] * answer.forces[s + 2]);
    row(std::to_string(i), component_text(grasp, answer, s), component_text(grasp, answer, s + 1),
        component_text(grasp, answer, s + 2), fixed(100 * used, 1) + " %");
  }
  return out.str();
}

}  // namespace

std::string question_text(const Grasp& grasp, Question question) {
  switch (question) {
    case Question::kExists:
      return "Is there an internal force?";
    case Question::kIndividual: {
      std::string contacts;
      for (const int contact : grasp.individual)
        contacts += (contacts.empty() ? "" : ", ") + std::to_string(contact);
      return "How hard can the chosen contacts press (" + contacts + ")?";
    }
    case Question::kFriction:
      return "How large can the margins of the contacts with friction be?";
    case Question::kAll:
      return "How large can the margins of all contacts be?";
    case Question::kPoint:
      return "How large can the margin of contact " + std::to_string(grasp.point) + " be?";
  }
  return "";
}

std::string report(const Grasp& grasp, Question question, const Answer& answer) {
  std::string text = question_text(grasp, question) + "\n";
  if (answer.verdict != Verdict::kFeasible) return text + "  " + verdict_text(answer) + "\n";
  if (question == Question::kExists) {
    text += "  " + verdict_text(answer) + "\n";
  } else {
    text += "  objective " + fixed(answer.objective, 6) + " = " +
            objective_text(grasp, question, answer) + "\n";
  }
  return text + force_table(grasp, answer);
}

std::string report(const Lmi& lmi, const Answer& answer) {
  std::string text = "Is there an x with P0";
  for (std::size_t k = 1; k < lmi.matrices.size(); ++k)
    text += " + x" + std::to_string(k) + "*P" + std::to_string(k);
  text += lmi.strict ? " > 0?\n  " : " >= 0?\n  ";
  text += verdict_text(answer);
  if (answer.verdict == Verdict::kFeasible) {
    const char* separator = ": ";
    for (const auto& [name, value] : answer.values) {
      text += separator + name + " = " + plain(value);
      separator = ", ";
    }
  }
  return text + "\n";
}

}  // namespace examples
