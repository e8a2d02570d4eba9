// Matrices put together from blocks: [A, B; C, D].
#pragma once

#include <cstdint>
#include <utility>

#include "solver/language/affine_matrix.h"
#include "solver/language/source.h"

namespace sdpsol {

/// Takes the blocks in the order of the text. Blocks of one row must be equally
/// high, and all rows equally wide.
/// Cost: the terms of each block, moved once; zero blocks cost nothing.
class BlockMatrix {
 public:
  /// @throws LanguageError if the block is not as high as its row or the matrix
  /// becomes too large.
  void add(AffineMatrix block, Span at);
  /// Ends a row of at least one block, which stands at `row`.
  /// @throws LanguageError if it is not as wide as the rows above it.
  void end_row(Span row);
  /// The whole, after at least one row.
  AffineMatrix finish() { return std::move(whole_); }

 private:
  AffineMatrix whole_;       ///< the rows that are complete, and the terms of the open one
  std::int32_t height_ = 0;  ///< of the open row, 0 before its first block
  std::int32_t width_ = 0;
  Span first_block_;  ///< that gave the open row its height
  Span first_row_;
};

}  // namespace sdpsol
