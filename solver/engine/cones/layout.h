// The cones of a program as coordinates.
//
// The method works on s = h + G*y, one flat vector: linear rows first, one coordinate
// each; then second-order cones { (s0, s1) : s0 >= |s1| }; then dense symmetric blocks,
// their upper triangles column by column with off-diagonal entries times sqrt 2, so
// that inner products are those of the matrices.
//
// Second-order cones come in disguise. A friction cone is written
//   [a, 0, b]
//   [0, a, c]   whose eigenvalues are a and a -+ |(b, c)|,
//   [b, c, a]
// and so is any arrow: one form on the whole diagonal, the rest in one row and its
// column. A 2 x 2 matrix [a, b; b, c] is the cone (a + c)/2 >= |((a - c)/2, b)|. They
// are recognised by their coefficients.
#pragma once

#include <Eigen/Core>
#include <cstdint>
#include <span>
#include <vector>

#include "solver/engine/engine.h"

namespace sdpsol::cones {

/// Coefficients that differ by less, against the size of their form, differ by how they
/// were scaled.
inline constexpr double kSameForm = 1e-13;

/// A cone of more than one coordinate.
struct Part {
  enum class Kind {
    kArrow,     ///< second-order: the diagonal, then the entries beside it
    kTwoByTwo,  ///< second-order: see above
    kDense,
  };
  Kind kind = Kind::kDense;
  Eigen::Index first = 0;      ///< coordinate
  Eigen::Index dimension = 0;  ///< coordinates
  Eigen::Index order = 0;      ///< rows of the matrix
  Eigen::Index hub = 0;        ///< of an arrow: the row with entries beside the diagonal
  std::size_t cone = 0;        ///< index into the program's cones

  bool is_second_order() const { return kind != Kind::kDense; }
};

/// value * unknown
struct Term {
  std::int32_t unknown = 0;
  double value = 0;
};

/// The terms of all coordinates, one after the other.
struct CoordinateTerms {
  std::vector<Term> terms;
  std::vector<std::size_t> starts{0};  ///< of each coordinate, and the end

  /// Those of `count` coordinates from `first` on.
  std::span<const Term> of(Eigen::Index first, Eigen::Index count = 1) const {
    const std::size_t begin = starts[static_cast<std::size_t>(first)];
    return {terms.data() + begin, starts[static_cast<std::size_t>(first + count)] - begin};
  }
};

struct Layout {
  explicit Layout(const ConeProgram& program);

  Eigen::Index rows = 0;               ///< coordinates that are linear rows: the first ones
  std::vector<std::size_t> row_cones;  ///< which cone of the program each of them is
  std::vector<Part> parts;             ///< the others, in the order of their coordinates
  Eigen::Index dimension = 0;          ///< coordinates
  Eigen::Index degree = 0;             ///< of the barrier: rows + cones + orders of blocks
  Eigen::VectorXd constants;           ///< h
  CoordinateTerms linear;              ///< G, row after row; no unknown twice in one

  /// Multipliers of the coordinates as matrices of the program's cones, which have the
  /// same products with every matrix that has these coordinates.
  /// @param offsets multiplier_offsets() of the program's cones.
  std::vector<double> matrices(const Eigen::VectorXd& multipliers,
                               const std::vector<std::size_t>& offsets) const;
};

/// Symmetric matrix <-> its coordinates as a dense block.
void pack(const Eigen::MatrixXd& matrix, Eigen::Ref<Eigen::VectorXd> packed);
Eigen::MatrixXd unpack(const Eigen::Ref<const Eigen::VectorXd>& packed, Eigen::Index order);

}  // namespace sdpsol::cones
