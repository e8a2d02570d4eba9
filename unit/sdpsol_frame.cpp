// What the five internal-force problems have in common: their size, the force
// components as combinations of nullspace coordinates, the friction cones and
// the bounds.
#include <algorithm>

#include "unit/sdpsol_compose.h"
#include "unit/sdpsol_text.h"
#include "unit/sdpsol_wrapper.h"

namespace sdpsol_internal {
namespace {

// Without coordinates the components come from the types alone, and a few wrong
// types would make a text that fills the disk.
constexpr std::uint32_t kMaxComponentsWithoutCoordinates = 65536;

void append_bounds(std::string& text, std::size_t component, PaddedList& bounds) {
  append(text, "x", component, ">", bounds[2 * component], ";\n");
  append(text, "x", component, "<", bounds[2 * component + 1], ";\n");
}

// The tangential force (x_s, x_s+1) is no longer than mu times the normal force
// x_s+2 exactly when this matrix is positive semidefinite.
void append_cone(std::string& text, std::size_t contact, std::uint32_t s, double mu) {
  const std::uint32_t tangent = s + 1;
  const std::uint32_t normal = s + 2;
  append(text, "P", contact, "=[\n");
  append(text, "x", normal, "*", mu, ",0,x", s, ";\n");
  append(text, "0,x", normal, "*", mu, ",x", tangent, ";\n");
  append(text, "x", s, ",x", tangent, ",x", normal, "*", mu, "\n");
  append(text, "];\n");
}

}  // namespace

void PaddedLists::warn(std::string& warnings) const {
  std::string names;
  const auto name_if_short = [&names](std::string_view name, const PaddedList& list) {
    if (list.too_short()) append(names, ", size of ", name, " is ", list.size());
  };
  name_if_short("Base", base);
  name_if_short("Friction constraints", friction);
  name_if_short("Force constraints", bounds);
  if (names.empty()) return;
  append(warnings, "sdpsol_wrapper-warning: input too short, missing values are read as 0", names,
         "\n");
}

std::optional<ProblemSize> problem_size(const Grasp& grasp, std::string_view prefix,
                                        std::string& warnings) {
  const std::size_t length = grasp.base.size();
  ProblemSize size;
  for (const int type : grasp.types) size.components += static_cast<std::uint32_t>(type);
  if (size.components == 0) {
    append(warnings, "sdpsol_wrapper-warning: sum of contact types is 0, problem is not solved\n");
    return std::nullopt;
  }
  size.coordinates = static_cast<std::uint32_t>(length) / size.components;
  if (size.coordinates == 0 && size.components > kMaxComponentsWithoutCoordinates) {
    append(warnings, "sdpsol_wrapper-warning: sum of contact types is ", size.components,
           ", size of Base is ", length, ", problem is not solved\n");
    return std::nullopt;
  }
  const std::uint32_t covered = size.coordinates * size.components;
  if (covered != length) {
    append(warnings, prefix, "Error calculation Nullspace size; size of Base is ", length,
           ",sum_cdim is ", size.components, "\n");
  }
  return size;
}

void compose_basic_defs(std::string& text, ProblemSize size, PaddedList& base) {
  append(text, "BIGM=300000;\n");
  for (std::uint32_t j = 0; j < size.coordinates; ++j) append(text, "variable z", j, ";\n");
  for (std::uint32_t k = 0; k < size.components; ++k) {
    const std::uint32_t row = k * size.coordinates;
    append(text, "x", k, "=", base[row], "*z0");
    for (std::uint32_t j = 1; j < size.coordinates; ++j) {
      append(text, "+", base[row + j], "*z", j);
    }
    append(text, ";\n");
  }
}

void compose_basic_constr(std::string& text, ProblemSize size, std::span<const int> types,
                          PaddedList& friction, PaddedList& bounds, std::string& warnings) {
  std::uint32_t s = 0;
  for (std::size_t i = 0; i < types.size(); ++i) {
    if (types[i] == 3) {
      append_cone(text, i, s, friction[i]);
    } else if (types[i] == 1) {
      append(text, "P", i, "=x", s, ";\n");
    } else {
      append(warnings, "Warning, unknown friction type ", types[i], "\n");
    }
    s += static_cast<std::uint32_t>(types[i]);
  }
  for (std::uint32_t k = 0; k < size.components; ++k) append_bounds(text, k, bounds);
}

}  // namespace sdpsol_internal

std::string sdpsol_wrapper::intforce_basic_defs(std::vector<double> nullspaceBase,
                                                std::vector<int> contactTypes,
                                                std::uint32_t sum_cdim, std::uint32_t n_z) {
  sdpsol_internal::PaddedLists lists({.base = nullspaceBase, .types = contactTypes});
  std::string text;
  std::string warnings;
  sdpsol_internal::compose_basic_defs(text, {sum_cdim, n_z}, lists.base);
  lists.warn(warnings);
  sdpsol_internal::say(warnings);
  return text;
}

std::string sdpsol_wrapper::intforce_basic_constr(std::vector<int> contactTypes,
                                                  std::vector<double> frictionCoefficients,
                                                  std::vector<double> forceBounds,
                                                  std::uint32_t sum_cdim, std::uint32_t n_z) {
  sdpsol_internal::PaddedLists lists({.friction = frictionCoefficients, .bounds = forceBounds});
  std::string text;
  std::string warnings;
  sdpsol_internal::compose_basic_constr(text, {sum_cdim, n_z}, contactTypes, lists.friction,
                                        lists.bounds, warnings);
  lists.warn(warnings);
  sdpsol_internal::say(warnings);
  return text;
}

bool sdpsol_wrapper::isInVector(int value, std::vector<int> list) {
  return std::find(list.begin(), list.end(), value) != list.end();
}
