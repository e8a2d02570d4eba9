// From the conditions of a model to the blocks of a problem.
#pragma once

#include <cstdint>
#include <utility>
#include <vector>

#include "solver/language/model.h"
#include "solver/problem/problem.h"

namespace sdpsol {

/// Takes a model apart into blocks: every entry of an element by element
/// condition becomes a row, every matrix condition is split into the connected
/// components of its symmetric sparsity pattern. A minimisation becomes the
/// maximisation of the negated objective.
/// Cost: sorting the terms.
Problem build_problem(const Model& model);

/// The rows, from 0, of each block that a condition on a matrix falls into, in the order
/// of its blocks in the problem.
std::vector<std::vector<std::int32_t>> rows_of_blocks(const Condition& condition);

/// The entry, row and column from 0, that each row of a condition on entries was taken
/// from, in the order of its blocks in the problem.
std::vector<std::pair<std::int32_t, std::int32_t>> entries_of_blocks(const Condition& condition);

}  // namespace sdpsol
