// The example files: keywords, each followed by its numbers.
//
//   title two fingers pinch a box     the rest of the line
//   contacts 3 3                      numbers, over as many lines as it takes
//   # a comment, up to the end of the line
//
// A grasp (.grasp) holds the inputs of the unit's internal-force methods, an
// LMI (.lmi) those of its method for matrix inequalities, in the order of the
// ports, so that a file can be read beside the host's help texts.
#pragma once

#include <cstdint>
#include <filesystem>
#include <stdexcept>
#include <string>
#include <vector>

namespace examples {

/// A file that cannot be read or does not hold together; what() names file and reason.
class ExampleError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

/// One grasp. Contacts, force components and coordinates count from 0; forces in newton.
struct Grasp {
  std::string title;
  /// One per contact: 1 = frictionless (its normal force), 3 = with friction
  /// (tangential 1, tangential 2, normal force).
  std::vector<int> types;
  /// One coefficient per contact; those of frictionless contacts are unused.
  std::vector<double> friction;
  /// Lower and upper bound of each force component in turn.
  std::vector<double> bounds;
  /// Components x coordinates, row after row: forces = base * coordinates.
  std::vector<double> base;
  /// The contacts that the question about individual contacts is about.
  std::vector<int> individual;
  /// The contact that the question about one contact is about.
  std::uint32_t point = 0;

  /// Number of force components, the sum of the types.
  [[nodiscard]] std::size_t components() const;
  /// Number of columns of the base.
  [[nodiscard]] std::size_t coordinates() const { return base.size() / components(); }
  /// First force component of a contact; its normal force is the last of its components.
  [[nodiscard]] std::size_t first_component(std::size_t contact) const;
};

/// P0 + x1*P1 + x2*P2 + ... > 0 (strict) or >= 0, all matrices of one size, as rows.
struct Lmi {
  std::string title;
  bool strict = true;
  std::vector<std::vector<std::vector<double>>> matrices;
};

/// @throws ExampleError if the file cannot be read, holds an unknown keyword or
/// a number that is none, or if its lists do not fit each other.
Grasp read_grasp(const std::filesystem::path& file);

/// @throws ExampleError as read_grasp.
Lmi read_lmi(const std::filesystem::path& file);

}  // namespace examples
