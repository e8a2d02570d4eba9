// From a file in the SDPA sparse format to a model.
//
// The format is how semidefinite programs are handed from one program to another.
// It states
//
//     minimise  c_1*x_1 + ... + c_m*x_m
//     where     x_1*F_1 + ... + x_m*F_m - F_0  is positive semidefinite
//
// with symmetric matrices F_k that all have the same blocks along their diagonal,
// and writes, in this order:
//
//     lines that begin with " or *     comments
//     m                                a comment may follow on the line
//     the number of blocks             likewise
//     the size of each block           negative: diagonal; a comment may follow
//     c_1 ... c_m                      on one line or several; likewise
//     k block i j value                entry (i,j) of that block of F_k, k from 0
//
// Programs have always written and read it a little differently. This reader takes
// what has one meaning only, and refuses what others would read in different ways:
//
//   - Blanks, commas, parentheses and braces separate numbers, wherever they stand.
//   - An entry is all on one line; a line may hold several. If entries could go on
//     with the next line, one number that is missing would shift all that follow.
//   - The objective ends its line, for the same reason. Where a number stands behind
//     the last block size or the last c_k, the count before it is wrong, or the list.
//   - Only one triangle need be listed; entry (j,i) is (i,j). What is given twice,
//     also once in each triangle, is an error: some programs would add, others would
//     take the first or the last.
//   - A value that is 0 is no entry: it does not tie together the blocks into which a
//     matrix falls by itself.
#pragma once

#include <optional>

#include "solver/language/diagnostics.h"
#include "solver/language/model.h"
#include "solver/language/source.h"

namespace sdpsol {

/// Reads a file in the SDPA sparse format.
/// @param diagnostics receives every error, up to Diagnostics::kMaxErrors, and
///   notes about what was accepted but is worth knowing.
/// @return nothing when there was an error. Otherwise: scalar variables x1, x2, ...;
///   for each block one non-strict condition, a matrix inequality, or for diagonal
///   blocks and those of size 1 a column that holds element by element, named by the
///   place of its first entry, or of its size where it has none; the objective, to be
///   minimised, also where every c_k is 0; not boxed.
/// Cost: linear in the text and in the number of rows; sizes that a text merely
/// claims cost nothing beyond kMaxGeneratedEntries rows and unknowns.
std::optional<Model> read_sdpa(const Source& source, Diagnostics& diagnostics);

}  // namespace sdpsol
