// Grasps to make batches of.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <random>
#include <string>

namespace grasp {

/// Makes grasps as people might write them: fingertips on balls, boxes and ellipsoids of
/// a hand's size, with normals that are not quite right; about half of them have internal
/// forces. The same seed gives the same bytes on every machine.
class RandomGrasps {
 public:
  static constexpr std::size_t kFewestContacts = 2;
  static constexpr std::size_t kMaxContacts = 12;

  /// @param contacts of every grasp, within the limits above; none: a mixture, four
  /// more often than not.
  explicit RandomGrasps(std::uint64_t seed, std::optional<std::size_t> contacts = {});

  /// The next grasp as a line of JSON, as docs/grasps.md describes it, without a line
  /// break. Its name is its number: "grasp 1".
  std::string next();

 private:
  struct Shape;
  struct Contact;

  // The distributions of the standard library differ from one to the next.
  double uniform(double from, double to);
  std::size_t below(std::size_t count);
  std::array<double, 3> direction();

  std::size_t count();
  Shape shape();
  Contact touch(const Shape& shape, const std::array<double, 3>& towards);
  std::string contact(const Shape& shape, const std::array<double, 3>& towards);
  static std::string hull(const Shape& shape);

  std::mt19937_64 bits_;
  std::optional<std::size_t> contacts_;
  std::uint64_t number_ = 0;
};

}  // namespace grasp
