// Definitions drawn from the grammar of their language.
#pragma once

#include <cstddef>
#include <initializer_list>
#include <random>
#include <string>
#include <string_view>

namespace fuzz {

/// All statements that one instance draws, or that others draw, speak of the same names
/// with the same shapes, so that they can be put together in any order.
class DefinitionGrammar {
 public:
  explicit DefinitionGrammar(unsigned seed) : random_(seed) {}

  /// Declares and assigns the names that the other statements use.
  static std::string_view preamble();
  /// The preamble and a few statements.
  std::string definition();
  /// A relation, an assignment, an objective or a parameter, with its ";".
  std::string statement();
  /// Shapes agree; factors are of one another's shapes.
  std::string expression(int rows, int columns, int depth);
  std::string number();
  std::string relation();

  /// One of 0..n-1.
  std::size_t pick(std::size_t n) { return random_() % n; }
  std::string one_of(std::initializer_list<std::string_view> texts);

 private:
  std::string leaf(int rows, int columns);
  std::string constant(int rows, int columns);
  std::string literal(int rows, int columns, int depth);
  std::string symmetric(int size);

  std::minstd_rand random_;
};

}  // namespace fuzz
