// Cone programs that are built as those of grasps are.
#pragma once

#include "solver/engine/cones/test_cones.h"

namespace sdpsol::testing {

struct Contacts {
  int count = 8;
  bool with_margin = false;  ///< a last unknown that all cones share: the objective
  bool with_locals = false;  ///< unknowns that one cone each has for itself
  int boxed = 0;             ///< unknowns with rows |z| <= 5
};

/// Forces x = N*z + constant with three for each contact, six fewer unknowns z than forces,
/// friction cones, and bounds of the normal forces. In the order of the unknowns: z,
/// locals, margin.
inline ConeProgram contacts_program(Numbers& numbers, const Contacts& contacts) {
  const std::int32_t count = contacts.count;
  const std::int32_t wide = 3 * count - 6;
  const std::int32_t first_local = wide;
  const std::int32_t margin = wide + (contacts.with_locals ? count : 0);
  const MatrixXd n = numbers.matrix(Index{3} * count, wide);
  const auto force = [&](Index i, double factor) {
    Form form = {{kOne, factor * (i % 3 == 0 ? 1 : 0.1)}};
    for (std::int32_t k = 0; k < wide; ++k) form.emplace_back(k, factor * n(i, k));
    return form;
  };
  ConeProgram program;
  for (std::int32_t i = 0; i < count; ++i) {
    Form normal = force(3 * i, 0.7);
    if (contacts.with_locals) normal.emplace_back(first_local + i, -1);
    if (contacts.with_margin) normal.emplace_back(margin, -2);
    program.cones.push_back(arrow(2, normal, {force(3 * i + 1, 1), force(3 * i + 2, 1)}));
    Form bound = force(3 * i, -1);
    bound[0].second += 10;
    program.cones.push_back(row(bound));
    if (!contacts.with_locals) continue;
    program.cones.push_back(row({{kOne, 2}, {first_local + i, 1}}));
    program.cones.push_back(row({{kOne, 1}, {first_local + i, -1}}));
  }
  for (std::int32_t k = 0; k < contacts.boxed; ++k) {
    program.cones.push_back(row({{kOne, 5}, {k, 1}}));
    program.cones.push_back(row({{kOne, 5}, {k, -1}}));
  }
  if (contacts.with_margin) program.cones.push_back(row({{kOne, 1}, {margin, -1}}));
  program.unknowns = margin + (contacts.with_margin ? 1 : 0);
  program.objective.assign(static_cast<std::size_t>(program.unknowns), 0.0);
  if (contacts.with_margin) {
    program.objective.back() = 1;
  } else {
    for (double& c : program.objective) c = numbers.number();
  }
  return program;
}

/// Every kind of them.
inline std::vector<Contacts> kinds_of_contacts() {
  std::vector<Contacts> kinds;
  for (const bool margin : {false, true}) {
    for (const bool locals : {false, true}) {
      for (const int boxed : {0, 4}) kinds.push_back({8, margin, locals, boxed});
    }
  }
  return kinds;
}

}  // namespace sdpsol::testing
