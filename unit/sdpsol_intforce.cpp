// The five internal-force problems as definitions: the common frame, margins
// ("epsilon") where the problem has any, one block-diagonal inequality over all
// contacts, and the objective.
#include <string_view>

#include "unit/sdpsol_compose.h"
#include "unit/sdpsol_text.h"

namespace sdpsol_internal {
namespace {

constexpr std::string_view kPrefix = "iFE-warning: ";

// A block-diagonal matrix without its brackets, block i as large as type i;
// write_block(i) appends block i. The zero blocks close each row to the right
// and open the next one to the left.
template <class WriteBlock>
void append_block_diagonal(std::string& text, std::uint32_t components, std::span<const int> types,
                           const WriteBlock& write_block) {
  std::uint32_t s = 0;
  for (std::size_t i = 0; i < types.size(); ++i) {
    write_block(i);
    s += static_cast<std::uint32_t>(types[i]);
    if (s < components) append(text, ",zeros(", types[i], ",", components - s, ");\n");
    if (i + 1 < types.size()) append(text, "zeros(", types[i + 1], ",", s, "),");
  }
}

void append_friction_blocks(std::string& text, const ProblemSize& size,
                            std::span<const int> types) {
  append_block_diagonal(text, size.components, types,
                        [&text](std::size_t i) { append(text, "P", i); });
}

void append_sum(std::string& text, std::span<const int> types, int of_type) {
  for (std::size_t i = 0; i < types.size(); ++i) {
    if (types[i] == of_type) append(text, "+epsilon", i);
  }
}

// "variable epsilon0;\n", "epsilon0>0;\n", ...: one line per contact of these types.
void append_margins(std::string& text, std::string_view before, std::string_view after,
                    std::span<const int> types, bool friction_only) {
  for (std::size_t i = 0; i < types.size(); ++i) {
    if (!friction_only || types[i] == 3) append(text, before, "epsilon", i, after);
  }
}

// The problems of all contacts and of those with friction differ only in what a
// contact without friction gets: a margin of its own, or the fixed margin 1.
Composed compose_margins(const Grasp& grasp, bool friction_only) {
  Composed composed;
  const auto size = problem_size(grasp, kPrefix, composed.warnings);
  if (!size) return composed;
  const std::span<const int> types = grasp.types;
  std::string& text = composed.definition.emplace();
  PaddedLists lists(grasp);
  append_margins(text, "variable ", ";\n", types, friction_only);
  compose_basic_defs(text, *size, lists.base);
  compose_basic_constr(text, *size, types, lists.friction, lists.bounds, composed.warnings);
  append_margins(text, "", ">0;\n", types, friction_only);
  append(text, "[");
  append_friction_blocks(text, *size, types);
  append(text, "] - \n[");
  append_block_diagonal(text, size->components, types, [&](std::size_t i) {
    if (types[i] == 3) {
      append(text, "epsilon", i, "*eye(3)");
    } else if (types[i] != 1) {
      append(composed.warnings, "unknown friction type ", types[i], "\n");
    } else if (friction_only) {
      append(text, "1");
    } else {
      append(text, "epsilon", i);
    }
  });
  append(text, "] > 0;\n");
  const std::uint64_t divisor = types.size() - 1;
  append(text, "maximize objective=", friction_only ? "(0" : "((0");
  append_sum(text, types, 3);
  append(text, ")/", divisor);
  if (!friction_only) {
    append(text, ")");
    append_sum(text, types, 1);
  }
  append(text, ";\n");
  lists.warn(composed.warnings);
  return composed;
}

// The contacts that exist among the numbers, in their order, repetitions included.
std::vector<std::size_t> existing_contacts(std::span<const int> numbers, std::size_t count,
                                           std::string& warnings) {
  std::vector<std::size_t> contacts;
  contacts.reserve(numbers.size());
  for (const int number : numbers) {
    if (number >= 0 && static_cast<std::size_t>(number) < count) {
      contacts.push_back(static_cast<std::size_t>(number));
    } else {
      append(warnings,
             "sdpsol_wrapper-warning: defined Contact to maximize does not exist, maxContact ",
             number, "\n");
    }
  }
  return contacts;
}

// The mean of what the chosen contacts maximise: the normal force where there
// is friction, the margin elsewhere.
void append_mean(std::string& text, std::span<const int> types,
                 std::span<const std::size_t> contacts, std::size_t divisor) {
  std::vector<std::uint32_t> first_component;
  first_component.reserve(types.size());
  std::uint32_t s = 0;
  for (const int type : types) {
    first_component.push_back(s);
    s += static_cast<std::uint32_t>(type);
  }
  append(text, "maximize objective=(0");
  for (const std::size_t m : contacts) {
    if (types[m] == 3) {
      append(text, "+x", first_component[m] + 2);
    } else {
      append(text, "+epsilon", m);
    }
  }
  append(text, ")/", divisor, ";\n");
}

}  // namespace

Composed compose_exists(const Grasp& grasp) {
  Composed composed;
  const auto size = problem_size(grasp, kPrefix, composed.warnings);
  if (!size) return composed;
  std::string& text = composed.definition.emplace();
  PaddedLists lists(grasp);
  compose_basic_defs(text, *size, lists.base);
  compose_basic_constr(text, *size, grasp.types, lists.friction, lists.bounds, composed.warnings);
  append(text, "[");
  append_friction_blocks(text, *size, grasp.types);
  append(text, "]>0;\n");
  lists.warn(composed.warnings);
  return composed;
}

Composed compose_individual(const Grasp& grasp, std::span<const int> chosen) {
  Composed composed;
  const auto size = problem_size(grasp, "sdpsol_wrapper-warning: ", composed.warnings);
  if (!size) return composed;
  const std::span<const int> types = grasp.types;
  std::string& text = composed.definition.emplace();
  PaddedLists lists(grasp);
  const std::vector<std::size_t> contacts =
      existing_contacts(chosen, types.size(), composed.warnings);
  std::vector<bool> is_chosen(types.size());
  for (const std::size_t m : contacts) is_chosen[m] = true;

  compose_basic_defs(text, *size, lists.base);
  for (const std::size_t m : contacts) append(text, "variable epsilon", m, ";\n");
  compose_basic_constr(text, *size, types, lists.friction, lists.bounds, composed.warnings);
  for (const std::size_t m : contacts) append(text, "epsilon", m, ">0;\n");
  append(text, "[");
  append_friction_blocks(text, *size, types);
  append(text, "] - \n[");
  append_block_diagonal(text, size->components, types, [&](std::size_t i) {
    if (types[i] != 1 && types[i] != 3) {
      append(composed.warnings, "unknown friction type ", types[i], "\n");
    } else if (!is_chosen[i]) {
      append(text, types[i] == 1 ? "0" : "zeros(3,3)");
    } else {
      append(text, "epsilon", i, types[i] == 1 ? "" : "*eye(3)");
    }
  });
  append(text, "] > 0;\n");
  if (!chosen.empty()) append_mean(text, types, contacts, chosen.size());
  lists.warn(composed.warnings);
  return composed;
}

Composed compose_friction_contacts(const Grasp& grasp) {
  return compose_margins(grasp, true);
}

Composed compose_all(const Grasp& grasp) {
  return compose_margins(grasp, false);
}

Composed compose_point_contact(const Grasp& grasp, std::uint32_t chosen) {
  Composed composed;
  const auto size = problem_size(grasp, kPrefix, composed.warnings);
  if (!size) return composed;
  const std::span<const int> types = grasp.types;
  std::string& text = composed.definition.emplace();
  PaddedLists lists(grasp);
  compose_basic_defs(text, *size, lists.base);
  append(text, "variable epsilon;\n");
  compose_basic_constr(text, *size, types, lists.friction, lists.bounds, composed.warnings);
  append(text, "epsilon>0;\n[");
  append_block_diagonal(text, size->components, types, [&](std::size_t i) {
    append(text, "P", i);
    if (i != chosen) return;
    if (types[i] == 1) {
      append(text, "-epsilon");
    } else if (types[i] == 3) {
      append(text, "-epsilon*eye(3)");
    } else {
      append(composed.warnings, "unknow contact type ", types[i], "\n");
    }
  });
  append(text, "] > 0;\nmaximize objective=epsilon;\n");
  lists.warn(composed.warnings);
  return composed;
}

}  // namespace sdpsol_internal
