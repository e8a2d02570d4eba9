// Composing definitions, without files or commands: the text of every problem
// as a function of its data. The members of the driver add running and answering.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace sdpsol_internal {

/// The data of a grasp problem, as described at the driver's members.
struct Grasp {
  std::span<const double> base = {};
  std::span<const int> types = {};
  std::span<const double> friction = {};
  std::span<const double> bounds = {};
};

/// Numbers of force components (sum_cdim) and of nullspace coordinates (n_z).
struct ProblemSize {
  std::uint32_t components = 0;
  std::uint32_t coordinates = 0;
};

/// A list that reads as 0 past its end and knows whether that was ever asked of it.
class PaddedList {
 public:
  explicit PaddedList(std::span<const double> values) : values_(values) {}

  double operator[](std::size_t i) {
    if (i < values_.size()) return values_[i];
    too_short_ = true;
    return 0.0;
  }

  bool too_short() const { return too_short_; }
  std::size_t size() const { return values_.size(); }

 private:
  std::span<const double> values_;
  bool too_short_ = false;
};

/// The three lists of numbers of one problem, so that one warning covers them.
struct PaddedLists {
  explicit PaddedLists(const Grasp& grasp)
      : base(grasp.base), friction(grasp.friction), bounds(grasp.bounds) {}

  /// Appends one line that names the lists found too short so far; nothing if none was.
  void warn(std::string& warnings) const;

  PaddedList base;
  PaddedList friction;
  PaddedList bounds;
};

// All compose functions append to `warnings` the lines that belong on standard
// output. Cost: linear in the text.

/// The size of the problem, with a warning that begins with `prefix` when the
/// base is no multiple of the components. Nothing, with a warning of another
/// kind, when there is no problem: no components at all, or more than 65,536
/// without a coordinate.
std::optional<ProblemSize> problem_size(const Grasp& grasp, std::string_view prefix,
                                        std::string& warnings);

void compose_basic_defs(std::string& text, ProblemSize size, PaddedList& base);

void compose_basic_constr(std::string& text, ProblemSize size, std::span<const int> types,
                          PaddedList& friction, PaddedList& bounds, std::string& warnings);

/// A composed problem: no definition where `problem_size` gives no size.
struct Composed {
  std::optional<std::string> definition;
  std::string warnings;
};

/// The problem of `isFeasible`.
Composed compose_lmi(std::span<const std::vector<std::vector<double>>> matrices, bool strict);

/// The five internal-force problems, in the order of the members of the driver.
Composed compose_exists(const Grasp& grasp);
Composed compose_individual(const Grasp& grasp, std::span<const int> chosen);
Composed compose_friction_contacts(const Grasp& grasp);
Composed compose_all(const Grasp& grasp);
Composed compose_point_contact(const Grasp& grasp, std::uint32_t chosen);

}  // namespace sdpsol_internal
