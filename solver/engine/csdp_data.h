// A cone program in the data structures of the CSDP library. The memory is ours;
// the library sorts the entries in place and otherwise only reads them.
#pragma once

#include <csdp/declarations.h>

#include <vector>

#include "solver/engine/engine.h"

namespace sdpsol {

/// Where the cones stand in CSDP's block list: all rows share one diagonal
/// block (the last), every larger cone is a block of its own. Blocks count from 1.
struct CsdpPlacement {
  explicit CsdpPlacement(const std::vector<ConeProgram::Cone>& cones);
  struct Slot {
    int block = 0;
    int index = 0;  ///< from 1; only of a row
  };
  std::vector<Slot> slots;  ///< per cone
  std::vector<int> sizes;   ///< per block, negative: diagonal
};

/// The coefficient matrices A_1, A_2, ... in CSDP's linked form.
class CsdpConstraints {
 public:
  CsdpConstraints(const ConeProgram& program, const CsdpPlacement& placement);
  /// Indexed from 1.
  constraintmatrix* data() { return heads_.data(); }

 private:
  struct Piece {
    std::int32_t unknown = 0;
    int block = 0;
    int row = 0;  ///< from 1, like column
    int column = 0;
    double value = 0;
  };
  void gather(const ConeProgram& program, const CsdpPlacement& placement);
  void link(std::size_t unknowns, const std::vector<int>& sizes);
  /// Pieces [first, last), all of one unknown and block, as CSDP wants them.
  sparseblock fill(std::size_t first, std::size_t last, const std::vector<int>& sizes);

  std::vector<Piece> pieces_;
  std::vector<constraintmatrix> heads_;
  std::vector<sparseblock> blocks_;
  // Entries of all blocks; each block's lists count from 1, hence one unused place
  // in front of each.
  std::vector<double> values_;
  std::vector<int> rows_;
  std::vector<int> columns_;
};

/// The constant matrix, with CSDP's sign: -C.
class CsdpConstant {
 public:
  CsdpConstant(const ConeProgram& program, const CsdpPlacement& placement);
  blockmatrix get() { return {static_cast<int>(records_.size()) - 1, records_.data()}; }

 private:
  void lay_out(const std::vector<int>& sizes);

  std::vector<double> values_;
  std::vector<blockrec> records_;
};

/// Entry (i, j), from 0, of a Fortran matrix with `size` rows.
inline std::size_t fortran_index(std::int32_t i, std::int32_t j, std::int32_t size) {
  return static_cast<std::size_t>(j) * static_cast<std::size_t>(size) + static_cast<std::size_t>(i);
}

}  // namespace sdpsol
