#include "solver/language/blocks.h"

#include <cstddef>
#include <string>
#include <utility>

#include "solver/language/arithmetic.h"
#include "solver/language/language_error.h"
#include "solver/language/limits.h"

namespace sdpsol {

void BlockMatrix::add(AffineMatrix block, Span at) {
  if (height_ == 0) {
    height_ = block.rows;
    first_block_ = at;
  } else if (block.rows != height_) {
    std::string message = "this block has " +
                          count_text(static_cast<std::size_t>(block.rows), "row") +
                          ", the blocks to its left have " + std::to_string(height_);
    if (is_number_zero(block)) message += "; zeros are written zeros(rows, columns)";
    throw LanguageError(at, std::move(message))
        .with_note(first_block_, "the first block of this row");
  }
  if (block.columns > kMaxDimension - width_ || height_ > kMaxDimension - whole_.rows) {
    throw LanguageError(at, "with this block the matrix has more than " +
                                std::to_string(kMaxDimension) + " rows or columns");
  }
  if (whole_.terms.empty() && whole_.rows == 0 && width_ == 0) {
    whole_.terms = std::move(block.terms);
  } else {
    require_room(whole_.terms.size() + block.terms.size(), at);
    for (AffineTerm& term : block.terms) {
      term.row += whole_.rows;
      term.column += width_;
    }
    whole_.terms.insert(whole_.terms.end(), block.terms.begin(), block.terms.end());
  }
  width_ += block.columns;
}

void BlockMatrix::end_row(Span row) {
  if (whole_.rows == 0) {
    whole_.columns = width_;
    first_row_ = row;
  } else if (width_ != whole_.columns) {
    throw LanguageError(row, "this row has " +
                                 count_text(static_cast<std::size_t>(width_), "column") +
                                 ", the rows above have " + std::to_string(whole_.columns))
        .with_note(first_row_, "the first row");
  }
  whole_.rows += height_;
  height_ = 0;
  width_ = 0;
}

}  // namespace sdpsol
