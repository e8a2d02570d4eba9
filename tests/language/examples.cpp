#include "tests/language/examples.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <map>
#include <sstream>
#include <stdexcept>

namespace sdpsol {
namespace {

constexpr std::string_view kFence = "```";

[[noreturn]] void complain(std::size_t line, const std::string& what) {
  throw std::runtime_error("line " + std::to_string(line) + ": " + what);
}

std::vector<std::string> lines_of(std::string_view text) {
  std::istringstream stream{std::string(text)};
  std::vector<std::string> lines;
  for (std::string line; std::getline(stream, line);) lines.push_back(line);
  return lines;
}

// "name = number", as results and documents write it.
bool split(const std::string& line, std::string& name, std::string& number) {
  const std::size_t sign = line.find(" = ");
  if (sign == std::string::npos) return false;
  name = line.substr(0, sign);
  number = line.substr(sign + 3);
  return !number.empty();
}

std::string with_digits_of(const std::string& claimed, double value) {
  if (claimed == "0") return std::abs(value) < 1e-6 ? "0" : std::to_string(value);
  int digits = 0;
  for (const char c : claimed.substr(0, claimed.find('e'))) {
    const bool is_digit = std::isdigit(static_cast<unsigned char>(c)) != 0;
    if (is_digit && (digits > 0 || c != '0')) ++digits;
  }
  std::array<char, 64> buffer{};
  const bool has_point = claimed.find('.') != std::string::npos;
  std::snprintf(buffer.data(), buffer.size(), has_point ? "%#.*g" : "%.*g", std::max(digits, 1),
                value);
  return buffer.data();
}

}  // namespace

std::vector<Example> examples_of(std::string_view document) {
  std::vector<Example> examples;
  std::string kind;  // of the open fence
  std::size_t fence_line = 0;
  bool report_is_due = false;
  std::size_t body = 0;
  std::size_t number = 0;
  for (std::size_t at = 0; at < document.size();) {
    ++number;
    const std::size_t end = std::min(document.find('\n', at), document.size());
    const std::string line(document.substr(at, end - at));
    if (line.starts_with(kFence) && kind.empty()) {
      kind = line.substr(kFence.size());
      fence_line = number;
      body = std::min(end + 1, document.size());
      if (report_is_due && kind != "text") complain(number, "a report must follow the definition");
      if (kind == "sdpsol") {
        examples.push_back({number + 1, "", "", 0, 0});
      } else if (kind == "text" ? !report_is_due : kind != "ebnf") {
        complain(number, "'" + line + "' is neither a definition nor a report that follows one");
      }
    } else if (line == kFence) {
      const std::string text(document.substr(body, at - body));
      if (kind == "sdpsol") examples.back().definition = text;
      if (kind == "text") {
        examples.back().report = text;
        examples.back().report_begin = body;
        examples.back().report_end = at;
      }
      report_is_due = kind == "sdpsol";
      kind.clear();
    }
    at = end + 1;
  }
  if (!kind.empty()) complain(fence_line, "the fence is not closed");
  if (report_is_due) complain(fence_line, "a report must follow the definition");
  return examples;
}

std::string shown(const std::string& output, const std::string& error, std::string_view claimed) {
  std::string text = error;
  std::map<std::string, double> values;
  const std::vector<std::string> lines = lines_of(output);
  for (std::size_t i = 0; i < lines.size(); ++i) {
    std::string name;
    std::string number;
    if (split(lines[i], name, number)) values[name] = std::strtod(number.c_str(), nullptr);
    if (lines[i] == "FEASIBLE") text += lines[i] + "\n";
    if (lines[i] == "INFEASIBLE" || lines[i] == "FEASIBILITY CANNOT BE DETERMINED") {
      text += lines[i] + "\n" + (i + 1 < lines.size() ? lines[i + 1] + "\n" : "");
    }
  }
  for (const std::string& line : lines_of(claimed)) {
    std::string name;
    std::string number;
    if (!split(line, name, number) || !values.contains(name)) continue;
    text += name + " = " + with_digits_of(number, values[name]) + "\n";
  }
  return text;
}

}  // namespace sdpsol
