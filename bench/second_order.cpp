#include "bench/second_order.h"

#include <array>
#include <charconv>
#include <cstddef>
#include <map>
#include <stdexcept>
#include <utility>

namespace bench {
namespace {

using sdpsol::ConeProgram;

using Form = std::map<std::int32_t, double>;  // value by unknown

Form form_at(const ConeProgram::Cone& cone, std::int32_t row, std::int32_t column) {
  Form form;
  for (const ConeProgram::Coefficient& c : cone.coefficients) {
    if (c.row == row && c.column == column) form[c.unknown] += c.value;
  }
  return form;
}

std::array<Form, 3> friction_cone(const ConeProgram::Cone& cone) {
  Form diagonal = form_at(cone, 0, 0);
  if (cone.size != 3 || form_at(cone, 1, 1) != diagonal || form_at(cone, 2, 2) != diagonal ||
      !form_at(cone, 0, 1).empty()) {
    throw std::runtime_error("a matrix is no friction cone");
  }
  return {std::move(diagonal), form_at(cone, 0, 2), form_at(cone, 1, 2)};
}

template <class Number>
void append(std::string& text, Number number, char after) {
  std::array<char, 32> digits{};
  const auto end = std::to_chars(digits.begin(), digits.end(), number).ptr;
  text.append(digits.begin(), end);
  text += after;
}

void append_lines(std::string& text, std::size_t line, const Form& form) {
  for (const auto& [unknown, value] : form) {
    append(text, line, ' ');
    append(text, unknown, ' ');
    append(text, value, '\n');
  }
}

}  // namespace

std::string second_order_text(const ConeProgram& program) {
  if (!program.equations.empty()) throw std::runtime_error("a cone program with equations");
  std::string rows_text;
  std::size_t rows = 0;
  for (const ConeProgram::Cone& cone : program.cones) {
    if (cone.size == 1) append_lines(rows_text, rows++, form_at(cone, 0, 0));
  }
  std::string cones_text;
  std::size_t line = rows;
  for (const ConeProgram::Cone& cone : program.cones) {
    if (cone.size == 1) continue;
    for (const Form& form : friction_cone(cone)) append_lines(cones_text, line++, form);
  }
  std::string text;
  append(text, program.unknowns, ' ');
  append(text, rows, ' ');
  append(text, (line - rows) / 3, '\n');
  for (const double cost : program.objective) append(text, cost, '\n');
  return text + rows_text + cones_text;
}

}  // namespace bench
