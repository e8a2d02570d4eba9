// A second parser of result texts, for comparison: the rules of the layout one
// after the other, with copies, sets and streams, as slow as it likes.
#pragma once

#include <cstddef>
#include <cstdint>
#include <locale>
#include <set>
#include <sstream>
#include <string>

#include "unit/sdpsol_wrapper.h"

namespace unit_test {

inline double reference_number(const std::string& piece) {
  std::istringstream stream(piece);
  stream.imbue(std::locale::classic());
  double value = 0.0;
  stream >> value;
  return value;
}

/// 0, or 1 at the first position that comes up a second time. Throws as
/// std::string::substr does. `last` is filled as far as the text was read.
inline int reference_parse(const std::string& text, sdpsol_wrapper::result& last) {
  using Position = std::uint32_t;
  const auto find = [&text](char what, std::size_t from) {
    return static_cast<Position>(text.find(what, from));
  };
  const auto add = [&last](double value, const std::string& name) {
    last.variableValues.push_back(value);
    last.variableNames.push_back(name);
    ++last.valueCount;
  };
  last = {};
  last.errorCode = 100;
  last.feasible = text.find("INFEASIBLE") == std::string::npos &&
                  text.find("FEASIBILITY CANNOT BE DETERMINED") == std::string::npos;

  const auto s = static_cast<std::int32_t>(
      static_cast<Position>(text.find('\n', text.find("*** Objective value")) + 1));
  const auto from = static_cast<std::size_t>(s);
  const auto n = static_cast<std::int32_t>(static_cast<Position>(text.find('\n', from) - from));
  const auto length = static_cast<std::size_t>(static_cast<std::ptrdiff_t>(n));
  if (text.substr(from, length) != "NO OBJECTIVE.") {
    const std::size_t p = text.find(" = ", from) + 3;
    last.objectiveValue = reference_number(text.substr(p, length));
  }

  const Position start0 = static_cast<Position>(text.find('\n', text.find("Variable")) + 1);
  Position pos = start0;
  std::set<Position> scanned;
  for (;;) {
    if (static_cast<Position>(pos + 4) >= text.size() || pos < start0) return 0;
    if (!scanned.insert(pos).second) return 1;
    const Position e = find('=', pos);
    const std::string name = text.substr(pos, static_cast<Position>((e - 1) - pos));
    if (find('\n', static_cast<Position>(e - 1)) != static_cast<Position>(e + 1)) {
      const Position value_at = e + 2;
      const Position q = find('\n', value_at);
      add(reference_number(text.substr(value_at, static_cast<Position>(q - value_at))), name);
      pos = q + 2;
      continue;
    }
    unsigned k = 0;
    Position a = e + 6;
    Position c = find(',', a);
    std::set<Position> commas;
    for (;;) {
      const double value = reference_number(text.substr(a, static_cast<Position>(c - a)));
      add(value, name + "_" + std::to_string(k));
      if (!commas.insert(c).second) return 1;
      const std::size_t r = text.find(']', c);
      const std::size_t next = text.find(',', c);
      if (next + 5 >= r) {
        pos = static_cast<Position>(r + 3);
        break;
      }
      ++k;
      a = c + 4;
      c = find(',', a);
    }
  }
}

}  // namespace unit_test
