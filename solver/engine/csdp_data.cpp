#include "solver/engine/csdp_data.h"

#include <algorithm>
#include <cstdlib>

namespace sdpsol {
namespace {

// Up to so many entries, and up to a quarter of its rows, a block is marked as sparse, as
// the library's own reader of files does.
constexpr std::size_t kFewEntries = 15;

}  // namespace

CsdpPlacement::CsdpPlacement(const std::vector<ConeProgram::Cone>& cones) {
  for (const auto& cone : cones) {
    if (cone.size > 1) {
      sizes.push_back(cone.size);
      slots.push_back({static_cast<int>(sizes.size()), 0});
    } else {
      slots.push_back({0, 0});
    }
  }
  int rows = 0;
  for (auto& [block, index] : slots) {
    if (block != 0) continue;
    block = static_cast<int>(sizes.size()) + 1;
    index = ++rows;
  }
  if (rows > 0) sizes.push_back(-rows);
}

CsdpConstraints::CsdpConstraints(const ConeProgram& program, const CsdpPlacement& placement) {
  gather(program, placement);
  link(static_cast<std::size_t>(program.unknowns), placement.sizes);
}

void CsdpConstraints::gather(const ConeProgram& program, const CsdpPlacement& placement) {
  for (std::size_t c = 0; c < program.cones.size(); ++c) {
    const auto [block, index] = placement.slots[c];
    const bool is_row = program.cones[c].size == 1;
    for (const auto& t : program.cones[c].coefficients) {
      if (t.unknown == ConeProgram::kConstantTerm || t.value == 0) continue;
      pieces_.push_back(
          {t.unknown, block, is_row ? index : t.row + 1, is_row ? index : t.column + 1, t.value});
    }
  }
  std::stable_sort(pieces_.begin(), pieces_.end(), [](const Piece& a, const Piece& b) {
    return std::pair(a.unknown, a.block) < std::pair(b.unknown, b.block);
  });
}

sparseblock CsdpConstraints::fill(std::size_t first, std::size_t last,
                                  const std::vector<int>& sizes) {
  const std::size_t count = last - first;
  const std::size_t at = values_.size();  // within the room reserved by link()
  values_.resize(at + count + 1);
  rows_.resize(at + count + 1);
  columns_.resize(at + count + 1);
  for (std::size_t i = 0; i < count; ++i) {
    values_[at + 1 + i] = pieces_[first + i].value;
    rows_[at + 1 + i] = pieces_[first + i].row;
    columns_[at + 1 + i] = pieces_[first + i].column;
  }
  const int size = std::abs(sizes[static_cast<std::size_t>(pieces_[first].block) - 1]);
  const bool dense = count > kFewEntries && count > static_cast<std::size_t>(size) / 4;
  return {.next = nullptr,
          .nextbyblock = nullptr,
          .entries = &values_[at],
          .iindices = &rows_[at],
          .jindices = &columns_[at],
          .numentries = static_cast<int>(count),
          .blocknum = pieces_[first].block,
          .blocksize = size,
          .constraintnum = pieces_[first].unknown + 1,
          .issparse = dense ? 0 : 1};
}

void CsdpConstraints::link(std::size_t unknowns, const std::vector<int>& sizes) {
  std::vector<std::size_t> starts;
  for (std::size_t i = 0; i < pieces_.size(); ++i) {
    if (i == 0 || pieces_[i].unknown != pieces_[i - 1].unknown ||
        pieces_[i].block != pieces_[i - 1].block) {
      starts.push_back(i);
    }
  }
  // The lists are pointed into: nothing may move once the first is filled.
  const std::size_t room = pieces_.size() + starts.size();
  values_.reserve(room);
  rows_.reserve(room);
  columns_.reserve(room);
  blocks_.reserve(starts.size());
  heads_.assign(unknowns + 1, {nullptr});
  for (std::size_t s = 0; s < starts.size(); ++s) {
    const std::size_t last = s + 1 < starts.size() ? starts[s + 1] : pieces_.size();
    blocks_.push_back(fill(starts[s], last, sizes));
    auto& head = heads_[static_cast<std::size_t>(pieces_[starts[s]].unknown) + 1];
    if (head.blocks == nullptr) {
      head.blocks = &blocks_.back();
    } else {
      blocks_[s - 1].next = &blocks_.back();
    }
  }
}

void CsdpConstant::lay_out(const std::vector<int>& sizes) {
  std::size_t room = 0;
  for (const int size : sizes) {
    const auto n = static_cast<std::size_t>(std::abs(size));
    room += size < 0 ? n + 1 : n * n;
  }
  values_.assign(room, 0.0);
  records_.resize(sizes.size() + 1);
  double* at = values_.data();
  for (std::size_t b = 0; b < sizes.size(); ++b) {
    const auto n = static_cast<std::size_t>(std::abs(sizes[b]));
    blockrec& record = records_[b + 1];
    record.blocksize = static_cast<int>(n);
    record.blockcategory = sizes[b] < 0 ? DIAG : MATRIX;
    if (sizes[b] < 0) {
      record.data.vec = at;
      at += n + 1;
    } else {
      record.data.mat = at;
      at += n * n;
    }
  }
}

CsdpConstant::CsdpConstant(const ConeProgram& program, const CsdpPlacement& placement) {
  lay_out(placement.sizes);
  for (std::size_t i = 0; i < program.cones.size(); ++i) {
    const auto [block, index] = placement.slots[i];
    blockrec& record = records_[static_cast<std::size_t>(block)];
    for (const auto& t : program.cones[i].coefficients) {
      if (t.unknown != ConeProgram::kConstantTerm) continue;
      if (record.blockcategory == DIAG) {
        record.data.vec[index] -= t.value;
      } else {
        record.data.mat[fortran_index(t.row, t.column, record.blocksize)] -= t.value;
        if (t.row != t.column) {
          record.data.mat[fortran_index(t.column, t.row, record.blocksize)] -= t.value;
        }
      }
    }
  }
}

}  // namespace sdpsol
